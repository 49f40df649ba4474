#include "panel/UndoHistory.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <unordered_set>

#include "bitpattern/PatternOperations.h"
#include "panel/ConfigPage.h"
#include "panel/HistoryWindow.h"
#include "panel/LevelsPage.h"
#include "panel/LimitsPage.h"
#include "panel/ModePage.h"
#include "panel/PatternPage.h"
#include "panel/SettingMarks.h"
#include "panel/StepNames.h"
#include "panel/TimingPage.h"
#include "panel/TrigLevPage.h"
#include "platform/ScopedFlag.h"
#include "platform/ToolPopup.h"
#include "support/ActionEnd.h"
#include "support/Boxes.h"
#include "support/EventBoundary.h"

namespace tarvik {

namespace {

constexpr const char *OutputNames[] = {"output 1", "output 2", "inverse output 1", "inverse output 2"};

bool IsUndoKey(const QKeyEvent &key) {
  return key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo) ||
         (key.key() == Qt::Key_Z && key.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier));
}

}  // namespace

UndoHistory::UndoHistory(TarvikGUI::Panel &panel) : m_panel(panel), m_memento(panel.state) {
  m_memento.AddPage(ePageMode, *panel.modePage);
  m_memento.AddPage(ePageTiming, *panel.timingPage);
  m_memento.AddPage(ePageLevels, *panel.levelsPage);
  m_memento.AddPage(ePagePattern, *panel.patternPage);
  m_memento.AddPage(ePageLimits, *panel.limitsPage);
  m_memento.AddPage(ePageTrigLev, *panel.trigLevPage);
  m_memento.AddPage(ePageConfig, *panel.configPage);
  m_memento.AddPanelState();
  m_stack.setUndoLimit(MaxSteps);
  connect(&m_stack, &QUndoStack::indexChanged, this, &UndoHistory::StackMoved);
  for (auto *textBox : panel.gui.findChildren<QLineEdit *>()) textBox->installEventFilter(this);
  const auto arrPopups = panel.patternPage->Editor().findChildren<ToolPopup *>();
  for (ToolPopup *popup : arrPopups)
    m_arrOperationConnections.push_back(popup->ButtonMenuClick.ConnectScoped(
        [this, popup](const std::string &strKey) { m_strPatternOperation = PatternOperationName(*popup, strKey); }));
  m_actionConnection = ActionEnded().ConnectScoped([this](const void *owner) { TakeAction(owner); });
}

UndoHistory::~UndoHistory() {
  // A stack that ends clears itself first, and says so.
  m_stack.disconnect();
  delete m_window;
}

// ---- Steps ----

QWidget *UndoHistory::ControlOf(const void *owner) const {
  // The owner may have been destroyed, so it is only compared.
  const auto arrWidgets = m_panel.gui.findChildren<QWidget *>();
  const auto found = std::ranges::find_if(arrWidgets, [owner](QWidget *widget) {
    return static_cast<const QObject *>(widget) == owner || widget == owner;
  });
  return found == arrWidgets.end() ? nullptr : *found;
}

void UndoHistory::TakeAction(const void *owner) {
  if (!m_fEnabled || !m_panel.fStarted || m_panel.fEnding) return;
  QWidget *control = ControlOf(owner);
  KeptParts arrNow = m_memento.Taken(m_arrLast);
  auto arrKind = KindOfInstrument();
  // Without settings among them, changes wait for the next step and come back with it: what a page does when it is
  // entered, the address of the pattern editor.
  if (m_arrLast.empty() || arrKind != m_arrKindSeen) {
    // The start, or an instrument of another kind, which has its controls enabled in another way.
    m_arrLast = std::move(arrNow);
  } else if (const auto arrChanges = ChangesTo(arrNow); !control) {
    // An operation of the host.
    if (HasSetting(arrChanges)) m_arrLast = std::move(arrNow);
  } else {
    const PanelMemento::Part *part = m_memento.PartOf(control);
    const bool fTransfer = IsTransfer(*control);
    if (part || fTransfer)
      Record(std::move(arrNow), NameOf(*control, arrChanges), fTransfer ? PagesOf(arrChanges) : m_marked, part);
  }
  m_arrKindSeen = std::move(arrKind);
  m_marked.reset();
  m_strPatternOperation.clear();
  const auto typedIn = std::ranges::find_if(m_memento.Parts(), &PanelMemento::IsTyping);
  m_typedIn = typedIn == m_memento.Parts().end() ? nullptr : &*typedIn;
  const QWidget *focus = QApplication::focusWidget();
  if (m_runIn && !(focus && m_runIn->widget->isAncestorOf(focus))) m_runIn = nullptr;
}

void UndoHistory::Take(const QString &strName) {
  if (!m_fEnabled || m_arrLast.empty()) return;
  KeptParts arrNow = m_memento.Taken(m_arrLast);
  const auto pages = PagesOf(ChangesTo(arrNow));
  Record(std::move(arrNow), strName, pages, nullptr);
}

std::vector<UndoStep::Change> UndoHistory::ChangesTo(const KeptParts &arrNow) const {
  std::vector<UndoStep::Change> arrChanges;
  for (std::size_t i = 0; i < arrNow.size(); ++i)
    if (arrNow[i] != m_arrLast[i]) arrChanges.push_back({i, m_arrLast[i], arrNow[i]});
  return arrChanges;
}

bool UndoHistory::IsSettingChange(const UndoStep::Change &change) const {
  return m_memento.Parts()[change.lngPart].fSetting && change.before->strSettings != change.after->strSettings;
}

bool UndoHistory::HasSetting(const std::vector<UndoStep::Change> &arrChanges) const {
  return std::ranges::any_of(arrChanges, [this](const auto &change) {
    return IsSettingChange(change) || m_memento.HoldsOutputs(change.lngPart);
  });
}

UndoStep::Pages UndoHistory::PagesOf(const std::vector<UndoStep::Change> &arrChanges) const {
  UndoStep::Pages pages;
  for (const auto &change : arrChanges)
    if (IsSettingChange(change)) pages.set(static_cast<std::size_t>(m_memento.Parts()[change.lngPart].ePage));
  return pages;
}

QString UndoHistory::NameOf(QWidget &control, const std::vector<UndoStep::Change> &arrChanges) const {
  if (IsTransfer(control)) return TransferName(control);
  if (!m_strPatternOperation.isEmpty()) return m_strPatternOperation;
  // What the user worked comes first; else the first setting that changed.
  const QWidget *worked = &control;
  if (const PanelMemento::Part *part = m_memento.PartOf(&control)) worked = part->widget;
  const auto ofControl = std::ranges::find(
      arrChanges, worked, [this](const auto &change) { return m_memento.Parts()[change.lngPart].widget; });
  const auto setting = std::ranges::find_if(arrChanges, [this](const auto &change) { return IsSettingChange(change); });
  const auto named = ofControl != arrChanges.end() ? ofControl : setting;
  if (named == arrChanges.end()) return StepName(*const_cast<QWidget *>(worked), {}, {});
  QWidget *widget = m_memento.Parts()[named->lngPart].widget;
  return StepName(widget ? *widget : control, named->before->strWords, named->after->strWords);
}

std::optional<int> UndoHistory::RunOf(const PanelMemento::Part *owner,
                                      const std::vector<UndoStep::Change> &arrChanges) {
  const bool fStepped = owner && dynamic_cast<EngrSpin *>(owner->widget) && owner != m_typedIn &&
                        std::ranges::any_of(arrChanges, [&](const auto &change) {
                          return &m_memento.Parts()[change.lngPart] == owner && IsSettingChange(change);
                        });
  if (!fStepped) {
    m_runIn = nullptr;
    return std::nullopt;
  }
  if (owner != m_runIn) {
    ++m_intRun;
    m_arrBeforeRun = m_arrLast;
  }
  m_runIn = owner;
  return m_intRun;
}

void UndoHistory::Record(KeptParts arrNow, const QString &strName, UndoStep::Pages pages,
                         const PanelMemento::Part *owner) {
  auto arrChanges = ChangesTo(arrNow);
  if (!HasSetting(arrChanges)) return;
  const std::optional<int> intRun = RunOf(owner, arrChanges);
  auto arrKind = KindOfInstrument();
  if (arrKind != m_arrKind) Clear();
  m_arrKind = std::move(arrKind);
  UndoStep::FieldName field;
  if (intRun)
    for (const auto &change : arrChanges)
      if (&m_memento.Parts()[change.lngPart] == owner)
        field = {ControlCaption(*owner->widget), QString::fromStdString(change.before->strWords),
                 QString::fromStdString(change.after->strWords)};
  auto *step = new UndoStep(strName, std::move(arrChanges), pages, intRun);
  step->SetFieldName(std::move(field));
  m_arrLast = std::move(arrNow);
  if (!Push(step)) m_arrLast = m_arrBeforeRun;
}

bool UndoHistory::Push(UndoStep *step) {
  const ScopedFlag moves(*this, m_fMoves);
  const int intAt = m_stack.index();
  m_stack.push(step);
  const bool fStays = m_stack.index() >= intAt;
  Trim();
  m_intAt = m_stack.index();
  return fStays;
}

const UndoStep &UndoHistory::StepAt(int intStep) const {
  return static_cast<const UndoStep &>(*m_stack.command(intStep));
}

std::size_t UndoHistory::HeldBytes() const {
  std::size_t lngBytes = 0;
  std::unordered_set<const KeptState *> counted;
  for (int i = 0; i < m_stack.count(); ++i) {
    const UndoStep &step = StepAt(i);
    lngBytes += sizeof step + step.Changes().capacity() * sizeof(UndoStep::Change) +
                static_cast<std::size_t>(step.text().size()) * sizeof(QChar);
    for (const auto &change : step.Changes())
      for (const auto &part : {change.before, change.after})
        if (counted.insert(part.get()).second) lngBytes += part->Bytes();
  }
  return lngBytes;
}

void UndoHistory::Trim() {
  // Counting visits every step, so it is done for one in 16.
  if (m_stack.count() % 16 != 0 || HeldBytes() <= MaxBytes) return;
  // The stack drops its oldest steps by number only, so the newer half goes into a fresh one.
  std::vector<UndoStep *> arrKept;
  for (int i = m_stack.count() / 2; i < m_stack.count(); ++i) {
    const UndoStep &step = StepAt(i);
    arrKept.push_back(new UndoStep(step.text(), step.Changes(), step.ChangedPages(), std::nullopt));
  }
  m_stack.clear();
  for (UndoStep *step : arrKept) m_stack.push(step);
}

void UndoHistory::Clear() {
  const ScopedFlag moves(*this, m_fMoves);
  m_stack.clear();
  m_intAt = 0;
  m_runIn = nullptr;
}

void UndoHistory::SetEnabled(bool fEnabled) {
  if (fEnabled == m_fEnabled) return;
  m_fEnabled = fEnabled;
  Clear();
  m_arrLast.clear();
  if (fEnabled && m_panel.fStarted) m_arrLast = m_memento.Taken({});
}

void UndoHistory::NoteMark(TabNumEnum ePage) {
  if (ePage == eAllPages)
    m_marked.set();
  else
    m_marked.set(static_cast<std::size_t>(ePage == eCurrPage ? m_panel.tabMain->Tab() : ePage));
}

// ---- Back and forth ----

QLineEdit *UndoHistory::TextBoxInEntry() const {
  const auto typedIn = std::ranges::find_if(m_memento.Parts(), &PanelMemento::IsTyping);
  return typedIn == m_memento.Parts().end() ? nullptr : typedIn->widget->findChild<QLineEdit *>();
}

void UndoHistory::Undo() {
  if (QLineEdit *textBox = TextBoxInEntry())
    textBox->undo();
  else if (m_intAt > 0)
    MoveTo(m_intAt - 1);
}

void UndoHistory::Redo() {
  if (QLineEdit *textBox = TextBoxInEntry())
    textBox->redo();
  else if (m_intAt < m_stack.count())
    MoveTo(m_intAt + 1);
}

void UndoHistory::StackMoved(int intIndex) {
  if (m_fMoves) return;
  const QPointer<UndoHistory> self(this);
  RunUserEvent(
      "TarvikGUI", "History",
      [&] {
        if (MoveTo(intIndex)) return;
        const ScopedFlag moves(*this, m_fMoves);
        m_stack.setIndex(m_intAt);
      },
      &m_panel.gui);
}

bool UndoHistory::MoveTo(int intIndex) {
  if (m_arrKind != KindOfInstrument()) {
    ShowBox(
        "This step was made with an instrument of another kind, or without one. Open one of that kind to go back "
        "to it.",
        BoxIcon::Information);
    return false;
  }
  KeptParts arrTarget = m_arrLast;
  UndoStep::Pages pages;
  for (int i = m_intAt; i > intIndex; --i) {
    for (const auto &change : StepAt(i - 1).Changes()) arrTarget[change.lngPart] = change.before;
    pages |= StepAt(i - 1).ChangedPages();
  }
  for (int i = m_intAt; i < intIndex; ++i) {
    for (const auto &change : StepAt(i).Changes()) arrTarget[change.lngPart] = change.after;
    pages |= StepAt(i).ChangedPages();
  }
  const QString strDone = intIndex < m_intAt ? QStringLiteral("Undone: ") + StepAt(intIndex).text()
                                             : QStringLiteral("Done again: ") + StepAt(intIndex - 1).text();
  const auto arrNow = m_memento.OutputsIn(m_memento.Taken({})), arrThen = m_memento.OutputsIn(arrTarget);
  if (!MaySwitch(arrNow, arrThen)) return false;

  m_memento.Show(arrTarget);
  m_panel.timingPage->DrawTiming();
  // The edge menus are settings, but no page counts as changed by them.
  m_panel.marks->Touch(eAllPages);
  m_arrLast = std::move(arrTarget);
  m_intAt = intIndex;
  m_runIn = nullptr;
  {
    const ScopedFlag moves(*this, m_fMoves);
    m_stack.setIndex(intIndex);
  }
  for (std::size_t i = 0; i < pages.size(); ++i)
    if (pages.test(i)) m_panel.SetTabState(ePageIsDirty, static_cast<TabNumEnum>(i));
  m_panel.ZorvaneInstr_StatusMessage(strDone.toStdString());
  SwitchOutputs(arrNow, arrThen);
  return true;
}

// ---- Outputs ----

bool UndoHistory::HasChannelOf(std::size_t lngOutput) const {
  const Long lngChannel = static_cast<Long>(lngOutput % 2) + 1;
  return m_panel.zorvaneInstr && lngChannel <= m_panel.zorvaneInstr->ChannelCount().value_or(0);
}

bool UndoHistory::MaySwitch(const PanelMemento::Outputs &arrNow, const PanelMemento::Outputs &arrThen) const {
  if (!m_panel.state.mfAutoOutputOnOff) return true;
  std::string strSwitches;
  for (std::size_t i = 0; i < arrNow.size(); ++i)
    if (arrNow[i] != arrThen[i] && HasChannelOf(i))
      strSwitches += (strSwitches.empty() ? "" : ", ") + std::string(OutputNames[i]) + (arrThen[i] ? " on" : " off");
  return strSwitches.empty() ||
         ShowBox("This switches outputs of the instrument at once: " + strSwitches + ".\r\nGo on?", BoxIcon::Question,
                 BoxButtons::YesNo) == BoxAnswer::Yes;
}

void UndoHistory::SwitchOutputs(const PanelMemento::Outputs &arrNow, const PanelMemento::Outputs &arrThen) {
  for (std::size_t i = 0; i < arrNow.size(); ++i) {
    if (arrNow[i] == arrThen[i]) continue;
    if (m_panel.state.mfAutoOutputOnOff && !HasChannelOf(i)) continue;
    m_panel.timingPage->SetChannelOutput(static_cast<Integer>(i % 2 + 1), arrThen[i], i >= 2);
  }
}

std::vector<bool> UndoHistory::KindOfInstrument() const {
  constexpr int Bits = 31;
  const clsInstrInterface *instr = m_panel.zorvaneInstr.get();
  std::vector<bool> arrKind{instr && instr->ChannelCount().value_or(0) == 1};
  for (int i = 0; i < Bits; ++i) arrKind.push_back(instr && instr->IsRestricted(Long{1} << i));
  return arrKind;
}

// ---- Keys and window ----

bool UndoHistory::eventFilter(QObject *textBox, QEvent *event) {
  if (event->type() != QEvent::ShortcutOverride || !IsUndoKey(*static_cast<QKeyEvent *>(event))) return false;
  if (TextBoxInEntry() == textBox) return false;
  // Not accepted, the key becomes the panel's shortcut.
  event->ignore();
  return true;
}

void UndoHistory::ShowWindow(QWidget *beside) {
  if (!m_window) m_window = new HistoryWindow(m_stack, beside->window());
  m_window->show();
  m_window->raise();
  m_window->activateWindow();
}

}  // namespace tarvik
