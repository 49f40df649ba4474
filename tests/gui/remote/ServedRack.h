#pragma once

#include <string>

#include "ServerProcess.h"
#include "TestCertificates.h"

namespace tarvik::test {

/// The simulated instruments behind a server process on loopback, with transport security. This process is its
/// client.
class ServedRack {
 public:
  ServedRack() { m_certificates.UseClient("client"); }

  std::string Url() const { return "tarvik://localhost:" + m_server.Port(); }
  remote::ServerProcess &Server() { return m_server; }
  const remote::TestCertificates &Certificates() const { return m_certificates; }

 private:
  remote::TestCertificates m_certificates;
  remote::ServerProcess m_server{m_certificates.ServerOptions()};
};

}  // namespace tarvik::test
