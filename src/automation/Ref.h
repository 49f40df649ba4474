#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "automation/Abi.h"

namespace tarvik::automation {

/// Owns one reference of a counted object.
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) {}
  /// Takes over the one reference that the pointer already stands for.
  static Ref Adopt(T *pObject) {
    Ref ref;
    ref.m_pObject = pObject;
    return ref;
  }
  /// Adds a reference of its own.
  static Ref Share(T *pObject) {
    if (pObject) pObject->AddRef();
    return Adopt(pObject);
  }

  Ref(const Ref &other) : Ref(Share(other.m_pObject)) {}
  Ref(Ref &&other) noexcept : m_pObject(std::exchange(other.m_pObject, nullptr)) {}
  template <class U>
  requires(!std::is_same_v<U, T> && std::is_convertible_v<U *, T *>) Ref(Ref<U> other) : m_pObject(other.Detach()) {}
  Ref &operator=(Ref other) noexcept {
    std::swap(m_pObject, other.m_pObject);
    return *this;
  }
  ~Ref() {
    if (m_pObject) m_pObject->Release();
  }

  T *Get() const { return m_pObject; }
  T *operator->() const { return m_pObject; }
  T &operator*() const { return *m_pObject; }
  explicit operator bool() const { return m_pObject != nullptr; }

  /// The reference goes to the caller.
  T *Detach() { return std::exchange(m_pObject, nullptr); }
  /// Place for a call to hand out an object; what was held is released first.
  T **Out() {
    *this = nullptr;
    return &m_pObject;
  }

 private:
  T *m_pObject = nullptr;
};

/// The object by another of its interfaces; empty when it does not have it, and for nothing.
template <class T, class U>
Ref<T> Narrow(const Ref<U> &object) {
  void *pObject = nullptr;
  if (!object || Failed(object->QueryInterface(T::Iid, &pObject))) return nullptr;
  return Ref<T>::Adopt(static_cast<T *>(pObject));
}

}  // namespace tarvik::automation
