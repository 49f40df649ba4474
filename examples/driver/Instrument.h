#pragma once

#include "Block.h"

namespace example {

using namespace tarvik::kolven;

/// The generator as the panel sees it. Calibrate stays unsupported.
class Instrument : public Block<IInstrument> {
 public:
  using Block::Block;

  Status TARVIK_CALL GetViInfo(AutomationArray **ppBuffer) override;
  Status TARVIK_CALL SetAutoDetectErrors(VariantBool enable) override;
  Status TARVIK_CALL GetChannels(IChannelList **ppObject) override;
  Status TARVIK_CALL Close() override;
  Status TARVIK_CALL GetErrorQueue(IErrorQueue **ppObject) override;
  Status TARVIK_CALL GetIdentity(AutomationString *pValue) override;
  Status TARVIK_CALL GetTransactionState(tarvik::Integer *pFirst, VariantBool *pIsOpen) override;
  Status TARVIK_CALL GetModeSetup(IModeSetup **ppObject) override;
  Status TARVIK_CALL GetName(AutomationString *pValue) override;
  Status TARVIK_CALL Open(VariantBool idQuery, VariantBool reset, VariantBool autoDetectErrors,
                          VariantBool *pOpened) override;
  Status TARVIK_CALL GetOptions(AutomationString *pValue) override;
  Status TARVIK_CALL GetPatternMemory(IPatternMemory **ppObject) override;
  Status TARVIK_CALL GetPllReference(IPllReference **ppObject) override;
  Status TARVIK_CALL GetPulseMode(Long *pSelector, Long *pValue) override;
  Status TARVIK_CALL Reset() override;
  Status TARVIK_CALL GetRestrictions(IRestrictions **ppObject) override;
  Status TARVIK_CALL SelfTest(tarvik::Integer *pCode, AutomationString *pText) override;
  Status TARVIK_CALL GetPnpTimeout(Long *pValue) override;
  Status TARVIK_CALL SetPnpTimeout(Long value) override;
  Status TARVIK_CALL Transaction(Long command) override;
  Status TARVIK_CALL GetTriggerSystem(ITriggerSystem **ppObject) override;
};

/// The one instrument, found by its name or by the number 1.
class Instruments : public Block<IInstrumentList> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetCount(Long *pValue) override { return Tell<Long>(pValue, 1); }
  Status TARVIK_CALL GetItem(AutomationVariant key, IDispatch **ppObject) override;
  Status TARVIK_CALL Refresh() override { return tarvik::automation::StatusOk; }
};

class Root : public Block<IDriverRoot> {
 public:
  using Block::Block;
  Status TARVIK_CALL GetInstruments(IInstrumentList **ppObject) override { return Give<Instruments>(ppObject); }
};

}  // namespace example
