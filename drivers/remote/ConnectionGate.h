#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "remote/FileHandle.h"
#include "remote/ServerLog.h"

namespace tarvik::remote {

/// The name of a connection's other end without its scheme, "127.0.0.1:4711" or "[::1]:4711", from what the transport
/// calls it: "ipv4:127.0.0.1:4711", "ipv6:%5B::1%5D:4711".
std::string PeerName(const std::string &strTransportName);

struct GateLimits {
  std::size_t lngAll = 128;                    ///< connections at a time
  std::size_t lngEach = 80;                    ///< of these from one address
  std::chrono::milliseconds greeting{10'000};  ///< for TLS, HTTP/2 and the greeting together
  std::uint64_t lngEarlyBytes = 64ul * 1024;   ///< that a connection may send before its greeting
  std::chrono::milliseconds penalty{1'000};    ///< wait for the next connection of an address that broke a limit
};

/// The listening sockets, in front of TLS and HTTP/2: decides which connections the transport gets to see, and ends
/// those that come to nothing. At a limit the connection that has waited longest without a greeting gives way, so that
/// a flood of idle connections keeps nobody out.
///
/// The gate keeps a duplicate of each descriptor. It sees by it that a connection has ended, and can end it itself.
class ConnectionGate {
 public:
  /// Takes over a connected descriptor.
  using Take = std::function<void(int intDescriptor)>;

  /// Listens on all addresses of the host; RunTimeError when none can be had.
  ConnectionGate(const std::string &strHost, std::uint16_t lngPort, const GateLimits &limits, ServerLog &log);
  ~ConnectionGate();
  ConnectionGate(const ConnectionGate &) = delete;
  ConnectionGate &operator=(const ConnectionGate &) = delete;

  std::uint16_t Port() const { return m_lngPort; }
  /// Begins to accept.
  void Open(Take take);
  /// Accepts no more. The connections stay.
  void Close();

  /// Sessions on a connection, by its PeerName: one has been greeted, one has ended.
  void SessionBegan(const std::string &strPeer);
  void SessionEnded(const std::string &strPeer);
  /// The client was refused and told why; its connection ends soon, unless a session begins on it.
  void Refused(const std::string &strPeer);

 private:
  using Clock = std::chrono::steady_clock;
  struct Connected {
    FileHandle handle;  ///< the duplicate
    std::string strPeer;
    std::string strAddress;
    Clock::time_point deadline;   ///< for a greeting, or for the next one
    Clock::time_point passOn;     ///< not before: the address broke a limit
    FileHandle held;              ///< not passed on yet
    std::size_t lngSessions = 0;  ///< that were greeted and have not ended
    bool fGreeted = false;
    bool fTold = false;  ///< the log has its refusal
    bool fShut = false;
  };
  using Connections = std::map<std::uint64_t, Connected>;

  void Listen(const std::string &strHost, std::uint16_t lngPort);
  void Run();
  void Accept(int intListener);
  void Admit(FileHandle accepted, const std::string &strPeer, const std::string &strAddress);
  bool MakeRoom(const std::string &strAddress);
  void Tick(Clock::time_point now);
  void Shut(Connected &connection, const std::string &strWhy, bool fPenalty);
  void NoteEnd(std::uint64_t lngKey);
  void Drop(std::uint64_t lngKey);
  int WaitMilliseconds() const;
  Connected *Find(const std::string &strPeer);
  void Wake() const;

  const GateLimits m_limits;
  ServerLog &m_log;
  Take m_take;
  std::uint16_t m_lngPort = 0;
  std::vector<FileHandle> m_listeners;
  FileHandle m_poll, m_wakeUp;
  mutable std::mutex m_mutex;
  Connections m_connections;                             ///< guarded, as all below
  std::map<std::string, Clock::time_point> m_penalties;  ///< until when, by address
  std::uint64_t m_lngLastKey = 0;
  bool m_fClosing = false;
  std::thread m_thread;
};

}  // namespace tarvik::remote
