#include "automation/Activation.h"
#include "automation/Object.h"
#include "common/ClassFactory.h"
#include "common/Guarded.h"
#include "instrument/KolvenDriver.h"
#include "scpi/ScpiRack.h"

const char *const tarvik::driver::DriverSource = "SCPI instruments";

namespace tarvik::scpi {

namespace {

/// The instruments of the process: what is known of them, and what has to be sent back to them, outlives each object.
std::shared_ptr<ScpiRack> TheRack() {
  static const auto rack = std::make_shared<ScpiRack>(InstrumentsFiles(), ProfileFolders::OfMachine());
  return rack;
}

}  // namespace

}  // namespace tarvik::scpi

/// Gives the class factory of the driver's one class.
TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllGetClassObject(const tarvik::automation::Guid &rclsid,
                                                                              const tarvik::automation::Guid &riid,
                                                                              void **ppv) {
  using namespace tarvik;
  return automation::GiveClassFactory(kolven::DriverProgId, rclsid, riid, ppv,
                                      [] { return automation::MakeObject<driver::ClassFactory>(scpi::TheRack()); });
}

/// Never: the instruments live in this library.
TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllCanUnloadNow() {
  return tarvik::automation::StatusFalse;
}
