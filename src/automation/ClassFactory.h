#pragma once

#include <atomic>

#include "automation/Abi.h"

namespace tarvik::automation {

/// Base of a class factory: counts its references and refuses what cannot be made. Created with one reference.
class ClassFactory : public IClassFactory {
 public:
  ClassFactory() = default;
  ClassFactory(const ClassFactory &) = delete;
  ClassFactory &operator=(const ClassFactory &) = delete;

  Status TARVIK_CALL QueryInterface(const Guid &riid, void **ppvObject) override {
    if (!ppvObject) return StatusPointer;
    *ppvObject = nullptr;
    if (!(riid == IidUnknown || riid == IidClassFactory)) return StatusNoInterface;
    AddRef();
    *ppvObject = static_cast<IClassFactory *>(this);
    return StatusOk;
  }
  std::uint32_t TARVIK_CALL AddRef() override { return ++m_lngReferences; }
  std::uint32_t TARVIK_CALL Release() override {
    const std::uint32_t lngLeft = --m_lngReferences;
    if (lngLeft == 0) delete this;
    return lngLeft;
  }
  Status TARVIK_CALL CreateInstance(IUnknown *pUnkOuter, const Guid &riid, void **ppvObject) override {
    if (!ppvObject) return StatusPointer;
    *ppvObject = nullptr;
    return pUnkOuter ? StatusNoAggregation : Make(riid, ppvObject);
  }
  /// A library that is never unloaded has nothing to lock.
  Status TARVIK_CALL LockServer(std::int32_t) override { return StatusOk; }

 protected:
  virtual ~ClassFactory() = default;

 private:
  /// Makes an object and hands out this interface of it; the place is there and empty.
  virtual Status Make(const Guid &riid, void **ppvObject) = 0;

  std::atomic<std::uint32_t> m_lngReferences{1};
};

}  // namespace tarvik::automation
