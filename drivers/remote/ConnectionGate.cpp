#include "remote/ConnectionGate.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/tcp.h>  // the kernel's tcp_info: that of netinet/tcp.h has no byte counts
#include <netdb.h>
#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include "remote/ServerAddress.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

constexpr int Backlog = 1024;
/// How often connections without a greeting are looked at, milliseconds. What they can send meanwhile is what they can
/// cost beyond the limit.
constexpr int TickMilliseconds = 50;
/// A connection whose client has been refused: time to read the reason.
constexpr std::chrono::seconds ReasonTime{1};
/// Receive buffers, bytes. What a client without a greeting has sent is parsed even when its connection is cut, so it
/// is kept small; later a whole message fits.
constexpr int EarlyBuffer = 32 * 1024, SessionBuffer = 1024 * 1024;
/// Keys of what is polled besides connections.
constexpr std::uint64_t WakeUpKey = ~std::uint64_t{0}, FirstListenerKey = WakeUpKey - 64;

std::pair<std::string, std::string> NamesOf(const sockaddr_storage &address) {
  char strText[INET6_ADDRSTRLEN] = "";
  if (address.ss_family == AF_INET) {
    const auto &in4 = reinterpret_cast<const sockaddr_in &>(address);
    inet_ntop(AF_INET, &in4.sin_addr, strText, sizeof strText);
    return {std::string(strText) + ":" + std::to_string(ntohs(in4.sin_port)), strText};
  }
  const auto &in6 = reinterpret_cast<const sockaddr_in6 &>(address);
  const std::string strPort = ":" + std::to_string(ntohs(in6.sin6_port));
  if (IN6_IS_ADDR_V4MAPPED(&in6.sin6_addr)) {
    inet_ntop(AF_INET, in6.sin6_addr.s6_addr + 12, strText, sizeof strText);
    return {strText + strPort, strText};
  }
  inet_ntop(AF_INET6, &in6.sin6_addr, strText, sizeof strText);
  std::string strAddress = strText;
  if (in6.sin6_scope_id != 0) strAddress += "%" + std::to_string(in6.sin6_scope_id);
  return {"[" + strAddress + "]" + strPort, strAddress};
}

std::uint64_t BytesReceived(int intDescriptor) {
  tcp_info info{};
  socklen_t lngSize = sizeof info;
  return getsockopt(intDescriptor, IPPROTO_TCP, TCP_INFO, &info, &lngSize) == 0 ? info.tcpi_bytes_received : 0;
}

std::uint16_t PortOf(int intSocket) {
  sockaddr_storage address{};
  socklen_t lngSize = sizeof address;
  getsockname(intSocket, reinterpret_cast<sockaddr *>(&address), &lngSize);
  return ntohs(address.ss_family == AF_INET ? reinterpret_cast<sockaddr_in &>(address).sin_port
                                            : reinterpret_cast<sockaddr_in6 &>(address).sin6_port);
}

void SetPort(sockaddr &address, std::uint16_t lngPort) {
  if (address.sa_family == AF_INET)
    reinterpret_cast<sockaddr_in &>(address).sin_port = htons(lngPort);
  else
    reinterpret_cast<sockaddr_in6 &>(address).sin6_port = htons(lngPort);
}

FileHandle ListeningSocket(const addrinfo &found, bool fBothFamilies) {
  FileHandle handle(socket(found.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!handle) return handle;
  // No SO_REUSEPORT: a second server could take part of the connections.
  const int intOn = 1, intOnlyOwn = fBothFamilies ? 0 : 1;
  setsockopt(handle.Get(), SOL_SOCKET, SO_REUSEADDR, &intOn, sizeof intOn);
  if (found.ai_family == AF_INET6) setsockopt(handle.Get(), IPPROTO_IPV6, IPV6_V6ONLY, &intOnlyOwn, sizeof intOnlyOwn);
  if (bind(handle.Get(), found.ai_addr, found.ai_addrlen) != 0 || listen(handle.Get(), Backlog) != 0) handle.Reset();
  return handle;
}

struct FreeAddresses {
  void operator()(addrinfo *pFound) const { freeaddrinfo(pFound); }
};

void Watch(int intPoll, int intDescriptor, std::uint32_t lngEvents, std::uint64_t lngKey) {
  epoll_event event{};
  event.events = lngEvents;
  event.data.u64 = lngKey;
  epoll_ctl(intPoll, EPOLL_CTL_ADD, intDescriptor, &event);
}

}  // namespace

std::string PeerName(const std::string &strTransportName) {
  std::string strName = strTransportName.substr(strTransportName.find(':') + 1);
  for (const auto &[strCode, strChar] : {std::pair{"%5B", "["}, std::pair{"%5D", "]"}, std::pair{"%25", "%"}})
    if (const auto at = strName.find(strCode); at != std::string::npos) strName.replace(at, 3, strChar);
  return strName;
}

ConnectionGate::ConnectionGate(const std::string &strHost, std::uint16_t lngPort, const GateLimits &limits,
                               ServerLog &log)
    : m_limits(limits),
      m_log(log),
      m_poll(epoll_create1(EPOLL_CLOEXEC)),
      m_wakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  Watch(m_poll.Get(), m_wakeUp.Get(), EPOLLIN, WakeUpKey);
  Listen(strHost, lngPort);
}

ConnectionGate::~ConnectionGate() { Close(); }

void ConnectionGate::Listen(const std::string &strHost, std::uint16_t lngPort) {
  const bool fAnyAddress = strHost == "0.0.0.0" || strHost == "::";
  addrinfo hints{};
  hints.ai_flags = AI_PASSIVE;
  hints.ai_socktype = SOCK_STREAM;
  std::string strNotFound;
  const auto bindAll = [&](const char *strAddress) {
    addrinfo *pFound = nullptr;
    const int intError = getaddrinfo(strAddress, std::to_string(lngPort).c_str(), &hints, &pFound);
    strNotFound = intError != 0 ? gai_strerror(intError) : "";
    const std::unique_ptr<addrinfo, FreeAddresses> addresses(pFound);
    for (const addrinfo *pNext = addresses.get(); pNext; pNext = pNext->ai_next) {
      SetPort(*pNext->ai_addr, m_lngPort ? m_lngPort : lngPort);
      FileHandle handle = ListeningSocket(*pNext, fAnyAddress);
      if (!handle) continue;
      m_lngPort = PortOf(handle.Get());
      m_listeners.push_back(std::move(handle));
    }
  };
  bindAll(fAnyAddress ? "::" : strHost.c_str());
  // A machine without IPv6.
  if (m_listeners.empty() && fAnyAddress) bindAll("0.0.0.0");
  if (m_listeners.empty())
    throw RunTimeError(ErrInvalidArgument, "The driver server cannot listen on " +
                                               ServerAddress{true, strHost, lngPort}.HostAndPort() + ": " +
                                               (strNotFound.empty() ? std::strerror(errno) : strNotFound));
}

void ConnectionGate::Open(Take take) {
  m_take = std::move(take);
  for (std::size_t i = 0; i < m_listeners.size(); ++i)
    Watch(m_poll.Get(), m_listeners[i].Get(), EPOLLIN, FirstListenerKey + i);
  m_thread = std::thread([this] { Run(); });
}

void ConnectionGate::Close() {
  {
    const std::lock_guard lock(m_mutex);
    m_fClosing = true;
  }
  Wake();
  if (m_thread.joinable()) m_thread.join();
  m_listeners.clear();
}

void ConnectionGate::Wake() const { eventfd_write(m_wakeUp.Get(), 1); }

/// How long nothing has to be done: while every connection has a session the thread sleeps.
int ConnectionGate::WaitMilliseconds() const {
  const std::lock_guard lock(m_mutex);
  const bool fAllServed =
      std::ranges::all_of(m_connections, [](const auto &entry) { return entry.second.lngSessions > 0; });
  return fAllServed ? -1 : TickMilliseconds;
}

void ConnectionGate::Run() {
  std::array<epoll_event, 64> events{};
  for (;;) {
    const int intCount = epoll_wait(m_poll.Get(), events.data(), static_cast<int>(events.size()), WaitMilliseconds());
    for (int i = 0; i < intCount; ++i) {
      const std::uint64_t lngKey = events[static_cast<std::size_t>(i)].data.u64;
      if (lngKey == WakeUpKey) {
        eventfd_t count = 0;
        eventfd_read(m_wakeUp.Get(), &count);
      } else if (lngKey >= FirstListenerKey) {
        Accept(m_listeners[lngKey - FirstListenerKey].Get());
      } else if ((events[static_cast<std::size_t>(i)].events & (EPOLLHUP | EPOLLERR)) != 0) {
        const std::lock_guard lock(m_mutex);
        NoteEnd(lngKey);
        Drop(lngKey);
      }
    }
    const std::lock_guard lock(m_mutex);
    if (m_fClosing) return;
    Tick(Clock::now());
  }
}

void ConnectionGate::Accept(int intListener) {
  // Not all at once, so that a flood does not keep the thread from its other work.
  for (int i = 0; i < 64; ++i) {
    sockaddr_storage address{};
    socklen_t lngSize = sizeof address;
    FileHandle accepted(
        accept4(intListener, reinterpret_cast<sockaddr *>(&address), &lngSize, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!accepted) return;
    const auto [strPeer, strAddress] = NamesOf(address);
    const std::lock_guard lock(m_mutex);
    if (MakeRoom(strAddress)) Admit(std::move(accepted), strPeer, strAddress);
  }
}

/// False when all that could give way have a session.
bool ConnectionGate::MakeRoom(const std::string &strAddress) {
  const auto lngOfAddress = static_cast<std::size_t>(
      std::ranges::count_if(m_connections, [&](const auto &entry) { return entry.second.strAddress == strAddress; }));
  const bool fAddressFull = lngOfAddress >= m_limits.lngEach;
  if (!fAddressFull && m_connections.size() < m_limits.lngAll) return true;
  // Keys grow: the first one found is the oldest.
  const auto oldest = std::ranges::find_if(m_connections, [&](const auto &entry) {
    return entry.second.lngSessions == 0 && (!fAddressFull || entry.second.strAddress == strAddress);
  });
  if (oldest == m_connections.end()) return false;
  Shut(oldest->second, "too many connections wait without a greeting", false);
  Drop(oldest->first);
  return true;
}

void ConnectionGate::Admit(FileHandle accepted, const std::string &strPeer, const std::string &strAddress) {
  const std::uint64_t lngKey = ++m_lngLastKey;
  Connected connection;
  connection.handle = FileHandle(fcntl(accepted.Get(), F_DUPFD_CLOEXEC, 0));
  if (!connection.handle) return;
  connection.strPeer = strPeer;
  connection.strAddress = strAddress;
  connection.deadline = Clock::now() + m_limits.greeting;
  if (const auto found = m_penalties.find(strAddress); found != m_penalties.end()) connection.passOn = found->second;
  setsockopt(connection.handle.Get(), SOL_SOCKET, SO_RCVBUF, &EarlyBuffer, sizeof EarlyBuffer);
  Watch(m_poll.Get(), connection.handle.Get(), EPOLLRDHUP | EPOLLET, lngKey);
  if (connection.passOn > Clock::now())
    connection.held = std::move(accepted);
  else
    m_take(accepted.Release());
  m_connections.emplace(lngKey, std::move(connection));
}

void ConnectionGate::Tick(Clock::time_point now) {
  std::erase_if(m_penalties, [&](const auto &entry) { return entry.second <= now; });
  for (auto &[lngKey, connection] : m_connections) {
    if (connection.lngSessions > 0 || connection.fShut) continue;
    if (connection.held && connection.passOn <= now) m_take(connection.held.Release());
    if (now > connection.deadline)
      Shut(connection, connection.fGreeted ? "without a session" : "no greeting in time", false);
    else if (!connection.fGreeted && BytesReceived(connection.handle.Get()) > m_limits.lngEarlyBytes)
      Shut(connection, "too much is sent before the greeting", true);
  }
}

/// The transport sees the end of the socket and lets go of its descriptor; the poll then tells of it.
void ConnectionGate::Shut(Connected &connection, const std::string &strWhy, bool fPenalty) {
  if (connection.fShut) return;
  connection.fShut = true;
  shutdown(connection.handle.Get(), SHUT_RDWR);
  if (!connection.fTold) m_log.Write("connection from " + connection.strPeer, {"handshake", "ended: " + strWhy});
  if (fPenalty) m_penalties[connection.strAddress] = Clock::now() + m_limits.penalty;
}

/// A handshake that fails is told by the transport, which does not know whose it was.
void ConnectionGate::NoteEnd(std::uint64_t lngKey) {
  const auto found = m_connections.find(lngKey);
  if (found == m_connections.end()) return;
  const Connected &connection = found->second;
  if (!connection.fGreeted && !connection.fTold && !connection.fShut)
    m_log.Write("connection from " + connection.strPeer, {"handshake", "ended before a greeting"});
}

void ConnectionGate::Drop(std::uint64_t lngKey) {
  const auto found = m_connections.find(lngKey);
  if (found == m_connections.end()) return;
  // The transport's descriptor is of the same socket, so closing ours would leave it in the poll.
  epoll_ctl(m_poll.Get(), EPOLL_CTL_DEL, found->second.handle.Get(), nullptr);
  m_connections.erase(found);
}

ConnectionGate::Connected *ConnectionGate::Find(const std::string &strPeer) {
  const auto found =
      std::ranges::find_if(m_connections, [&](const auto &entry) { return entry.second.strPeer == strPeer; });
  return found == m_connections.end() ? nullptr : &found->second;
}

void ConnectionGate::SessionBegan(const std::string &strPeer) {
  const std::lock_guard lock(m_mutex);
  if (Connected *pConnection = Find(strPeer)) {
    ++pConnection->lngSessions;
    pConnection->fGreeted = true;
    setsockopt(pConnection->handle.Get(), SOL_SOCKET, SO_RCVBUF, &SessionBuffer, sizeof SessionBuffer);
  }
}

void ConnectionGate::SessionEnded(const std::string &strPeer) {
  {
    const std::lock_guard lock(m_mutex);
    Connected *pConnection = Find(strPeer);
    if (!pConnection || --pConnection->lngSessions > 0) return;
    pConnection->deadline = Clock::now() + m_limits.greeting;
  }
  Wake();
}

void ConnectionGate::Refused(const std::string &strPeer) {
  const std::lock_guard lock(m_mutex);
  if (Connected *pConnection = Find(strPeer)) {
    pConnection->fTold = true;
    pConnection->deadline = std::min(pConnection->deadline, Clock::now() + ReasonTime);
  }
}

}  // namespace tarvik::remote
