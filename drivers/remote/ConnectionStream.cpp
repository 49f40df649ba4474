#include "remote/ConnectionStream.h"

#include <string_view>

#include "remote/Compression.h"

namespace tarvik::remote {

namespace {

/// The answers of a driver are small; a pattern row of the largest memory is far below this.
constexpr int LargestServerFrame = 16 * 1024 * 1024;
/// Limit for fetching the status of a stream that has ended.
constexpr std::chrono::seconds ReasonLimit{1};

std::shared_ptr<grpc::Channel> MakeChannel(const ServerAddress &address, const ClientCredentials *pCredentials) {
  grpc::ChannelArguments arguments;
  arguments.SetMaxReceiveMessageSize(LargestServerFrame);
  // Instruments are on the local network: ignore the HTTP proxy of the environment.
  arguments.SetInt(GRPC_ARG_ENABLE_HTTP_PROXY, 0);
  // Connect immediately instead of waiting for the backoff of an earlier failure.
  arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
  arguments.SetInt(GRPC_ARG_ENABLE_RETRIES, 0);
  ForbidCompression([&](const char *strName, int intValue) { arguments.SetInt(strName, intValue); });
  std::shared_ptr<grpc::ChannelCredentials> credentials = grpc::InsecureChannelCredentials();
  if (pCredentials) {
    grpc::SslCredentialsOptions options;
    options.pem_root_certs = pCredentials->strAuthority;
    options.pem_cert_chain = pCredentials->strCertificate;
    options.pem_private_key = pCredentials->strKey;
    credentials = grpc::SslCredentials(options);
  }
  return grpc::CreateCustomChannel("dns:///" + address.HostAndPort(), credentials, arguments);
}

/// What the transport says of a dial that failed, and what that means to whoever dialled. The transport has no numbers
/// for these.
struct DialFailure {
  bool fSecure;  ///< the client dialled with transport security
  std::string_view strSaid;
  Status status;
  std::string_view strMeaning;
};
constexpr std::string_view ClosedSecurely =
    "closes the connection before it answers; it may not take this client's certificate";
constexpr std::string_view ClosedPlainly = "closes the connection before it answers; it may want transport security";
constexpr DialFailure DialFailures[] = {
    {true, "certificate verify failed", StatusNoSecurity,
     "shows a certificate that has run out or that the authority in ca.pem did not sign"},
    {true, "is not in peer certificate", StatusNoSecurity, "shows a certificate of another name"},
    {true, "wrong version number", StatusNoSecurity, "does not speak with transport security"},
    {true, "Socket closed", StatusNoSecurity, ClosedSecurely},
    {true, "Connection reset", StatusNoSecurity, ClosedSecurely},
    {true, "Broken pipe", StatusNoSecurity, ClosedSecurely},
    {false, "Socket closed", StatusServerUnavailable, ClosedPlainly},
    {false, "Connection reset", StatusServerUnavailable, ClosedPlainly},
    {false, "Broken pipe", StatusServerUnavailable, ClosedPlainly},
};

std::pair<Status, std::string> WhyDialFailed(bool fSecure, const std::string &strSaid) {
  for (const DialFailure &failure : DialFailures)
    if (failure.fSecure == fSecure && strSaid.find(failure.strSaid) != std::string::npos)
      return {failure.status, std::string(failure.strMeaning) + " (" + strSaid + ")"};
  return {StatusServerUnavailable, "cannot be reached: " + strSaid};
}

/// Completion queues wait by the wall clock's type.
std::chrono::system_clock::time_point WallClock(std::chrono::steady_clock::time_point until) {
  return std::chrono::system_clock::now() +
         std::chrono::duration_cast<std::chrono::system_clock::duration>(until - std::chrono::steady_clock::now());
}

}  // namespace

Connection::Stream::Stream(const ServerAddress &address, const ClientCredentials *pCredentials)
    : m_fSecure(pCredentials != nullptr),
      m_channel(MakeChannel(address, pCredentials)),
      m_stub(DriverSession::NewStub(m_channel)) {}

Connection::Stream::~Stream() {
  m_context.TryCancel();
  if (m_fStarted && !m_fFinishAsked) m_call->Finish(&m_status, Mark(TagFinish));
  m_queue.Shutdown();
  void *pTag = nullptr;
  bool fOk = false;
  while (m_queue.Next(&pTag, &fOk)) {
  }
}

bool Connection::Stream::Start(Clock::time_point until) {
  m_call = m_stub->PrepareAsyncConnect(&m_context, &m_queue);
  m_call->StartCall(Mark(TagStart));
  m_fStarted = true;
  while (!m_fStartDone)
    if (!Turn(until)) return false;
  if (m_fReadEnded) return false;
  m_call->Read(&m_incoming, Mark(TagRead));
  return true;
}

bool Connection::Stream::Turn(Clock::time_point until) {
  void *pTag = nullptr;
  bool fOk = false;
  if (m_queue.AsyncNext(&pTag, &fOk, WallClock(until)) != grpc::CompletionQueue::GOT_EVENT) return false;
  switch (static_cast<Tag>(reinterpret_cast<std::intptr_t>(pTag))) {
    case TagStart:
      m_fStartDone = true;
      m_fReadEnded = !fOk;
      break;
    case TagWrite:
      m_fWriting = false;
      m_fWriteEnded = !fOk;
      break;
    case TagRead: (fOk ? m_fArrived : m_fReadEnded) = true; break;
    case TagWritesDone: break;
    case TagFinish: m_fFinished = true; break;
  }
  return true;
}

bool Connection::Stream::Send(std::string strBody, std::chrono::milliseconds limit) {
  const auto until = Clock::now() + limit;
  if (!m_fStarted && !Start(until)) return false;
  while (m_fWriting)
    if (!Turn(until)) return false;
  if (m_fReadEnded || m_fWriteEnded) return false;
  m_outgoing.set_body(std::move(strBody));
  m_fWriting = true;
  m_call->Write(m_outgoing, Mark(TagWrite));
  return true;
}

Connection::Stream::Received Connection::Stream::Receive(std::string &strBody, Clock::time_point until) {
  while (!m_fArrived && !m_fReadEnded)
    if (!Turn(until)) return Received::Nothing;
  if (!m_fArrived) return Received::End;
  strBody = std::move(*m_incoming.mutable_body());
  m_fArrived = false;
  m_fWelcomed = true;
  m_call->Read(&m_incoming, Mark(TagRead));
  return Received::Frame;
}

void Connection::Stream::Farewell(std::chrono::milliseconds limit) {
  const auto until = Clock::now() + limit;
  while (m_fWriting)
    if (!Turn(until)) return;
  if (!m_fStarted || m_fReadEnded) return;
  m_call->WritesDone(Mark(TagWritesDone));
  while (!m_fReadEnded) {
    if (m_fArrived) {
      m_fArrived = false;
      m_call->Read(&m_incoming, Mark(TagRead));
    }
    if (!Turn(until)) return;
  }
}

std::pair<Status, std::string> Connection::Stream::WhyEnded() {
  if (!m_fStarted) return {StatusCallLost, "was never called"};
  const auto until = Clock::now() + ReasonLimit;
  const bool fEnded = m_fReadEnded || m_fWriteEnded;
  if (fEnded && !m_fFinishAsked) {
    m_fFinishAsked = true;
    m_call->Finish(&m_status, Mark(TagFinish));
  }
  while (fEnded && !m_fFinished)
    if (!Turn(until)) break;
  if (!m_fFinished) return {StatusCallLost, m_fWelcomed ? "takes nothing more" : "does not answer"};
  const std::string strText = m_status.error_message();
  switch (m_status.error_code()) {
    case grpc::StatusCode::PERMISSION_DENIED:
    case grpc::StatusCode::UNAUTHENTICATED: return {automation::StatusAccessDenied, "refuses this client: " + strText};
    case grpc::StatusCode::RESOURCE_EXHAUSTED: return {StatusServerTooBusy, "is at a limit: " + strText};
    case grpc::StatusCode::UNAVAILABLE:
      if (!m_fWelcomed) return WhyDialFailed(m_fSecure, strText);
      return {StatusServerUnavailable, "has gone: " + strText};
    case grpc::StatusCode::OK: return {StatusCallLost, "has ended the connection"};
    default: return {StatusCallLost, "has broken off: " + strText};
  }
}

}  // namespace tarvik::remote
