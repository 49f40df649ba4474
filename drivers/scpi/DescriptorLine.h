#pragma once

#include "scpi/Line.h"

namespace tarvik::scpi {

/// A line over a file descriptor that can be waited for. Messages end with a line feed; one within quotes or a definite
/// block is part of the message.
class DescriptorLine : public Line {
 public:
  ~DescriptorLine() override { Close(); }
  DescriptorLine() = default;
  DescriptorLine(const DescriptorLine &) = delete;
  DescriptorLine &operator=(const DescriptorLine &) = delete;

  void Close() override;
  bool IsOpen() const override { return m_intDescriptor >= 0; }
  void Send(std::string_view strMessage, Milliseconds timeout) override;
  std::string Receive(std::size_t most, Milliseconds timeout) override;
  void Clear(Milliseconds timeout) override;

 protected:
  using Deadline = std::chrono::steady_clock::time_point;

  void Take(int intDescriptor) { m_intDescriptor = intDescriptor; }
  int Descriptor() const { return m_intDescriptor; }
  /// Reads and drops what is there.
  void Drain();

 private:
  /// Waits for poll's event; false when the time is over.
  bool WaitFor(short event, Deadline deadline) const;
  /// Reads what is there, waiting for it. Fails at the deadline and at the end of the line.
  std::string ReadSome(Deadline deadline, Milliseconds timeout) const;

  int m_intDescriptor = -1;
};

/// A TCP socket.
class SocketLine final : public DescriptorLine {
 public:
  SocketLine(std::string strHost, std::string strPort) : m_strHost(std::move(strHost)), m_strPort(std::move(strPort)) {}
  void Open(Milliseconds timeout) override;

 private:
  const std::string m_strHost, m_strPort;
};

}  // namespace tarvik::scpi
