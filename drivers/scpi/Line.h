#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

#include "common/Failure.h"
#include "scpi/Address.h"

namespace tarvik::scpi {

using Milliseconds = std::chrono::milliseconds;

/// The line to an instrument: whole messages go out and come in. Everything that fails raises driver::Failure with the
/// reason alone ("no answer within 5000 ms"); after a failure the state of the line is unknown until Clear.
class Line {
 public:
  virtual ~Line() = default;

  /// Does nothing on an open line.
  virtual void Open(Milliseconds timeout) = 0;
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;

  /// Sends one message, to which the line adds what ends it. What an instrument said unasked before is dropped.
  virtual void Send(std::string_view strMessage, Milliseconds timeout) = 0;
  /// One message of the instrument without its end, of at most `most` bytes.
  virtual std::string Receive(std::size_t most, Milliseconds timeout) = 0;
  /// Device clear: neither side has anything left of what was said before. A line that has no such command is closed
  /// and opened again.
  virtual void Clear(Milliseconds timeout) = 0;
};

/// The line for an address. It is not open.
std::unique_ptr<Line> MakeLine(const Address &address);

}  // namespace tarvik::scpi
