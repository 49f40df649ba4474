#include "scpi/LoggedLine.h"

#include <fcntl.h>
#include <unistd.h>

#include <ctime>

namespace tarvik::scpi {

namespace {

/// Bytes of a message that are written down.
constexpr std::size_t LongestEntry = 4096;

std::string Printable(std::string_view strText) {
  constexpr const char *Digits = "0123456789abcdef";
  std::string strPrintable;
  for (const char ch : strText.substr(0, LongestEntry)) {
    const auto code = static_cast<unsigned char>(ch);
    if (code >= 0x20 && code < 0x7F)
      strPrintable += ch;
    else
      strPrintable += {'\\', 'x', Digits[code >> 4], Digits[code & 15]};
  }
  if (strText.size() > LongestEntry) strPrintable += "... (" + std::to_string(strText.size()) + " bytes)";
  return strPrintable;
}

std::string TimeNow() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto milliseconds = std::chrono::duration_cast<Milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm parts{};
  ::gmtime_r(&seconds, &parts);
  char text[40];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
  const std::string strFraction = std::to_string(1000 + milliseconds).substr(1);
  return std::string(text, length) + "." + strFraction + "Z";
}

}  // namespace

LoggedLine::LoggedLine(std::unique_ptr<Line> line, std::string strAddress, const std::filesystem::path &path)
    : m_line(std::move(line)), m_strAddress(std::move(strAddress)) {
  const int intFile = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (intFile < 0) return;
  ::close(intFile);
  m_file.open(path, std::ios::app | std::ios::binary);
}

void LoggedLine::Write(char chDirection, std::string_view strText) {
  m_file << TimeNow() << ' ' << m_strAddress << ' ' << chDirection << ' ' << Printable(strText) << std::endl;
}

template <class Step>
auto LoggedLine::Watched(Step &&step) {
  try {
    return step();
  } catch (const driver::Failure &failure) {
    Write('!', failure.what());
    throw;
  }
}

void LoggedLine::Open(Milliseconds timeout) {
  if (IsOpen()) return;
  Watched([&] { m_line->Open(timeout); });
  Write('>', "(connected)");
}

void LoggedLine::Close() {
  if (IsOpen()) Write('>', "(closed)");
  m_line->Close();
}

void LoggedLine::Send(std::string_view strMessage, Milliseconds timeout) {
  Write('>', strMessage);
  Watched([&] { m_line->Send(strMessage, timeout); });
}

std::string LoggedLine::Receive(std::size_t most, Milliseconds timeout) {
  std::string strAnswer = Watched([&] { return m_line->Receive(most, timeout); });
  Write('<', strAnswer);
  return strAnswer;
}

void LoggedLine::Clear(Milliseconds timeout) {
  Write('>', "(device clear)");
  Watched([&] { m_line->Clear(timeout); });
}

}  // namespace tarvik::scpi
