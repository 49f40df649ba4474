#include "Generator.h"

#include <utility>

#include "automation/ErrorInfo.h"

namespace example {

namespace {

/// A frequency has been a period in between, so its last digit may differ.
constexpr Double Rounding = 1e-12;

/// Why the generator cannot work so; empty when it can. The panel shows each entry on a line of its own.
std::string Reasons(const Settings &s) {
  std::string strReasons;
  const auto demand = [&](bool fHolds, const char *strReason) {
    if (!fHolds) strReasons += (strReasons.empty() ? "\"" : ";\"") + std::string(strReason) + "\"";
  };
  demand(s.dblFrequency >= 1e-3 && s.dblFrequency <= 50e6 * (1 + Rounding), "Frequency not within 1 mHz and 50 MHz");
  demand(s.dblWidth >= 5e-9, "Width below 5 ns");
  demand(s.dblDelay >= 0 && s.dblDelay + s.dblWidth <= (1 + Rounding) / s.dblFrequency, "Pulse beyond the period");
  demand(s.dblHigh <= 5 && s.dblLow >= -5, "Level not within -5 V and 5 V");
  demand(s.dblHigh > s.dblLow, "High level not above the low level");
  demand(s.lngPeriodSource == tarvik::eSourceOscillator, "The generator has no period source but its oscillator");
  demand(s.lngPulseType == tarvik::eTypeSingle, "The generator makes no double pulses");
  demand(s.lngPolarity == tarvik::ePolarityNormal, "The generator has no inverse polarity");
  demand(!s.fLimits, "The generator has no output limits");
  return strReasons;
}

}  // namespace

void Generator::Open(bool fReset) {
  if (fReset) Reset();
}

void Generator::Close() { Abort(); }

Status Generator::Commit() {
  if (!m_pending) return tarvik::automation::Fail(tarvik::automation::StatusUnexpected, "No transaction is open");
  const Settings settings = *std::exchange(m_pending, std::nullopt);
  return Apply(settings);
}

Status Generator::Change(const std::function<void(Settings &)> &change) {
  if (m_pending) {
    change(*m_pending);
    return tarvik::automation::StatusOk;
  }
  Settings settings = m_settings;
  change(settings);
  return Apply(settings);
}

Status Generator::Apply(const Settings &settings) {
  if (const std::string strReasons = Reasons(settings); !strReasons.empty())
    return tarvik::automation::Fail(tarvik::automation::StatusFail, strReasons);
  m_settings = settings;
  return tarvik::automation::StatusOk;
}

}  // namespace example
