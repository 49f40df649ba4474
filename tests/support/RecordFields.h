#pragma once

#include "instrument/Records.h"

namespace tarvik::test {

/// Each record's fields with their names, in order.
template <class Visitor>
void VisitFields(udtInstrInfo &record, Visitor &&visit) {
  visit("lngNumChannels", record.lngNumChannels);
  visit("strLogAddr", record.strLogAddr);
  visit("strProductId", record.strProductId);
  visit("strSerialNum", record.strSerialNum);
  visit("strSysVersion", record.strSysVersion);
  visit("strInstOptions", record.strInstOptions);
  visit("strFwCompileInfo", record.strFwCompileInfo);
}

template <class Visitor>
void VisitFields(udtModeInfo &record, Visitor &&visit) {
  visit("TriggerMode", record.TriggerMode);
  visit("PulseMode", record.PulseMode);
  visit("BurstLength", record.BurstLength);
  visit("PulseType", record.PulseType);
  visit("SignalFormat", record.SignalFormat);
  visit("PeriodSource", record.PeriodSource);
  visit("TriggerSlope", record.TriggerSlope);
  visit("ArmingSource", record.ArmingSource);
  visit("ArmSlope", record.ArmSlope);
  visit("PllFormat", record.PllFormat);
  visit("PllPeriodOrFreq", record.PllPeriodOrFreq);
}

template <class Visitor>
void VisitFields(udtTimingInfo &record, Visitor &&visit) {
  visit("dblFrequency", record.dblFrequency);
  visit("fChannelOutputOn", record.fChannelOutputOn);
  visit("fChannelOutputInvOn", record.fChannelOutputInvOn);
  visit("fDoublePulse", record.fDoublePulse);
  visit("fAutoCoupleLeTe", record.fAutoCoupleLeTe);
  visit("dblDelay", record.dblDelay);
  visit("dblWidth", record.dblWidth);
  visit("dblLeading", record.dblLeading);
  visit("dblTrailing", record.dblTrailing);
}

template <class Visitor>
void VisitFields(udtLevelInfo &record, Visitor &&visit) {
  visit("eOutputLevel", record.eOutputLevel);
  visit("eOutputType", record.eOutputType);
  visit("dblAmplOrHigh", record.dblAmplOrHigh);
  visit("dblOffsetOrLow", record.dblOffsetOrLow);
  visit("dblLoadCompensation", record.dblLoadCompensation);
  visit("dblOutputImpedance", record.dblOutputImpedance);
  visit("eOutputPolarity", record.eOutputPolarity);
  visit("fChannelOutputOn", record.fChannelOutputOn);
  visit("fChannelOutputInvOn", record.fChannelOutputInvOn);
  visit("eChannelMath", record.eChannelMath);
}

template <class Visitor>
void VisitFields(udtLimitsInfo &record, Visitor &&visit) {
  visit("fEnabled", record.fEnabled);
  visit("dblHighVoltage", record.dblHighVoltage);
  visit("dblLowVoltage", record.dblLowVoltage);
  visit("dblHighCurrent", record.dblHighCurrent);
  visit("dblLowCurrent", record.dblLowCurrent);
}

template <class Visitor>
void VisitFields(udtTrgLevelsInfo &record, Visitor &&visit) {
  visit("dblExtInThreshold", record.dblExtInThreshold);
  visit("dblExtInInputImp", record.dblExtInInputImp);
  visit("dblClkInThreshold", record.dblClkInThreshold);
  visit("dblClkInInputImp", record.dblClkInInputImp);
  visit("eTriggerOutLevel", record.eTriggerOutLevel);
  visit("eStrobeOutLevel", record.eStrobeOutLevel);
  visit("eVxiTriggerSource", record.eVxiTriggerSource);
  visit("eVxiTriggerLine", record.eVxiTriggerLine);
}

template <class Record>
concept HasFields = requires(Record record) {
  VisitFields(record, [](const char *, auto &) {});
};

}  // namespace tarvik::test
