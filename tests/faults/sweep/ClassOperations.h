#pragma once

#include <functional>
#include <string>
#include <vector>

#include "InstrumentSession.h"
#include "ReferenceInstrument.h"

namespace tarvik::test {

/// A public operation of the instrument class with its arguments, and what the reference does for it. Both answer the
/// result as a text.
struct ClassOperation {
  std::string strName;
  std::function<std::string(clsInstrInterface &)> run;
  std::function<std::string(ReferenceInstrument &)> expected;
  /// What the instrument is set to before.
  std::function<void(InstrumentSettings &, ReferenceDriver &)> prepare = {};
};

const std::vector<ClassOperation> &ClassOperations();

/// Every group of settings that the class transfers, with a value of its own in every place.
struct ClassSettings {
  udtModeInfo mode{.TriggerMode = eTriggerTriggered,
                   .PulseMode = ePulseBurst,
                   .BurstLength = 17,
                   .PulseType = {1, 2},
                   .SignalFormat = {0, 0},
                   .PeriodSource = eSourceClkIn,
                   .TriggerSlope = eSlopeRising,
                   .ArmingSource = eArmManual,
                   .ArmSlope = eSlopeBoth};
  udtTimingInfo timing{.dblFrequency = 2.5e6,
                       .fChannelOutputOn = {True, False},
                       .fChannelOutputInvOn = {False, True},
                       .fDoublePulse = {False, True},
                       .fAutoCoupleLeTe = {True, False},
                       .dblDelay = {1.5e-8, 2.5e-8},
                       .dblWidth = {1e-7, 2e-7},
                       .dblLeading = {3e-9, 4e-9},
                       .dblTrailing = {5e-9, 6e-9}};
  udtLevelInfo levels{.eOutputLevel = {1, 0},
                      .eOutputType = {1, 0},
                      .dblAmplOrHigh = {0.25, 3},
                      .dblOffsetOrLow = {-0.125, 1},
                      .dblLoadCompensation = {75, 60},
                      .dblOutputImpedance = {1000, 50},
                      .eOutputPolarity = {0, 1},
                      .fChannelOutputOn = {True, False},
                      .fChannelOutputInvOn = {False, True},
                      .eChannelMath = eMathAdded};
  udtLimitsInfo limits{.fEnabled = {True, False},
                       .dblHighVoltage = {4, 8},
                       .dblLowVoltage = {-4, -8},
                       .dblHighCurrent = {0.5, 0.75},
                       .dblLowCurrent = {-0.5, -0.75}};
  udtTrgLevelsInfo trigger{.dblExtInThreshold = 1.25,
                           .dblExtInInputImp = 50,
                           .dblClkInThreshold = -0.5,
                           .dblClkInInputImp = 10000,
                           .eTriggerOutLevel = eOutLevelECL,
                           .eStrobeOutLevel = eOutLevelTTL,
                           .eVxiTriggerSource = eVxiSourceStrobe,
                           .eVxiTriggerLine = 12};

  /// Every group in one transaction; false where one operation answered so.
  bool Send(clsInstrInterface &instr) const;
  bool Read(clsInstrInterface &instr);
  bool operator==(const ClassSettings &) const = default;
};

}  // namespace tarvik::test
