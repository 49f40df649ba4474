#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "HookedCall.h"
#include "support/Types.h"

namespace tarvik::test {

/// Settings of one channel as the stand-in keeps them. Units as in the driver's contract.
struct ChannelSettings {
  Long lngSignalFormat = 1, lngPulseType = 1;
  Double dblFrequency = 0, dblWidth = 0, dblLeading = 0, dblTrailing = 0;
  Long lngCoupling = 0;
  Double dblSingleDelay = 0, dblDoubleDelay = 0;
  Long lngLevelType = 0;
  Double dblHigh = 0, dblLow = 0, dblLoadCompensation = 0, dblImpedance = 0;
  Long lngPolarity = 0;
  Boolean fOutput, fComplement, fLimits;
  Double dblHighVoltage = 0, dblLowVoltage = 0, dblHighCurrent = 0, dblLowCurrent = 0;
};

struct PatternRow {
  std::vector<Byte> arrBytes;
  Long lngLength = 0;
};

struct InstrumentSettings {
  InstrumentSettings();

  std::array<ChannelSettings, 3> channels;
  Long lngPulseMode = 0, lngTriggerMode = 0, lngBurstLength = 2, lngPeriodSource = 0, lngClockSlope = 1;
  Long lngArmingSource = 3, lngArmSlope = 1;
  Double dblPllFrequency = 250000;
  Double dblClockImpedance = 50, dblClockThreshold = 1, dblExtImpedance = 10000, dblExtThreshold = 1.5;
  Long lngTriggerOut = 0, lngStrobeOut = 1, lngVxiSource = 1, lngVxiLine = 7, lngChannelMath = 0;
  Double dblReference = 5e6;
  Long lngReferenceSource = 1;
  std::array<PatternRow, 3> rows;
};

/// What an instrument is, by the keys of the protocol. A key without a value stands for none.
using StandInValue = std::variant<std::monostate, std::int64_t, Double, std::string>;
using StandInConfig = std::map<std::string, StandInValue>;

/// One instrument of the stand-in driver: what it is and its state, which lives on while objects hold it.
struct StandInState : HookedInstrument {
  explicit StandInState(std::string strInstrument);

  /// Keys that are not named stay as they are, and unknown ones count for nothing.
  void Configure(const StandInConfig &config);

  void Begin();
  void End() { copy.reset(); }
  void Abort();

  std::string strName;
  Long lngChannels = 2, lngMask = 0;
  std::string strIdentity, strOptions = "OPT 001";
  std::vector<Byte> arrVi;
  bool fOpens = true;
  std::string strSelfTest = "Passed";
  Integer intSelfTestCode = 3;
  std::optional<Double> dblPllRound;

  Boolean fVerbose, fAutoDetect;
  Long lngTimeout = 10000;
  InstrumentSettings settings;
  /// The settings at the begin of the open transaction.
  std::optional<InstrumentSettings> copy;
};

}  // namespace tarvik::test
