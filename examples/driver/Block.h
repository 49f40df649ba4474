#pragma once

#include <memory>
#include <new>
#include <utility>

#include "Generator.h"
#include "instrument/DriverObject.h"

namespace example {

using tarvik::automation::VariantBool;

/// Base of the objects: each is a view of the one generator and keeps nothing. What an object does not override
/// answers "The driver does not support ...".
template <class Interface>
class Block : public tarvik::kolven::DriverObject<Interface> {
 public:
  explicit Block(std::shared_ptr<Generator> generator) : m_generator(std::move(generator)) {}

 protected:
  Generator &TheGenerator() const { return *m_generator; }
  const Settings &InForce() const { return m_generator->InForce(); }

  /// No exception may leave an operation.
  template <class Body>
  static Status Guarded(Body &&body) {
    try {
      return body();
    } catch (const std::bad_alloc &) {
      return tarvik::automation::StatusOutOfMemory;
    } catch (const std::exception &error) {
      return tarvik::automation::Fail(tarvik::automation::StatusUnexpected, error.what());
    }
  }

  template <class T>
  static Status Tell(T *pPlace, T value) {
    if (!pPlace) return tarvik::automation::StatusPointer;
    *pPlace = value;
    return tarvik::automation::StatusOk;
  }
  static Status Tell(VariantBool *pPlace, bool fValue) { return Tell<VariantBool>(pPlace, fValue ? -1 : 0); }

  Status Change(const std::function<void(Settings &)> &change) const {
    return Guarded([&] { return m_generator->Change(change); });
  }
  /// Puts one value into the settings.
  template <class T>
  Status Put(T Settings::*field, std::type_identity_t<T> value) const {
    return Change([=](Settings &settings) { settings.*field = value; });
  }

  /// Hands out another view, which belongs to the caller.
  template <class View, class Wanted, class... Args>
  Status Give(Wanted **ppObject, Args... args) const {
    if (!ppObject) return tarvik::automation::StatusPointer;
    *ppObject = nullptr;
    return Guarded([&] {
      *ppObject = tarvik::automation::MakeObject<View>(m_generator, args...).Detach();
      return tarvik::automation::StatusOk;
    });
  }

 private:
  const std::shared_ptr<Generator> m_generator;
};

}  // namespace example
