#pragma once

#include <filesystem>
#include <vector>

#include "common/Rack.h"
#include "simulator/model/RackFile.h"

namespace tarvik::simulator {

/// The simulated instruments. Searching again, an instrument whose description is unchanged keeps its state, others
/// come and go; a bad file raises RackFileError.
class Rack final : public driver::Rack {
 public:
  /// Where a rack file may stand; the first one found counts, none means the default rack.
  explicit Rack(std::vector<std::filesystem::path> arrFiles) : m_arrFiles(std::move(arrFiles)) {}

 private:
  std::vector<InstrumentDescription> ReadDescriptions() const;
  Instruments Search(const Instruments &known) const override;

  const std::vector<std::filesystem::path> m_arrFiles;
};

}  // namespace tarvik::simulator
