#include <iostream>

#include "Transport.h"
#include "remote/Connection.h"
#include "remote/DriverServer.h"

namespace tarvik::test {

/// A driver server in this process; every creation goes through it over loopback.
struct Transport::Route {
  explicit Route(StandInDriver &driver)
      : server(
            Options(), [this, &driver](const std::string &strProgId) { return driver.Create(strProgId, strServer); },
            log) {}

  static remote::ServerOptions Options() {
    remote::ServerOptions options;
    options.fInsecure = true;
    options.strHost = "127.0.0.1";
    return options;
  }
  automation::Ref<automation::IUnknown> Connect(const std::string &strNamed) {
    // The stand-in writes down the server's name as the class gave it.
    strServer = strNamed;
    return remote::ConnectDriver(kolven::DriverProgId, "tarvik+insecure://127.0.0.1:" + std::to_string(server.Port()));
  }

  remote::ServerLog log{std::cerr};
  std::string strServer;
  remote::DriverServer server;
  RegisteredDriver registered{[this](const std::string &strNamed) { return Connect(strNamed); }};
};

Transport::Transport(StandInDriver &driver) : m_route(std::make_unique<Route>(driver)) {}

Transport::~Transport() = default;

void Transport::Settle() { remote::SynchroniseConnections(); }

}  // namespace tarvik::test
