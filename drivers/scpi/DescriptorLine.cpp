#include "scpi/DescriptorLine.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "scpi/Answer.h"

namespace tarvik::scpi {

namespace {

using Clock = std::chrono::steady_clock;

std::string Reason(int intError) { return std::strerror(intError); }
[[noreturn]] void FailWith(const std::string &strWhat) { throw driver::Failure(strWhat); }
std::string InWords(Milliseconds timeout) { return std::to_string(timeout.count()) + " ms"; }

/// poll that a signal does not end early. 0 when the time is over.
int PollUntil(pollfd &entry, Clock::time_point deadline) {
  for (;;) {
    const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now()).count();
    const int intReady = ::poll(&entry, 1, static_cast<int>(std::clamp<Milliseconds::rep>(left, 0, 1 << 30)));
    if (intReady >= 0 || errno != EINTR) return intReady;
  }
}

/// The answer ends with this line feed; the carriage return of instruments that end with both goes too.
void DropEnd(std::string &strAnswer, bool fReturnDivides) {
  if (fReturnDivides && strAnswer.ends_with('\r')) strAnswer.pop_back();
}

}  // namespace

void DescriptorLine::Close() {
  if (m_intDescriptor >= 0) ::close(m_intDescriptor);
  m_intDescriptor = -1;
}

bool DescriptorLine::WaitFor(short event, Deadline deadline) const {
  pollfd entry{m_intDescriptor, event, 0};
  const int intReady = PollUntil(entry, deadline);
  if (intReady < 0) FailWith(Reason(errno));
  return intReady > 0;
}

void DescriptorLine::Drain() {
  std::array<char, 4096> buffer;
  for (;;) {
    pollfd entry{m_intDescriptor, POLLIN, 0};
    if (PollUntil(entry, Clock::now()) <= 0) return;
    const auto count = ::read(m_intDescriptor, buffer.data(), buffer.size());
    if (count > 0 || (count < 0 && errno == EINTR)) continue;
    if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
    FailWith("the instrument has ended the connection");
  }
}

void DescriptorLine::Send(std::string_view strMessage, Milliseconds timeout) {
  Drain();
  const Deadline deadline = Clock::now() + timeout;
  const std::string strWhole = std::string(strMessage) + '\n';
  std::string_view strLeft = strWhole;
  while (!strLeft.empty()) {
    if (!WaitFor(POLLOUT, deadline)) FailWith("the message was not taken within " + InWords(timeout));
    // Only a socket raises a signal when nobody reads any more, and write has no flag against it.
    auto count = ::send(m_intDescriptor, strLeft.data(), strLeft.size(), MSG_NOSIGNAL);
    if (count < 0 && errno == ENOTSOCK) count = ::write(m_intDescriptor, strLeft.data(), strLeft.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) continue;
    if (count < 0) FailWith(Reason(errno));
    strLeft.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::string DescriptorLine::ReadSome(Deadline deadline, Milliseconds timeout) const {
  std::array<char, 4096> buffer;
  for (;;) {
    if (!WaitFor(POLLIN, deadline)) FailWith("no answer within " + InWords(timeout));
    const auto count = ::read(m_intDescriptor, buffer.data(), buffer.size());
    if (count > 0) return {buffer.data(), static_cast<std::size_t>(count)};
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) continue;
    FailWith(count < 0 ? Reason(errno) : "the instrument has ended the connection");
  }
}

std::string DescriptorLine::Receive(std::size_t most, Milliseconds timeout) {
  const Deadline deadline = Clock::now() + timeout;
  std::string strAnswer;
  AnswerScanner scanner;
  bool fLastDivides = false;
  for (;;) {
    // What stands behind the end was not asked for; the next Send drops what is still on its way.
    for (const char ch : ReadSome(deadline, timeout)) {
      const bool fDivides = scanner.Take(ch);
      if (fDivides && ch == '\n') {
        DropEnd(strAnswer, fLastDivides);
        return strAnswer;
      }
      if (strAnswer.size() == most) FailWith("the answer is longer than " + std::to_string(most) + " bytes");
      strAnswer += ch;
      fLastDivides = fDivides;
    }
  }
}

void DescriptorLine::Clear(Milliseconds timeout) {
  Close();
  Open(timeout);
}

// ---- Socket ----

namespace {

struct AddressList {
  addrinfo *pFirst = nullptr;
  ~AddressList() {
    if (pFirst) ::freeaddrinfo(pFirst);
  }
};

/// The connected socket, or -1 and the reason in errno.
int Connected(const addrinfo &place, Clock::time_point deadline) {
  const int intSocket = ::socket(place.ai_family, place.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, place.ai_protocol);
  if (intSocket < 0) return -1;
  int intError = 0;
  if (::connect(intSocket, place.ai_addr, place.ai_addrlen) != 0) {
    intError = errno;
    pollfd entry{intSocket, POLLOUT, 0};
    socklen_t size = sizeof intError;
    if (intError == EINPROGRESS) {
      if (PollUntil(entry, deadline) <= 0)
        intError = ETIMEDOUT;
      else if (::getsockopt(intSocket, SOL_SOCKET, SO_ERROR, &intError, &size) != 0)
        intError = errno;
    }
  }
  if (intError == 0) {
    // Messages are short and each waits for its answer.
    const int intOn = 1;
    ::setsockopt(intSocket, IPPROTO_TCP, TCP_NODELAY, &intOn, sizeof intOn);
    return intSocket;
  }
  ::close(intSocket);
  errno = intError;
  return -1;
}

}  // namespace

void SocketLine::Open(Milliseconds timeout) {
  if (IsOpen()) return;
  const Deadline deadline = Clock::now() + timeout;
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  AddressList places;
  if (const int intError = ::getaddrinfo(m_strHost.c_str(), m_strPort.c_str(), &hints, &places.pFirst); intError != 0)
    FailWith("the host is not known: " + std::string(::gai_strerror(intError)));
  int intReason = 0;
  for (const addrinfo *pPlace = places.pFirst; pPlace; pPlace = pPlace->ai_next) {
    if (const int intSocket = Connected(*pPlace, deadline); intSocket >= 0) return Take(intSocket);
    intReason = errno;
  }
  FailWith("no connection: " + Reason(intReason));
}

}  // namespace tarvik::scpi
