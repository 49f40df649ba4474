#include "TcpRelay.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <vector>

namespace tarvik::remote {

namespace {

sockaddr_in Loopback(int intPort) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(intPort));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

}  // namespace

TcpRelay::TcpRelay(const std::string &strServerPort) : m_intServerPort(std::stoi(strServerPort)) {
  m_intListener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = Loopback(0);
  socklen_t lngSize = sizeof address;
  if (bind(m_intListener, reinterpret_cast<sockaddr *>(&address), lngSize) != 0 || listen(m_intListener, 16) != 0 ||
      getsockname(m_intListener, reinterpret_cast<sockaddr *>(&address), &lngSize) != 0)
    throw std::runtime_error("the relay cannot listen");
  m_lngPort = ntohs(address.sin_port);
  m_worker = std::jthread([this] { Work(); });
}

TcpRelay::~TcpRelay() {
  m_fEnding = true;
  m_worker.join();
  for (const Line &line : m_lines)
    for (const int intEnd : line.arrEnds) close(intEnd);
  close(m_intListener);
}

void TcpRelay::Pull(bool fToServer, bool fToClient) {
  m_fToServerPulled = fToServer;
  m_fToClientPulled = fToClient;
}

void TcpRelay::Work() {
  constexpr int LookUpMilliseconds = 10;
  while (!m_fEnding) {
    std::vector<pollfd> arrWaits{{m_intListener, POLLIN, 0}};
    for (const Line &line : m_lines)
      for (int from = 0; from < 2; ++from)
        arrWaits.push_back({line.arrFinished[from] ? -1 : line.arrEnds[from], POLLIN, 0});
    if (poll(arrWaits.data(), arrWaits.size(), LookUpMilliseconds) <= 0) continue;
    std::size_t wait = 1;
    for (Line &line : m_lines)
      for (int from = 0; from < 2; ++from)
        if (arrWaits[wait++].revents) Carry(line, from);
    if (arrWaits[0].revents) Accept();
  }
}

void TcpRelay::Accept() {
  const int intClient = accept4(m_intListener, nullptr, nullptr, SOCK_CLOEXEC);
  const int intServer = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = Loopback(m_intServerPort);
  if (connect(intServer, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
    close(intClient), close(intServer);
    return;
  }
  const int intAtOnce = 1;
  for (const int intEnd : {intClient, intServer})
    setsockopt(intEnd, IPPROTO_TCP, TCP_NODELAY, &intAtOnce, sizeof intAtOnce);
  m_lines.push_back({{intClient, intServer}});
}

void TcpRelay::Carry(Line &line, int intFrom) {
  char arrBytes[65536];
  const ssize_t lngCount = recv(line.arrEnds[intFrom], arrBytes, sizeof arrBytes, 0);
  if (lngCount <= 0) line.arrFinished[intFrom] = true;
  // Of an end that is gone nothing can be told either while the cable is out.
  if (intFrom == 0 ? m_fToServerPulled : m_fToClientPulled) line.arrDead[intFrom] = true;
  if (line.arrDead[intFrom]) return;
  const int intTo = line.arrEnds[1 - intFrom];
  if (lngCount <= 0) {
    shutdown(intTo, SHUT_WR);
    return;
  }
  for (ssize_t lngSent = 0; lngSent < lngCount;) {
    const ssize_t lngPart = send(intTo, arrBytes + lngSent, static_cast<std::size_t>(lngCount - lngSent), MSG_NOSIGNAL);
    if (lngPart <= 0) return;
    lngSent += lngPart;
  }
}

}  // namespace tarvik::remote
