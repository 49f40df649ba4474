#include "automation/Ref.h"
#include "dispatch/InstrClassFactory.h"
#include "dispatch/LibraryUse.h"
#include "dispatch/Registration.h"
#include "support/modGlobals.h"

using tarvik::automation::Guid;
using tarvik::automation::Status;

/// Gives the class factory of clsInstrInterface, the one class of the library that clients create by name.
TARVIK_DRIVER_EXPORT Status TARVIK_CALL DllGetClassObject(const Guid &rclsid, const Guid &riid, void **ppv) {
  return tarvik::automation::GiveClassFactory(tarvik::InstrProgId, rclsid, riid, ppv, [] {
    return tarvik::automation::Ref<tarvik::InstrClassFactory>::Adopt(new tarvik::InstrClassFactory);
  });
}

/// Not while a client holds an object or a lock, nor while this thread's instrument interface lives.
TARVIK_DRIVER_EXPORT Status TARVIK_CALL DllCanUnloadNow() {
  using namespace tarvik::automation;
  return tarvik::LibraryUse::Any() || tarvik::gobjInstr() ? StatusFalse : StatusOk;
}

TARVIK_DRIVER_EXPORT Status TARVIK_CALL DllRegisterServer() { return tarvik::RegisterLibrary(); }

TARVIK_DRIVER_EXPORT Status TARVIK_CALL DllUnregisterServer() { return tarvik::UnregisterLibrary(); }
