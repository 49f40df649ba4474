#pragma once

#include <string>

#include "support/Types.h"

namespace tarvik::scpi {

/// Where an instrument is, read from a text:
///
///     TCPIP::192.168.1.20::5025::SOCKET   a socket
///     TCPIP::pulser.lab::INSTR            VXI-11; "TCPIP::pulser.lab::inst1::INSTR" for another device than inst0
///     USB::/dev/usbtmc0                   the kernel's device file; "::INSTR" may follow
///
/// A number may follow TCPIP and USB. A host that has colons stands in brackets: TCPIP::[::1]::5025::SOCKET.
struct Address {
  enum class Kind { Socket, Vxi11, Device };

  Kind eKind = Kind::Socket;
  std::string strText;  ///< as it was written
  std::string strHost;
  std::string strPort;    ///< of a socket
  std::string strDevice;  ///< of VXI-11, or the path of the device file

  /// Raises driver::Failure for a text that is no address.
  static Address Read(const std::string &strText);
};

}  // namespace tarvik::scpi
