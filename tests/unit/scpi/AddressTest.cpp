#include "scpi/Address.h"

#include <gtest/gtest.h>

#include "common/Failure.h"

namespace tarvik::scpi {
namespace {

TEST(ScpiAddress, SocketHasHostAndPort) {
  const Address address = Address::Read("TCPIP::192.168.1.20::5025::SOCKET");
  EXPECT_EQ(Address::Kind::Socket, address.eKind);
  EXPECT_EQ("192.168.1.20", address.strHost);
  EXPECT_EQ("5025", address.strPort);
  EXPECT_EQ("TCPIP::192.168.1.20::5025::SOCKET", address.strText);
}

TEST(ScpiAddress, InterfaceMayHaveANumberAndAnyCase) {
  EXPECT_EQ("pulser.lab", Address::Read("tcpip0::pulser.lab::5025::socket").strHost);
  EXPECT_EQ("/dev/usbtmc1", Address::Read("USB0::/dev/usbtmc1::INSTR").strDevice);
}

TEST(ScpiAddress, Vxi11HasADeviceThatIsTheFirstOneUnlessTold) {
  const Address address = Address::Read("TCPIP::pulser::INSTR");
  EXPECT_EQ(Address::Kind::Vxi11, address.eKind);
  EXPECT_EQ("inst0", address.strDevice);
  EXPECT_EQ("inst1", Address::Read("TCPIP::pulser::inst1::INSTR").strDevice);
}

TEST(ScpiAddress, HostWithColonsStandsInBrackets) {
  EXPECT_EQ("::1", Address::Read("TCPIP::[::1]::5025::SOCKET").strHost);
}

TEST(ScpiAddress, DeviceFileIsAWholePath) {
  const Address address = Address::Read("USB::/dev/usbtmc0");
  EXPECT_EQ(Address::Kind::Device, address.eKind);
  EXPECT_EQ("/dev/usbtmc0", address.strDevice);
}

TEST(ScpiAddress, WhatIsNoneIsRefusedWithItsText) {
  for (const char *strText :
       {"", "192.168.1.20", "TCPIP::h::SOCKET", "TCPIP::h::0::SOCKET", "TCPIP::h::65536::SOCKET", "TCPIP::h::x::SOCKET",
        "TCPIP::::5025::SOCKET", "TCPIP::a b::5025::SOCKET", "TCPIP::-x::5025::SOCKET", "USB::usbtmc0",
        "GPIB::7::INSTR", "TCPIPx::h::5025::SOCKET", "TCPIP::h::5025::SOCKET::more"}) {
    try {
      Address::Read(strText);
      ADD_FAILURE() << strText << " was taken";
    } catch (const driver::Failure &failure) {
      EXPECT_EQ("\"" + std::string(strText) +
                    "\" is no address. Addresses are written as TCPIP::host::port::SOCKET, TCPIP::host::INSTR or "
                    "USB::/dev/usbtmc0",
                failure.what());
    }
  }
}

}  // namespace
}  // namespace tarvik::scpi
