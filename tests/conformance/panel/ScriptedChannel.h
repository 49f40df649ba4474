#pragma once

/// The channel of the scripted driver and its blocks.

#include "ScriptedObject.h"

namespace tarvik::paneltest {

class ScriptedEdges : public ScriptedObject<kolven::IEdges> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetCoupling(Long *pValue) override;
  Status TARVIK_CALL SetCoupling(Long value) override;
  Status TARVIK_CALL GetLeading(Long *pSelector, Double *pValue) override;
  Status TARVIK_CALL SetLeading(Long *pSelector, Double value) override;
  Status TARVIK_CALL GetTrailing(Long *pSelector, Double *pValue) override;
  Status TARVIK_CALL SetTrailing(Long *pSelector, Double value) override;
};

class ScriptedSinglePulse : public ScriptedObject<kolven::ISinglePulse> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetDelay(Long *pSelector, Double *pValue) override;
  Status TARVIK_CALL SetDelay(Long *pSelector, Double value) override;
};

class ScriptedDoublePulse : public ScriptedObject<kolven::IDoublePulse> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetEnabled(VariantBool *pValue) override;
  Status TARVIK_CALL GetDelay(Long *pSelector, Double *pValue) override;
  Status TARVIK_CALL SetDelay(Long *pSelector, Double value) override;
};

class ScriptedTiming : public ScriptedObject<kolven::IChannelTiming> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetSinglePulse(kolven::ISinglePulse **ppObject) override;
  Status TARVIK_CALL GetDoublePulse(kolven::IDoublePulse **ppObject) override;
  Status TARVIK_CALL GetFrequency(Double *pValue) override;
  Status TARVIK_CALL SetFrequency(Double value) override;
  Status TARVIK_CALL GetEdges(kolven::IEdges **ppObject) override;
  Status TARVIK_CALL GetPulseType(Long *pValue) override;
  Status TARVIK_CALL SetPulseType(Long value) override;
  Status TARVIK_CALL GetWidth(Double *pValue) override;
  Status TARVIK_CALL SetWidth(Double value) override;
};

class ScriptedLevels : public ScriptedObject<kolven::IChannelLevels> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetComplementOutput(VariantBool *pValue) override;
  Status TARVIK_CALL SetComplementOutput(VariantBool on) override;
  Status TARVIK_CALL GetLoadCompensation(Double *pValue) override;
  Status TARVIK_CALL SetLoadCompensation(Double value) override;
  Status TARVIK_CALL GetImpedance(Double *pValue) override;
  Status TARVIK_CALL SetImpedance(Double value) override;
  Status TARVIK_CALL GetOutput(VariantBool *pValue) override;
  Status TARVIK_CALL SetOutput(VariantBool on) override;
  Status TARVIK_CALL GetPolarity(Long *pValue) override;
  Status TARVIK_CALL SetPolarity(Long value) override;
  Status TARVIK_CALL GetLevel(Long format, Long *pType, Double *pAmplOrHigh, Double *pOffsetOrLow) override;
  Status TARVIK_CALL SetLevel(Long format, Long type, Double amplOrHigh, Double offsetOrLow) override;
};

class ScriptedLimitPair : public ScriptedObject<kolven::ILimitPair> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetEnabled(VariantBool *pValue) override;
  Status TARVIK_CALL SetEnabled(VariantBool enable) override;
  Status TARVIK_CALL GetHigh(Double *pValue) override;
  Status TARVIK_CALL SetHigh(Double value) override;
  Status TARVIK_CALL GetLow(Double *pValue) override;
  Status TARVIK_CALL SetLow(Double value) override;

 private:
  Status Read(const char *strName, const char *strVoltageField, const char *strCurrentField, Double *pValue) const;
};

class ScriptedLimitGroup : public ScriptedObject<kolven::ILimitGroup> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetLimits(kolven::ILimitPair **ppObject) override { return Hand<ScriptedLimitPair>(ppObject); }
};

class ScriptedChannel : public ScriptedObject<kolven::IChannel> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetCurrentLimits(kolven::ILimitGroup **ppObject) override;
  Status TARVIK_CALL GetLevels(kolven::IDispatch **ppObject) override { return Hand<ScriptedLevels>(ppObject); }
  Status TARVIK_CALL GetTiming(kolven::IChannelTiming **ppObject) override { return Hand<ScriptedTiming>(ppObject); }
  Status TARVIK_CALL GetSignalFormat(Long *pValue) override;
  Status TARVIK_CALL SetSignalFormat(Long value) override;
  Status TARVIK_CALL GetVoltageLimits(kolven::ILimitGroup **ppObject) override;
};

}  // namespace tarvik::paneltest
