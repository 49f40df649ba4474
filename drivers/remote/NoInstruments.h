#pragma once

#include "automation/Abi.h"

namespace tarvik::remote {

/// The driver of a machine that has no instruments of its own. Its creation hands back nothing without a failure, at
/// which the panel asks for a server.
class NoInstruments final : public automation::IClassFactory {
 public:
  /// The one factory; it lives as long as the library.
  static NoInstruments &Factory();
  NoInstruments(const NoInstruments &) = delete;
  NoInstruments &operator=(const NoInstruments &) = delete;

  automation::Status TARVIK_CALL QueryInterface(const automation::Guid &riid, void **ppvObject) override;
  std::uint32_t TARVIK_CALL AddRef() override { return 2; }
  std::uint32_t TARVIK_CALL Release() override { return 1; }
  automation::Status TARVIK_CALL CreateInstance(automation::IUnknown *pUnkOuter, const automation::Guid &riid,
                                                void **ppvObject) override;
  automation::Status TARVIK_CALL LockServer(std::int32_t) override { return automation::StatusOk; }

 private:
  NoInstruments() = default;
  ~NoInstruments() = default;
};

}  // namespace tarvik::remote
