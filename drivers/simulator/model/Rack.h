#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <vector>

#include "simulator/model/RackFile.h"
#include "simulator/model/SimulatedInstrument.h"

namespace tarvik::simulator {

/// The instruments that the driver knows. One for the process: their state outlives every object and every session.
class Rack {
 public:
  /// Where a rack file may stand; the first one found counts, none means the default rack.
  explicit Rack(std::vector<std::filesystem::path> arrFiles) : m_arrFiles(std::move(arrFiles)) {}

  /// Looks for instruments for the first time; does nothing once that has worked. Raises RackFileError.
  void Load();
  /// Looks again: an instrument whose description is unchanged keeps its state, others come and go. With a bad file it
  /// raises RackFileError and leaves the rack as it was.
  void Refresh();

  Long Count() const;
  /// By number from 1, or by its exact name; null when there is none.
  std::shared_ptr<SimulatedInstrument> ByNumber(Long lngNumber) const;
  std::shared_ptr<SimulatedInstrument> ByName(std::string_view strName) const;

 private:
  std::vector<InstrumentDescription> ReadDescriptions() const;
  void Search();

  const std::vector<std::filesystem::path> m_arrFiles;
  mutable std::mutex m_mutex;
  bool m_fLoaded = false;
  std::vector<std::shared_ptr<SimulatedInstrument>> m_arrInstruments;
};

}  // namespace tarvik::simulator
