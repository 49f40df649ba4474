#pragma once

#include <grpcpp/grpcpp.h>

#include <atomic>
#include <condition_variable>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "remote/AccessList.h"
#include "remote/ConnectionGate.h"
#include "remote/DriverServer.h"
#include "remote/InstrumentHolders.h"
#include "remote/Session.grpc.pb.h"

namespace tarvik::remote {

/// The streams of all clients: who gets in, how long a greeting may take, and the calls themselves.
class DriverService final : public DriverSession::Service {
 public:
  using Stream = grpc::ServerReaderWriter<ServerFrame, ClientFrame>;

  /// What is referred to outlives the service. Without an access list everybody gets in.
  DriverService(const ServerOptions &options, DriverCreator creator, const AccessList *pAccess, ConnectionGate &gate,
                ServerLog &log);

  grpc::Status Connect(grpc::ServerContext *pContext, Stream *pStream) override;

  /// Waits until no frame is at work; none is begun afterwards. Calls have the time they need, but a client that takes
  /// no answer keeps nobody waiting.
  void Finish();
  /// Answers the administrator in lines.
  std::string Administer(const std::string &strCommand);
  /// Sessions that were greeted.
  std::size_t Clients() const;

 private:
  using Clock = std::chrono::steady_clock;
  /// A stream, from its headers to its end.
  struct Session {
    std::uint64_t lngId = 0;
    grpc::ServerContext *pContext = nullptr;
    ClientIdentity identity;
    std::string strName;  ///< of the certificate; empty without transport security
    std::string strPeer;  ///< as the transport calls it
    Clock::time_point begin{};
    std::chrono::system_clock::time_point since{};
    bool fGreeted = false;
    std::uint64_t lngBytes = 0;  ///< that the client sent; for its own thread
    std::string strCut{};        ///< why the server ended it
  };
  using Sessions = std::list<Session>;
  class Entered;
  class Work;

  std::string HindranceToEnter(const std::string &strName) const;
  std::string HindranceToGreet() const;
  grpc::Status Refuse(const std::string &strClient, grpc::StatusCode eCode, const std::string &strWhy);
  grpc::Status Serve(Session &session, Stream &stream, const std::string &strClient);
  grpc::Status Converse(Session &entry, Stream &stream, ServerSession &session, const std::string &strClient);
  grpc::Status Begin(Session &session, const std::string &strClient);
  std::string CutReason(const Session &session) const;
  void Cut(Session &session, const std::string &strWhy);
  void Watch(const std::stop_token &stop);
  std::string SessionLines() const;
  std::string HolderLines() const;
  std::string EndSession(const std::string &strNumber);

  const ServerOptions &m_options;
  const DriverCreator m_creator;
  const AccessList *const m_pAccess;
  ConnectionGate &m_gate;
  ServerLog &m_log;
  InstrumentHolders m_holders;
  std::atomic<bool> m_fStopping = false;
  /// Held around every call into a driver.
  std::mutex m_driver;
  mutable std::mutex m_mutex;
  std::condition_variable_any m_changed;
  Sessions m_sessions;
  std::uint64_t m_lngLastSession = 0;
  std::size_t m_lngAtWork = 0;
  std::size_t m_lngAnswering = 0;  ///< of those at work
  std::jthread m_watching;         ///< last: it uses the others
};

}  // namespace tarvik::remote
