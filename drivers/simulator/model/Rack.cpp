#include "simulator/model/Rack.h"

#include <fstream>
#include <iterator>

namespace tarvik::simulator {

namespace fs = std::filesystem;

namespace {

/// Upper bound in bytes, against devices and wrong files.
constexpr std::streamsize LargestFile = 1 << 20;

std::string ReadWhole(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  std::string strText(static_cast<std::size_t>(LargestFile) + 1, '\0');
  if (!file || fs::is_directory(path)) throw RackFileError(path.string() + ":1: cannot be read");
  file.read(strText.data(), LargestFile + 1);
  if (file.bad()) throw RackFileError(path.string() + ":1: cannot be read");
  if (file.gcount() > LargestFile) throw RackFileError(path.string() + ":1: longer than a megabyte");
  strText.resize(static_cast<std::size_t>(file.gcount()));
  return strText;
}

}  // namespace

std::vector<InstrumentDescription> Rack::ReadDescriptions() const {
  for (const fs::path &path : m_arrFiles) {
    std::error_code error;
    if (fs::exists(path, error)) return ParseRack(ReadWhole(path), path.string());
  }
  return DefaultRack();
}

void Rack::Search() {
  std::vector<std::shared_ptr<SimulatedInstrument>> arrFound;
  for (InstrumentDescription &description : ReadDescriptions()) {
    std::shared_ptr<SimulatedInstrument> instrument;
    for (const auto &known : m_arrInstruments)
      if (known->Description() == description) instrument = known;
    arrFound.push_back(instrument ? instrument : std::make_shared<SimulatedInstrument>(std::move(description)));
  }
  m_arrInstruments = std::move(arrFound);
}

void Rack::Load() {
  const std::lock_guard lock(m_mutex);
  if (m_fLoaded) return;
  Search();
  m_fLoaded = true;
}

void Rack::Refresh() {
  const std::lock_guard lock(m_mutex);
  Search();
}

Long Rack::Count() const {
  const std::lock_guard lock(m_mutex);
  return static_cast<Long>(m_arrInstruments.size());
}

std::shared_ptr<SimulatedInstrument> Rack::ByNumber(Long lngNumber) const {
  const std::lock_guard lock(m_mutex);
  if (lngNumber < 1 || lngNumber > static_cast<Long>(m_arrInstruments.size())) return nullptr;
  return m_arrInstruments[static_cast<std::size_t>(lngNumber - 1)];
}

std::shared_ptr<SimulatedInstrument> Rack::ByName(std::string_view strName) const {
  const std::lock_guard lock(m_mutex);
  for (const auto &instrument : m_arrInstruments)
    if (instrument->Description().strName == strName) return instrument;
  return nullptr;
}

}  // namespace tarvik::simulator
