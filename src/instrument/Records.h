#pragma once

#include <string>

#include "instrument/Vocabulary.h"
#include "support/Types.h"

namespace tarvik {

// The groups of settings that clsInstrInterface transfers as a whole. Channel arrays are addressed by the channel
// number.

/// Identity of the open instrument.
struct udtInstrInfo {
  Long lngNumChannels = 0;
  std::string strLogAddr;  ///< the host's own, never written by the instrument class
  std::string strProductId;
  std::string strSerialNum;
  std::string strSysVersion;
  std::string strInstOptions;    ///< " - " where the instrument does not tell its options
  std::string strFwCompileInfo;  ///< the host's own, never written by the instrument class

  bool operator==(const udtInstrInfo &) const = default;
};

/// Contents of the mode page. A Long takes the values of the type in Vocabulary.h that has its name.
struct udtModeInfo {
  Long TriggerMode = eTriggerContinuous;
  Long PulseMode = ePulseStream;
  Long BurstLength = 0;             ///< pulses in a burst, sent in burst mode only
  ChannelArray<Long> PulseType;     ///< in use unless in pattern mode
  ChannelArray<Long> SignalFormat;  ///< in use in pattern mode
  Long PeriodSource = eSourceOscillator;
  Long TriggerSlope = eSlopeFalling;
  Long ArmingSource = eKeepArmingSource;  ///< VxiLine too
  Long ArmSlope = eSlopeFalling;
  Long PllFormat = ePllPeriod;  ///< how PllPeriodOrFreq is to be read
  Double PllPeriodOrFreq = 0;   ///< seconds or hertz of the PLL as arming source

  bool operator==(const udtModeInfo &) const = default;
};

/// Contents of the timing page; times in seconds.
struct udtTimingInfo {
  Double dblFrequency = 0;                    ///< hertz, one for the whole instrument
  ChannelArray<Boolean> fChannelOutputOn;     ///< normal output
  ChannelArray<Boolean> fChannelOutputInvOn;  ///< complement output
  ChannelArray<Boolean> fDoublePulse;
  ChannelArray<Boolean> fAutoCoupleLeTe;  ///< the trailing edge follows the leading edge
  ChannelArray<Double> dblDelay;
  ChannelArray<Double> dblWidth;
  ChannelArray<Double> dblLeading;
  ChannelArray<Double> dblTrailing;

  bool operator==(const udtTimingInfo &) const = default;
};

/// Contents of the levels page; volts or amperes as the output type tells. An e-field takes the values of
/// the type in Vocabulary.h that has its name.
struct udtLevelInfo {
  ChannelArray<Long> eOutputLevel;  ///< a read answers in this form
  ChannelArray<Long> eOutputType;
  ChannelArray<Double> dblAmplOrHigh;
  ChannelArray<Double> dblOffsetOrLow;
  ChannelArray<Double> dblLoadCompensation;  ///< ohms
  ChannelArray<Double> dblOutputImpedance;   ///< ohms
  ChannelArray<Long> eOutputPolarity;
  ChannelArray<Boolean> fChannelOutputOn;     ///< normal output
  ChannelArray<Boolean> fChannelOutputInvOn;  ///< complement output
  Long eChannelMath = eMathSeparate;

  bool operator==(const udtLevelInfo &) const = default;
};

/// Contents of the limits page; volts and amperes.
struct udtLimitsInfo {
  ChannelArray<Boolean> fEnabled;  ///< one switch for both quantities of the channel
  ChannelArray<Double> dblHighVoltage;
  ChannelArray<Double> dblLowVoltage;
  ChannelArray<Double> dblHighCurrent;
  ChannelArray<Double> dblLowCurrent;

  bool operator==(const udtLimitsInfo &) const = default;
};

/// Contents of the trigger-level page: thresholds in volts, impedances in ohms. Values are named in Vocabulary.h.
struct udtTrgLevelsInfo {
  Double dblExtInThreshold = 0;
  Double dblExtInInputImp = 0;
  Double dblClkInThreshold = 0;
  Double dblClkInInputImp = 0;
  Long eTriggerOutLevel = eOutLevelTTL;
  Long eStrobeOutLevel = eOutLevelTTL;
  Long eVxiTriggerSource = 0;  ///< a VxiTriggerSource
  Long eVxiTriggerLine = 0;    ///< a VxiLine

  bool operator==(const udtTrgLevelsInfo &) const = default;
};

}  // namespace tarvik
