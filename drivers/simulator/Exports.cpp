#include "automation/Activation.h"
#include "automation/Object.h"
#ifdef _WIN32
#include "automation/ServerRegistration.h"
#endif
#include "common/ClassFactory.h"
#include "common/Guarded.h"
#include "instrument/KolvenDriver.h"
#include "simulator/model/Rack.h"

const char *const tarvik::driver::DriverSource = "Simulated instruments";

namespace tarvik::simulator {

namespace {

namespace fs = std::filesystem;

/// Rack files stand where manifests stand, and beside this library.
std::vector<fs::path> RackFiles() {
  std::vector<fs::path> arrFolders = automation::ManifestFolders();
  static const char anchor = 0;
  if (const fs::path own = automation::FolderAt(&anchor); !own.empty()) arrFolders.push_back(own);
  std::vector<fs::path> arrFiles;
  for (const fs::path &folder : arrFolders) arrFiles.push_back(folder / "KolvenAtl.Kolven.rack");
  return arrFiles;
}

/// The rack of the process: instruments keep what was set on them when the last object has gone.
std::shared_ptr<Rack> TheRack() {
  static const std::shared_ptr<Rack> rack = std::make_shared<Rack>(RackFiles());
  return rack;
}

}  // namespace

}  // namespace tarvik::simulator

/// Gives the class factory of the driver's one class.
TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllGetClassObject(const tarvik::automation::Guid &rclsid,
                                                                              const tarvik::automation::Guid &riid,
                                                                              void **ppv) {
  using namespace tarvik;
  return automation::GiveClassFactory(kolven::DriverProgId, rclsid, riid, ppv, [] {
    return automation::MakeObject<driver::ClassFactory>(simulator::TheRack());
  });
}

/// Never: the state of the instruments lives in this library.
TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllCanUnloadNow() {
  return tarvik::automation::StatusFalse;
}

#ifdef _WIN32

TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllRegisterServer() {
  return tarvik::automation::RegisterServer(tarvik::kolven::DriverProgId, "Simulated pulse generators of TarvikVI",
                                            reinterpret_cast<const void *>(&DllRegisterServer));
}

TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllUnregisterServer() {
  return tarvik::automation::UnregisterServer(tarvik::kolven::DriverProgId);
}

#endif
