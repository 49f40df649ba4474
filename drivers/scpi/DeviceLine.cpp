#include "scpi/DeviceLine.h"

#include <fcntl.h>
#include <linux/usb/tmc.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace tarvik::scpi {

namespace {

/// The kernel's driver takes no shorter time-out.
constexpr Milliseconds ShortestTimeout{100};

[[noreturn]] void FailWith(int intError) { throw driver::Failure(std::strerror(intError)); }

bool TellTimeout(int intDescriptor, Milliseconds timeout) {
  auto lngTimeout = static_cast<std::uint32_t>(std::max(timeout, ShortestTimeout).count());
  return ::ioctl(intDescriptor, USBTMC_IOCTL_SET_TIMEOUT, &lngTimeout) == 0;
}

}  // namespace

void DeviceLine::Open(Milliseconds timeout) {
  if (IsOpen()) return;
  const int intDescriptor = ::open(m_strPath.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (intDescriptor < 0) throw driver::Failure(m_strPath + ": " + std::strerror(errno));
  Take(intDescriptor);
  m_fUsbtmc = TellTimeout(intDescriptor, timeout);
}

void DeviceLine::SetKernelTimeout(Milliseconds timeout) const {
  if (!TellTimeout(Descriptor(), timeout)) FailWith(errno);
}

void DeviceLine::Send(std::string_view strMessage, Milliseconds timeout) {
  if (!m_fUsbtmc) return DescriptorLine::Send(strMessage, timeout);
  SetKernelTimeout(timeout);
  // One write is one message: the kernel's driver marks its last byte.
  const std::string strWhole = std::string(strMessage) + '\n';
  const auto count = ::write(Descriptor(), strWhole.data(), strWhole.size());
  if (count < 0) FailWith(errno);
  if (static_cast<std::size_t>(count) != strWhole.size()) throw driver::Failure("the message was not taken whole");
}

std::string DeviceLine::Receive(std::size_t most, Milliseconds timeout) {
  if (!m_fUsbtmc) return DescriptorLine::Receive(most, timeout);
  SetKernelTimeout(timeout);
  // A read ends with the instrument's message; one that fills the buffer has met a longer answer.
  std::string strAnswer(most + 2, '\0');
  const auto count = ::read(Descriptor(), strAnswer.data(), strAnswer.size());
  if (count < 0 && errno == ETIMEDOUT)
    throw driver::Failure("no answer within " + std::to_string(timeout.count()) + " ms");
  if (count < 0) FailWith(errno);
  strAnswer.resize(static_cast<std::size_t>(count));
  if (strAnswer.ends_with('\n')) strAnswer.pop_back();
  if (strAnswer.size() > most) throw driver::Failure("the answer is longer than " + std::to_string(most) + " bytes");
  return strAnswer;
}

void DeviceLine::Clear(Milliseconds timeout) {
  if (!IsOpen()) return Open(timeout);
  if (!m_fUsbtmc) return Drain();
  if (::ioctl(Descriptor(), USBTMC_IOCTL_CLEAR) != 0) FailWith(errno);
}

}  // namespace tarvik::scpi
