#pragma once

#include <atomic>

#include "automation/Abi.h"
#include "lib/LibraryUse.h"

namespace tarvik {

/// Makes automation faces of the instrument interface. Where no host is installed yet, the first of them installs one:
/// that of the toolkit within a program of the toolkit, otherwise the one without any window.
class InstrClassFactory final : public automation::IClassFactory {
 public:
  InstrClassFactory() = default;
  InstrClassFactory(const InstrClassFactory &) = delete;
  InstrClassFactory &operator=(const InstrClassFactory &) = delete;

  automation::Status TARVIK_CALL QueryInterface(const automation::Guid &riid, void **ppvObject) override;
  std::uint32_t TARVIK_CALL AddRef() override { return ++m_lngReferences; }
  std::uint32_t TARVIK_CALL Release() override;
  automation::Status TARVIK_CALL CreateInstance(automation::IUnknown *pUnkOuter, const automation::Guid &riid,
                                                void **ppvObject) override;
  automation::Status TARVIK_CALL LockServer(std::int32_t fLock) override;

 private:
  ~InstrClassFactory() = default;

  std::atomic<std::uint32_t> m_lngReferences{1};
  LibraryUse m_use;
};

}  // namespace tarvik
