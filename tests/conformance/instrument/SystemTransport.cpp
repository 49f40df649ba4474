#include <objbase.h>

#include "Transport.h"
#include "automation/Activation.h"
#include "automation/ClassFactory.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::test {

namespace {

using automation::Status;

/// The stand-in behind a class factory of the system.
class Factory final : public automation::ClassFactory {
 public:
  explicit Factory(StandInDriver &driver) : m_driver(driver) {}

 private:
  Status Make(const automation::Guid &riid, void **ppvObject) override {
    try {
      const auto root = m_driver.Create(kolven::DriverProgId, {});
      return root ? root->QueryInterface(riid, ppvObject) : automation::StatusOk;
    } catch (const RunTimeError &error) {
      return automation::Fail(error.Number(), error.Description());
    }
  }

  StandInDriver &m_driver;
};

}  // namespace

/// Creations on this machine go through the registry, where the ProgID has to stand, and the class object that is
/// registered here for the process.
struct Transport::Route {
  explicit Route(StandInDriver &driver) {
    automation::RegisterClass(kolven::DriverProgId, nullptr);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const auto factory = automation::Ref<Factory>::Adopt(new Factory(driver));
    CoRegisterClassObject(automation::ClassIdOf(kolven::DriverProgId), factory.Get(), CLSCTX_INPROC_SERVER,
                          REGCLS_MULTIPLEUSE, &lngCookie);
  }
  Route(const Route &) = delete;
  Route &operator=(const Route &) = delete;
  ~Route() {
    CoRevokeClassObject(lngCookie);
    CoUninitialize();
  }

  DWORD lngCookie = 0;
};

Transport::Transport(StandInDriver &driver) : m_route(std::make_unique<Route>(driver)) {}
Transport::~Transport() = default;
void Transport::Settle() {}

}  // namespace tarvik::test
