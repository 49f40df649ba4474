#pragma once

#include <filesystem>

#include "common/Rack.h"
#include "scpi/InstrumentsFile.h"
#include "scpi/ProfileFolders.h"

namespace tarvik::scpi {

/// The instruments that the user and the system have entered. Searching sends nothing: it reads the files. An
/// instrument is listed with its address behind its name, since the contract's addresses are numbers; it is found with
/// and without it.
class ScpiRack final : public driver::Rack {
 public:
  ScpiRack(std::vector<std::filesystem::path> arrFiles, ProfileFolders profiles)
      : m_arrFiles(std::move(arrFiles)), m_profiles(std::move(profiles)) {}

 private:
  Instruments Search(const Instruments &known) const override;
  bool IsCalled(const driver::Instrument &instrument, std::string_view strName) const override;

  const std::vector<std::filesystem::path> m_arrFiles;
  const ProfileFolders m_profiles;
};

}  // namespace tarvik::scpi
