#include "remote/DriverService.h"

#include <malloc.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "remote/AnswerWriter.h"
#include "support/LogText.h"

namespace tarvik::remote {

namespace {

/// Limit for a client to read its answer.
constexpr std::chrono::seconds AnswerLimit{1};
/// How often sessions are looked at.
constexpr std::chrono::milliseconds WatchInterval{100};
/// What a session has to have sent for its end to be worth a look at the process's memory.
constexpr std::uint64_t TrimBytes = 1024ul * 1024;

}  // namespace

/// A session's place in the list.
class DriverService::Entered {
 public:
  Entered(DriverService &service, Session session) : m_service(service) {
    const std::lock_guard lock(m_service.m_mutex);
    session.lngId = ++m_service.m_lngLastSession;
    m_at = m_service.m_sessions.insert(m_service.m_sessions.end(), std::move(session));
    m_service.m_changed.notify_all();
  }
  Entered(const Entered &) = delete;
  Entered &operator=(const Entered &) = delete;
  ~Entered() {
    const bool fGreeted = m_at->fGreeted;
    if (fGreeted) m_service.m_gate.SessionEnded(PeerName(m_at->strPeer));
    const std::lock_guard lock(m_service.m_mutex);
    m_service.m_sessions.erase(m_at);
  }
  Session &operator*() { return *m_at; }

 private:
  DriverService &m_service;
  Sessions::iterator m_at;
};

/// Counts the frames at work, from the first byte read to the last answered; refuses when the server is stopping.
class DriverService::Work {
 public:
  explicit Work(DriverService &service) : m_service(service) {
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
  DriverService &m_service;
  bool m_fAllowed = false;
  bool m_fAnswering = false;
};

DriverService::DriverService(const ServerOptions &options, DriverCreator creator, const AccessList *pAccess,
                             ConnectionGate &gate, ServerLog &log)
    : m_options(options),
      m_creator(std::move(creator)),
      m_pAccess(pAccess),
      m_gate(gate),
      m_log(log),
      m_watching([this](const std::stop_token &stop) { Watch(stop); }) {}

grpc::Status DriverService::Connect(grpc::ServerContext *pContext, Stream *pStream) {
  const std::string strPeer = pContext->peer();
  std::string strName, strClient = "client at " + strPeer;
  ClientIdentity identity;
  if (m_pAccess) {
    identity = ClientIdentity::Of(*pContext);
    strName = identity.NamesText();
    strClient = strName + " at " + strPeer;
    if (const std::string strWhy = m_pAccess->Refusal(identity); !strWhy.empty()) {
      m_gate.Refused(PeerName(strPeer));
      return Refuse(strClient, grpc::StatusCode::PERMISSION_DENIED, strWhy);
    }
  }
  if (m_fStopping) return Refuse(strClient, grpc::StatusCode::UNAVAILABLE, "the server is stopping");
  if (const std::string strWhy = HindranceToEnter(strName); !strWhy.empty())
    return Refuse(strClient, grpc::StatusCode::RESOURCE_EXHAUSTED, strWhy);
  Entered entered(*this, {.pContext = pContext,
                          .identity = std::move(identity),
                          .strName = strName,
                          .strPeer = strPeer,
                          .begin = Clock::now(),
                          .since = std::chrono::system_clock::now()});
  return Serve(*entered, *pStream, strClient);
}

std::string DriverService::HindranceToEnter(const std::string &strName) const {
  if (strName.empty()) return {};
  const std::lock_guard lock(m_mutex);
  const auto lngOfName = static_cast<std::size_t>(std::ranges::count(m_sessions, strName, &Session::strName));
  if (lngOfName < m_options.lngSessionsOfName) return {};
  return "it serves no more than " + std::to_string(m_options.lngSessionsOfName) + " sessions of " + strName +
         " at a time";
}

/// To be called under the lock.
std::string DriverService::HindranceToGreet() const {
  const auto lngClients = static_cast<std::size_t>(std::ranges::count(m_sessions, true, &Session::fGreeted));
  if (lngClients < m_options.lngClients) return {};
  return "it serves no more than " + std::to_string(m_options.lngClients) + " clients at a time";
}

grpc::Status DriverService::Refuse(const std::string &strClient, grpc::StatusCode eCode, const std::string &strWhy) {
  m_log.Write(strClient, {"refused", "refused: " + strWhy});
  return {eCode, strWhy};
}

/// The first frame has come. Only from here on the session counts as one.
grpc::Status DriverService::Begin(Session &session, const std::string &strClient) {
  {
    const std::lock_guard lock(m_mutex);
    if (const std::string strWhy = HindranceToGreet(); !strWhy.empty())
      return Refuse(strClient, grpc::StatusCode::RESOURCE_EXHAUSTED, strWhy);
    session.fGreeted = true;
  }
  m_gate.SessionBegan(PeerName(session.strPeer));
  m_log.Write(strClient, {"connected", "connected"});
  return grpc::Status::OK;
}

grpc::Status DriverService::Serve(Session &entry, Stream &stream, const std::string &strClient) {
  SessionOwner owner;
  owner.self = {entry.lngId, entry.strName.empty() ? "a client" : entry.strName, PeerName(entry.strPeer), {}};
  owner.pHolders = m_options.fShare ? nullptr : &m_holders;
  ServerSession session(
      m_creator, m_options.limits, [&](const LogEvent &event) { m_log.Write(strClient, event); }, std::move(owner));
  grpc::Status status;
  try {
    status = Converse(entry, stream, session, strClient);
  } catch (const std::exception &error) {
    status = {grpc::StatusCode::INTERNAL, error.what()};
  }
  const std::string strCut = CutReason(entry);
  if (!strCut.empty()) status = {grpc::StatusCode::ABORTED, strCut};
  if (!entry.fGreeted) {
    if (!strCut.empty()) return Refuse(strClient, grpc::StatusCode::DEADLINE_EXCEEDED, strCut);
    return status;
  }
  {
    const std::lock_guard driver(m_driver);
    if (status.ok() && entry.pContext->IsCancelled()) m_log.Write(strClient, {"vanished", "vanished"});
    session.End();
  }
  // Gives the memory of large messages back to the system.
  if (entry.lngBytes > TrimBytes) malloc_trim(0);
  m_log.Write(strClient, {"disconnected", status.ok() ? "disconnected" : "ended: " + status.error_message()});
  return status;
}

grpc::Status DriverService::Converse(Session &entry, Stream &stream, ServerSession &session,
                                     const std::string &strClient) {
  std::optional<AnswerWriter> writer;
  ClientFrame frame;
  while (stream.Read(&frame)) {
    Work work(*this);
    if (!work.IsAllowed()) return {grpc::StatusCode::UNAVAILABLE, "the server is stopping"};
    if (!writer) {
      if (grpc::Status status = Begin(entry, strClient); !status.ok()) return status;
      writer.emplace(stream, m_options.heartbeat);
    }
    entry.lngBytes += frame.body().size();
    writer->Begin();
    std::string strAnswer;
    try {
      const std::lock_guard driver(m_driver);
      strAnswer = session.Handle(frame.body());
    } catch (const ProtocolError &error) {
      writer->End({});
      return {grpc::StatusCode::INVALID_ARGUMENT, error.what()};
    }
    work.BeginAnswer();
    if (!writer->End(std::move(strAnswer))) break;
  }
  return grpc::Status::OK;
}

void DriverService::Finish() {
  m_fStopping = true;
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [&] { return m_lngAtWork == m_lngAnswering; });
  m_changed.wait_for(lock, AnswerLimit, [&] { return m_lngAtWork == 0; });
}

std::size_t DriverService::Clients() const {
  const std::lock_guard lock(m_mutex);
  return static_cast<std::size_t>(std::ranges::count(m_sessions, true, &Session::fGreeted));
}

std::string DriverService::CutReason(const Session &session) const {
  const std::lock_guard lock(m_mutex);
  return session.strCut;
}

/// Ends a session from outside. To be called under the lock.
void DriverService::Cut(Session &session, const std::string &strWhy) {
  if (!session.strCut.empty()) return;
  session.strCut = strWhy;
  session.pContext->TryCancel();
}

void DriverService::Watch(const std::stop_token &stop) {
  std::unique_lock lock(m_mutex);
  while (!stop.stop_requested()) {
    if (m_sessions.empty())
      m_changed.wait(lock, stop, [&] { return !m_sessions.empty(); });
    else
      m_changed.wait_for(lock, stop, WatchInterval, [] { return false; });
    const auto now = Clock::now();
    for (Session &session : m_sessions)
      if (!session.fGreeted && now - session.begin > m_options.gate.greeting)
        Cut(session, "no greeting in time");
      else if (const std::string strWhy = m_pAccess ? m_pAccess->Refusal(session.identity) : ""; !strWhy.empty())
        Cut(session, strWhy);
  }
}

std::string DriverService::SessionLines() const {
  const std::lock_guard lock(m_mutex);
  std::string strLines;
  for (const Session &session : m_sessions)
    if (session.fGreeted)
      strLines += std::to_string(session.lngId) + "\t" +
                  Escaped(TextOf({session.lngId, session.strName.empty() ? "a client" : session.strName,
                                  PeerName(session.strPeer), session.since})) +
                  "\n";
  return strLines;
}

std::string DriverService::HolderLines() const {
  std::string strLines;
  for (const auto &held : m_holders.All())
    strLines += std::to_string(held.holder.lngSession) + "\t" + Escaped(held.strInstrument) + "\t" +
                Escaped(TextOf(held.holder)) + "\n";
  return strLines;
}

std::string DriverService::EndSession(const std::string &strNumber) {
  const std::lock_guard lock(m_mutex);
  for (Session &session : m_sessions)
    if (session.fGreeted && std::to_string(session.lngId) == strNumber) {
      Cut(session, "the administrator ended it");
      return "ended\n";
    }
  return "error: there is no session " + Escaped(strNumber) + "\n";
}

std::string DriverService::Administer(const std::string &strCommand) {
  if (strCommand == "sessions") return SessionLines();
  if (strCommand == "holders") return HolderLines();
  if (strCommand.starts_with("end ")) return EndSession(strCommand.substr(4));
  return "error: the commands are sessions, holders and end NUMBER\n";
}

}  // namespace tarvik::remote
