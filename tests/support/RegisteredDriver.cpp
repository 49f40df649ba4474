#include "RegisteredDriver.h"

#include <utility>

#include "automation/Activation.h"
#include "instrument/KolvenDriver.h"

namespace tarvik::test {

RegisteredDriver::RegisteredDriver(Maker maker, Where eWhere) : m_eWhere(eWhere) {
  if (m_eWhere & Here) automation::RegisterClass(kolven::DriverProgId, [maker] { return maker({}); });
  if (m_eWhere & OnServers)
    automation::SetRemoteActivator(
        [maker = std::move(maker)](const std::string &, const std::string &strServer) { return maker(strServer); });
}

RegisteredDriver::~RegisteredDriver() {
  if (m_eWhere & Here) automation::RegisterClass(kolven::DriverProgId, {});
  if (m_eWhere & OnServers) automation::SetRemoteActivator({});
}

}  // namespace tarvik::test
