#include "DriverSettings.h"

#include "automation/AutomationArray.h"
#include "instrument/DriverCall.h"
#include "settings/modCboTags.h"

namespace tarvik::test {

namespace {

using namespace kolven;
using automation::Ref;

std::string Bits(const Ref<IPatternMemory> &memory, Long lngRow) {
  automation::ArrayOwner array(ByteArray(1));
  Long lngLength = 0;
  Call(memory, &IPatternMemory::GetPattern, lngRow, PatternForm, array.InOut(), &lngLength);
  const ByteArray arr = automation::ToByteArray(array.Get());
  std::string strBits;
  for (Long i = 0; i < lngLength; ++i)
    strBits += (arr.Elements()[static_cast<std::size_t>(i / 8)] & (0x80 >> i % 8)) != 0 ? '1' : '0';
  return strBits;
}

void ReadLimits(const Ref<ILimitGroup> &group, const std::string &strName, SettingsByName &settings) {
  const auto pair = Fetch(group, &ILimitGroup::GetLimits);
  settings.numbers["limits on, " + strName] = Read(pair, &ILimitPair::GetEnabled) ? 1 : 0;
  settings.numbers["limit high, " + strName] = Read(pair, &ILimitPair::GetHigh);
  settings.numbers["limit low, " + strName] = Read(pair, &ILimitPair::GetLow);
}

void ReadLevels(const Ref<IChannel> &channel, const std::string &strChannel, SettingsByName &settings) {
  const auto levels = automation::Narrow<IChannelLevels>(Fetch(channel, &IChannel::GetLevels));
  auto &numbers = settings.numbers;
  Long lngType = 0;
  Double dblFirst = 0, dblSecond = 0;
  Call(levels, &IChannelLevels::GetLevel, eLevelHighLow, &lngType, &dblFirst, &dblSecond);
  numbers["level type" + strChannel] = lngType;
  numbers["high" + strChannel] = dblFirst;
  numbers["low" + strChannel] = dblSecond;
  Call(levels, &IChannelLevels::GetLevel, eLevelOffsetAmplitude, &lngType, &dblFirst, &dblSecond);
  numbers["offset" + strChannel] = dblFirst;
  numbers["amplitude" + strChannel] = dblSecond;
  numbers["load" + strChannel] = Read(levels, &IChannelLevels::GetLoadCompensation);
  numbers["impedance" + strChannel] = Read(levels, &IChannelLevels::GetImpedance);
  numbers["polarity" + strChannel] = Read(levels, &IChannelLevels::GetPolarity);
  numbers["output" + strChannel] = Read(levels, &IChannelLevels::GetOutput) ? 1 : 0;
  numbers["inverse output" + strChannel] = Read(levels, &IChannelLevels::GetComplementOutput) ? 1 : 0;
}

void ReadTiming(const Ref<IChannel> &channel, const std::string &strChannel, SettingsByName &settings) {
  const auto timing = Fetch(channel, &IChannel::GetTiming);
  const auto edges = Fetch(timing, &IChannelTiming::GetEdges);
  auto &numbers = settings.numbers;
  numbers["frequency"] = Read(timing, &IChannelTiming::GetFrequency);
  numbers["width" + strChannel] = Read(timing, &IChannelTiming::GetWidth);
  const Long lngType = Read(timing, &IChannelTiming::GetPulseType);
  numbers["pulse type" + strChannel] = lngType;
  numbers["double pulses" + strChannel] =
      Read(Fetch(timing, &IChannelTiming::GetDoublePulse), &IDoublePulse::GetEnabled) ? 1 : 0;
  numbers["delay" + strChannel] =
      lngType == 2 ? ReadSelected(Fetch(timing, &IChannelTiming::GetDoublePulse), &IDoublePulse::GetDelay)
                   : ReadSelected(Fetch(timing, &IChannelTiming::GetSinglePulse), &ISinglePulse::GetDelay);
  numbers["leading" + strChannel] = ReadSelected(edges, &IEdges::GetLeading);
  numbers["trailing" + strChannel] = ReadSelected(edges, &IEdges::GetTrailing);
  numbers["coupling" + strChannel] = Read(edges, &IEdges::GetCoupling);
  numbers["format" + strChannel] = Read(channel, &IChannel::GetSignalFormat);
}

void ReadTrigger(const Ref<ITriggerSystem> &trigger, SettingsByName &settings) {
  auto &numbers = settings.numbers;
  const auto arm = Fetch(trigger, &ITriggerSystem::GetArmSource);
  const auto clock = Fetch(trigger, &ITriggerSystem::GetClockInput);
  const auto ext = Fetch(trigger, &ITriggerSystem::GetExtInput);
  const auto aux = Fetch(trigger, &ITriggerSystem::GetAuxOutputs);
  numbers["trigger mode"] = Read(trigger, &ITriggerSystem::GetTriggerMode);
  numbers["burst length"] = Read(trigger, &ITriggerSystem::GetBurstLength);
  numbers["period source"] = Read(trigger, &ITriggerSystem::GetPeriodSource);
  numbers["arming source"] = Read(arm, &IArmSource::GetSource);
  numbers["arm slope"] = Read(arm, &IArmSource::GetSlope);
  numbers["PLL frequency"] = Read(arm, &IArmSource::GetPllFrequency);
  numbers["clock slope"] = Read(clock, &IClockInput::GetSlope);
  numbers["clock threshold"] = Read(clock, &IClockInput::GetThreshold);
  numbers["clock impedance"] = Read(clock, &IClockInput::GetImpedance);
  numbers["ext threshold"] = Read(ext, &IExtInput::GetThreshold);
  numbers["ext impedance"] = Read(ext, &IExtInput::GetImpedance);
  for (const Long lngOutput : {1, 2}) {
    Long lngLevel = 0;
    Call(aux, &IAuxOutputs::GetOutLevel, lngOutput, &lngLevel);
    numbers[lngOutput == 1 ? "trigger out" : "strobe out"] = lngLevel;
  }
  numbers["VXI source"] = Read(aux, &IAuxOutputs::GetVxiSource);
  numbers["VXI line"] = Read(aux, &IAuxOutputs::GetVxiLine);
}

}  // namespace

SettingsByName ReadDriver(const Ref<IInstrument> &instrument) {
  SettingsByName settings;
  settings.numbers["pulse mode"] = ReadSelected(instrument, &IInstrument::GetPulseMode);
  settings.numbers["channel math"] = Read(instrument, &IInstrument::GetChannelMath);
  ReadTrigger(Fetch(instrument, &IInstrument::GetTriggerSystem), settings);
  const auto channels = Fetch(instrument, &IInstrument::GetChannels);
  const Long lngChannels = Read(channels, &IChannelList::GetCount);
  for (Long i = 1; i <= lngChannels; ++i) {
    const auto channel = Fetch(channels, &IChannelList::GetItem, i);
    const std::string strChannel = " " + std::to_string(i);
    ReadTiming(channel, strChannel, settings);
    ReadLevels(channel, strChannel, settings);
    ReadLimits(Fetch(channel, &IChannel::GetVoltageLimits), "voltage" + strChannel, settings);
    ReadLimits(Fetch(channel, &IChannel::GetCurrentLimits), "current" + strChannel, settings);
  }
  Double dblReference = 0;
  Long lngSource = 0;
  Call(Fetch(instrument, &IInstrument::GetPllReference), &IPllReference::GetReference, &dblReference, &lngSource);
  settings.numbers["reference"] = dblReference;
  settings.numbers["reference source"] = lngSource;
  const auto memory = Fetch(instrument, &IInstrument::GetPatternMemory);
  settings.texts["bits 1"] = Bits(memory, 1);
  if (lngChannels > 1) settings.texts["bits 2"] = Bits(memory, 2);
  settings.texts["bits strobe"] = Bits(memory, 3);
  return settings;
}

}  // namespace tarvik::test
