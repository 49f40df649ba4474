#include "remote/ServerLog.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace tarvik::remote {

void ServerLog::Write(const std::string &strClient, const std::string &strText) {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t seconds = system_clock::to_time_t(now);
  const auto lngMilliseconds = static_cast<int>(duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char date[32], time[48];
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &utc);
  std::snprintf(time, sizeof time, "%s.%03dZ", date, lngMilliseconds);
  std::string strLine = strClient + ": " + strText;
  // Client-supplied text: control characters could forge log lines or send terminal escapes.
  std::ranges::replace_if(
      strLine, [](char ch) { return static_cast<unsigned char>(ch) < 0x20 || ch == 0x7F; }, '?');
  const std::lock_guard lock(m_mutex);
  m_out << time << ' ' << strLine << std::endl;
}

}  // namespace tarvik::remote
