#include "remote/DriverServer.h"

#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

#include "remote/ServerAddress.h"
#include "remote/Session.grpc.pb.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

constexpr std::int32_t ErrInvalidArgument = 5;
/// Limit for a client to read its answer.
constexpr std::chrono::seconds AnswerLimit{1};
/// Time for the last answers to be sent when the server stops.
constexpr std::chrono::milliseconds AnswerTravel{100};

using Stream = grpc::ServerReaderWriter<ServerFrame, ClientFrame>;

/// Writes answers, and heartbeats in between while a call is at work.
class AnswerWriter {
 public:
  AnswerWriter(Stream &stream, std::chrono::milliseconds interval)
      : m_stream(stream), m_interval(interval), m_beating([this](const std::stop_token &stop) { Beat(stop); }) {}

  void Begin() { m_fAtWork = true; }
  bool End(std::string strAnswer) {
    const std::lock_guard lock(m_mutex);
    m_fAtWork = false;
    return strAnswer.empty() || Write(std::move(strAnswer));
  }

 private:
  bool Write(std::string strBody) {
    ServerFrame frame;
    frame.set_body(std::move(strBody));
    return m_stream.Write(frame);
  }

  void Beat(const std::stop_token &stop) {
    std::unique_lock lock(m_mutex);
    while (!stop.stop_requested()) {
      m_changed.wait_for(lock, stop, m_interval, [] { return false; });
      if (m_fAtWork && !stop.stop_requested()) Write(std::string(1, static_cast<char>(Answer::Heartbeat)));
    }
  }

  Stream &m_stream;
  const std::chrono::milliseconds m_interval;
  std::mutex m_mutex;
  std::condition_variable_any m_changed;
  std::atomic<bool> m_fAtWork = false;
  std::jthread m_beating;
};

std::string Joined(const std::vector<std::string> &arrNames) {
  std::string strResult;
  for (const std::string &strName : arrNames) strResult += (strResult.empty() ? "" : ", ") + strName;
  return strResult.empty() ? "nobody" : strResult;
}

/// The names that the client's certificate, which the transport has checked, bears.
std::vector<std::string> CertificateNames(const grpc::ServerContext &context) {
  std::vector<std::string> arrNames;
  const auto authority = context.auth_context();
  if (!authority) return arrNames;
  for (const char *strProperty : {"x509_common_name", "x509_subject_alternative_name"})
    for (const grpc::string_ref &name : authority->FindPropertyValues(strProperty))
      if (const std::string strName(name.data(), name.size()); std::ranges::find(arrNames, strName) == arrNames.end())
        arrNames.push_back(strName);
  return arrNames;
}

}  // namespace

class DriverServer::Service final : public DriverSession::Service {
 public:
  Service(const ServerOptions &options, DriverCreator creator, ServerLog &log)
      : m_options(options), m_creator(std::move(creator)), m_log(log) {}

  grpc::Status Connect(grpc::ServerContext *pContext, Stream *pStream) override {
    std::string strClient = "client at " + pContext->peer();
    if (!m_options.fInsecure) {
      const auto arrNames = CertificateNames(*pContext);
      strClient = Joined(arrNames) + " at " + pContext->peer();
      if (std::ranges::none_of(arrNames, [&](const auto &name) { return m_options.allowedClients.contains(name); }))
        return Refuse(strClient, grpc::StatusCode::PERMISSION_DENIED,
                      "the certificate's name " + Joined(arrNames) + " is not on the list of clients");
    }
    const Place place(*this);
    if (m_fStopping) return Refuse(strClient, grpc::StatusCode::UNAVAILABLE, "the server is stopping");
    if (!place.fFree)
      return Refuse(strClient, grpc::StatusCode::RESOURCE_EXHAUSTED,
                    "it serves no more than " + std::to_string(m_options.lngClients) + " clients at a time");
    m_log.Write(strClient, "connected");
    const grpc::Status status = Serve(*pContext, *pStream, strClient);
    m_log.Write(strClient, status.ok() ? "disconnected" : "ended: " + status.error_message());
    return status;
  }

  /// Waits until no frame is at work; none is begun afterwards. Calls have the time they need, but a client that takes
  /// no answer keeps nobody waiting.
  void Finish() {
    m_fStopping = true;
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_lngAtWork == m_lngAnswering; });
    m_changed.wait_for(lock, AnswerLimit, [&] { return m_lngAtWork == 0; });
  }

  std::size_t Clients() const { return m_lngClients; }

 private:
  struct Place {
    explicit Place(Service &service_)
        : service(service_), fFree(++service.m_lngClients <= service.m_options.lngClients) {}
    ~Place() { --service.m_lngClients; }
    Service &service;
    const bool fFree;
  };
  /// Counts the frames at work, from the first byte read to the last answered; refuses when the server is stopping.
  class Work {
   public:
    explicit Work(Service &service) : m_service(service) {
      const std::lock_guard lock(m_service.m_mutex);
      m_fAllowed = !m_service.m_fStopping;
      ++m_service.m_lngAtWork;
    }
    Work(const Work &) = delete;
    Work &operator=(const Work &) = delete;
    ~Work() {
      const std::lock_guard lock(m_service.m_mutex);
      --m_service.m_lngAtWork;
      if (m_fAnswering) --m_service.m_lngAnswering;
      m_service.m_changed.notify_all();
    }
    bool IsAllowed() const { return m_fAllowed; }
    /// The driver is done; what is left depends on the client.
    void BeginAnswer() {
      const std::lock_guard lock(m_service.m_mutex);
      m_fAnswering = true;
      ++m_service.m_lngAnswering;
      m_service.m_changed.notify_all();
    }

   private:
    Service &m_service;
    bool m_fAllowed = false;
    bool m_fAnswering = false;
  };

  grpc::Status Refuse(const std::string &strClient, grpc::StatusCode eCode, const std::string &strWhy) {
    m_log.Write(strClient, "refused: " + strWhy);
    return {eCode, strWhy};
  }

  grpc::Status Serve(grpc::ServerContext &context, Stream &stream, const std::string &strClient) {
    ServerSession session(m_creator, m_options.limits,
                          [&](const std::string &strText) { m_log.Write(strClient, strText); });
    grpc::Status status;
    try {
      status = Converse(stream, session);
    } catch (const std::exception &error) {
      status = {grpc::StatusCode::INTERNAL, error.what()};
    }
    const std::lock_guard driver(m_driver);
    if (status.ok() && context.IsCancelled()) m_log.Write(strClient, "vanished");
    session.End();
    return status;
  }

  grpc::Status Converse(Stream &stream, ServerSession &session) {
    AnswerWriter writer(stream, m_options.heartbeat);
    ClientFrame frame;
    while (stream.Read(&frame)) {
      Work work(*this);
      if (!work.IsAllowed()) return {grpc::StatusCode::UNAVAILABLE, "the server is stopping"};
      writer.Begin();
      std::string strAnswer;
      try {
        const std::lock_guard driver(m_driver);
        strAnswer = session.Handle(frame.body());
      } catch (const ProtocolError &error) {
        writer.End({});
        return {grpc::StatusCode::INVALID_ARGUMENT, error.what()};
      }
      work.BeginAnswer();
      if (!writer.End(std::move(strAnswer))) break;
    }
    return grpc::Status::OK;
  }

  const ServerOptions &m_options;
  const DriverCreator m_creator;
  ServerLog &m_log;
  std::atomic<std::size_t> m_lngClients = 0;
  std::atomic<bool> m_fStopping = false;
  /// Held around every call into a driver.
  std::mutex m_driver;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::size_t m_lngAtWork = 0;
  std::size_t m_lngAnswering = 0;  ///< of those at work
};

class DriverServer::Listener {
 public:
  Listener(ServerOptions options, DriverCreator creator, ServerLog &log)
      : m_options(std::move(options)), m_service(m_options, std::move(creator), log) {
    const ServerAddress address{!m_options.fInsecure, m_options.strHost, m_options.lngPort};
    CheckOptions();
    grpc::ServerBuilder builder;
    builder.SetMaxReceiveMessageSize(static_cast<int>(m_options.limits.lngFrameBytes) + 64);
    const auto lngKeepalive = static_cast<int>(m_options.keepalive.count());
    builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_TIME_MS, lngKeepalive);
    builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_TIMEOUT_MS, lngKeepalive);
    builder.AddChannelArgument(GRPC_ARG_KEEPALIVE_PERMIT_WITHOUT_CALLS, 1);
    builder.AddChannelArgument(GRPC_ARG_HTTP2_MAX_PINGS_WITHOUT_DATA, 0);
    // With SO_REUSEPORT a second server could bind the port and receive part of the connections.
    builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0);
    int lngPort = 0;
    builder.AddListeningPort(address.HostAndPort(), Credentials(), &lngPort);
    builder.RegisterService(&m_service);
    m_server = builder.BuildAndStart();
    if (!m_server || lngPort == 0)
      throw RunTimeError(ErrInvalidArgument, "The driver server cannot listen on " + address.HostAndPort() +
                                                 ", or its certificate and key do not fit");
    m_lngPort = static_cast<std::uint16_t>(lngPort);
  }
  ~Listener() { Stop(); }

  void Stop() {
    if (!m_server) return;
    m_service.Finish();
    std::this_thread::sleep_for(AnswerTravel);
    m_server->Shutdown(std::chrono::system_clock::now());
    m_server->Wait();
    m_server.reset();
  }
  std::uint16_t Port() const { return m_lngPort; }
  std::size_t Clients() const { return m_service.Clients(); }

 private:
  void CheckOptions() const {
    if (m_options.fInsecure && !IsLoopback(m_options.strHost))
      throw RunTimeError(ErrInvalidArgument,
                         "Without transport security the driver server listens on a loopback "
                         "address only, and " +
                             m_options.strHost + " is none");
    if (!m_options.fInsecure && m_options.allowedClients.empty())
      throw RunTimeError(ErrInvalidArgument, "The list of clients that may connect is empty");
  }

  std::shared_ptr<grpc::ServerCredentials> Credentials() const {
    if (m_options.fInsecure) return grpc::InsecureServerCredentials();
    grpc::SslServerCredentialsOptions options(GRPC_SSL_REQUEST_AND_REQUIRE_CLIENT_CERTIFICATE_AND_VERIFY);
    options.pem_root_certs = m_options.strAuthority;
    options.pem_key_cert_pairs.push_back({m_options.strKey, m_options.strCertificate});
    return grpc::SslServerCredentials(options);
  }

  const ServerOptions m_options;
  Service m_service;
  std::unique_ptr<grpc::Server> m_server;
  std::uint16_t m_lngPort = 0;
};

DriverServer::DriverServer(ServerOptions options, DriverCreator creator, ServerLog &log)
    : m_listener(std::make_unique<Listener>(std::move(options), std::move(creator), log)) {}
DriverServer::~DriverServer() = default;

std::uint16_t DriverServer::Port() const { return m_listener->Port(); }
void DriverServer::Stop() { m_listener->Stop(); }
std::size_t DriverServer::Clients() const { return m_listener->Clients(); }

}  // namespace tarvik::remote
