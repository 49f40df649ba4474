#pragma once

#include <QMainWindow>
#include <optional>
#include <string>

#include "ServerList.h"
#include "support/Event.h"

class QAction;
class QLabel;

namespace tarvik {

class EditMenu;
class PanelArea;
class SetupFiles;
class TarvikGUI;

/// A host as any other: a window with the control on it, a menu, a list of servers to connect to, and a memory of its
/// place on the screen and of its view.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// With an address it connects there until the program ends, without storing it; empty is this machine.
  /// The same for the name of a driver of this machine; empty is the driver without a name.
  explicit MainWindow(const std::optional<QString> &strServerForThisRun = {},
                      const std::optional<std::string> &strDriverForThisRun = {});

  TarvikGUI &Panel() const;

  void ConnectAgain();
  void AskForServer();
  void AllOutputsOff();
  void ShowAbout();

 protected:
  void closeEvent(QCloseEvent *event) override;
  bool event(QEvent *event) override;

 private:
  void MakeMenus(const std::optional<std::string> &strDriverForThisRun);
  void MakeInstrumentsMenu(const std::optional<std::string> &strDriverForThisRun);
  void MakeViewMenu();
  QAction *AddAction(QMenu &menu, const char *strName, const QString &text, void (MainWindow::*slot)());
  QSize SizeOfPanel() const;
  void RestoreView();
  void Larger();
  void Smaller();
  void FitToWindow();
  void TakeZoom();
  void TakeTyping();
  void TakeMarks();

  bool MayEndSession();
  void Reconnect();
  void FollowPanel();
  void HandServerOver();
  void TakeStatus(const std::string &strStatus);
  void ShowConnection(bool fConnected);
  void ShowTitle();
  /// The server, or this machine and the driver that was chosen.
  QString Place() const;
  void TellIfNotConnected();
  void Tell(const QString &text);

  ServerList m_servers;
  PanelArea *m_area;
  SetupFiles *m_setups;
  bool m_fConnected = false;
  QLabel *m_lblMessage;
  EditMenu *m_edit = nullptr;
  QAction *m_actFit = nullptr;
  QAction *m_actTyping = nullptr;
  QAction *m_actMarks = nullptr;
  Event<const std::string &>::Connection m_statusConnection;
};

}  // namespace tarvik
