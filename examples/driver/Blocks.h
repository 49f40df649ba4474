#pragma once

#include "Block.h"

namespace example {

using namespace tarvik::kolven;

class Channels : public Block<IChannelList> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetCount(Long *pValue) override { return Tell<Long>(pValue, 1); }
  Status TARVIK_CALL GetItem(Long index, IChannel **ppObject) override;
};

/// The setters of all modes but this one stay unsupported.
class ModeSetup : public Block<IModeSetup> {
 public:
  using Block::Block;
  Status TARVIK_CALL SetContinuousPulses(Long periodSource, Long triggerSlope) override;
};

class TriggerSystem : public Block<ITriggerSystem> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetArmSource(IArmSource **ppObject) override;
  Status TARVIK_CALL GetClockInput(IClockInput **ppObject) override;
  Status TARVIK_CALL GetBurstLength(Long *pValue) override { return Tell<Long>(pValue, 1); }
  Status TARVIK_CALL GetExtInput(IExtInput **ppObject) override;
  Status TARVIK_CALL GetTriggerMode(Long *pValue) override { return Tell<Long>(pValue, tarvik::eTriggerContinuous); }
  Status TARVIK_CALL GetAuxOutputs(IAuxOutputs **ppObject) override;
  Status TARVIK_CALL GetPeriodSource(Long *pValue) override { return Tell(pValue, InForce().lngPeriodSource); }
};

/// One pattern of nothing, since a row that is read must have a bit; writing stays unsupported.
class PatternMemory : public Block<IPatternMemory> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetPattern(Long channel, Long form, AutomationArray **ppArray, Long *pLength) override;
};

class PllReference : public Block<IPllReference> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetReference(Double *pFreq, Long *pSource) override;
  Status TARVIK_CALL SetReference(Double *pFreq, Long source) override;
};

class ErrorQueue : public Block<IErrorQueue> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetErrors(AutomationString *pValue) override { return TellNothing(pValue); }
  Status TARVIK_CALL GetVerbose(VariantBool *pValue) override { return Tell(pValue, TheGenerator().fVerbose); }
  Status TARVIK_CALL SetVerbose(VariantBool enable) override;
  Status TARVIK_CALL GetWarnings(AutomationString *pValue) override { return TellNothing(pValue); }

 private:
  static Status TellNothing(AutomationString *pValue) { return Tell<AutomationString>(pValue, nullptr); }
};

class Restrictions : public Block<IRestrictions> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetMask(Long *pValue) override;
};

}  // namespace example
