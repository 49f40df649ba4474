#include <exception>

#include "automation/ErrorInfo.h"
#include "automation/Object.h"
#include "instrument/KolvenDriver.h"
#include "remote/Connection.h"
#include "remote/NoInstruments.h"
#include "support/RunTimeError.h"

/// What the automation library calls when an object is to be made on a server. Null without a failure means that
/// the creation handed back nothing.
TARVIK_DRIVER_EXPORT tarvik::automation::Status TarvikCreateRemoteObject(const char *strProgId, const char *strServer,
                                                                         void **ppObject) {
  using namespace tarvik;
  if (!strProgId || !strServer || !ppObject) return automation::StatusPointer;
  *ppObject = nullptr;
  try {
    *ppObject = remote::ConnectDriver(strProgId, strServer).Detach();
    return automation::StatusOk;
  } catch (const RunTimeError &error) {
    automation::SetRunTimeErrorInfo(error.Number(), error.Description(), error.Source());
    return automation::StatusFail;
  } catch (const std::exception &error) {
    return automation::Fail(automation::StatusUnexpected, error.what());
  }
}

/// What it calls where a manifest names this library as the driver itself.
TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllGetClassObject(const tarvik::automation::Guid &rclsid,
                                                                              const tarvik::automation::Guid &riid,
                                                                              void **ppv) {
  using namespace tarvik;
  return automation::GiveClassFactory(kolven::DriverProgId, rclsid, riid, ppv,
                                      [] { return automation::MakeObject<remote::NoInstruments>(); });
}
