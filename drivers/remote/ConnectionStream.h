#pragma once

#include <grpcpp/grpcpp.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "remote/Connection.h"
#include "remote/Session.grpc.pb.h"

namespace tarvik::remote {

/// The transport's stream. Its completion queue is polled on the caller's thread, so that a call needs no thread
/// switch and every wait has a time-out.
class Connection::Stream {
 public:
  enum class Received { Frame, Nothing, End };
  using Clock = std::chrono::steady_clock;

  Stream(const ServerAddress &address, const ClientCredentials *pCredentials);
  ~Stream();
  Stream(const Stream &) = delete;
  Stream &operator=(const Stream &) = delete;

  /// Hands a frame to the transport; waits at most `limit` for the one before it. False when the stream is at its end.
  bool Send(std::string strBody, std::chrono::milliseconds limit);
  /// The next frame of the server, or nothing until then.
  Received Receive(std::string &strBody, Clock::time_point until);
  /// Tells the server that no more comes and waits until it has ended its side.
  void Farewell(std::chrono::milliseconds limit);
  void Cancel() { m_context.TryCancel(); }
  /// Status and text of a stream at its end.
  std::pair<Status, std::string> WhyEnded();

 private:
  enum Tag : std::intptr_t { TagStart = 1, TagWrite, TagRead, TagWritesDone, TagFinish };

  bool Start(Clock::time_point until);
  /// Waits for one completion; false when the time is over.
  bool Turn(Clock::time_point until);
  /// The queue's tags are pointers that nobody follows.
  static void *Mark(Tag eTag) { return reinterpret_cast<void *>(eTag); }  // NOLINT(performance-no-int-to-ptr)

  const bool m_fSecure;
  const std::shared_ptr<grpc::Channel> m_channel;
  const std::unique_ptr<DriverSession::Stub> m_stub;
  grpc::ClientContext m_context;
  grpc::CompletionQueue m_queue;
  std::unique_ptr<grpc::ClientAsyncReaderWriter<ClientFrame, ServerFrame>> m_call;
  ServerFrame m_incoming;
  ClientFrame m_outgoing;
  grpc::Status m_status;
  bool m_fStarted = false;
  bool m_fStartDone = false;
  bool m_fWriting = false;
  bool m_fArrived = false;
  bool m_fReadEnded = false;
  bool m_fWriteEnded = false;
  bool m_fFinishAsked = false;
  bool m_fFinished = false;
  bool m_fWelcomed = false;
};

}  // namespace tarvik::remote
