#include "panel/TarvikGUI.h"

#include <QCoreApplication>
#include <QHideEvent>
#include <QShortcut>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "engrspin/EngrSpin.h"
#include "panel/LostSession.h"
#include "panel/Panel.h"
#include "panel/PanelSetups.h"
#include "panel/PanelStart.h"
#include "panel/SettingMarks.h"
#include "panel/UndoHistory.h"
#include "platform/DisabledLook.h"
#include "platform/QtHost.h"
#include "support/EventBoundary.h"

namespace tarvik {

namespace {

constexpr Single PanelWidth = 8640, PanelHeight = 6990;
/// The Levels page needs the most room of all.
constexpr TwipsRect TabPlace{60, 60, 8520, 5430};

QSize SizeAt(qreal dblPixelsPerTwip) {
  return {qRound(PanelWidth * dblPixelsPerTwip), qRound(PanelHeight * dblPixelsPerTwip)};
}

}  // namespace

TarvikGUI::TarvikGUI(QWidget *parent) : QWidget(parent), m(std::make_unique<Panel>(*this)) {
  EnsureQtHost();
  m->TakeDisabledLook();
  m->face.setObjectName(QStringLiteral("face"));
  m->tabMain->setDocumentMode(false);
  m->tabMain->setUsesScrollButtons(true);
  m->PlaceFace();
  m->PlaceHighlights();
  m->MakePages();
  m->ConnectEvents();
  const QUndoStack &history = m->undo->Stack();
  connect(&history, &QUndoStack::canUndoChanged, this, &TarvikGUI::canUndoChanged);
  connect(&history, &QUndoStack::canRedoChanged, this, &TarvikGUI::canRedoChanged);
  connect(&history, &QUndoStack::undoTextChanged, this, &TarvikGUI::undoTextChanged);
  connect(&history, &QUndoStack::redoTextChanged, this, &TarvikGUI::redoTextChanged);
  const auto onKey = [this](const QKeySequence &key, void (TarvikGUI::*slot)()) {
    auto *shortcut = new QShortcut(key, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, slot);
  };
  onKey(QKeySequence(Qt::CTRL | Qt::Key_Z), &TarvikGUI::undo);
  onKey(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), &TarvikGUI::redo);
}

TarvikGUI::~TarvikGUI() {
  m->fEnding = true;
  // Closing the session tells what it does, and what the host's slots would touch may be gone by now.
  blockSignals(true);
  const UserEvent::Waiting waiting;
  if (m->EndEvents()) m->LeaveFaceToToolkit();
  // A panel that never started has read no options, and would write its design's over the user's.
  if (m->fStarted)
    RunUserEvent(
        "TarvikGUI", "Terminate", [this] { m->UserControl_Terminate(); }, this);
  if (gobjPanel() == this) gobjPanel() = nullptr;
  if (!m->strUnsaved) return;
  // The host may destroy the window around the panel while the box stands.
  setParent(nullptr);
  m->TellUnsaved();
}

void TarvikGUI::SetTabState(TabStates eState, TabNumEnum ePage) { m->SetTabState(eState, ePage); }

Boolean TarvikGUI::IsConnectionLost() const { return m->lost->IsLost(); }

// The fields ask what they stand in.
void TarvikGUI::SetTypingReplacesNumber(Boolean fReplaces) { setProperty(TypingReplacesProperty, bool{fReplaces}); }

Boolean TarvikGUI::TypingReplacesNumber() const { return property(TypingReplacesProperty).toBool(); }

void TarvikGUI::SetMarks(Boolean fMarks) { m->marks->SetShown(fMarks); }

Boolean TarvikGUI::Marks() const { return m->marks->AreShown(); }

// ---- Setups ----

Boolean TarvikGUI::OpenSetup(const QString &strFile) {
  return RunUserEvent(
      "TarvikGUI", "OpenSetup", [&] { m->setups->Open(strFile.toStdU16String()); }, this);
}

Boolean TarvikGUI::SaveSetup(const QString &strFile) {
  return RunUserEvent(
      "TarvikGUI", "SaveSetup", [&] { m->setups->Save(strFile.toStdU16String()); }, this);
}

QString TarvikGUI::SetupFile() const { return QString::fromStdU16String(m->setups->File().u16string()); }

Boolean TarvikGUI::IsSetupModified() const { return m->setups->IsModified(); }

void TarvikGUI::CompareSettings() {
  RunUserEvent(
      "TarvikGUI", "CompareSettings", [&] { m->setups->Compare(); }, this);
}

// ---- Undo ----

void TarvikGUI::undo() {
  RunUserEvent(
      "TarvikGUI", "undo", [this] { m->undo->Undo(); }, this);
}

void TarvikGUI::redo() {
  RunUserEvent(
      "TarvikGUI", "redo", [this] { m->undo->Redo(); }, this);
}

void TarvikGUI::SetUndoEnabled(Boolean fEnabled) { m->undo->SetEnabled(fEnabled); }
Boolean TarvikGUI::UndoEnabled() const { return m->undo->IsEnabled(); }
bool TarvikGUI::canUndo() const { return m->undo->Stack().canUndo(); }
bool TarvikGUI::canRedo() const { return m->undo->Stack().canRedo(); }
QString TarvikGUI::undoText() const { return m->undo->Stack().undoText(); }
QString TarvikGUI::redoText() const { return m->undo->Stack().redoText(); }
void TarvikGUI::ShowHistory() { m->undo->ShowWindow(this); }

// ---- Size and zoom ----

QSize TarvikGUI::sizeHint() const { return SizeAt(PixelsPerTwip(m->face)); }

Long TarvikGUI::Zoom() const { return m->lngZoom; }

void TarvikGUI::SetZoom(Long lngPercent) {
  if (lngPercent < MinZoom || lngPercent > MaxZoom)
    throw RunTimeError(ErrInvalidPropertyValue, "A zoom is 50 to 400 percent, not " + std::to_string(lngPercent));
  m->lngZoom = lngPercent;
  m->PlaceFace();
}

Long TarvikGUI::ZoomToFit(const QSize &room) const {
  const auto scale = [this](Long lngPercent) { return PixelsPerTwip(m->ZoomedFont(lngPercent)); };
  const auto fits = [&](Long lngPercent) {
    const QSize size = SizeAt(scale(lngPercent));
    return size.width() <= room.width() && size.height() <= room.height();
  };
  // A line of text never gets lower as the font grows, so that the percentages that fit come before those that do not.
  Long lngLargest = MinZoom;
  for (Long lngTooLarge = MaxZoom + 1; lngTooLarge - lngLargest > 1;) {
    const Long lngMiddle = std::midpoint(lngLargest, lngTooLarge);
    (fits(lngMiddle) ? lngLargest : lngTooLarge) = lngMiddle;
  }
  if (lngLargest == MinZoom) return MinZoom;
  // Lines grow by whole pixels, so several percentages have one size; the letters suit the one that the size stands
  // for.
  return std::clamp(static_cast<Long>(std::lround(100 * scale(lngLargest) / scale(100))), Long{MinZoom}, lngLargest);
}

QFont TarvikGUI::Panel::ZoomedFont(Long lngPercent) const {
  QFont zoomed = gui.font();
  if (zoomed.pointSizeF() > 0)
    zoomed.setPointSizeF(zoomed.pointSizeF() * lngPercent / 100);
  else
    zoomed.setPixelSize(std::max(1, zoomed.pixelSize() * lngPercent / 100));
  return zoomed;
}

void TarvikGUI::Panel::PlaceFace() {
  face.setFont(lngZoom == 100 ? QFont() : ZoomedFont(lngZoom));
  tabMain->setGeometry(TwipsToPixels(face, TabPlace));
  const QSize size = gui.sizeHint(), spare = (gui.size() - size).expandedTo(QSize(0, 0));
  face.setGeometry(QRect(QPoint(spare.width() / 2, spare.height() / 2), size));
  gui.updateGeometry();
}

void TarvikGUI::Panel::TakeDisabledLook() {
  QPalette colours = gui.palette();
  SetDisabledLook(colours);
  if (colours != gui.palette()) gui.setPalette(colours);
}

void TarvikGUI::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  m->PlaceFace();
}

void TarvikGUI::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) m->TakeDisabledLook();
  if (event->type() == QEvent::FontChange) m->PlaceFace();
}

// ---- Start and end ----

void TarvikGUI::showEvent(QShowEvent *event) {
  QWidget::showEvent(event);
  // A window that comes back from the task bar was never hidden by its host.
  if (event->spontaneous()) return;
  gobjPanel() = this;
  m->OfferMessages();
  m->start->Await();
}

void TarvikGUI::hideEvent(QHideEvent *event) {
  QWidget::hideEvent(event);
  if (event->spontaneous() || m->fEnding || m->start->GiveUp()) return;
  m->EndEvents();
  const UserEvent::Waiting waiting;
  RunUserEvent(
      "TarvikGUI", "Hide", [this] { m->UserControl_Hide(); }, this);
  // The toolkit is still hiding the panel, and the host may destroy it while the box stands. At low priority, so that a
  // program that is about to quit does so first; the panel's end then saves once more.
  if (m->strUnsaved) QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
}

void TarvikGUI::customEvent(QEvent *) { m->TellUnsaved(); }

Boolean TarvikGUI::AllOutputsOff() {
  Boolean fAllOff = False;
  RunUserEvent(
      "TarvikGUI", "AllOutputsOff", [&] { fAllOff = m->TurnOutputsOff(); }, this);
  return fAllOff;
}

}  // namespace tarvik
