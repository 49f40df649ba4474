#include "panel/PanelSetups.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>

#include "panel/CompareDialog.h"
#include "panel/UndoScope.h"
#include "settings/SetupDifferences.h"
#include "settings/SetupFile.h"
#include "settings/SetupTransfer.h"
#include "support/Boxes.h"
#include "support/EventBoundary.h"

namespace tarvik {

namespace {

/// What the pages could not show of a setup that they have controls for: a choice that a list does not offer.
std::string NotShown(const Setup &wanted, const Setup &shown) {
  std::string strLines;
  for (const SetupDifference &difference : Differences(wanted, shown))
    if (difference.setting->IsInUse(wanted, difference.lngChannel))
      strLines += "\r\n" + difference.Key() + ": the panel has no " + difference.strFirst;
  return strLines;
}

QString NameOf(const std::filesystem::path &file) { return QString::fromStdU16String(file.filename().u16string()); }

std::string LeftOut(const std::vector<SettingLeftOut> &arrLeftOut) {
  std::string strLines;
  for (const SettingLeftOut &left : arrLeftOut) strLines += "\r\n" + left.strKey + ": " + left.strReason;
  return strLines;
}

}  // namespace

void PanelSetups::Open(const std::filesystem::path &file) {
  const Setup read = LoadSetup(file);
  TakeOpenEntry();
  const TakenOver taken = TakeOver(m_panel.ShownSetup(), read);
  Show(taken.setup, TarvikGUI::tr("Open setup %1").arg(NameOf(file)));
  const Setup shown = m_panel.ShownSetup();
  MakeFile(file, shown);
  const std::string strLines = LeftOut(taken.arrLeftOut) + NotShown(taken.setup, shown);
  if (!strLines.empty())
    ShowBox("Not all of " + NameOf(file).toStdString() + " could be taken over:" + strLines, BoxIcon::Information);
}

void PanelSetups::Save(const std::filesystem::path &file) {
  TakeOpenEntry();
  const Setup shown = m_panel.ShownSetup();
  SaveSetup(shown, file);
  MakeFile(file, shown);
}

void PanelSetups::MakeFile(const std::filesystem::path &file, const Setup &setup) {
  m_file = file;
  m_inFile = setup;
  m_fToldModified = false;
  Q_EMIT m_panel.gui.setupFileChanged();
}

void PanelSetups::TellFile() {
  if (!m_inFile || !m_panel.HasInstr() || IsModified() == m_fToldModified) return;
  m_fToldModified = !m_fToldModified;
  Q_EMIT m_panel.gui.setupFileChanged();
}

void PanelSetups::Show(const Setup &setup, const QString &strStep) {
  const UndoScope step(m_panel, strStep);
  m_panel.ShowSetup(setup);
  for (const TabNumEnum ePage : m_panel.Known().PagesToSend(m_panel.ShownSetup()))
    m_panel.SetTabState(ePageIsDirty, ePage);
}

void PanelSetups::TakeOpenEntry() const {
  QWidget *focused = m_panel.gui.focusWidget();
  if (!focused || !focused->hasFocus()) return;
  focused->clearFocus();
  focused->setFocus();
}

bool PanelSetups::IsModified() const {
  return m_inFile && m_panel.HasInstr() && !Differences(*m_inFile, m_panel.ShownSetup(), 0).empty();
}

// ---- Compare ----

void PanelSetups::Compare() {
  TakeOpenEntry();
  auto *dialog =
      new CompareDialog({.panel = [this] { return std::optional(m_panel.ShownSetup()); },
                         .instrument = [this] { return ReadInstrument(); },
                         .file = [this](QString &strName) { return ReadFile(strName); },
                         .show = [this](const Setup &setup) { Show(setup, TarvikGUI::tr("Take over settings")); }},
                        &m_panel.gui);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->open();
}

std::optional<Setup> PanelSetups::ReadInstrument() const {
  std::optional<Setup> setup;
  RunUserEvent(
      "TarvikGUI", "CompareSettings",
      [&] {
        clsInstrInterface &instr = m_panel.ZorvaneInstr();
        Setup read;
        if (instr.IsOnline(False) && ReadSetup(instr, read)) setup = read;
      },
      &m_panel.gui);
  return setup;
}

std::optional<Setup> PanelSetups::ReadFile(QString &strName) const {
  std::optional<Setup> setup;
  const QPointer<TarvikGUI> self(&m_panel.gui);
  const QString strFile = QFileDialog::getOpenFileName(QApplication::activeWindow(), QFileDialog::tr("Open setup"),
                                                       QString::fromStdU16String(m_file.parent_path().u16string()),
                                                       QFileDialog::tr("Setups (*.json);;All files (*)"));
  if (strFile.isEmpty() || !self) return setup;
  RunUserEvent(
      "TarvikGUI", "CompareSettings",
      [&] {
        // What the open instrument does not have is no difference that could be taken over.
        setup = TakeOver(m_panel.ShownSetup(), LoadSetup(strFile.toStdU16String())).setup;
        strName = QFileInfo(strFile).fileName();
      },
      &m_panel.gui);
  return setup;
}

}  // namespace tarvik
