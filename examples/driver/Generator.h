#pragma once

#include <functional>
#include <optional>
#include <string>

#include "automation/Abi.h"
#include "instrument/Vocabulary.h"
#include "support/Types.h"

namespace example {

using tarvik::Double;
using tarvik::Long;
using tarvik::automation::Status;

/// Everything that can be set. Times in seconds, frequencies in hertz, levels in volts.
struct Settings {
  // What the generator has.
  Double dblFrequency = 1e6, dblDelay = 0, dblWidth = 100e-9, dblEdge = 5e-9;
  Double dblHigh = 1, dblLow = 0;
  bool fOutput = false;

  // What it lacks and no capability bit can say. The panel reads these values and sends them back, so they are kept;
  // those that would do something are refused with the commit.
  Long lngPeriodSource = tarvik::eSourceOscillator, lngClockSlope = tarvik::eSlopeRising;
  Long lngPulseType = tarvik::eTypeSingle, lngPolarity = tarvik::ePolarityNormal;
  Long lngSignalFormat = tarvik::eFormatRz;
  bool fLimits = false;
  Double dblHighVoltage = 5, dblLowVoltage = -5, dblHighCurrent = 0.1, dblLowCurrent = -0.1;
  Long lngTriggerOut = tarvik::eOutLevelTTL, lngStrobeOut = tarvik::eOutLevelTTL;
  Double dblClockImpedance = 50, dblClockThreshold = 0, dblExtImpedance = 50, dblExtThreshold = 0;
  Double dblReference = 5e6;
  Long lngReferenceSource = tarvik::ePllRefInternal;
};

/// The one generator of this driver. A real driver would talk to it where Apply stands.
class Generator {
 public:
  void Open(bool fReset);
  void Close();
  void Reset() { m_settings = {}; }

  void Begin() { m_pending = m_settings; }
  /// Puts the pending settings into force, or fails with all reasons and leaves those before in force.
  Status Commit();
  void Abort() { m_pending.reset(); }
  bool InTransaction() const { return m_pending.has_value(); }

  const Settings &InForce() const { return m_settings; }
  /// A change goes into the open transaction, which judges all of them together, or is put into force at once.
  Status Change(const std::function<void(Settings &)> &change);

  bool fVerbose = false;
  Long lngTimeout = 5000;

 private:
  Status Apply(const Settings &settings);

  Settings m_settings;
  std::optional<Settings> m_pending;
};

}  // namespace example
