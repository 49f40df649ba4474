#include "scpi/simulator/Server.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "support/RunTimeError.h"

namespace tarvik::scpisim {

namespace {

using AddressList = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

[[noreturn]] void RefuseAddress(const std::string &strAddress, const std::string &strReason) {
  throw RunTimeError(ErrPathFileAccess, "cannot listen on " + strAddress + ": " + strReason);
}

AddressList Resolve(const ServerOptions &options, const std::string &strAddress) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
  addrinfo *pList = nullptr;
  const int intError = getaddrinfo(options.strHost.c_str(), std::to_string(options.intPort).c_str(), &hints, &pList);
  if (intError != 0) RefuseAddress(strAddress, gai_strerror(intError));
  return {pList, &freeaddrinfo};
}

/// The listening socket, or -1 with errno.
int ListenAt(const addrinfo &address) {
  const int intSocket = socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (intSocket < 0) return -1;
  const int intOn = 1;
  setsockopt(intSocket, SOL_SOCKET, SO_REUSEADDR, &intOn, sizeof intOn);
  if (bind(intSocket, address.ai_addr, address.ai_addrlen) == 0 && listen(intSocket, SOMAXCONN) == 0) return intSocket;
  const int intError = errno;
  close(intSocket);
  errno = intError;
  return -1;
}

std::string AddressOf(int intSocket) {
  sockaddr_storage address{};
  socklen_t lngLength = sizeof address;
  char host[NI_MAXHOST], port[NI_MAXSERV];
  auto *pAddress = reinterpret_cast<sockaddr *>(&address);
  if (getsockname(intSocket, pAddress, &lngLength) != 0 ||
      getnameinfo(pAddress, lngLength, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) != 0)
    return {};
  return (address.ss_family == AF_INET6 ? "[" + std::string(host) + "]" : std::string(host)) + ":" + port;
}

}  // namespace

Server::Server(const ServerOptions &options, Device &device) : m_options(options), m_device(device) { Listen(); }

Server::~Server() { close(m_intListener); }

void Server::Listen() {
  const std::string strAddress = m_options.strHost + ":" + std::to_string(m_options.intPort);
  const AddressList addresses = Resolve(m_options, strAddress);
  for (const addrinfo *pAddress = addresses.get(); pAddress && m_intListener < 0; pAddress = pAddress->ai_next)
    m_intListener = ListenAt(*pAddress);
  if (m_intListener < 0) RefuseAddress(strAddress, std::generic_category().message(errno));
  m_strAddress = AddressOf(m_intListener);
}

void Server::Accept() {
  const int intSocket = accept4(m_intListener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (intSocket < 0) {
    // Out of descriptors the listener would stay ready: it waits until a client has gone.
    m_fAccepts = errno != EMFILE && errno != ENFILE && errno != ENOBUFS && errno != ENOMEM;
    return;
  }
  if (m_arrConnections.size() >= m_options.lngClients) {
    close(intSocket);
    return;
  }
  const int intOn = 1;
  setsockopt(intSocket, IPPROTO_TCP, TCP_NODELAY, &intOn, sizeof intOn);
  m_arrConnections.push_back(
      std::make_unique<Connection>(intSocket, ++m_lastClient, m_options.lngLongestMessage, m_device));
}

/// Until the first connection has something to do by itself; -1 for none. Rounded up, so that nobody wakes too early.
int Server::MillisecondsToSleep() const {
  std::optional<Connection::Clock::time_point> first;
  for (const auto &connection : m_arrConnections)
    if (const auto wakes = connection->WakesAt()) first = first ? std::min(*first, *wakes) : *wakes;
  if (!first) return -1;
  const auto sleep = std::chrono::ceil<std::chrono::milliseconds>(*first - Connection::Clock::now());
  return std::max(0, static_cast<int>(sleep.count()));
}

void Server::Run(int intStop) {
  std::vector<pollfd> arrPolled;
  while (true) {
    const short intAccept = m_fAccepts ? POLLIN : 0;
    arrPolled = {{intStop, POLLIN, 0}, {m_intListener, intAccept, 0}};
    for (const auto &connection : m_arrConnections) {
      const int intEvents = (connection->WantsInput() ? POLLIN : 0) | (connection->WantsOutput() ? POLLOUT : 0);
      arrPolled.push_back({connection->Socket(), static_cast<short>(intEvents), 0});
    }
    if (poll(arrPolled.data(), arrPolled.size(), MillisecondsToSleep()) < 0 && errno != EINTR)
      throw RunTimeError(ErrPathFileAccess, "poll: " + std::generic_category().message(errno));
    if (arrPolled[0].revents != 0) return;

    for (std::size_t lngAt = 0; lngAt < m_arrConnections.size(); ++lngAt) {
      Connection &connection = *m_arrConnections[lngAt];
      const int intEvents = arrPolled[lngAt + 2].revents;
      if (intEvents & POLLIN) connection.Receive();
      if (intEvents & POLLOUT) connection.Send();
      if ((intEvents & (POLLERR | POLLHUP | POLLNVAL)) && !(intEvents & POLLIN)) connection.Drop();
      connection.Work();
    }
    const auto lngGone =
        std::erase_if(m_arrConnections, [](const auto &connection) { return connection->IsFinished(); });
    if (lngGone > 0) m_fAccepts = true;
    // Each client comes first in turn: one that always has a message ready would keep a slow instrument to itself.
    if (!m_arrConnections.empty())
      std::rotate(m_arrConnections.begin(), m_arrConnections.begin() + 1, m_arrConnections.end());
    if (arrPolled[1].revents & POLLIN) Accept();
  }
}

}  // namespace tarvik::scpisim
