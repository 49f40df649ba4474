#pragma once

#include <mutex>
#include <ostream>
#include <string>

namespace tarvik::remote {

/// One line for each thing that happened: time in UTC, client, text. Control characters are written as
/// question marks. Any thread may write.
class ServerLog {
 public:
  /// The stream outlives the log.
  explicit ServerLog(std::ostream &out) : m_out(out) {}
  void Write(const std::string &strClient, const std::string &strText);

 private:
  std::mutex m_mutex;
  std::ostream &m_out;
};

}  // namespace tarvik::remote
