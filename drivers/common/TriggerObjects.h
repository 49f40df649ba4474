#pragma once

#include "common/SessionObject.h"

namespace tarvik::driver {

/// What arms a trigger or a gate.
class ArmSourceObject final : public SessionObject<kolven::IArmSource> {
 public:
  explicit ArmSourceObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL GetPllFrequency(Double *pValue) override;
  Status TARVIK_CALL GetSlope(Long *pValue) override;
  Status TARVIK_CALL GetSource(Long *pValue) override;
  Status TARVIK_CALL SetSource(Long value) override;
};

/// Impedance and threshold of an input.
template <class Interface, InputSettings TriggerLevelSettings::*input>
class InputObject : public SessionObject<Interface> {
 public:
  explicit InputObject(std::shared_ptr<Session> session) : SessionObject<Interface>(std::move(session)) {}
  Status TARVIK_CALL GetImpedance(Double *pValue) override {
    return this->Get(pValue, [](const Settings &s) { return (s.triggerLevels.*input).dblImpedance; });
  }
  Status TARVIK_CALL SetImpedance(Double value) override {
    return this->Send([value](Settings &s) { (s.triggerLevels.*input).dblImpedance = value; });
  }
  Status TARVIK_CALL GetThreshold(Double *pValue) override {
    return this->Get(pValue, [](const Settings &s) { return (s.triggerLevels.*input).dblThreshold; });
  }
  Status TARVIK_CALL SetThreshold(Double value) override {
    return this->Send([value](Settings &s) { (s.triggerLevels.*input).dblThreshold = value; });
  }
};

/// The clock input, with the edge that counts.
class ClockInputObject final : public InputObject<kolven::IClockInput, &TriggerLevelSettings::clockInput> {
 public:
  using InputObject::InputObject;
  Status TARVIK_CALL GetSlope(Long *pValue) override;
};

/// The external input.
using ExtInputObject = InputObject<kolven::IExtInput, &TriggerLevelSettings::extInput>;

/// Trigger output, strobe output and VXI trigger.
class AuxOutputsObject final : public SessionObject<kolven::IAuxOutputs> {
 public:
  explicit AuxOutputsObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL GetOutLevel(Long which, Long *pValue) override;
  Status TARVIK_CALL SetOutLevel(Long which, Long value) override;
  Status TARVIK_CALL GetVxiSource(Long *pValue) override;
  Status TARVIK_CALL SetVxiSource(Long value) override;
  Status TARVIK_CALL GetVxiLine(Long *pValue) override;
  Status TARVIK_CALL SetVxiLine(Long value) override;
};

/// The trigger system.
class TriggerSystemObject final : public SessionObject<kolven::ITriggerSystem> {
 public:
  explicit TriggerSystemObject(std::shared_ptr<Session> session) : SessionObject(std::move(session)) {}
  Status TARVIK_CALL GetArmSource(kolven::IArmSource **ppObject) override;
  Status TARVIK_CALL GetClockInput(kolven::IClockInput **ppObject) override;
  Status TARVIK_CALL GetBurstLength(Long *pValue) override;
  Status TARVIK_CALL GetExtInput(kolven::IExtInput **ppObject) override;
  Status TARVIK_CALL GetTriggerMode(Long *pValue) override;
  Status TARVIK_CALL SetTriggerMode(Long value) override;
  Status TARVIK_CALL GetAuxOutputs(kolven::IAuxOutputs **ppObject) override;
  Status TARVIK_CALL GetPeriodSource(Long *pValue) override;
};

}  // namespace tarvik::driver
