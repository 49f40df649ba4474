#include "StandInState.h"

#include <utility>

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

void StandInState::Configure(const Json &config) {
  const auto take = [&](const char *strKey, auto &&assign) {
    if (const auto found = config.find(strKey); found != config.end()) assign(*found);
  };
  take("channels", [&](const Json &value) { lngChannels = value; });
  take("mask", [&](const Json &value) { lngMask = static_cast<Long>(value.get<std::int64_t>()); });
  take("identity", [&](const Json &value) { strIdentity = value; });
  take("options", [&](const Json &value) { strOptions = value; });
  take("vi", [&](const Json &value) {
    arrVi = FromHex(value.get<std::string>());
    arrVi.resize(viInfo::Size);
  });
  take("opens", [&](const Json &value) { fOpens = value.get<int>() != 0; });
  take("verbose", [&](const Json &value) { fVerbose = value.get<int>() != 0; });
  take("timeout", [&](const Json &value) { lngTimeout = value; });
  take("selftest", [&](const Json &value) { strSelfTest = value; });
  take("selftest_code", [&](const Json &value) { intSelfTestCode = value; });
  take("pllround", [&](const Json &value) {
    dblPllRound = value.is_null() ? std::nullopt : std::optional<Double>(value.get<Double>());
  });
  take("isOpen", [&](const Json &value) { value.get<int>() != 0 ? Begin() : End(); });
}

}  // namespace tarvik::test
