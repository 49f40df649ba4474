#include "DelayingRelay.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <deque>
#include <stdexcept>

namespace tarvik::remote {

namespace {

using Clock = std::chrono::steady_clock;

sockaddr_in Loopback(std::uint16_t lngPort) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(lngPort);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// What has been read and waits for its time.
struct Packet {
  Clock::time_point due;
  std::string strBytes;
};

void SendAll(int intTo, const std::string &strBytes) {
  for (std::size_t lngSent = 0; lngSent < strBytes.size();) {
    const ssize_t lngPart = send(intTo, strBytes.data() + lngSent, strBytes.size() - lngSent, MSG_NOSIGNAL);
    if (lngPart <= 0) return;
    lngSent += static_cast<std::size_t>(lngPart);
  }
}

/// Until something comes or the next packet is due; forever with none.
void Wait(int intFrom, const std::deque<Packet> &packets) {
  pollfd wait{intFrom, POLLIN, 0};
  timespec time{};
  if (!packets.empty()) {
    const auto left = std::max(packets.front().due - Clock::now(), Clock::duration::zero());
    time = {std::chrono::duration_cast<std::chrono::seconds>(left).count(),
            (std::chrono::duration_cast<std::chrono::nanoseconds>(left) % std::chrono::seconds(1)).count()};
  }
  ppoll(&wait, 1, packets.empty() ? nullptr : &time, nullptr);
}

}  // namespace

DelayingRelay::DelayingRelay(std::uint16_t lngServerPort, std::chrono::microseconds delay)
    : m_lngServerPort(lngServerPort),
      m_oneWay(delay / 2),
      m_intListener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address = Loopback(0);
  socklen_t lngSize = sizeof address;
  if (bind(m_intListener, reinterpret_cast<sockaddr *>(&address), lngSize) != 0 || listen(m_intListener, 64) != 0 ||
      getsockname(m_intListener, reinterpret_cast<sockaddr *>(&address), &lngSize) != 0)
    throw std::runtime_error("the relay cannot listen");
  m_lngPort = ntohs(address.sin_port);
  m_acceptor = std::jthread([this] { Accept(); });
}

DelayingRelay::~DelayingRelay() {
  shutdown(m_intListener, SHUT_RDWR);
  m_acceptor.join();
  for (const int intEnd : m_arrEnds) shutdown(intEnd, SHUT_RDWR);
  m_carriers.clear();
  for (const int intEnd : m_arrEnds) close(intEnd);
  close(m_intListener);
}

void DelayingRelay::Accept() {
  for (int intClient = 0; (intClient = accept4(m_intListener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
    const int intServer = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(m_lngServerPort);
    const int intAtOnce = 1;
    for (const int intEnd : {intClient, intServer}) {
      setsockopt(intEnd, IPPROTO_TCP, TCP_NODELAY, &intAtOnce, sizeof intAtOnce);
      m_arrEnds.push_back(intEnd);
    }
    if (connect(intServer, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) continue;
    m_carriers.emplace_back([this, intClient, intServer] { Carry(intClient, intServer); });
    m_carriers.emplace_back([this, intClient, intServer] { Carry(intServer, intClient); });
  }
}

void DelayingRelay::Carry(int intFrom, int intTo) const {
  std::deque<Packet> packets;
  char arrBytes[65536];
  for (bool fOpen = true; fOpen || !packets.empty();) {
    Wait(fOpen ? intFrom : -1, packets);
    const ssize_t lngCount = fOpen ? recv(intFrom, arrBytes, sizeof arrBytes, MSG_DONTWAIT) : -1;
    if (lngCount == 0) fOpen = false;
    if (lngCount > 0)
      packets.push_back({Clock::now() + m_oneWay, std::string(arrBytes, static_cast<std::size_t>(lngCount))});
    for (; !packets.empty() && packets.front().due <= Clock::now(); packets.pop_front())
      SendAll(intTo, packets.front().strBytes);
  }
  shutdown(intTo, SHUT_WR);
}

}  // namespace tarvik::remote
