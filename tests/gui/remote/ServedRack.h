#pragma once

#include <optional>
#include <string>
#include <utility>

#include "ServerProcess.h"
#include "TestCertificates.h"

namespace tarvik::test {

/// The simulated instruments behind a server process on loopback, with transport security. This process is its
/// client.
class ServedRack {
 public:
  ServedRack() { m_certificates.UseClient("client"); }

  /// By number: behind the name stands ::1 as well, and there the port may be anybody's.
  std::string Url() const { return "tarvik://127.0.0.1:" + m_server->Port(); }
  remote::ServerProcess &Server() { return *m_server; }
  /// A server on the port of the one before, which has ended; its instruments are as after power-up.
  void Restart() {
    const std::string strPort = m_server->Port();
    m_server.emplace(m_certificates.ServerOptions(strPort));
  }

 private:
  remote::TestCertificates m_certificates;
  std::optional<remote::ServerProcess> m_server{std::in_place, m_certificates.ServerOptions()};
};

}  // namespace tarvik::test
