// What the library shows to the outside: its one class, by a class factory.
#include "Instrument.h"
#include "automation/ClassFactory.h"

namespace {

using namespace tarvik::automation;

/// The generator keeps its settings as long as the program runs, whoever holds its objects.
const std::shared_ptr<example::Generator> &TheGenerator() {
  static const auto generator = std::make_shared<example::Generator>();
  return generator;
}

class Factory final : public ClassFactory {
  Status Make(const Guid &riid, void **ppvObject) override {
    try {
      return MakeObject<example::Root>(TheGenerator())->QueryInterface(riid, ppvObject);
    } catch (const std::bad_alloc &) {
      return StatusOutOfMemory;
    }
  }
};

}  // namespace

TARVIK_DRIVER_EXPORT Status TARVIK_CALL DllGetClassObject(const Guid &rclsid, const Guid &riid, void **ppv) {
  return GiveClassFactory(tarvik::kolven::DriverProgId, rclsid, riid, ppv, [] { return MakeObject<Factory>(); });
}

TARVIK_DRIVER_EXPORT Status TARVIK_CALL DllCanUnloadNow() { return StatusFalse; }
