#pragma once

#include "automation/Abi.h"
#include "automation/Object.h"
#include "simulator/model/Rack.h"

namespace tarvik::simulator {

/// Makes root objects over one rack; the rack is looked for with the first of them.
class ClassFactory final : public automation::IClassFactory {
 public:
  explicit ClassFactory(std::shared_ptr<Rack> rack) : m_rack(std::move(rack)) {}
  ClassFactory(const ClassFactory &) = delete;
  ClassFactory &operator=(const ClassFactory &) = delete;

  automation::Status TARVIK_CALL QueryInterface(const automation::Guid &riid, void **ppvObject) override;
  std::uint32_t TARVIK_CALL AddRef() override { return ++m_lngReferences; }
  std::uint32_t TARVIK_CALL Release() override;
  automation::Status TARVIK_CALL CreateInstance(automation::IUnknown *pUnkOuter, const automation::Guid &riid,
                                                void **ppvObject) override;
  automation::Status TARVIK_CALL LockServer(std::int32_t fLock) override;

 private:
  ~ClassFactory() = default;

  const std::shared_ptr<Rack> m_rack;
  std::atomic<std::uint32_t> m_lngReferences{1};
};

}  // namespace tarvik::simulator
