#include "remote/ServerLog.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

#include "support/LogText.h"
#include "support/RunTimeError.h"

namespace tarvik::remote {

namespace {

std::string TimeText() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  const auto lngMilliseconds = static_cast<int>(duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char date[32], time[48];
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &utc);
  std::snprintf(time, sizeof time, "%s.%03dZ", date, lngMilliseconds);
  return time;
}

}  // namespace

ServerLog::ServerLog(std::string strFile, LogFormat eFormat) : m_strFile(std::move(strFile)), m_eFormat(eFormat) {
  if (!Open()) throw RunTimeError(ErrPathFileAccess, m_strFile + " cannot be written");
}

bool ServerLog::Open() {
  constexpr int Mode = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  m_file = FileHandle(open(m_strFile.c_str(), Mode, S_IRUSR | S_IWUSR | S_IRGRP));
  return static_cast<bool>(m_file);
}

void ServerLog::Reopen() {
  const std::lock_guard lock(m_mutex);
  if (!m_pOut) Open();
}

std::string ServerLog::Line(const std::string &strWho, const LogEvent &event) const {
  if (m_eFormat == LogFormat::Text) return TimeText() + " " + Escaped(strWho + ": " + event.strText) + "\n";
  return R"({"time":")" + TimeText() + R"(","who":)" + JsonString(strWho) + R"(,"event":)" + JsonString(event.strKind) +
         R"(,"text":)" + JsonString(event.strText) + "}\n";
}

bool ServerLog::Put(const std::string &strLines) {
  if (m_pOut) {
    m_pOut->clear();
    *m_pOut << strLines << std::flush;
    return m_pOut->good();
  }
  std::size_t lngWritten = 0;
  while (m_file && lngWritten < strLines.size()) {
    const ssize_t lngPart = write(m_file.Get(), strLines.data() + lngWritten, strLines.size() - lngWritten);
    if (lngPart < 0 && errno == EINTR) continue;
    if (lngPart <= 0) return false;
    lngWritten += static_cast<std::size_t>(lngPart);
  }
  return static_cast<bool>(m_file);
}

void ServerLog::Write(const std::string &strWho, const LogEvent &event) {
  const std::lock_guard lock(m_mutex);
  std::string strLines = Line(strWho, event);
  if (m_lngLost > 0) {
    if (!m_pOut) Open();
    const std::string strGap = std::to_string(m_lngLost) + " lines since " + m_strLostSince + " could not be written";
    // The line break ends what was left of the line that failed.
    strLines = "\n" + Line("log", {"gap", strGap}) + strLines;
  }
  if (Put(strLines)) {
    m_lngLost = 0;
  } else if (m_lngLost++ == 0) {
    m_strLostSince = TimeText();
  }
}

}  // namespace tarvik::remote
