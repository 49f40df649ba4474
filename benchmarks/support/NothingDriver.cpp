#include "NothingDriver.h"

#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "automation/Object.h"

namespace {

using namespace tarvik;
using namespace tarvik::kolven;
using automation::Ref;
using automation::StatusOk;

long g_lngCalls = 0;

Status Counted(Status status) {
  ++g_lngCalls;
  return status;
}

/// The one object of a class, made with its first use.
template <class Class, class Target>
Status Hand(Target **ppObject) {
  static const Ref<Class> object = automation::MakeObject<Class>();
  Ref<Class> one = object;
  *ppObject = one.Detach();
  return StatusOk;
}

template <class Value>
Status Answer(Value *pValue, Value value) {
  *pValue = value;
  return StatusOk;
}

Status AnswerText(AutomationString *pValue, const char *strText) {
  *pValue = automation::AllocString(strText);
  return StatusOk;
}

// What is told is forgotten; what is asked for is this number.
#define GET(Name, Type, value) \
  Status TARVIK_CALL Name(Type *pValue) override { return Counted(Answer<Type>(pValue, value)); }
#define SET(Name, Type) \
  Status TARVIK_CALL Name(Type) override { return Counted(StatusOk); }
#define BLOCK(Name, Interface, Class) \
  Status TARVIK_CALL Name(Interface **ppObject) override { return Counted(Hand<Class>(ppObject)); }
#define PAIR(Name, Type, value) GET(Get##Name, Type, value) SET(Set##Name, Type)
#define SELECTED(Name, value)                                                                                      \
  Status TARVIK_CALL Get##Name(Long *, Double *pValue) override { return Counted(Answer<Double>(pValue, value)); } \
  Status TARVIK_CALL Set##Name(Long *, Double) override { return Counted(StatusOk); }

class Reference : public automation::Object<IPllReference> {
  Status TARVIK_CALL GetReference(Double *pFreq, Long *pSource) override {
    Answer<Long>(pSource, 1);
    return Counted(Answer<Double>(pFreq, 5e6));
  }
  Status TARVIK_CALL SetReference(Double *, Long) override { return Counted(StatusOk); }
};

class Memory : public automation::Object<IPatternMemory> {
  Status TARVIK_CALL CalcPrbs(Long, Long, Long, AutomationArray **) override { return Counted(StatusOk); }
  Status TARVIK_CALL SetPattern(Long, Long, AutomationArray **, Long) override { return Counted(StatusOk); }
  Status TARVIK_CALL GetPattern(Long, Long, AutomationArray **ppArray, Long *pLength) override {
    if (!*ppArray || (*ppArray)->rgsabound[0].cElements != 2) {
      constexpr Byte Zeros[2] = {};
      automation::FreeArray(*ppArray);
      *ppArray = automation::AllocByteArray(1, Zeros, 2);
    }
    return Counted(Answer<Long>(pLength, 16));
  }
};

class Aux : public automation::Object<IAuxOutputs> {
  Status TARVIK_CALL GetOutLevel(Long, Long *pValue) override { return Counted(Answer<Long>(pValue, 0)); }
  Status TARVIK_CALL SetOutLevel(Long, Long) override { return Counted(StatusOk); }
  PAIR(VxiSource, Long, 1)
  PAIR(VxiLine, Long, 7)
};

class ExtInput : public automation::Object<IExtInput> {
  PAIR(Impedance, Double, 10000)
  PAIR(Threshold, Double, 2.5)
};

class ClockInput : public automation::Object<IClockInput> {
  PAIR(Impedance, Double, 10000)
  GET(GetSlope, Long, 1)
  PAIR(Threshold, Double, 2.5)
};

class Arm : public automation::Object<IArmSource> {
  GET(GetPllFrequency, Double, 1e6)
  GET(GetSlope, Long, 1)
  PAIR(Source, Long, 3)
};

class Trigger : public automation::Object<ITriggerSystem> {
  BLOCK(GetArmSource, IArmSource, Arm)
  BLOCK(GetClockInput, IClockInput, ClockInput)
  GET(GetBurstLength, Long, 2)
  BLOCK(GetExtInput, IExtInput, ExtInput)
  PAIR(TriggerMode, Long, 0)
  BLOCK(GetAuxOutputs, IAuxOutputs, Aux)
  GET(GetPeriodSource, Long, 0)
};

class Modes : public automation::Object<IModeSetup> {
  Status TARVIK_CALL SetContinuousBurst(Long, Long, Long) override { return Counted(StatusOk); }
  Status TARVIK_CALL SetContinuousPattern(Long, Long) override { return Counted(StatusOk); }
  Status TARVIK_CALL SetContinuousPulses(Long, Long) override { return Counted(StatusOk); }
  Status TARVIK_CALL SetGatedBurst(Long, Long, Long, Long, Long) override { return Counted(StatusOk); }
  Status TARVIK_CALL SetGatedPattern(Long, Long, Long, Long) override { return Counted(StatusOk); }
  Status TARVIK_CALL SetGatedPulses(Long, Long, Long, Long) override { return Counted(StatusOk); }
  Status TARVIK_CALL SetTriggeredBurst(Long, Long, Long, Long, Long, Long, Double) override {
    return Counted(StatusOk);
  }
  Status TARVIK_CALL SetTriggeredPattern(Long, Long, Long, Long, Long, Double) override { return Counted(StatusOk); }
  Status TARVIK_CALL SetTriggeredPulses(Long, Long) override { return Counted(StatusOk); }
};

class Levels : public automation::Object<IChannelLevels> {
  PAIR(ComplementOutput, VariantBool, 0)
  PAIR(LoadCompensation, Double, 50)
  PAIR(Impedance, Double, 50)
  PAIR(Output, VariantBool, 0)
  PAIR(Polarity, Long, 0)
  Status TARVIK_CALL GetLevel(Long, Long *pType, Double *pHigh, Double *pLow) override {
    Answer<Long>(pType, 0);
    Answer<Double>(pLow, 0);
    return Counted(Answer<Double>(pHigh, 2.5));
  }
  Status TARVIK_CALL SetLevel(Long, Long, Double, Double) override { return Counted(StatusOk); }
};

class DoublePulse : public automation::Object<IDoublePulse> {
  GET(GetEnabled, VariantBool, 0)
  SELECTED(Delay, 2e-7)
};

class SinglePulse : public automation::Object<ISinglePulse> {
  SELECTED(Delay, 0)
};

class Edges : public automation::Object<IEdges> {
  PAIR(Coupling, Long, 1)
  SELECTED(Leading, 8e-10)
  SELECTED(Trailing, 8e-10)
};

class Timing : public automation::Object<IChannelTiming> {
  BLOCK(GetSinglePulse, ISinglePulse, SinglePulse)
  BLOCK(GetDoublePulse, IDoublePulse, DoublePulse)
  PAIR(Frequency, Double, 1e6)
  BLOCK(GetEdges, IEdges, Edges)
  PAIR(PulseType, Long, 1)
  PAIR(Width, Double, 1e-7)
};

class Limits : public automation::Object<ILimitPair> {
  PAIR(Enabled, VariantBool, 0)
  PAIR(High, Double, 0.5)
  PAIR(Low, Double, -0.5)
};

class LimitGroup : public automation::Object<ILimitGroup> {
  BLOCK(GetLimits, ILimitPair, Limits)
};

class Channel : public automation::Object<IChannel> {
  BLOCK(GetCurrentLimits, ILimitGroup, LimitGroup)
  BLOCK(GetLevels, automation::IDispatch, Levels)
  BLOCK(GetTiming, IChannelTiming, Timing)
  PAIR(SignalFormat, Long, 1)
  BLOCK(GetVoltageLimits, ILimitGroup, LimitGroup)
};

class Channels : public automation::Object<IChannelList> {
  GET(GetCount, Long, 2)
  Status TARVIK_CALL GetItem(Long, IChannel **ppObject) override { return Counted(Hand<Channel>(ppObject)); }
};

class Errors : public automation::Object<IErrorQueue> {
  Status TARVIK_CALL GetErrors(AutomationString *pValue) override { return Counted(AnswerText(pValue, "")); }
  PAIR(Verbose, VariantBool, 0)
  Status TARVIK_CALL GetWarnings(AutomationString *pValue) override { return Counted(AnswerText(pValue, "")); }
};

class Lacking : public automation::Object<IRestrictions> {
  GET(GetMask, Long, 0)
};

class Instrument : public automation::Object<IInstrument> {
  Status TARVIK_CALL GetViInfo(AutomationArray **) override { return Counted(StatusOk); }
  SET(SetAutoDetectErrors, VariantBool)
  Status TARVIK_CALL Calibrate() override { return Counted(StatusOk); }
  PAIR(ChannelMath, Long, 0)
  BLOCK(GetChannels, IChannelList, Channels)
  Status TARVIK_CALL Close() override { return Counted(StatusOk); }
  BLOCK(GetErrorQueue, IErrorQueue, Errors)
  Status TARVIK_CALL GetIdentity(AutomationString *pValue) override {
    return Counted(AnswerText(pValue, "Maker,One,1,1.0"));
  }
  Status TARVIK_CALL GetTransactionState(Integer *pFirst, VariantBool *pIsOpen) override {
    Answer<Integer>(pFirst, 0);
    return Counted(Answer<VariantBool>(pIsOpen, m_fOpen));
  }
  BLOCK(GetModeSetup, IModeSetup, Modes)
  Status TARVIK_CALL GetName(AutomationString *pValue) override { return Counted(AnswerText(pValue, "One")); }
  Status TARVIK_CALL Open(VariantBool, VariantBool, VariantBool, VariantBool *pOpened) override {
    return Counted(Answer<VariantBool>(pOpened, -1));
  }
  Status TARVIK_CALL GetOptions(AutomationString *pValue) override { return Counted(AnswerText(pValue, "")); }
  BLOCK(GetPatternMemory, IPatternMemory, Memory)
  BLOCK(GetPllReference, IPllReference, Reference)
  Status TARVIK_CALL GetPulseMode(Long *, Long *pValue) override { return Counted(Answer<Long>(pValue, 0)); }
  Status TARVIK_CALL Reset() override { return Counted(StatusOk); }
  BLOCK(GetRestrictions, IRestrictions, Lacking)
  Status TARVIK_CALL SelfTest(Integer *, AutomationString *pText) override { return Counted(AnswerText(pText, "")); }
  PAIR(PnpTimeout, Long, 1000)
  Status TARVIK_CALL Transaction(Long command) override {
    m_fOpen = command == TransactionBegin ? VariantBool{-1} : VariantBool{0};
    return Counted(StatusOk);
  }
  BLOCK(GetTriggerSystem, ITriggerSystem, Trigger)

  VariantBool m_fOpen = 0;
};

class List : public automation::Object<IInstrumentList> {
  GET(GetCount, Long, 1)
  Status TARVIK_CALL GetItem(AutomationVariant, automation::IDispatch **ppObject) override {
    return Counted(Hand<Instrument>(ppObject));
  }
  Status TARVIK_CALL Refresh() override { return Counted(StatusOk); }
};

class Root : public automation::Object<IDriverRoot> {
  BLOCK(GetInstruments, IInstrumentList, List)
};

}  // namespace

long NothingDriverCalls() { return g_lngCalls; }

Ref<automation::IUnknown> MakeNothingDriver() {
  Ref<Root> root = automation::MakeObject<Root>();
  Ref<automation::IUnknown> unknown;
  root->QueryInterface(automation::IidUnknown, reinterpret_cast<void **>(unknown.Out()));
  return unknown;
}
