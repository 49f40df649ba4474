#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "PanelStart.h"
#include "PanelUser.h"
#include "RecordingHost.h"
#include "automation/Activation.h"
#include "instrument/DriverCall.h"
#include "instrument/KolvenDriver.h"
#include "instrument/clsInstrInterface.h"

namespace tarvik::test {

/// A data folder of this process's own: nothing that the machine's user has installed is found, and rack files and
/// manifests written here come before those beside the libraries.
class PrivateDataFolder : public testing::Environment {
 public:
  static std::filesystem::path DriverFolder() { return Folder() / "tarvikvi/drivers"; }
  /// Writes a file of the driver folder.
  static void Write(const std::string &strName, const std::string &strText) {
    std::filesystem::create_directories(DriverFolder());
    std::ofstream(DriverFolder() / strName, std::ios::trunc) << strText;
  }
  static void Remove(const std::string &strName) { std::filesystem::remove(DriverFolder() / strName); }

  void SetUp() override {
    setenv("XDG_DATA_HOME", Folder().c_str(), 1);
    setenv("XDG_DATA_DIRS", (Folder() / "none").c_str(), 1);
  }
  void TearDown() override {
    std::error_code error;
    std::filesystem::remove_all(Folder(), error);
  }

 private:
  static std::filesystem::path Folder() {
    static const std::filesystem::path folder =
        std::filesystem::path(testing::TempDir()) / ("panel-data-" + std::to_string(getpid()));
    return folder;
  }
};

inline testing::Environment *const privateDataFolder =
    testing::AddGlobalTestEnvironment(std::make_unique<PrivateDataFolder>().release());

/// The instruments of the rack that these tests use; none of them takes its time.
inline constexpr const char *TestRack = R"(
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

/// A machine whose own driver hands back nothing, as long as the object lives: what makes the panel ask for a server.
class NothingOfItsOwn {
 public:
  NothingOfItsOwn() {
    automation::RegisterClass(kolven::DriverProgId, [] { return automation::Ref<automation::IUnknown>(); });
  }
  NothingOfItsOwn(const NothingOfItsOwn &) = delete;
  NothingOfItsOwn &operator=(const NothingOfItsOwn &) = delete;
  ~NothingOfItsOwn() { automation::RegisterClass(kolven::DriverProgId, {}); }
};

/// A panel over the simulated instruments, whose library is loaded through its manifest, between a recording host
/// and a user. With a server's address the instruments are the server's, and the user answers the panel's question
/// with it; the server has to have the data folder of this process.
class SimulatorSession {
 public:
  /// Keys and texts of the section "Config".
  using Settings = std::initializer_list<std::pair<std::string, std::string>>;

  explicit SimulatorSession(Settings settings = {}, const char *strRack = TestRack, std::string strServer = {})
      : m_strServer(std::move(strServer)) {
    gobjInstr().reset();
    gobjPanel() = nullptr;
    if (!m_strServer.empty()) {
      m_nothing.emplace();
      host.arrInputAnswers.push_back(m_strServer);
    }
    RenewRack(strRack);
    for (const auto &[strKey, strValue] : settings) host.settings[{"Config", strKey}] = strValue;
    NewPanel();
    Show();
  }
  SimulatorSession(const SimulatorSession &) = delete;
  SimulatorSession &operator=(const SimulatorSession &) = delete;
  ~SimulatorSession() {
    user.reset();
    panel.reset();
    gobjInstr().reset();
  }

  /// A panel that was never shown, and an instrument interface that was never connected.
  void NewPanel() {
    user.reset();
    panel.reset();
    gobjInstr().reset();
    panel = std::make_unique<TarvikGUI>();
    panel->resize(panel->sizeHint());
    user = std::make_unique<PanelUser>(*panel);
  }
  void Show() { ShowAndStart(*panel); }
  void Hide() { panel->hide(); }
  /// Opens the instrument by its check box.
  void Open(const std::string &strInstrument) {
    user->ShowPage(ePageInstr);
    user->Tick(user->RowOf(strInstrument));
  }
  static clsInstrInterface &Instr() { return *InstrInterface(); }
  const PanelUser *operator->() const { return user.get(); }

  automation::Ref<kolven::IDriverRoot> Root() const {
    return automation::Narrow<kolven::IDriverRoot>(automation::CreateObject(kolven::DriverProgId, m_strServer));
  }
  /// The instrument seen past the panel, through root and session objects of its own. It is open.
  automation::Ref<kolven::IInstrument> Instrument(const std::string &strName) const {
    const automation::String name(strName);
    kolven::AutomationVariant key{};
    key.vt = automation::VtString;
    key.bstrVal = name.Get();
    const auto list = Fetch(Root(), &kolven::IDriverRoot::GetInstruments);
    const auto instrument =
        automation::Narrow<kolven::IInstrument>(Fetch(list, &kolven::IInstrumentList::GetItem, key));
    automation::VariantBool fOpened = 0;
    Call(instrument, &kolven::IInstrument::Open, False, False, False, &fOpened);
    return instrument;
  }
  /// Every instrument leaves the rack and comes back as after power-up.
  void RenewRack(const char *strRack) const {
    PrivateDataFolder::Write("KolvenAtl.Kolven.rack", "");
    const auto list = Fetch(Root(), &kolven::IDriverRoot::GetInstruments);
    Call(list, &kolven::IInstrumentList::Refresh);
    PrivateDataFolder::Write("KolvenAtl.Kolven.rack", strRack);
    Call(list, &kolven::IInstrumentList::Refresh);
  }

  RecordingHost host;
  std::unique_ptr<TarvikGUI> panel;
  std::unique_ptr<PanelUser> user;

 private:
  const std::string m_strServer;
  std::optional<NothingOfItsOwn> m_nothing;
};

}  // namespace tarvik::test
