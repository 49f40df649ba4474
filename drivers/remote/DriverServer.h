#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "remote/AccessList.h"
#include "remote/ConnectionGate.h"
#include "remote/ServerLog.h"
#include "remote/ServerSession.h"

namespace tarvik::remote {

struct ServerOptions {
  std::string strHost = "localhost";   ///< name or address to listen on
  std::uint16_t lngPort = 0;           ///< 0: the system chooses
  bool fInsecure = false;              ///< without transport security; on a loopback address only
  AccessRules rules;                   ///< with transport security
  std::set<std::string> drivers;       ///< ProgIDs that may be created; empty: all
  std::size_t lngClients = 64;         ///< at a time
  std::size_t lngSessionsOfName = 16;  ///< at a time, of clients with certificates of one name
  bool fShare = false;                 ///< several clients may have an instrument open
  GateLimits gate;                     ///< its numbers of connections follow from lngClients
  SessionLimits limits;
  std::chrono::milliseconds heartbeat{1'000};  ///< between signs of life while a call is at work
  /// A client whose machine answers nothing for this long twice over has vanished.
  std::chrono::milliseconds keepalive{15'000};
};

/// Serves drivers to clients. Each connection has a thread of its own; calls into drivers are made one at a time,
/// because the roots of one process share their instruments and know no locks.
class DriverServer {
 public:
  /// Starts listening. RunTimeError when the options do not allow it or the address cannot be had.
  DriverServer(ServerOptions options, DriverCreator creator, ServerLog &log);
  /// Stops, if Stop has not been called.
  ~DriverServer();
  DriverServer(const DriverServer &) = delete;
  DriverServer &operator=(const DriverServer &) = delete;

  std::uint16_t Port() const;
  /// Takes no more calls, finishes those at work, ends every connection and closes what was left open.
  void Stop();
  /// From now on these rules hold; who they exclude is cut off. RunTimeError, and the old ones stay, where the new ones
  /// cannot be worked with. Nothing happens without transport security.
  void SetRules(AccessRules rules);
  /// Answers a command of the administrator, in lines: "sessions", "holders", "end N".
  std::string Administer(const std::string &strCommand);
  /// Connections at the moment.
  std::size_t Clients() const;

 private:
  class Listener;
  std::unique_ptr<Listener> m_listener;
};

}  // namespace tarvik::remote
