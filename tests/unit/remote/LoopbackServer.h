#pragma once

#include <sstream>
#include <string>

#include "remote/Connection.h"
#include "remote/DriverServer.h"

namespace tarvik::remote {

/// A server without transport security in this process, on a port that the system chose.
class LoopbackServer {
 public:
  explicit LoopbackServer(DriverCreator creator, ServerOptions options = {})
      : m_server(Loopback(std::move(options)), std::move(creator), m_log) {}

  std::string Url() const { return "tarvik+insecure://127.0.0.1:" + std::to_string(m_server.Port()); }
  DriverServer *operator->() { return &m_server; }
  std::string LogText() const { return m_text.str(); }

 private:
  static ServerOptions Loopback(ServerOptions options) {
    options.fInsecure = true;
    options.strHost = "127.0.0.1";
    return options;
  }

  std::ostringstream m_text;
  ServerLog m_log{m_text};
  DriverServer m_server;
};

}  // namespace tarvik::remote
