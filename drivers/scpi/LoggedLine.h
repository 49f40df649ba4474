#pragma once

#include <filesystem>
#include <fstream>

#include "scpi/Line.h"

namespace tarvik::scpi {

/// Writes down what goes over another line, one entry a message with the time: ">" to the instrument, "<" from it, "!"
/// for what failed. Bytes that are no printable characters stand as \xNN, and long messages are cut. The file is made
/// so that only this user can read it; a log that cannot be written stops no instrument.
class LoggedLine final : public Line {
 public:
  LoggedLine(std::unique_ptr<Line> line, std::string strAddress, const std::filesystem::path &path);

  void Open(Milliseconds timeout) override;
  void Close() override;
  bool IsOpen() const override { return m_line->IsOpen(); }
  void Send(std::string_view strMessage, Milliseconds timeout) override;
  std::string Receive(std::size_t most, Milliseconds timeout) override;
  void Clear(Milliseconds timeout) override;

 private:
  void Write(char chDirection, std::string_view strText);
  /// Runs one step of the line and writes down why it failed.
  template <class Step>
  auto Watched(Step &&step);

  const std::unique_ptr<Line> m_line;
  const std::string m_strAddress;
  std::ofstream m_file;
};

}  // namespace tarvik::scpi
