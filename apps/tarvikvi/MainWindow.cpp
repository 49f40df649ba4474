#include "MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QTime>
#include <algorithm>

#include "DriverMenu.h"
#include "EditMenu.h"
#include "Kept.h"
#include "PanelArea.h"
#include "ServerDialog.h"
#include "SetupFiles.h"
#include "instrument/clsInstrInterface.h"
#include "panel/TarvikGUI.h"
#include "platform/QtHost.h"
#include "support/Host.h"

namespace tarvik {

namespace {

constexpr const char *WindowSection = "Window", *PlaceKey = "Place";
constexpr const char *ViewSection = "View", *ZoomKey = "Zoom", *TypingKey = "TypingReplacesNumber", *MarksKey = "Marks";

ServerList Servers(const std::optional<QString> &strForThisRun) {
  EnsureQtHost();
  ServerList servers;
  if (strForThisRun) servers.UseOnce(*strForThisRun);
  return servers;
}

}  // namespace

MainWindow::MainWindow(const std::optional<QString> &strServerForThisRun,
                       const std::optional<std::string> &strDriverForThisRun)
    : m_servers(Servers(strServerForThisRun)),
      m_area(new PanelArea(this)),
      m_setups(new SetupFiles(*this, *m_area)),
      m_lblMessage(new QLabel) {
  setObjectName(QStringLiteral("MainWindow"));
  setCentralWidget(m_area);
  m_lblMessage->setObjectName(QStringLiteral("lblMessage"));
  m_lblMessage->setTextFormat(Qt::PlainText);
  statusBar()->addWidget(m_lblMessage, 1);
  MakeMenus(strDriverForThisRun);
  connect(m_setups, &SetupFiles::TitleChanged, this, &MainWindow::ShowTitle);
  m_statusConnection =
      InstrInterface()->StatusMessage.ConnectScoped([this](const std::string &strStatus) { TakeStatus(strStatus); });
  HandServerOver();
  ShowConnection(false);
  RestoreView();
}

TarvikGUI &MainWindow::Panel() const { return m_area->Panel(); }

// ---- Menus ----

void MainWindow::MakeMenus(const std::optional<std::string> &strDriverForThisRun) {
  QMenu *file = menuBar()->addMenu(tr("&File"));
  m_setups->AddTo(*file);
  QAction *quit = file->addAction(tr("&Quit"), this, &QWidget::close);
  quit->setObjectName(QStringLiteral("actionQuit"));
  // Not every desktop has a standard key for it, and those that have one may have another.
  QList<QKeySequence> keys{QKeySequence(Qt::CTRL | Qt::Key_Q)};
  for (const QKeySequence &key : QKeySequence::keyBindings(QKeySequence::Quit))
    if (!keys.contains(key)) keys << key;
  quit->setShortcuts(keys);
  m_edit = new EditMenu(menuBar());
  FollowPanel();
  MakeInstrumentsMenu(strDriverForThisRun);
  MakeViewMenu();
  AddAction(*menuBar()->addMenu(tr("&Help")), "actionAbout", tr("&About TarvikVI"), &MainWindow::ShowAbout);
}

QAction *MainWindow::AddAction(QMenu &menu, const char *strName, const QString &text, void (MainWindow::*slot)()) {
  QAction *action = menu.addAction(text, this, slot);
  action->setObjectName(QString::fromLatin1(strName));
  return action;
}

void MainWindow::MakeInstrumentsMenu(const std::optional<std::string> &strDriverForThisRun) {
  // The letters of the panel's pages and buttons stay free for them.
  QMenu &menu = *menuBar()->addMenu(tr("In&struments"));
  AddAction(menu, "actionConnectAgain", tr("&Connect again"), &MainWindow::ConnectAgain);
  AddAction(menu, "actionServerAddress", tr("Server &address..."), &MainWindow::AskForServer);
  const auto *drivers = new DriverMenu(menu, strDriverForThisRun, [this] { return MayEndSession(); });
  connect(drivers, &DriverMenu::Chosen, this, &MainWindow::Reconnect);
  menu.addSeparator();
  m_setups->AddCompareTo(menu);
  menu.addSeparator();
  AddAction(menu, "actionAllOutputsOff", tr("All &outputs off"), &MainWindow::AllOutputsOff)
      ->setShortcut(QKeySequence(Qt::Key_F12));
}

void MainWindow::MakeViewMenu() {
  QMenu &menu = *menuBar()->addMenu(tr("&View"));
  // On many keyboards the plus is a shifted equals sign, and people press the key without Shift.
  AddAction(menu, "actionLarger", tr("&Larger"), &MainWindow::Larger)
      ->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
  AddAction(menu, "actionSmaller", tr("&Smaller"), &MainWindow::Smaller)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Minus));
  m_actFit = AddAction(menu, "actionFit", tr("&Fit to window"), &MainWindow::FitToWindow);
  m_actFit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_0));
  m_actFit->setCheckable(true);
  menu.addSeparator();
  m_actTyping = AddAction(menu, "actionTyping", tr("&Typing replaces the number"), &MainWindow::TakeTyping);
  m_actTyping->setCheckable(true);
  m_actMarks = AddAction(menu, "actionMarks", tr("&Mark what differs from the instrument"), &MainWindow::TakeMarks);
  m_actMarks->setCheckable(true);
}

void MainWindow::ShowAbout() {
  QMessageBox box(this);
  box.setObjectName(QStringLiteral("AboutBox"));
  box.setWindowTitle(tr("About TarvikVI"));
  box.setIconPixmap(windowIcon().pixmap(64, 64));
  box.setText(tr("<b>TarvikVI %1</b><p>Front panel for pulse generators with one or two channels.</p>")
                  .arg(QApplication::applicationVersion()));
  box.setInformativeText(
      tr("Toolkit: Qt %1 (built with %2)\nPlatform: %3")
          .arg(QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR), QSysInfo::prettyProductName()));
  box.exec();
}

// ---- View ----

QSize MainWindow::SizeOfPanel() const {
  const int bars = menuBar()->sizeHint().height() + statusBar()->sizeHint().height();
  return (m_area->sizeHint() + QSize(0, bars)).boundedTo(screen()->availableSize());
}

void MainWindow::RestoreView() {
  m_area->SetZoom(QString::fromStdString(Kept(ViewSection, ZoomKey, {})).toInt());
  m_actFit->setChecked(m_area->Zoom() == PanelArea::FitZoom);
  m_actTyping->setChecked(Kept(ViewSection, TypingKey, {}) == "1");
  m_area->SetTypingReplacesNumber(m_actTyping->isChecked());
  m_actMarks->setChecked(Kept(ViewSection, MarksKey, "1") != "0");
  m_area->SetMarks(m_actMarks->isChecked());
  resize(SizeOfPanel());
  const std::string strPlace = Kept(WindowSection, PlaceKey, {});
  restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(strPlace)));
}

void MainWindow::Larger() {
  m_area->ZoomIn();
  TakeZoom();
}

void MainWindow::Smaller() {
  m_area->ZoomOut();
  TakeZoom();
}

void MainWindow::FitToWindow() {
  m_area->SetZoom(PanelArea::FitZoom);
  TakeZoom();
}

void MainWindow::TakeZoom() {
  const bool fFits = m_area->Zoom() == PanelArea::FitZoom;
  m_actFit->setChecked(fFits);
  Keep(ViewSection, ZoomKey, std::to_string(m_area->Zoom()));
  // A window of free size goes along with the size that was chosen, and stays on its screen.
  if (fFits || isMaximized() || isFullScreen()) return;
  resize(SizeOfPanel());
  const QRect room = screen()->availableGeometry();
  const QSize spare = (room.size() - frameGeometry().size()).expandedTo(QSize(0, 0));
  const auto held = [](int at, int from, int free) { return std::clamp(at, from, from + free); };
  const QPoint place(held(x(), room.x(), spare.width()), held(y(), room.y(), spare.height()));
  if (place != pos()) move(place);
}

void MainWindow::TakeTyping() {
  m_area->SetTypingReplacesNumber(m_actTyping->isChecked());
  Keep(ViewSection, TypingKey, m_actTyping->isChecked() ? "1" : "0");
}

void MainWindow::TakeMarks() {
  m_area->SetMarks(m_actMarks->isChecked());
  Keep(ViewSection, MarksKey, m_actMarks->isChecked() ? "1" : "0");
}

// ---- Connection ----

void MainWindow::ConnectAgain() {
  if (MayEndSession()) Reconnect();
}

void MainWindow::AskForServer() {
  ServerDialog dialog(m_servers, this);
  if (dialog.exec() != QDialog::Accepted || !MayEndSession()) return;
  m_servers.Choose(dialog.Address());
  Reconnect();
}

bool MainWindow::MayEndSession() {
  if (!InstrInterface()->IsOnline(True)) return true;
  const BoxAnswer answer = TheHost().MsgBox(
      tr("Connecting ends the session with the instrument.\r\nWhat was not uploaded is lost. Connect all the same?")
          .toStdString(),
      BoxIcon::Question, BoxButtons::YesNo, AppTitle);
  return answer == BoxAnswer::Yes;
}

void MainWindow::Reconnect() {
  Tell({});
  HandServerOver();
  m_area->RenewPanel();
  FollowPanel();
  m_setups->WatchPanel();
  ShowConnection(false);
}

void MainWindow::FollowPanel() {
  m_edit->Follow(Panel());
  connect(&Panel(), &TarvikGUI::outputRunsWithOthers, this, [this](const QString &text) {
    Tell(tr("%1: %2.").arg(QTime::currentTime().toString(QStringLiteral("hh:mm:ss")), text));
  });
}

void MainWindow::HandServerOver() {
  try {
    m_servers.HandOver();
  } catch (const RunTimeError &error) {
    TheHost().MsgBox(tr("Unable to save the server address: ").toStdString() + error.Description(),
                     BoxIcon::Exclamation, BoxButtons::Ok, AppTitle);
  }
}

void MainWindow::TakeStatus(const std::string &strStatus) {
  // Only the panel's question for an address leads to this text; what the user answered there is a choice like any
  // other.
  static constexpr std::string_view Entered = "Connected to ";
  if (strStatus.starts_with(Entered)) m_servers.Choose(QString::fromStdString(strStatus.substr(Entered.size())));
  ShowConnection(InstrInterface()->IsConnected());
}

void MainWindow::ShowConnection(bool fConnected) {
  m_fConnected = fConnected;
  ShowTitle();
}

void MainWindow::ShowTitle() {
  const QString place = Place();
  setWindowTitle(m_setups->TitlePart() + QApplication::applicationName() + QStringLiteral(" - ") +
                 (m_fConnected ? place : tr("%1 (not connected)").arg(place)));
  setWindowModified(Panel().IsSetupModified());
}

QString MainWindow::Place() const {
  const QString place = ServerList::NameOf(m_servers.Current());
  const QString driver = DriverMenu::Current();
  return driver.isEmpty() || !m_servers.Current().isEmpty() ? place : tr("%1, driver %2").arg(place, driver);
}

bool MainWindow::event(QEvent *event) {
  // A start that fails tells so in a box; when the user has read it, the window says how to go on.
  if (event->type() == QEvent::WindowUnblocked)
    QMetaObject::invokeMethod(this, &MainWindow::TellIfNotConnected, Qt::QueuedConnection);
  return QMainWindow::event(event);
}

void MainWindow::TellIfNotConnected() {
  const bool fConnected = InstrInterface()->IsConnected();
  ShowConnection(fConnected);
  if (fConnected) return;
  // To connect anew begins with fresh pages, which is no advice for somebody whose changes wait on them.
  const QString way = Panel().IsConnectionLost()
                          ? tr("Changes stay on the pages: Refresh connects again, then tick the instrument.")
                          : tr("Instruments > Connect again tries anew.");
  Tell(tr("Not connected to %1. %2").arg(Place(), way));
}

// ---- Outputs ----

void MainWindow::AllOutputsOff() {
  const std::shared_ptr<clsInstrInterface> instr = InstrInterface();
  if (!instr->IsOnline(True)) {
    Tell(tr("No instrument is open: no output was switched."));
    return;
  }
  const QString channels = instr->IsSingleChannel() ? tr("channel 1") : tr("channels 1 and 2");
  const QString time = QTime::currentTime().toString(QStringLiteral("hh:mm:ss"));
  if (Panel().AllOutputsOff())
    Tell(tr("All outputs of %1 were switched off at %2.").arg(channels, time));
  else
    Tell(tr("Not every output could be switched off at %1. Look at the instrument.").arg(time));
}

void MainWindow::Tell(const QString &text) { m_lblMessage->setText(text); }

void MainWindow::closeEvent(QCloseEvent *event) {
  if (!m_setups->MayClose()) {
    event->ignore();
    return;
  }
  Keep(WindowSection, PlaceKey, saveGeometry().toBase64().toStdString());
  QMainWindow::closeEvent(event);
}

}  // namespace tarvik
