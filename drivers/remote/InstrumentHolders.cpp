#include "remote/InstrumentHolders.h"

#include <ctime>

namespace tarvik::remote {

std::string TextOf(const Holder &holder) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(holder.since);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char strTime[32];
  std::strftime(strTime, sizeof strTime, "%Y-%m-%d %H:%M:%S UTC", &utc);
  return holder.strName + " at " + holder.strAddress + " since " + strTime;
}

std::optional<Holder> InstrumentHolders::Take(const std::string &strInstrument, const Holder &wanted) {
  const std::lock_guard lock(m_mutex);
  Entry &entry = m_held.try_emplace(strInstrument, Entry{wanted}).first->second;
  if (entry.holder.lngSession != wanted.lngSession) return entry.holder;
  ++entry.intOpenings;
  return std::nullopt;
}

void InstrumentHolders::Free(const std::string &strInstrument, std::uint64_t lngSession) {
  const std::lock_guard lock(m_mutex);
  const auto found = m_held.find(strInstrument);
  if (found == m_held.end() || found->second.holder.lngSession != lngSession) return;
  if (--found->second.intOpenings == 0) m_held.erase(found);
}

std::vector<InstrumentHolders::Held> InstrumentHolders::All() const {
  const std::lock_guard lock(m_mutex);
  std::vector<Held> arrHeld;
  for (const auto &[strInstrument, entry] : m_held) arrHeld.push_back({strInstrument, entry.holder});
  return arrHeld;
}

}  // namespace tarvik::remote
