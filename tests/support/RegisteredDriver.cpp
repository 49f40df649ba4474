#include "RegisteredDriver.h"

#include <utility>

#include "automation/Activation.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::test {

RegisteredDriver::RegisteredDriver(Maker maker) {
  automation::RegisterClass(kolven::DriverProgId, [maker] { return maker({}); });
  automation::SetRemoteActivator(
      [maker = std::move(maker)](const std::string &, const std::string &strServer) { return maker(strServer); });
}

RegisteredDriver::~RegisteredDriver() {
  automation::RegisterClass(kolven::DriverProgId, {});
  automation::SetRemoteActivator({});
}

}  // namespace tarvik::test
