#include "common/Rack.h"

namespace tarvik::driver {

void Rack::Load() {
  const std::lock_guard lock(m_mutex);
  if (m_fLoaded) return;
  m_arrInstruments = Search(m_arrInstruments);
  m_fLoaded = true;
}

void Rack::Refresh() {
  const std::lock_guard lock(m_mutex);
  m_arrInstruments = Search(m_arrInstruments);
}

Long Rack::Count() const {
  const std::lock_guard lock(m_mutex);
  return static_cast<Long>(m_arrInstruments.size());
}

std::shared_ptr<Instrument> Rack::ByNumber(Long lngNumber) const {
  const std::lock_guard lock(m_mutex);
  if (lngNumber < 1 || lngNumber > static_cast<Long>(m_arrInstruments.size())) return nullptr;
  return m_arrInstruments[static_cast<std::size_t>(lngNumber - 1)];
}

std::shared_ptr<Instrument> Rack::ByName(std::string_view strName) const {
  const std::lock_guard lock(m_mutex);
  for (const auto &instrument : m_arrInstruments)
    if (IsCalled(*instrument, strName)) return instrument;
  return nullptr;
}

}  // namespace tarvik::driver
