#include "Blocks.h"

#include "automation/AutomationArray.h"
#include "instrument/Vocabulary.h"

namespace example {

namespace {

class Edges : public Block<IEdges> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetLeading(Long *, Double *pValue) override { return Tell(pValue, InForce().dblEdge); }
  Status TARVIK_CALL SetLeading(Long *, Double value) override { return Put(&Settings::dblEdge, value); }
  Status TARVIK_CALL GetTrailing(Long *, Double *pValue) override { return Tell(pValue, InForce().dblEdge); }
  // It follows the leading edge, as the capability bits tell; the panel sends it all the same.
  Status TARVIK_CALL SetTrailing(Long *, Double) override { return tarvik::automation::StatusOk; }
};

class SinglePulse : public Block<ISinglePulse> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetDelay(Long *, Double *pValue) override { return Tell(pValue, InForce().dblDelay); }
  Status TARVIK_CALL SetDelay(Long *, Double value) override { return Put(&Settings::dblDelay, value); }
};

/// It is asked whether it is in use; its delay stays unsupported.
class DoublePulse : public Block<IDoublePulse> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetEnabled(VariantBool *pValue) override { return Tell(pValue, false); }
};

class Timing : public Block<IChannelTiming> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetSinglePulse(ISinglePulse **ppObject) override { return Give<SinglePulse>(ppObject); }
  Status TARVIK_CALL GetDoublePulse(IDoublePulse **ppObject) override { return Give<DoublePulse>(ppObject); }
  Status TARVIK_CALL GetFrequency(Double *pValue) override { return Tell(pValue, InForce().dblFrequency); }
  Status TARVIK_CALL SetFrequency(Double value) override { return Put(&Settings::dblFrequency, value); }
  Status TARVIK_CALL GetEdges(IEdges **ppObject) override { return Give<Edges>(ppObject); }
  Status TARVIK_CALL GetPulseType(Long *pValue) override { return Tell(pValue, InForce().lngPulseType); }
  Status TARVIK_CALL SetPulseType(Long value) override { return Put(&Settings::lngPulseType, value); }
  Status TARVIK_CALL GetWidth(Double *pValue) override { return Tell(pValue, InForce().dblWidth); }
  Status TARVIK_CALL SetWidth(Double value) override { return Put(&Settings::dblWidth, value); }
};

class Levels : public Block<IChannelLevels> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetOutput(VariantBool *pValue) override { return Tell(pValue, InForce().fOutput); }
  Status TARVIK_CALL SetOutput(VariantBool on) override { return Put(&Settings::fOutput, on != 0); }
  Status TARVIK_CALL GetPolarity(Long *pValue) override { return Tell(pValue, InForce().lngPolarity); }
  Status TARVIK_CALL SetPolarity(Long value) override { return Put(&Settings::lngPolarity, value); }
  Status TARVIK_CALL GetLevel(Long format, Long *pType, Double *pAmplOrHigh, Double *pOffsetOrLow) override {
    if (!pType || !pAmplOrHigh || !pOffsetOrLow) return tarvik::automation::StatusPointer;
    const Double dblHigh = InForce().dblHigh, dblLow = InForce().dblLow;
    *pType = tarvik::eTypeVoltage;
    // In eLevelOffsetAmplitude the offset comes first.
    *pAmplOrHigh = format == tarvik::eLevelHighLow ? dblHigh : (dblHigh + dblLow) / 2;
    *pOffsetOrLow = format == tarvik::eLevelHighLow ? dblLow : dblHigh - dblLow;
    return tarvik::automation::StatusOk;
  }
  Status TARVIK_CALL SetLevel(Long format, Long type, Double amplOrHigh, Double offsetOrLow) override {
    if (type != tarvik::eTypeVoltage)
      return tarvik::automation::Fail(tarvik::automation::StatusInvalidArgument, "Levels are in volts");
    return Change([=](Settings &settings) {
      settings.dblHigh = format == tarvik::eLevelHighLow ? amplOrHigh : amplOrHigh + offsetOrLow / 2;
      settings.dblLow = format == tarvik::eLevelHighLow ? offsetOrLow : amplOrHigh - offsetOrLow / 2;
    });
  }
};

/// The limits of one quantity, which the panel keeps on its page; the one switch is refused when it is turned on.
class LimitPair : public Block<ILimitPair> {
 public:
  LimitPair(std::shared_ptr<Generator> generator, Double Settings::*high, Double Settings::*low)
      : Block(std::move(generator)), m_high(high), m_low(low) {}
  Status TARVIK_CALL GetEnabled(VariantBool *pValue) override { return Tell(pValue, InForce().fLimits); }
  Status TARVIK_CALL SetEnabled(VariantBool enable) override { return Put(&Settings::fLimits, enable != 0); }
  Status TARVIK_CALL GetHigh(Double *pValue) override { return Tell(pValue, InForce().*m_high); }
  Status TARVIK_CALL SetHigh(Double value) override { return Put(m_high, value); }
  Status TARVIK_CALL GetLow(Double *pValue) override { return Tell(pValue, InForce().*m_low); }
  Status TARVIK_CALL SetLow(Double value) override { return Put(m_low, value); }

 private:
  Double Settings::*const m_high, Settings::*const m_low;
};

class LimitGroup : public Block<ILimitGroup> {
 public:
  LimitGroup(std::shared_ptr<Generator> generator, Double Settings::*high, Double Settings::*low)
      : Block(std::move(generator)), m_high(high), m_low(low) {}
  Status TARVIK_CALL GetLimits(ILimitPair **ppObject) override { return Give<LimitPair>(ppObject, m_high, m_low); }

 private:
  Double Settings::*const m_high, Settings::*const m_low;
};

class Channel : public Block<IChannel> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetCurrentLimits(ILimitGroup **ppObject) override {
    return Give<LimitGroup>(ppObject, &Settings::dblHighCurrent, &Settings::dblLowCurrent);
  }
  Status TARVIK_CALL GetLevels(IDispatch **ppObject) override { return Give<Levels>(ppObject); }
  Status TARVIK_CALL GetTiming(IChannelTiming **ppObject) override { return Give<Timing>(ppObject); }
  Status TARVIK_CALL GetSignalFormat(Long *pValue) override { return Tell(pValue, InForce().lngSignalFormat); }
  Status TARVIK_CALL SetSignalFormat(Long value) override { return Put(&Settings::lngSignalFormat, value); }
  Status TARVIK_CALL GetVoltageLimits(ILimitGroup **ppObject) override {
    return Give<LimitGroup>(ppObject, &Settings::dblHighVoltage, &Settings::dblLowVoltage);
  }
};

/// Nothing arms it: the panel shows the key, which changes nothing.
class ArmSource : public Block<IArmSource> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetSlope(Long *pValue) override { return Tell<Long>(pValue, tarvik::eSlopeRising); }
  Status TARVIK_CALL GetSource(Long *pValue) override { return Tell<Long>(pValue, 4); }
};

/// Impedance and threshold of an input, which these fields keep.
template <class Interface, Double Settings::*impedance, Double Settings::*threshold>
class Input : public Block<Interface> {
 public:
  using Block<Interface>::Block;
  Status TARVIK_CALL GetImpedance(Double *pValue) override { return this->Tell(pValue, this->InForce().*impedance); }
  Status TARVIK_CALL SetImpedance(Double value) override { return this->Put(impedance, value); }
  Status TARVIK_CALL GetThreshold(Double *pValue) override { return this->Tell(pValue, this->InForce().*threshold); }
  Status TARVIK_CALL SetThreshold(Double value) override { return this->Put(threshold, value); }
};

class ClockInput : public Input<IClockInput, &Settings::dblClockImpedance, &Settings::dblClockThreshold> {
 public:
  using Input::Input;
  Status TARVIK_CALL GetSlope(Long *pValue) override { return Tell(pValue, InForce().lngClockSlope); }
};

using ExtInput = Input<IExtInput, &Settings::dblExtImpedance, &Settings::dblExtThreshold>;

class AuxOutputs : public Block<IAuxOutputs> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetOutLevel(Long which, Long *pValue) override { return Tell(pValue, InForce().*Level(which)); }
  Status TARVIK_CALL SetOutLevel(Long which, Long value) override { return Put(Level(which), value); }

 private:
  static Long Settings::*Level(Long which) {
    return which == tarvik::eOutTrigger ? &Settings::lngTriggerOut : &Settings::lngStrobeOut;
  }
};

}  // namespace

Status Channels::GetItem(Long index, IChannel **ppObject) {
  if (ppObject) *ppObject = nullptr;
  if (index != 1) return tarvik::automation::Fail(tarvik::automation::StatusBadIndex, "The generator has one channel");
  return Give<Channel>(ppObject);
}

Status ModeSetup::SetContinuousPulses(Long periodSource, Long triggerSlope) {
  return Change([=](Settings &settings) {
    settings.lngPeriodSource = periodSource;
    // The slope has no choice with every period source.
    if (triggerSlope != tarvik::eKeepSlope) settings.lngClockSlope = triggerSlope;
  });
}

Status TriggerSystem::GetArmSource(IArmSource **ppObject) { return Give<ArmSource>(ppObject); }
Status TriggerSystem::GetClockInput(IClockInput **ppObject) { return Give<ClockInput>(ppObject); }
Status TriggerSystem::GetExtInput(IExtInput **ppObject) { return Give<ExtInput>(ppObject); }
Status TriggerSystem::GetAuxOutputs(IAuxOutputs **ppObject) { return Give<AuxOutputs>(ppObject); }

Status PatternMemory::GetPattern(Long, Long, AutomationArray **ppArray, Long *pLength) {
  if (!ppArray || !pLength) return tarvik::automation::StatusPointer;
  return Guarded([&] {
    const tarvik::Byte row[] = {0};
    AutomationArray *array = tarvik::automation::AllocByteArray(1, row, 1);
    // The caller's array is replaced.
    tarvik::automation::FreeArray(*ppArray);
    *ppArray = array;
    *pLength = 8;
    return tarvik::automation::StatusOk;
  });
}

Status PllReference::GetReference(Double *pFreq, Long *pSource) {
  if (!pFreq || !pSource) return tarvik::automation::StatusPointer;
  *pFreq = InForce().dblReference;
  *pSource = InForce().lngReferenceSource;
  return tarvik::automation::StatusOk;
}

Status PllReference::SetReference(Double *pFreq, Long source) {
  if (!pFreq) return tarvik::automation::StatusPointer;
  return Change([=](Settings &settings) {
    settings.dblReference = *pFreq;
    settings.lngReferenceSource = source;
  });
}

Status ErrorQueue::SetVerbose(VariantBool enable) {
  TheGenerator().fVerbose = enable != 0;
  return tarvik::automation::StatusOk;
}

Status Restrictions::GetMask(Long *pValue) {
  using namespace tarvik;
  return Tell<Long>(pValue, eLacksTrailingEdge | eLacksImpedance | eLacksLoadCompensation | eLacksChannelMath |
                                eLacksComplement | eLacksAnyVxi);
}

}  // namespace example
