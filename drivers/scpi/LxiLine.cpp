#include "scpi/LxiLine.h"

#include <lxi.h>

#include <chrono>

#include "scpi/DescriptorLine.h"
#include "scpi/LxiLibrary.h"

namespace tarvik::scpi {

namespace {

/// The service by which every VXI-11 link begins.
constexpr const char *PortMapper = "111";

int Count(Milliseconds timeout) { return static_cast<int>(timeout.count()); }

}  // namespace

void LxiLine::Open(Milliseconds timeout) {
  if (IsOpen()) return;
  // The library waits for a host that is away as long as the system does, not only until the deadline.
  SocketLine(m_strHost, PortMapper).Open(timeout);
  RequireLxiLibrary();
  m_intLink = ::lxi_connect(m_strHost.c_str(), 0, m_strDevice.c_str(), Count(timeout), VXI11);
  if (m_intLink < 0) throw driver::Failure("no connection by VXI-11");
}

void LxiLine::Close() {
  if (IsOpen()) ::lxi_disconnect(m_intLink);
  m_intLink = -1;
}

void LxiLine::Send(std::string_view strMessage, Milliseconds timeout) {
  const std::string strWhole = std::string(strMessage) + '\n';
  if (::lxi_send(m_intLink, strWhole.data(), static_cast<int>(strWhole.size()), Count(timeout)) < 0)
    throw driver::Failure("the message was not taken within " + std::to_string(timeout.count()) + " ms");
}

std::string LxiLine::Receive(std::size_t most, Milliseconds timeout) {
  std::string strAnswer(most + 2, '\0');
  const int intCount = ::lxi_receive(m_intLink, strAnswer.data(), static_cast<int>(strAnswer.size()), Count(timeout));
  if (intCount < 0)
    throw driver::Failure("no answer of at most " + std::to_string(most) + " bytes within " +
                          std::to_string(timeout.count()) + " ms");
  strAnswer.resize(static_cast<std::size_t>(intCount));
  if (strAnswer.ends_with('\n')) strAnswer.pop_back();
  if (strAnswer.size() > most) throw driver::Failure("the answer is longer than " + std::to_string(most) + " bytes");
  return strAnswer;
}

void LxiLine::Clear(Milliseconds timeout) {
  Close();
  Open(timeout);
}

}  // namespace tarvik::scpi
