#pragma once

#include <optional>
#include <string>

#include "scpi/simulator/Device.h"
#include "scpi/simulator/MessageFramer.h"

namespace tarvik::scpisim {

/// A client on a non-blocking socket: its input buffer, its answers, and what goes wrong for it on purpose.
class Connection {
 public:
  using Clock = Device::Clock;

  /// Takes the socket over.
  Connection(int intSocket, FaultPlan::Client client, std::size_t lngLongestMessage, Device &device);
  Connection(const Connection &) = delete;
  Connection &operator=(const Connection &) = delete;
  ~Connection();

  int Socket() const { return m_intSocket; }
  /// While answers leave, or a message waits for the device, nothing is read: the client's own buffers fill up.
  bool WantsInput() const { return !m_fInputEnded && !m_next && m_strOutput.empty(); }
  bool WantsOutput() const { return !m_strOutput.empty(); }
  /// When something is to be done without the socket being ready.
  std::optional<Clock::time_point> WakesAt() const;
  bool IsFinished() const { return m_fFinished; }

  void Receive();
  void Send();
  /// Carries out what can be carried out now.
  void Work();
  /// The socket is broken.
  void Drop() { m_fFinished = true; }

 private:
  void Execute(const MessageFramer::Message &message);
  std::string CarryOut(const std::string &strMessage) const;
  /// What leaves instead of the right answer.
  std::string Answer(Fault fault, const std::string &strMessage);
  void Hold(std::string strAnswer);
  void Release();
  void EndInput();

  const int m_intSocket;
  const FaultPlan::Client m_client;
  Device &m_device;
  MessageFramer m_framer;
  std::optional<MessageFramer::Message> m_next;  ///< complete, not carried out yet
  std::string m_strHeld;                         ///< an answer that has not begun to leave
  Clock::time_point m_releaseAt{};
  std::string m_strOutput;  ///< on its way
  std::string m_strLastAnswer;
  bool m_fInputEnded = false;
  bool m_fEndsAfterOutput = false;
  bool m_fFinished = false;
};

}  // namespace tarvik::scpisim
