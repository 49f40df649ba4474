#include "simulator/model/Rack.h"

#include <fstream>
#include <iterator>

#include "simulator/model/SimulatedInstrument.h"

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

driver::Rack::Instruments Rack::Search(const Instruments &known) const {
  Instruments arrFound;
  for (InstrumentDescription &description : ReadDescriptions()) {
    std::shared_ptr<driver::Instrument> instrument;
    for (const auto &candidate : known)
      if (candidate->Description() == description) instrument = candidate;
    arrFound.push_back(instrument ? instrument : std::make_shared<SimulatedInstrument>(std::move(description)));
  }
  return arrFound;
}

}  // namespace tarvik::simulator
