#include "scpi/simulator/Connection.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "scpi/simulator/Interpreter.h"

namespace tarvik::scpisim {

namespace {

constexpr std::size_t ReadBytes = 65536, EndlessBytes = 1 << 20;

bool IsQuery(const std::string &strMessage) { return strMessage.find('?') != strMessage.npos; }

/// With a byte in its middle that no message may have.
std::string Damaged(std::string strText) {
  if (!strText.empty()) strText[strText.size() / 2] = '\xFF';
  return strText;
}

bool WouldBlock() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }

}  // namespace

Connection::Connection(int intSocket, FaultPlan::Client client, std::size_t lngLongestMessage, Device &device)
    : m_intSocket(intSocket), m_client(client), m_device(device), m_framer(lngLongestMessage) {}

Connection::~Connection() { close(m_intSocket); }

std::optional<Connection::Clock::time_point> Connection::WakesAt() const {
  if (!m_strHeld.empty()) return m_releaseAt;
  if (m_next && m_strOutput.empty()) return m_device.BusyUntil();
  return std::nullopt;
}

void Connection::Receive() {
  std::array<char, ReadBytes> buffer;
  const ssize_t lngRead = recv(m_intSocket, buffer.data(), buffer.size(), 0);
  if (lngRead > 0) m_framer.Append({buffer.data(), static_cast<std::size_t>(lngRead)});
  if (lngRead == 0) m_fInputEnded = true;
  if (lngRead < 0 && !WouldBlock()) m_fFinished = true;
}

void Connection::Send() {
  while (!m_strOutput.empty() && !m_fFinished) {
    const ssize_t lngSent = send(m_intSocket, m_strOutput.data(), m_strOutput.size(), MSG_NOSIGNAL);
    if (lngSent < 0 && WouldBlock()) return;
    if (lngSent < 0)
      m_fFinished = true;
    else
      m_strOutput.erase(0, static_cast<std::size_t>(lngSent));
  }
  if (m_fEndsAfterOutput) m_fFinished = true;
}

void Connection::Work() {
  while (!m_fFinished) {
    Release();
    if (!m_strOutput.empty()) return;
    if (!m_next) m_next = m_framer.Next();
    if (!m_next || Clock::now() < m_device.BusyUntil()) break;
    const MessageFramer::Message message = *std::exchange(m_next, std::nullopt);
    Execute(message);
  }
  if (m_fInputEnded && !m_next && !m_fFinished) EndInput();
}

void Connection::Execute(const MessageFramer::Message &message) {
  if (!m_strHeld.empty()) {
    m_strHeld.clear();
    m_device.status.Report(ScpiFault{ScpiQueryInterrupted, {}});
  }
  if (message.fOverrun) {
    m_device.status.Report(ScpiFault{ScpiInputBufferOverrun, {}});
    return;
  }
  const Fault fault = m_device.faults.Next(m_client);
  std::string strAnswer = Answer(fault, message.strText);
  if (fault == Fault::Cut) {
    m_fFinished = true;
  } else if (fault == Fault::Half) {
    m_fEndsAfterOutput = true;
    if (strAnswer.empty()) m_fFinished = true;
  }
  if (!strAnswer.empty()) Hold(std::move(strAnswer));
}

std::string Connection::CarryOut(const std::string &strMessage) const {
  return Interpreter(m_device, m_client).Execute(strMessage);
}

std::string Connection::Answer(Fault fault, const std::string &strMessage) {
  if (fault == Fault::Cut || fault == Fault::Silence) return {};
  if (fault == Fault::Error) {
    m_device.status.Report(ScpiFault{ScpiHardwareError, "as ordered"});
    return {};
  }
  if (fault == Fault::Garbage && !IsQuery(strMessage)) return CarryOut(Damaged(strMessage));

  const std::string strRight = CarryOut(strMessage);
  const std::string strLast = std::exchange(m_strLastAnswer, strRight);
  if (strRight.empty() || fault == Fault::Mute) return {};
  switch (fault) {
    case Fault::Half: return strRight.substr(0, strRight.size() / 2);
    case Fault::Garbage: return Damaged(strRight) + '\n';
    case Fault::Endless: return std::string(EndlessBytes, '9') + '\n';
    case Fault::Stale: return (strLast.empty() ? "0" : strLast) + '\n' + strRight + '\n';
    default: return strRight + '\n';
  }
}

void Connection::Hold(std::string strAnswer) {
  m_strHeld = std::move(strAnswer);
  m_releaseAt = std::max(Clock::now() + m_device.answerDelay, m_device.BusyUntil());
}

void Connection::Release() {
  if (m_strHeld.empty() || Clock::now() < m_releaseAt) return;
  m_strOutput += std::exchange(m_strHeld, {});
  Send();
}

/// The client sends nothing more. A query that it began and did not end is never answered.
void Connection::EndInput() {
  if (m_fEndsAfterOutput) return;
  if (IsQuery(m_framer.Unfinished())) m_device.status.Report(ScpiFault{ScpiQueryUnterminated, {}});
  m_fEndsAfterOutput = true;
  if (m_strHeld.empty() && m_strOutput.empty()) m_fFinished = true;
}

}  // namespace tarvik::scpisim
