#pragma once

#include <atomic>
#include <utility>

#include "automation/Abi.h"
#include "automation/Ref.h"

namespace tarvik::automation {

/// Base of what is made on the heap and handed out by reference: counts its references and ends with the last one. It
/// begins with one, which MakeObject hands to the caller. Of the interfaces it has IUnknown and those of Iids.
template <class Interface, const Guid &...Iids>
class Counted : public Interface {
 public:
  Counted() = default;
  Counted(const Counted &) = delete;
  Counted &operator=(const Counted &) = delete;

  Status TARVIK_CALL QueryInterface(const Guid &riid, void **ppvObject) override {
    if (!ppvObject) return StatusPointer;
    *ppvObject = nullptr;
    if (!(riid == IidUnknown || (... || (riid == Iids)))) return StatusNoInterface;
    AddRef();
    *ppvObject = static_cast<Interface *>(this);
    return StatusOk;
  }
  std::uint32_t TARVIK_CALL AddRef() override { return ++m_lngReferences; }
  std::uint32_t TARVIK_CALL Release() override {
    const std::uint32_t lngLeft = --m_lngReferences;
    if (lngLeft == 0) delete this;
    return lngLeft;
  }

 protected:
  virtual ~Counted() = default;

 private:
  std::atomic<std::uint32_t> m_lngReferences{1};
};

/// Base of an object behind one dual interface, which answers "not implemented" to the four dispatch operations.
template <class Interface>
class Object : public Counted<Interface, IidDispatch, Interface::Iid> {
 public:
  Status TARVIK_CALL GetTypeInfoCount(std::uint32_t *) override { return StatusNotImplemented; }
  Status TARVIK_CALL GetTypeInfo(std::uint32_t, std::uint32_t, ITypeInfo **) override { return StatusNotImplemented; }
  Status TARVIK_CALL GetIDsOfNames(const Guid &, char16_t **, std::uint32_t, std::uint32_t, std::int32_t *) override {
    return StatusNotImplemented;
  }
  Status TARVIK_CALL Invoke(std::int32_t, const Guid &, std::uint32_t, std::uint16_t, AutomationDispParams *,
                            AutomationVariant *, AutomationExcepInfo *, std::uint32_t *) override {
    return StatusNotImplemented;
  }
};

template <class T, class... Args>
Ref<T> MakeObject(Args &&...args) {
  return Ref<T>::Adopt(new T(std::forward<Args>(args)...));
}

}  // namespace tarvik::automation
