#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "PanelStart.h"
#include "PanelUser.h"
#include "RecordingHost.h"
#include "RegisteredDriver.h"
#include "automation/Activation.h"
#include "instrument/DriverCall.h"
#include "instrument/KolvenDriver.h"
#include "instrument/clsInstrInterface.h"
#include "platform/CommandButton.h"

namespace tarvik::test {

/// A data folder of this process's own: nothing that the machine's user has installed is found, and rack files and
/// manifests written here come before those beside the libraries.
class PrivateDataFolder : public testing::Environment {
 public:
  static std::filesystem::path DriverFolder();
  /// Writes a file of the driver folder.
  static void Write(const std::string &strName, const std::string &strText);
  static void Remove(const std::string &strName);

  void SetUp() override;
  void TearDown() override;
};

inline testing::Environment *const privateDataFolder =
    testing::AddGlobalTestEnvironment(std::make_unique<PrivateDataFolder>().release());

/// The instruments of the rack that these tests use; none of them takes its time.
extern const char *const TestRack;

/// A panel over the simulated instruments, whose library is loaded through its manifest, between a recording host
/// and a user. With a server's address the instruments are the server's, and the user answers the panel's question
/// with it; the server has to have the data folder of this process.
class SimulatorSession {
 public:
  /// Keys and texts of the section "Config".
  using Settings = std::initializer_list<std::pair<std::string, std::string>>;

  explicit SimulatorSession(Settings settings = {}, const char *strRack = TestRack, std::string strServer = {});
  SimulatorSession(const SimulatorSession &) = delete;
  SimulatorSession &operator=(const SimulatorSession &) = delete;
  ~SimulatorSession();

  /// A panel that was never shown, and an instrument interface that was never connected.
  void NewPanel();
  void Show();
  void Hide() { panel->hide(); }
  /// Opens the instrument by its check box.
  void Open(const std::string &strInstrument);
  Boolean ButtonEnabled(const char *strName) const { return user->Get<CommandButton>(strName).Enabled(); }
  static clsInstrInterface &Instr() { return *InstrInterface(); }
  const PanelUser *operator->() const { return user.get(); }

  automation::Ref<kolven::IDriverRoot> Root() const;
  /// The instrument seen past the panel, through root and session objects of its own. It is open.
  automation::Ref<kolven::IInstrument> Instrument(const std::string &strName) const;
  /// Every instrument leaves the rack and comes back as after power-up.
  void RenewRack(const char *strRack) const;

  RecordingHost host;
  std::unique_ptr<TarvikGUI> panel;
  std::unique_ptr<PanelUser> user;

 private:
  const std::string m_strServer;
  /// Without instruments of this machine's own the panel asks for a server.
  std::optional<RegisteredDriver> m_nothing;
};

}  // namespace tarvik::test
