#pragma once

#include <exception>
#include <new>
#include <string>

#include "automation/Abi.h"
#include "automation/Activation.h"
#include "automation/ErrorInfo.h"
#include "automation/Object.h"

namespace tarvik::automation {

/// Base of a class factory, which refuses what cannot be made.
class ClassFactory : public Counted<IClassFactory, IidClassFactory> {
 public:
  Status TARVIK_CALL CreateInstance(IUnknown *pUnkOuter, const Guid &riid, void **ppvObject) override {
    if (!ppvObject) return StatusPointer;
    *ppvObject = nullptr;
    return pUnkOuter ? StatusNoAggregation : Make(riid, ppvObject);
  }
  /// A library that is never unloaded has nothing to lock.
  Status TARVIK_CALL LockServer(LockFlag) override { return StatusOk; }

 private:
  /// Makes an object and hands out this interface of it; the place is there and empty.
  virtual Status Make(const Guid &riid, void **ppvObject) = 0;
};

/// The body of DllGetClassObject for a library with one class: hands out an interface of the class factory that
/// MakeFactory gives a reference to, or fails with a description.
template <class MakeFactory>
Status GiveClassFactory(const char *strProgId, const Guid &rclsid, const Guid &riid, void **ppv,
                        MakeFactory &&makeFactory) {
  if (!ppv) return StatusPointer;
  *ppv = nullptr;
  try {
    if (!(rclsid == ClassIdOf(strProgId)))
      return Fail(StatusClassNotAvailable, std::string("The library has no class but ") + strProgId);
    const Status status = makeFactory()->QueryInterface(riid, ppv);
    return Failed(status) ? Fail(status, "The class factory does not have the interface asked for") : status;
  } catch (const std::bad_alloc &) {
    return StatusOutOfMemory;
  } catch (const std::exception &error) {
    return Fail(StatusUnexpected, error.what());
  }
}

}  // namespace tarvik::automation
