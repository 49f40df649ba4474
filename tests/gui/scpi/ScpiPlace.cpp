#include "ScpiPlace.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "settings/SetupFormat.h"

namespace tarvik::test {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

fs::path ProfileFolder() { return PrivateDataFolder::DriverFolder().parent_path() / "scpi-profiles"; }
fs::path ConfigFolder() { return PrivateDataFolder::DriverFolder().parent_path() / "config"; }

/// Settings that only the bit's models lack; those of the VXI lines are words.
constexpr std::pair<Long, const char *> LackedSettings[] = {
    {eLacksTrailingEdge, "timing.coupled"},    {eLacksTrailingEdge, "timing.trailing"},
    {eLacksImpedance, "levels.impedance"},     {eLacksLoadCompensation, "levels.load"},
    {eLacksChannelMath, "levels.channelMath"}, {eLacksComplement, "levels.complement"},
    {eLacksVxiSource, "trglevels.vxiSource"},  {eLacksVxiEnable, "trglevels.vxiLine"}};

void WriteProfile(const Model &model) {
  Json profile{{"format", "tarvikvi-scpi-profile"}, {"version", 1},           {"extends", "scpi-99-pattern"},
               {"channels", model.lngChannels},     {"lacks", Json::array()}, {"settings", Json::object()}};
  for (const SettingWord &lack : SetupLackWords)
    if (!model.Has(lack.lngValue)) profile["lacks"].push_back(lack.strWord);
  for (const auto &[lngBit, strKey] : LackedSettings)
    if (!model.Has(lngBit)) profile["settings"][strKey] = nullptr;
  fs::create_directories(ProfileFolder());
  std::ofstream(ProfileFolder() / (std::string(model.strName) + ".json")) << profile.dump(2);
}

}  // namespace

ScpiPlace::ScpiPlace() {
  Json entries = Json::array();
  for (const Model &model : Models) {
    WriteProfile(model);
    Running program;
    program.process = std::make_unique<remote::ChildProcess>(
        std::vector<std::string>{SCPI_SIMULATOR, "--port", "0", "--model", model.strName});
    // "tarvik-scpi-simulator: VP-210 listening on 127.0.0.1:40123"
    const std::string strLine = program.process->ReadLine();
    program.strAddress = "TCPIP::127.0.0.1::" + strLine.substr(strLine.rfind(':') + 1) + "::SOCKET";
    entries.push_back({{"name", model.strName},
                       {"address", program.strAddress},
                       {"profile", model.strName},
                       {"log", Log().string()}});
    m_programs.emplace(model.strName, std::move(program));
  }
  const Json file{{"format", "tarvikvi-scpi-instruments"}, {"version", 1}, {"instruments", entries}};
  fs::create_directories(ConfigFolder() / "tarvikvi");
  fs::remove(Log());
  std::ofstream(ConfigFolder() / "tarvikvi/scpi-instruments.json") << file.dump(2);
  setenv("XDG_CONFIG_HOME", ConfigFolder().c_str(), 1);
  PrivateDataFolder::Write("KolvenAtl.Kolven.driver", std::string(SCPI_DRIVER) + "\n");
}

std::filesystem::path ScpiPlace::Log() { return ConfigFolder() / "line.log"; }

ScpiPlace::~ScpiPlace() { PrivateDataFolder::Remove("KolvenAtl.Kolven.driver"); }

std::string ScpiPlace::Listed(const std::string &strModel) const {
  return strModel + " (" + m_programs.at(strModel).strAddress + ")";
}

}  // namespace tarvik::test
