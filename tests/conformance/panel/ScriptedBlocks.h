#pragma once

/// The blocks of the scripted instrument that belong to no channel.

#include "ScriptedObject.h"

namespace tarvik::paneltest {

class ScriptedPllReference : public ScriptedObject<kolven::IPllReference> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetReference(Double *pFreq, Long *pSource) override;
  Status TARVIK_CALL SetReference(Double *pFreq, Long source) override;
};

class ScriptedPatternMemory : public ScriptedObject<kolven::IPatternMemory> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL CalcPrbs(Long startAddr, Long lastAddr, Long base, automation::AutomationArray **ppArray) override;
  Status TARVIK_CALL SetPattern(Long channel, Long form, automation::AutomationArray **ppArray, Long length) override;
  Status TARVIK_CALL GetPattern(Long channel, Long form, automation::AutomationArray **ppArray, Long *pLength) override;
};

class ScriptedAuxOutputs : public ScriptedObject<kolven::IAuxOutputs> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetOutLevel(Long which, Long *pValue) override;
  Status TARVIK_CALL SetOutLevel(Long which, Long value) override;
  Status TARVIK_CALL GetVxiSource(Long *pValue) override;
  Status TARVIK_CALL SetVxiSource(Long value) override;
  Status TARVIK_CALL GetVxiLine(Long *pValue) override;
  Status TARVIK_CALL SetVxiLine(Long value) override;
};

class ScriptedExtInput : public ScriptedObject<kolven::IExtInput> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetImpedance(Double *pValue) override;
  Status TARVIK_CALL SetImpedance(Double value) override;
  Status TARVIK_CALL GetThreshold(Double *pValue) override;
  Status TARVIK_CALL SetThreshold(Double value) override;
};

class ScriptedClockInput : public ScriptedObject<kolven::IClockInput> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetImpedance(Double *pValue) override;
  Status TARVIK_CALL SetImpedance(Double value) override;
  Status TARVIK_CALL GetSlope(Long *pValue) override;
  Status TARVIK_CALL GetThreshold(Double *pValue) override;
  Status TARVIK_CALL SetThreshold(Double value) override;
};

class ScriptedArmSource : public ScriptedObject<kolven::IArmSource> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetPllFrequency(Double *pValue) override;
  Status TARVIK_CALL GetSlope(Long *pValue) override;
  Status TARVIK_CALL GetSource(Long *pValue) override;
  Status TARVIK_CALL SetSource(Long value) override;
};

class ScriptedTriggerSystem : public ScriptedObject<kolven::ITriggerSystem> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetArmSource(kolven::IArmSource **ppObject) override { return Hand<ScriptedArmSource>(ppObject); }
  Status TARVIK_CALL GetClockInput(kolven::IClockInput **ppObject) override {
    return Hand<ScriptedClockInput>(ppObject);
  }
  Status TARVIK_CALL GetBurstLength(Long *pValue) override;
  Status TARVIK_CALL GetExtInput(kolven::IExtInput **ppObject) override { return Hand<ScriptedExtInput>(ppObject); }
  Status TARVIK_CALL GetTriggerMode(Long *pValue) override;
  Status TARVIK_CALL SetTriggerMode(Long value) override;
  Status TARVIK_CALL GetAuxOutputs(kolven::IAuxOutputs **ppObject) override {
    return Hand<ScriptedAuxOutputs>(ppObject);
  }
  Status TARVIK_CALL GetPeriodSource(Long *pValue) override;
};

class ScriptedModeSetup : public ScriptedObject<kolven::IModeSetup> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL SetContinuousBurst(Long burstLength, Long periodSource, Long triggerSlope) override;
  Status TARVIK_CALL SetContinuousPattern(Long periodSource, Long triggerSlope) override;
  Status TARVIK_CALL SetContinuousPulses(Long periodSource, Long triggerSlope) override;
  Status TARVIK_CALL SetGatedBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                   Long armSlope) override;
  Status TARVIK_CALL SetGatedPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) override;
  Status TARVIK_CALL SetGatedPulses(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) override;
  Status TARVIK_CALL SetTriggeredBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                       Long armSlope, Long pllFormat, Double pllPeriodOrFreq) override;
  Status TARVIK_CALL SetTriggeredPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope,
                                         Long pllFormat, Double pllPeriodOrFreq) override;
  Status TARVIK_CALL SetTriggeredPulses(Long armingSource, Long armSlope) override;
};

}  // namespace tarvik::paneltest
