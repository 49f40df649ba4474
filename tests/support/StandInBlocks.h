#pragma once

/// The blocks of the stand-in instrument that belong to no channel.

#include "StandInObject.h"

namespace tarvik::test {

class StandInPllReference : public StandInObject<kolven::IPllReference> {
 public:
  static constexpr const char *Name = "IPllReference";
  explicit StandInPllReference(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetReference(Double *pFreq, Long *pSource) override;
  Status TARVIK_CALL SetReference(Double *pFreq, Long source) override;
};

class StandInPatternMemory : public StandInObject<kolven::IPatternMemory> {
 public:
  static constexpr const char *Name = "IPatternMemory";
  explicit StandInPatternMemory(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL CalcPrbs(Long startAddr, Long lastAddr, Long base, automation::AutomationArray **ppArray) override;
  Status TARVIK_CALL SetPattern(Long channel, Long form, automation::AutomationArray **ppArray, Long length) override;
  Status TARVIK_CALL GetPattern(Long channel, Long form, automation::AutomationArray **ppArray, Long *pLength) override;
};

class StandInAuxOutputs : public StandInObject<kolven::IAuxOutputs> {
 public:
  static constexpr const char *Name = "IAuxOutputs";
  explicit StandInAuxOutputs(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetOutLevel(Long which, Long *pValue) override;
  Status TARVIK_CALL SetOutLevel(Long which, Long value) override;
  Status TARVIK_CALL GetVxiSource(Long *pValue) override {
    return Get("GetVxiSource", pValue, Settings().lngVxiSource);
  }
  Status TARVIK_CALL SetVxiSource(Long value) override { return Set("SetVxiSource", Settings().lngVxiSource, value); }
  Status TARVIK_CALL GetVxiLine(Long *pValue) override { return Get("GetVxiLine", pValue, Settings().lngVxiLine); }
  Status TARVIK_CALL SetVxiLine(Long value) override { return Set("SetVxiLine", Settings().lngVxiLine, value); }

 private:
  Long *OutLevel(Long which);
};

class StandInExtInput : public StandInObject<kolven::IExtInput> {
 public:
  static constexpr const char *Name = "IExtInput";
  explicit StandInExtInput(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetImpedance(Double *pValue) override {
    return Get("GetImpedance", pValue, Settings().dblExtImpedance);
  }
  Status TARVIK_CALL SetImpedance(Double value) override {
    return Set("SetImpedance", Settings().dblExtImpedance, value);
  }
  Status TARVIK_CALL GetThreshold(Double *pValue) override {
    return Get("GetThreshold", pValue, Settings().dblExtThreshold);
  }
  Status TARVIK_CALL SetThreshold(Double value) override {
    return Set("SetThreshold", Settings().dblExtThreshold, value);
  }
};

class StandInClockInput : public StandInObject<kolven::IClockInput> {
 public:
  static constexpr const char *Name = "IClockInput";
  explicit StandInClockInput(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetImpedance(Double *pValue) override {
    return Get("GetImpedance", pValue, Settings().dblClockImpedance);
  }
  Status TARVIK_CALL SetImpedance(Double value) override {
    return Set("SetImpedance", Settings().dblClockImpedance, value);
  }
  Status TARVIK_CALL GetSlope(Long *pValue) override { return Get("GetSlope", pValue, Settings().lngClockSlope); }
  Status TARVIK_CALL GetThreshold(Double *pValue) override {
    return Get("GetThreshold", pValue, Settings().dblClockThreshold);
  }
  Status TARVIK_CALL SetThreshold(Double value) override {
    return Set("SetThreshold", Settings().dblClockThreshold, value);
  }
};

class StandInArmSource : public StandInObject<kolven::IArmSource> {
 public:
  static constexpr const char *Name = "IArmSource";
  explicit StandInArmSource(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetPllFrequency(Double *pValue) override {
    return Get("GetPllFrequency", pValue, Settings().dblPllFrequency);
  }
  Status TARVIK_CALL GetSlope(Long *pValue) override { return Get("GetSlope", pValue, Settings().lngArmSlope); }
  Status TARVIK_CALL GetSource(Long *pValue) override { return Get("GetSource", pValue, Settings().lngArmingSource); }
  Status TARVIK_CALL SetSource(Long value) override { return Set("SetSource", Settings().lngArmingSource, value); }
};

class StandInTriggerSystem : public StandInObject<kolven::ITriggerSystem> {
 public:
  static constexpr const char *Name = "ITriggerSystem";
  explicit StandInTriggerSystem(Place place) : StandInObject(std::move(place), Name) {}

  Status TARVIK_CALL GetArmSource(kolven::IArmSource **ppObject) override {
    return Hand<StandInArmSource>("GetArmSource", ppObject);
  }
  Status TARVIK_CALL GetClockInput(kolven::IClockInput **ppObject) override {
    return Hand<StandInClockInput>("GetClockInput", ppObject);
  }
  Status TARVIK_CALL GetBurstLength(Long *pValue) override {
    return Get("GetBurstLength", pValue, Settings().lngBurstLength);
  }
  Status TARVIK_CALL GetExtInput(kolven::IExtInput **ppObject) override {
    return Hand<StandInExtInput>("GetExtInput", ppObject);
  }
  Status TARVIK_CALL GetTriggerMode(Long *pValue) override {
    return Get("GetTriggerMode", pValue, Settings().lngTriggerMode);
  }
  Status TARVIK_CALL SetTriggerMode(Long value) override {
    return Set("SetTriggerMode", Settings().lngTriggerMode, value);
  }
  Status TARVIK_CALL GetAuxOutputs(kolven::IAuxOutputs **ppObject) override {
    return Hand<StandInAuxOutputs>("GetAuxOutputs", ppObject);
  }
  Status TARVIK_CALL GetPeriodSource(Long *pValue) override {
    return Get("GetPeriodSource", pValue, Settings().lngPeriodSource);
  }
};

class StandInModeSetup : public StandInObject<kolven::IModeSetup> {
 public:
  static constexpr const char *Name = "IModeSetup";
  explicit StandInModeSetup(Place place) : StandInObject(std::move(place), Name) {}

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

 private:
  void Enter(Long lngTriggerMode, Long lngPulseMode);
  void TakePeriod(Long periodSource, Long triggerSlope);
  void TakeArming(Long armingSource, Long armSlope);
  void TakePll(Long pllFormat, Double pllPeriodOrFreq);
};

}  // namespace tarvik::test
