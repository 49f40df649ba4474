#include "StandInState.h"

#include <utility>

#include "ValueText.h"
#include "instrument/viInfo.h"

namespace tarvik::test {

InstrumentSettings::InstrumentSettings() {
  for (Long c = 1; c <= 3; ++c) {
    ChannelSettings &channel = channels[static_cast<std::size_t>(c - 1)];
    channel.dblFrequency = 1e6 * c;
    channel.dblWidth = 1e-7 * c;
    channel.dblLeading = 1e-9 * c;
    channel.dblTrailing = 2e-9 * c;
    channel.lngCoupling = c - 1;
    channel.dblSingleDelay = 1e-8 * c;
    channel.dblDoubleDelay = 5e-8 * c;
    channel.lngLevelType = c % 2 == 0 ? 1 : 0;
    channel.dblHigh = 1.0 * c;
    channel.dblLow = -0.5 * c;
    channel.dblLoadCompensation = 10.0 * c;
    channel.dblImpedance = 50.0 * c;
    channel.lngPolarity = c % 2;
    channel.dblHighVoltage = 5.0 * c;
    channel.dblLowVoltage = -5.0 * c;
    channel.dblHighCurrent = 0.125 * c;
    channel.dblLowCurrent = -0.125 * c;
  }
  rows = {PatternRow{{1}, 8}, PatternRow{{2, 3}, 16}, PatternRow{{3, 4, 5}, 24}};
}

StandInState::StandInState(std::string strInstrument)
    : strName(std::move(strInstrument)), strIdentity("MAKER," + strName + ",SN1,V1.0") {
  for (int i = 0; i < viInfo::Size; ++i) arrVi.push_back(static_cast<Byte>(16 + i));
}

void StandInState::Begin() {
  if (!copy) copy = settings;
}

void StandInState::Abort() {
  if (copy) settings = *copy;
  copy.reset();
}

void StandInState::Configure(const StandInConfig &config) {
  const auto take = [&](const char *strKey, const auto &assign) {
    if (const auto found = config.find(strKey); found != config.end()) assign(found->second);
  };
  const auto number = [&](const char *strKey, auto &field) {
    take(strKey, [&](const StandInValue &value) {
      field = static_cast<std::remove_cvref_t<decltype(field)>>(std::get<std::int64_t>(value));
    });
  };
  const auto flag = [&](const char *strKey, auto &fField) {
    take(strKey, [&](const StandInValue &value) { fField = std::get<std::int64_t>(value) != 0; });
  };
  const auto text = [&](const char *strKey, std::string &strField) {
    take(strKey, [&](const StandInValue &value) { strField = std::get<std::string>(value); });
  };
  number("channels", lngChannels);
  number("mask", lngMask);
  number("timeout", lngTimeout);
  number("selftest_code", intSelfTestCode);
  flag("opens", fOpens);
  flag("verbose", fVerbose);
  text("identity", strIdentity);
  text("options", strOptions);
  text("selftest", strSelfTest);
  take("vi", [&](const StandInValue &value) {
    arrVi = FromHex(std::get<std::string>(value));
    arrVi.resize(viInfo::Size);
  });
  take("pllround", [&](const StandInValue &value) {
    dblPllRound.reset();
    if (const auto *lngRound = std::get_if<std::int64_t>(&value)) dblPllRound = static_cast<Double>(*lngRound);
    if (const auto *dblRound = std::get_if<Double>(&value)) dblPllRound = *dblRound;
  });
  take("isOpen", [&](const StandInValue &value) { std::get<std::int64_t>(value) != 0 ? Begin() : End(); });
}

}  // namespace tarvik::test
