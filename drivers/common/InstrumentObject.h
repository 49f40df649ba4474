#pragma once

#include "common/SessionObject.h"

namespace tarvik::driver {

/// One instrument of the list. Each object is a session of its own with the instrument.
class InstrumentObject final : public SessionObject<kolven::IInstrument> {
 public:
  explicit InstrumentObject(std::shared_ptr<Instrument> instrument)
      : SessionObject(std::make_shared<Session>(std::move(instrument))) {}

  Status TARVIK_CALL GetViInfo(kolven::AutomationArray **ppBuffer) override;
  Status TARVIK_CALL SetAutoDetectErrors(VariantBool enable) override;
  Status TARVIK_CALL Calibrate() override;
  Status TARVIK_CALL GetChannelMath(Long *pValue) override;
  Status TARVIK_CALL SetChannelMath(Long value) override;
  Status TARVIK_CALL GetChannels(kolven::IChannelList **ppObject) override;
  Status TARVIK_CALL Close() override;
  Status TARVIK_CALL GetErrorQueue(kolven::IErrorQueue **ppObject) override;
  Status TARVIK_CALL GetIdentity(kolven::AutomationString *pValue) override;
  /// The first value is the number of settings that wait for the commit.
  Status TARVIK_CALL GetTransactionState(Integer *pFirst, VariantBool *pIsOpen) override;
  Status TARVIK_CALL GetModeSetup(kolven::IModeSetup **ppObject) override;
  Status TARVIK_CALL GetName(kolven::AutomationString *pValue) override;
  Status TARVIK_CALL Open(VariantBool idQuery, VariantBool reset, VariantBool autoDetectErrors,
                          VariantBool *pOpened) override;
  Status TARVIK_CALL GetOptions(kolven::AutomationString *pValue) override;
  Status TARVIK_CALL GetPatternMemory(kolven::IPatternMemory **ppObject) override;
  Status TARVIK_CALL GetPllReference(kolven::IPllReference **ppObject) override;
  Status TARVIK_CALL GetPulseMode(Long *pSelector, Long *pValue) override;
  Status TARVIK_CALL Reset() override;
  Status TARVIK_CALL GetRestrictions(kolven::IRestrictions **ppObject) override;
  Status TARVIK_CALL SelfTest(Integer *pCode, kolven::AutomationString *pText) override;
  Status TARVIK_CALL GetPnpTimeout(Long *pValue) override;
  Status TARVIK_CALL SetPnpTimeout(Long value) override;
  Status TARVIK_CALL Transaction(Long command) override;
  Status TARVIK_CALL GetTriggerSystem(kolven::ITriggerSystem **ppObject) override;

 private:
  /// Runs a body whether or not a session is open.
  template <class Body>
  Status RunClosed(Body &&body) const {
    return Guarded(m_session->fVerbose, std::forward<Body>(body));
  }
};

}  // namespace tarvik::driver
