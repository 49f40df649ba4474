#include "SetupFiles.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include "Kept.h"
#include "PanelArea.h"
#include "panel/TarvikGUI.h"
#include "support/Host.h"

namespace tarvik {

namespace {

constexpr const char *SetupsSection = "Setups";
constexpr qsizetype MostRecent = 6;

std::string RecentKey(qsizetype number) { return "Recent" + std::to_string(number + 1); }

}  // namespace

SetupFiles::SetupFiles(QMainWindow &window, PanelArea &area) : QObject(&window), m_window(window), m_area(area) {
  for (qsizetype i = 0; i < MostRecent; ++i) {
    const QString strFile = QString::fromStdString(Kept(SetupsSection, RecentKey(i), {}));
    if (!strFile.isEmpty()) m_arrRecent << strFile;
  }
  m_window.setAcceptDrops(true);
  qApp->installEventFilter(this);
  WatchPanel();
}

// ---- Menus ----

void SetupFiles::AddTo(QMenu &file) {
  AddAction(file, "actionOpenSetup", tr("&Open setup..."), &SetupFiles::Open)->setShortcut(QKeySequence::Open);
  m_mnuRecent = file.addMenu(tr("&Recent setups"));
  m_mnuRecent->setObjectName(QStringLiteral("menuRecentSetups"));
  AddAction(file, "actionSaveSetup", tr("&Save setup"), &SetupFiles::Save)->setShortcut(QKeySequence::Save);
  AddAction(file, "actionSaveSetupAs", tr("Save setup &as..."), &SetupFiles::SaveAs)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
  file.addSeparator();
  ShowRecent();
}

void SetupFiles::AddCompareTo(QMenu &menu) {
  AddAction(menu, "actionCompare", tr("Co&mpare settings..."), &SetupFiles::Compare)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
}

QAction *SetupFiles::AddAction(QMenu &menu, const char *strName, const QString &strText, void (SetupFiles::*slot)()) {
  QAction *action = menu.addAction(strText, this, slot);
  action->setObjectName(QString::fromLatin1(strName));
  return action;
}

void SetupFiles::ShowRecent() {
  m_mnuRecent->clear();
  m_mnuRecent->setEnabled(!m_arrRecent.isEmpty());
  for (const QString &strFile : m_arrRecent) {
    // An ampersand of the name is no access key.
    QAction *action =
        m_mnuRecent->addAction(QDir::toNativeSeparators(strFile).replace(QLatin1Char('&'), QStringLiteral("&&")));
    connect(action, &QAction::triggered, this, [this, strFile] { OpenFile(strFile); });
  }
}

void SetupFiles::Remember(const QString &strFile) {
  m_arrRecent.removeAll(strFile);
  m_arrRecent.prepend(strFile);
  m_arrRecent = m_arrRecent.mid(0, MostRecent);
  for (qsizetype i = 0; i < MostRecent; ++i)
    Keep(SetupsSection, RecentKey(i), i < m_arrRecent.size() ? m_arrRecent[i].toStdString() : "");
  ShowRecent();
}

void SetupFiles::WatchPanel() {
  connect(&m_area.Panel(), &TarvikGUI::setupFileChanged, this, &SetupFiles::TitleChanged);
  Q_EMIT TitleChanged();
}

QString SetupFiles::TitlePart() const {
  const QString strFile = m_area.Panel().SetupFile();
  if (strFile.isEmpty()) return {};
  return QFileInfo(strFile).fileName() + QStringLiteral("[*] - ");
}

// ---- Files ----

QString SetupFiles::Folder() const {
  const QString strFile = m_area.Panel().SetupFile();
  if (!strFile.isEmpty()) return QFileInfo(strFile).absolutePath();
  return m_arrRecent.isEmpty() ? QDir::homePath() : QFileInfo(m_arrRecent.front()).absolutePath();
}

void SetupFiles::Open() {
  const QString strFile =
      QFileDialog::getOpenFileName(&m_window, tr("Open setup"), Folder(), tr("Setups (*.json);;All files (*)"));
  if (!strFile.isEmpty()) OpenFile(strFile);
}

void SetupFiles::OpenFile(const QString &strFile) {
  if (MayOpen() && m_area.Panel().OpenSetup(strFile)) Remember(QFileInfo(strFile).absoluteFilePath());
}

void SetupFiles::Save() {
  const QString strFile = m_area.Panel().SetupFile();
  if (strFile.isEmpty())
    SaveAs();
  else
    SaveTo(strFile);
}

void SetupFiles::SaveAs() {
  QFileDialog dialog(&m_window, tr("Save setup"), Folder(), tr("Setups (*.json);;All files (*)"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("json"));
  if (dialog.exec() == QDialog::Accepted) SaveTo(dialog.selectedFiles().front());
}

bool SetupFiles::SaveTo(const QString &strFile) {
  if (!m_area.Panel().SaveSetup(strFile)) return false;
  Remember(QFileInfo(strFile).absoluteFilePath());
  return true;
}

void SetupFiles::Compare() { m_area.Panel().CompareSettings(); }

// ---- What would be lost ----

bool SetupFiles::Agrees(const QString &strQuestion) const {
  return TheHost().MsgBox(strQuestion.toStdString(), BoxIcon::Question, BoxButtons::YesNo, AppTitle) == BoxAnswer::Yes;
}

bool SetupFiles::MayOpen() {
  if (!m_area.Panel().IsSetupModified()) return true;
  return Agrees(tr("The changes since %1 was saved are lost.\r\nOpen the other setup all the same?")
                    .arg(QFileInfo(m_area.Panel().SetupFile()).fileName()));
}

bool SetupFiles::MayClose() {
  if (!m_area.Panel().IsSetupModified()) return true;
  const QString strFile = m_area.Panel().SetupFile();
  if (Agrees(tr("%1 was changed. Save it before the program ends?").arg(QFileInfo(strFile).fileName())))
    return SaveTo(strFile);
  return true;
}

// ---- Drops ----

QString SetupFiles::FileIn(const QMimeData &data) {
  const QList<QUrl> arrUrls = data.urls();
  return arrUrls.size() == 1 ? arrUrls.front().toLocalFile() : QString();
}

bool SetupFiles::eventFilter(QObject *watched, QEvent *event) {
  const bool fDrags = event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove;
  if (!fDrags && event->type() != QEvent::Drop) return QObject::eventFilter(watched, event);
  const auto *widget = qobject_cast<QWidget *>(watched);
  auto *drop = static_cast<QDropEvent *>(event);
  const QString strFile = FileIn(*drop->mimeData());
  if (!widget || widget->window() != &m_window || strFile.isEmpty()) return QObject::eventFilter(watched, event);
  drop->setDropAction(Qt::CopyAction);
  drop->accept();
  // The program that the file comes from waits until the drop is answered.
  if (!fDrags)
    QMetaObject::invokeMethod(
        this, [this, strFile] { OpenFile(strFile); }, Qt::QueuedConnection);
  return true;
}

}  // namespace tarvik
