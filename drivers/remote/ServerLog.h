#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <ostream>
#include <string>
#include <utility>

#include "remote/FileHandle.h"

namespace tarvik::remote {

enum class LogFormat { Text, Json };

/// What happened: the kind in one word, for programs, and the words for people. A plain text is a note.
struct LogEvent {
  LogEvent(std::string strText_) : strText(std::move(strText_)) {}  // NOLINT(google-explicit-constructor)
  LogEvent(const char *strText_) : strText(strText_) {}             // NOLINT(google-explicit-constructor)
  LogEvent(const char *strKind_, std::string strText_) : strKind(strKind_), strText(std::move(strText_)) {}
  operator const std::string &() const { return strText; }  // NOLINT(google-explicit-constructor)

  const char *strKind = "note";
  std::string strText;
};

/// One line for each thing that happened: time in UTC, who, text; or the same as an object of JSON. No character of a
/// client reaches a line that could control a terminal or begin another line. Any thread may write.
///
/// A line that cannot be written is counted. Each further one tries again, opening the file anew, and tells the gap
/// ahead of itself.
class ServerLog {
 public:
  /// The stream outlives the log.
  explicit ServerLog(std::ostream &out, LogFormat eFormat = LogFormat::Text) : m_pOut(&out), m_eFormat(eFormat) {}
  /// Appends to the file, which is made for its owner and group alone. RunTimeError 75 when it cannot be opened, or is
  /// a link.
  ServerLog(std::string strFile, LogFormat eFormat);

  void Write(const std::string &strWho, const LogEvent &event);
  /// Opens the file anew, after it was moved away.
  void Reopen();

 private:
  bool Open();
  bool Put(const std::string &strLines);
  std::string Line(const std::string &strWho, const LogEvent &event) const;

  std::mutex m_mutex;
  std::ostream *m_pOut = nullptr;
  const std::string m_strFile;
  const LogFormat m_eFormat;
  FileHandle m_file;
  std::size_t m_lngLost = 0;
  std::string m_strLostSince;
};

}  // namespace tarvik::remote
