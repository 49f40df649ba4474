#include "SimulatorSession.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "automation/AutomationString.h"

namespace tarvik::test {

namespace {

std::filesystem::path DataFolder() {
  static const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) / ("panel-data-" + std::to_string(getpid()));
  return folder;
}

}  // namespace

const char *const TestRack = R"(
[VP-210]
kind = slot
address = 24
slot = 3
model code = 0x0210
identity = Velmora,VP-210 Dual Pulse Generator,V210-00417,2.31
options = 010 VXI trigger, 020 Complement outputs

[VB-200]
kind = box
address = 9
lacks = 1024, 2048, 4096
identity = Velmora,VB-200 Bench Pulse Generator,B200-00756,3.02
options = 020 Complement outputs

[VP-110]
kind = slot
address = 32
slot = 4
model code = 0x0110
channels = 1
lacks = 4, 64, 128, 256, 512
identity = Velmora,VP-110 Pulse Generator,V110-01932,2.30
options = 010 VXI trigger

[VP-220]
kind = slot
address = 40
slot = 5
model code = 0x0220
lacks = 1024, 2048, 4096
identity = Velmora,VP-220 Dual Pulse Generator,V220-00088,2.31
options = 020 Complement outputs

[VP-250F]
kind = slot
address = 48
slot = 7
model code = 4095
lacks = 4, 16384
identity = Velmora,VP-250F Fast Pulse Generator,V250-00203,1.07
options = 010 VXI trigger, 030 Fast edges

[VP-210 reserved]
kind = slot
address = 56
slot = 9
model code = 0x0210
opens = no
)";

std::filesystem::path PrivateDataFolder::DriverFolder() { return DataFolder() / "tarvikvi/drivers"; }

void PrivateDataFolder::Write(const std::string &strName, const std::string &strText) {
  std::filesystem::create_directories(DriverFolder());
  std::ofstream(DriverFolder() / strName, std::ios::trunc) << strText;
}

void PrivateDataFolder::Remove(const std::string &strName) { std::filesystem::remove(DriverFolder() / strName); }

void PrivateDataFolder::SetUp() {
  setenv("XDG_DATA_HOME", DataFolder().c_str(), 1);
  setenv("XDG_DATA_DIRS", (DataFolder() / "none").c_str(), 1);
}

void PrivateDataFolder::TearDown() {
  std::error_code error;
  std::filesystem::remove_all(DataFolder(), error);
}

SimulatorSession::SimulatorSession(Settings settings, const char *strRack, std::string strServer)
    : m_strServer(std::move(strServer)) {
  gobjInstr().reset();
  gobjPanel() = nullptr;
  if (!m_strServer.empty()) {
    m_nothing.emplace([](const std::string &) { return nullptr; }, RegisteredDriver::Here);
    host.arrInputAnswers.push_back(m_strServer);
  }
  RenewRack(strRack);
  for (const auto &[strKey, strValue] : settings) host.settings[{"Config", strKey}] = strValue;
  NewPanel();
  Show();
}

SimulatorSession::~SimulatorSession() {
  user.reset();
  panel.reset();
  gobjInstr().reset();
}

void SimulatorSession::NewPanel() {
  user.reset();
  panel.reset();
  gobjInstr().reset();
  panel = std::make_unique<TarvikGUI>();
  panel->resize(panel->sizeHint());
  user = std::make_unique<PanelUser>(*panel);
}

void SimulatorSession::Show() { ShowAndStart(*panel); }

void SimulatorSession::Open(const std::string &strInstrument) {
  user->ShowPage(ePageInstr);
  user->Tick(user->RowOf(strInstrument));
}

automation::Ref<kolven::IDriverRoot> SimulatorSession::Root() const {
  return automation::Narrow<kolven::IDriverRoot>(automation::CreateObject(kolven::DriverProgId, m_strServer));
}

automation::Ref<kolven::IInstrument> SimulatorSession::Instrument(const std::string &strName) const {
  const automation::String name(strName);
  kolven::AutomationVariant key{};
  key.vt = automation::VtString;
  key.bstrVal = name.Get();
  const auto list = Fetch(Root(), &kolven::IDriverRoot::GetInstruments);
  const auto instrument = automation::Narrow<kolven::IInstrument>(Fetch(list, &kolven::IInstrumentList::GetItem, key));
  automation::VariantBool fOpened = 0;
  Call(instrument, &kolven::IInstrument::Open, False, False, False, &fOpened);
  return instrument;
}

void SimulatorSession::RenewRack(const char *strRack) const {
  PrivateDataFolder::Write("KolvenAtl.Kolven.rack", "");
  const auto list = Fetch(Root(), &kolven::IDriverRoot::GetInstruments);
  Call(list, &kolven::IInstrumentList::Refresh);
  PrivateDataFolder::Write("KolvenAtl.Kolven.rack", strRack);
  Call(list, &kolven::IInstrumentList::Refresh);
}

}  // namespace tarvik::test
