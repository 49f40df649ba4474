#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "scpi/simulator/Connection.h"

namespace tarvik::scpisim {

struct ServerOptions {
  std::string strHost = "127.0.0.1";
  std::uint16_t intPort = 5025;           ///< 0 for one that the system chooses
  std::size_t lngClients = 32;            ///< at a time; more are turned away
  std::size_t lngLongestMessage = 65536;  ///< bytes
};

/// Serves the device to clients on TCP, in the one thread that calls Run.
class Server {
 public:
  /// Listens. Throws RunTimeError when it cannot.
  Server(const ServerOptions &options, Device &device);
  Server(const Server &) = delete;
  Server &operator=(const Server &) = delete;
  ~Server();

  /// Address and port in force, such as 127.0.0.1:5025 or [::1]:5025.
  const std::string &Address() const { return m_strAddress; }
  /// Serves until the descriptor can be read.
  void Run(int intStop);

 private:
  void Listen();
  void Accept();
  int MillisecondsToSleep() const;

  const ServerOptions m_options;
  Device &m_device;
  int m_intListener = -1;
  std::string m_strAddress;
  bool m_fAccepts = true;
  FaultPlan::Client m_lastClient = FaultPlan::Nobody;
  std::vector<std::unique_ptr<Connection>> m_arrConnections;
};

}  // namespace tarvik::scpisim
