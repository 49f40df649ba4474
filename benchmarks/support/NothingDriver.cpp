#include "NothingDriver.h"

#include "instrument/KolvenDriver.h"

namespace tarvik::bench {

namespace {

template <class... Values>
auto Constant(Values... values) {
  return [=](test::HookedCall &call) { call.Fill(values...); };
}

}  // namespace

NothingDriver::NothingDriver() : m_registered([this](const std::string &) { return Root(); }) {
  for (const test::Operation &operation : test::Operations())
    if (operation.HandsObject()) m_answers[operation.strPath] = [](test::HookedCall &call) { call.Hand(); };
  m_answers["IInstrumentList.GetCount"] = Constant(1);
  m_answers["IInstrument.GetName"] = Constant("One");
  m_answers["IInstrument.GetIdentity"] = Constant("Maker,One,1,1.0");
  m_answers["IInstrument.GetOptions"] = Constant("");
  m_answers["IInstrument.SelfTest"] = Constant(0, "");
  m_answers["IInstrument.GetPnpTimeout"] = Constant(1000);
  m_answers["IInstrument.Open"] = Constant(true);
  m_answers["IInstrument.Transaction"] = [this](test::HookedCall &call) {
    m_fTransaction = call.In<Long>(0) == kolven::TransactionBegin;
  };
  m_answers["IInstrument.GetTransactionState"] = [this](test::HookedCall &call) { call.Fill(0, m_fTransaction); };
  m_answers["IErrorQueue.GetErrors"] = Constant("");
  m_answers["IErrorQueue.GetWarnings"] = Constant("");
  m_answers["IErrorQueue.GetVerbose"] = Constant(false);
  m_answers["IRestrictions.GetMask"] = Constant(0);
  m_answers["IChannelList.GetCount"] = Constant(2);
  AddSettings();
  AddChannelSettings();
}

void NothingDriver::AddSettings() {
  m_answers["IInstrument.GetChannelMath"] = Constant(0);
  m_answers["IInstrument.GetPulseMode"] = Constant(0);
  m_answers["IPllReference.GetReference"] = Constant(5e6, 1);
  m_answers["IAuxOutputs.GetOutLevel"] = Constant(0);
  m_answers["IAuxOutputs.GetVxiSource"] = Constant(1);
  m_answers["IAuxOutputs.GetVxiLine"] = Constant(7);
  for (const std::string strInput : {"IExtInput", "IClockInput"}) {
    m_answers[strInput + ".GetImpedance"] = Constant(10000);
    m_answers[strInput + ".GetThreshold"] = Constant(2.5);
  }
  m_answers["IClockInput.GetSlope"] = Constant(1);
  m_answers["IArmSource.GetPllFrequency"] = Constant(1e6);
  m_answers["IArmSource.GetSlope"] = Constant(1);
  m_answers["IArmSource.GetSource"] = Constant(3);
  m_answers["ITriggerSystem.GetBurstLength"] = Constant(2);
  m_answers["ITriggerSystem.GetTriggerMode"] = Constant(0);
  m_answers["ITriggerSystem.GetPeriodSource"] = Constant(0);
  m_answers["IPatternMemory.GetPattern"] = [](test::HookedCall &call) {
    static const std::vector<Byte> arrZeros(2);
    call.ReplaceBytes(1, arrZeros);
    call.Fill(16);
  };
}

void NothingDriver::AddChannelSettings() {
  m_answers["IChannel.GetSignalFormat"] = Constant(1);
  m_answers["IChannelLevels.GetComplementOutput"] = Constant(false);
  m_answers["IChannelLevels.GetLoadCompensation"] = Constant(50);
  m_answers["IChannelLevels.GetImpedance"] = Constant(50);
  m_answers["IChannelLevels.GetOutput"] = Constant(false);
  m_answers["IChannelLevels.GetPolarity"] = Constant(0);
  m_answers["IChannelLevels.GetLevel"] = Constant(0, 2.5, 0);
  m_answers["ISinglePulse.GetDelay"] = Constant(0);
  m_answers["IDoublePulse.GetDelay"] = Constant(2e-7);
  m_answers["IDoublePulse.GetEnabled"] = Constant(false);
  m_answers["IEdges.GetCoupling"] = Constant(1);
  m_answers["IEdges.GetLeading"] = Constant(8e-10);
  m_answers["IEdges.GetTrailing"] = Constant(8e-10);
  m_answers["IChannelTiming.GetFrequency"] = Constant(1e6);
  m_answers["IChannelTiming.GetPulseType"] = Constant(1);
  m_answers["IChannelTiming.GetWidth"] = Constant(1e-7);
  m_answers["ILimitPair.GetEnabled"] = Constant(false);
  m_answers["ILimitPair.GetHigh"] = Constant(0.5);
  m_answers["ILimitPair.GetLow"] = Constant(-0.5);
}

automation::Status NothingDriver::Run(test::HookedCall &call) {
  ++m_lngCalls;
  if (const Answer &answer = std::as_const(m_answers)[call.operation]) answer(call);
  return automation::StatusOk;
}

}  // namespace tarvik::bench
