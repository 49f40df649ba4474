#pragma once

/// The instrument of the scripted driver and the blocks that belong to no channel.

#include "ScriptedObject.h"

namespace tarvik::paneltest {

class ScriptedInstrument : public ScriptedObject<kolven::IInstrument> {
 public:
  using ScriptedObject::ScriptedObject;
  Status TARVIK_CALL GetViInfo(automation::AutomationArray **ppBuffer) override;
  Status TARVIK_CALL SetAutoDetectErrors(VariantBool enable) override;
  Status TARVIK_CALL Calibrate() override;
  Status TARVIK_CALL GetChannelMath(Long *pValue) override;
  Status TARVIK_CALL SetChannelMath(Long value) override;
  Status TARVIK_CALL GetChannels(kolven::IChannelList **ppObject) override;
  Status TARVIK_CALL Close() override;
  Status TARVIK_CALL GetErrorQueue(kolven::IErrorQueue **ppObject) override;
  Status TARVIK_CALL GetIdentity(automation::AutomationString *pValue) override;
  Status TARVIK_CALL GetTransactionState(Integer *pFirst, VariantBool *pIsOpen) override;
  Status TARVIK_CALL GetModeSetup(kolven::IModeSetup **ppObject) override;
  Status TARVIK_CALL GetName(automation::AutomationString *pValue) override;
  Status TARVIK_CALL Open(VariantBool idQuery, VariantBool reset, VariantBool autoDetectErrors,
                          VariantBool *pOpened) override;
  Status TARVIK_CALL GetOptions(automation::AutomationString *pValue) override;
  Status TARVIK_CALL GetPatternMemory(kolven::IPatternMemory **ppObject) override;
  Status TARVIK_CALL GetPllReference(kolven::IPllReference **ppObject) override;
  Status TARVIK_CALL GetPulseMode(Long *pSelector, Long *pValue) override;
  Status TARVIK_CALL Reset() override;
  Status TARVIK_CALL GetRestrictions(kolven::IRestrictions **ppObject) override;
  Status TARVIK_CALL SelfTest(Integer *pCode, automation::AutomationString *pText) override;
  Status TARVIK_CALL GetPnpTimeout(Long *pValue) override;
  Status TARVIK_CALL SetPnpTimeout(Long value) override;
  Status TARVIK_CALL Transaction(Long command) override;
  Status TARVIK_CALL GetTriggerSystem(kolven::ITriggerSystem **ppObject) override;
};

}  // namespace tarvik::paneltest
