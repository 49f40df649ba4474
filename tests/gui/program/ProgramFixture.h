#pragma once

#include <gmock/gmock.h>

#include <QAction>
#include <QLabel>
#include <QTest>
#include <memory>
#include <optional>

#include <QLineEdit>
#include <QTabWidget>

#include "MainWindow.h"
#include "PanelStart.h"
#include "PanelUser.h"
#include "RecordingHost.h"
#include "StandInDriver.h"
#include "WidgetEnvironment.h"
#include "instrument/clsInstrInterface.h"
#include "panel/TarvikGUI.h"

namespace tarvik::test {

/// The program's window between a recording host, which keeps all settings, and a stand-in driver.
class Program : public testing::Test {
 protected:
  Program() {
    gobjInstr().reset();
    QCoreApplication::setApplicationName(QStringLiteral("TarvikVI"));
    driver.Add("Alpha");
    host.settings[{"Config", "WorkWithBoxes"}] = "1";
  }
  ~Program() override {
    window.reset();
    gobjInstr().reset();
  }

  void Start(const std::optional<QString> &strServer = {}, const std::optional<std::string> &strDriver = {}) {
    window.reset();
    gobjInstr().reset();
    window = std::make_unique<MainWindow>(strServer, strDriver);
    ShowAndStart(*window);
  }
  void Take(const char *strAction) const {
    auto *action = window->findChild<QAction *>(QString::fromLatin1(strAction));
    ASSERT_TRUE(action) << strAction;
    action->trigger();
    LetPanelsStart();
  }
  bool Checked(const char *strAction) const {
    return window->findChild<QAction *>(QString::fromLatin1(strAction))->isChecked();
  }
  PanelUser User() const { return PanelUser(*window); }
  template <class T>
  T &Get(const char *strName) const {
    return User().Get<T>(strName);
  }
  std::string Title() const { return window->windowTitle().toStdString(); }
  std::string Message() const { return Get<QLabel>("lblMessage").text().toStdString(); }
  /// The addresses for which a driver was created since the last call; empty is this machine.
  std::vector<std::string> Created() {
    std::vector<std::string> arrServers;
    for (const std::string &strLine : driver.TakeTrace()) {
      if (!strLine.starts_with("create(")) continue;
      const std::size_t lngFrom = strLine.find('"', strLine.find(',')) + 1;
      arrServers.push_back(strLine.substr(lngFrom, strLine.find('"', lngFrom) - lngFrom));
    }
    return arrServers;
  }
  void StoreForInterface(const char *strAddress) { host.settings[{"LastUsed", "ServerURL"}] = strAddress; }
  std::string StoredForInterface() { return host.settings[{"LastUsed", "ServerURL"}]; }

  RecordingHost host;
  StandInDriver driver;
  std::unique_ptr<MainWindow> window;
};

}  // namespace tarvik::test
