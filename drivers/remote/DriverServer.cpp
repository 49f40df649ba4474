#include "remote/DriverServer.h"

#include <grpcpp/grpcpp.h>
#include <sys/resource.h>

#include <algorithm>
#include <thread>

#include "remote/Compression.h"
#include "remote/ConnectionGate.h"
#include "remote/DriverService.h"
#include "remote/ServerAddress.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

/// Time for the last answers to be sent when the server stops.
constexpr std::chrono::milliseconds AnswerTravel{100};
/// A client uses one stream; the next may begin before the end of the last one is known everywhere.
constexpr int StreamsOfConnection = 4;
/// Connections that are being made, besides those of the clients, and how many of these come from one address.
constexpr std::size_t ConnectionsBeingMade = 64, ConnectionsBeingMadeEach = 16;
/// Descriptors that connections never take: logs, drivers, libraries, polling.
constexpr std::size_t ReservedDescriptors = 64;

/// Sees to it that the system gives enough descriptors for all connections. Each has two.
void ReserveDescriptors(std::size_t lngConnections) {
  const rlim_t lngNeeded = 2 * lngConnections + ReservedDescriptors;
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= lngNeeded) return;
  limit.rlim_cur = lngNeeded;
  if (limit.rlim_cur <= limit.rlim_max && setrlimit(RLIMIT_NOFILE, &limit) == 0) return;
  throw RunTimeError(ErrInvalidArgument, "The driver server needs " + std::to_string(lngNeeded) +
                                             " file descriptors for so many clients, and the system allows " +
                                             std::to_string(limit.rlim_max));
}

/// Creates what the list names and nothing else.
DriverCreator Restricted(const std::set<std::string> &drivers, DriverCreator creator) {
  if (drivers.empty()) return creator;
  return [&drivers, creator = std::move(creator)](const std::string &strProgId) {
    if (!drivers.contains(strProgId))
      throw RunTimeError(ErrCannotCreateObject, "The driver server offers no driver " + strProgId);
    return creator(strProgId);
  };
}

/// The limits of the gate that follow from the number of clients.
ServerOptions Completed(ServerOptions options) {
  options.gate.lngAll = options.lngClients + ConnectionsBeingMade;
  options.gate.lngEach = options.lngClients + ConnectionsBeingMadeEach;
  return options;
}

void CheckOptions(const ServerOptions &options) {
  if (options.fInsecure && !IsLoopback(options.strHost))
    throw RunTimeError(ErrInvalidArgument,
                       "Without transport security the driver server listens on a loopback "
                       "address only, and " +
                           options.strHost + " is none");
  ReserveDescriptors(options.gate.lngAll);
}

/// The options, once they have been checked.
ServerOptions Checked(ServerOptions options) {
  CheckOptions(options);
  return options;
}

}  // namespace

class DriverServer::Listener {
 public:
  Listener(ServerOptions options, DriverCreator creator, ServerLog &log)
      : m_options(Checked(Completed(std::move(options)))),
        m_access(m_options.fInsecure ? nullptr : std::make_unique<AccessList>(m_options.rules)),
        m_gate(m_options.strHost, m_options.lngPort, m_options.gate, log),
        m_service(m_options, Restricted(m_options.drivers, std::move(creator)), m_access.get(), m_gate, log) {
    grpc::ServerBuilder builder;
    Configure(builder);
    auto acceptor = builder.experimental().AddExternalConnectionAcceptor(
        grpc::ServerBuilder::experimental_type::ExternalConnectionType::FROM_FD,
        m_access ? m_access->Credentials() : grpc::InsecureServerCredentials());
    builder.RegisterService(&m_service);
    m_server = builder.BuildAndStart();
    if (!m_server) throw RunTimeError(ErrInvalidArgument, "The driver server cannot start");
    m_gate.Open([acceptor = std::shared_ptr(std::move(acceptor))](int intDescriptor) {
      grpc::experimental::ExternalConnectionAcceptor::NewConnectionParameters parameters;
      parameters.fd = intDescriptor;
      acceptor->HandleNewConnection(&parameters);
    });
  }
  ~Listener() { Stop(); }

  void Stop() {
    if (!m_server) return;
    m_gate.Close();
    m_service.Finish();
    std::this_thread::sleep_for(AnswerTravel);
    m_server->Shutdown(std::chrono::system_clock::now());
    m_server->Wait();
    m_server.reset();
  }
  std::uint16_t Port() const { return m_gate.Port(); }
  void SetRules(AccessRules rules) {
    if (m_access) m_access->Set(std::move(rules));
  }
  std::string Administer(const std::string &strCommand) { return m_service.Administer(strCommand); }
  std::size_t Clients() const { return m_service.Clients(); }

 private:
  void Configure(grpc::ServerBuilder &builder) const {
    const auto set = [&](const char *strName, std::int64_t lngValue) {
      builder.AddChannelArgument(strName, static_cast<int>(lngValue));
    };
    builder.SetMaxReceiveMessageSize(static_cast<int>(m_options.limits.lngFrameBytes) + 64);
    ForbidCompression(set);
    for (const auto eAlgorithm : {GRPC_COMPRESS_DEFLATE, GRPC_COMPRESS_GZIP})
      builder.SetCompressionAlgorithmSupportStatus(eAlgorithm, false);
    set(GRPC_ARG_KEEPALIVE_TIME_MS, m_options.keepalive.count());
    set(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, m_options.keepalive.count());
    set(GRPC_ARG_KEEPALIVE_PERMIT_WITHOUT_CALLS, 1);
    set(GRPC_ARG_HTTP2_MAX_PINGS_WITHOUT_DATA, 0);
    // The gate ends a handshake in time, and says so.
    set(GRPC_ARG_SERVER_HANDSHAKE_TIMEOUT_MS, 2 * m_options.gate.greeting.count());
    set(GRPC_ARG_MAX_CONCURRENT_STREAMS, StreamsOfConnection);
    // Each stream has a thread.
    grpc::ResourceQuota quota("streams");
    quota.SetMaxThreads(static_cast<int>(StreamsOfConnection * m_options.gate.lngAll));
    builder.SetResourceQuota(quota);
  }

  const ServerOptions m_options;
  const std::unique_ptr<AccessList> m_access;  ///< null without transport security
  ConnectionGate m_gate;
  DriverService m_service;
  std::unique_ptr<grpc::Server> m_server;
};

DriverServer::DriverServer(ServerOptions options, DriverCreator creator, ServerLog &log)
    : m_listener(std::make_unique<Listener>(std::move(options), std::move(creator), log)) {}
DriverServer::~DriverServer() = default;

std::uint16_t DriverServer::Port() const { return m_listener->Port(); }
void DriverServer::SetRules(AccessRules rules) { m_listener->SetRules(std::move(rules)); }
std::string DriverServer::Administer(const std::string &strCommand) { return m_listener->Administer(strCommand); }
void DriverServer::Stop() { m_listener->Stop(); }
std::size_t DriverServer::Clients() const { return m_listener->Clients(); }

}  // namespace tarvik::remote
