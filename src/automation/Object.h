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
  Count TARVIK_CALL AddRef() override { return ++m_lngReferences; }
  Count TARVIK_CALL Release() override {
    const Count lngLeft = --m_lngReferences;
    if (lngLeft == 0) delete this;
    return lngLeft;
  }

 protected:
  virtual ~Counted() = default;

 private:
  std::atomic<Count> m_lngReferences{1};
};

/// Base of an object behind one dual interface, which answers "not implemented" to the four dispatch operations.
template <class Interface>
class Object : public Counted<Interface, IidDispatch, Interface::Iid> {
 public:
  Status TARVIK_CALL GetTypeInfoCount(std::uint32_t *) override { return StatusNotImplemented; }
  Status TARVIK_CALL GetTypeInfo(std::uint32_t, LocaleId, ITypeInfo **) override { return StatusNotImplemented; }
  Status TARVIK_CALL GetIDsOfNames(const Guid &, AutomationChar **, std::uint32_t, LocaleId, MemberId *) override {
    return StatusNotImplemented;
  }
  Status TARVIK_CALL Invoke(MemberId, const Guid &, LocaleId, std::uint16_t, AutomationDispParams *,
                            AutomationVariant *, AutomationExcepInfo *, std::uint32_t *) override {
    return StatusNotImplemented;
  }
};

template <class T, class... Args>
Ref<T> MakeObject(Args &&...args) {
  return Ref<T>::Adopt(new T(std::forward<Args>(args)...));
}

}  // namespace tarvik::automation
