#include "scpi/Line.h"

#include "scpi/DescriptorLine.h"
#include "scpi/DeviceLine.h"
#include "scpi/LxiLine.h"

namespace tarvik::scpi {

std::unique_ptr<Line> MakeLine(const Address &address) {
  switch (address.eKind) {
    case Address::Kind::Socket: return std::make_unique<SocketLine>(address.strHost, address.strPort);
    case Address::Kind::Vxi11: return std::make_unique<LxiLine>(address.strHost, address.strDevice);
    case Address::Kind::Device: return std::make_unique<DeviceLine>(address.strDevice);
  }
  return nullptr;
}

}  // namespace tarvik::scpi
