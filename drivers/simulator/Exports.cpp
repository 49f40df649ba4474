#include <dlfcn.h>

#include "automation/Activation.h"
#include "automation/Object.h"
#include "instrument/KolvenDriver.h"
#include "simulator/ClassFactory.h"
#include "simulator/Guarded.h"

namespace tarvik::simulator {

namespace {

namespace fs = std::filesystem;

/// The folder of this library.
fs::path OwnFolder() {
  static const char anchor = 0;
  Dl_info info{};
  if (!dladdr(&anchor, &info) || !info.dli_fname) return {};
  std::error_code error;
  const fs::path path = fs::canonical(info.dli_fname, error);
  return error ? fs::path() : path.parent_path();
}

/// Rack files stand where manifests stand, and beside this library.
std::vector<fs::path> RackFiles() {
  std::vector<fs::path> arrFolders = automation::ManifestFolders();
  if (const fs::path own = OwnFolder(); !own.empty()) arrFolders.push_back(own);
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
  using namespace tarvik::automation;
  using namespace tarvik::simulator;
  if (!ppv) return StatusPointer;
  *ppv = nullptr;
  return Guarded(false, [&] {
    if (!(rclsid == ClassIdOf(tarvik::kolven::DriverProgId)))
      throw CallFailure{StatusClassNotAvailable,
                        "The library has no class but " + std::string(tarvik::kolven::DriverProgId)};
    const auto factory = MakeObject<tarvik::simulator::ClassFactory>(TheRack());
    if (Failed(factory->QueryInterface(riid, ppv)))
      throw CallFailure{StatusNoInterface, "The class factory does not have the interface asked for"};
  });
}

/// Never: the state of the instruments lives in this library.
TARVIK_DRIVER_EXPORT tarvik::automation::Status TARVIK_CALL DllCanUnloadNow() {
  return tarvik::automation::StatusFalse;
}
