#pragma once

#include <QObject>
#include <QPointer>
#include <QUndoStack>
#include <vector>

#include "panel/Panel.h"
#include "panel/PanelMemento.h"
#include "panel/UndoStep.h"
#include "support/Event.h"

namespace tarvik {

/// The steps of the user that can be undone. Whatever one action has changed in the settings that the pages show is one
/// step; what it changed besides, such as the address of the pattern editor, comes back with the next step. Nothing is
/// sent to the instrument but what automatic output sends for a switch, and that is asked for first.
class TARVIK_HIDDEN UndoHistory : public QObject {
 public:
  static constexpr int MaxSteps = 1000;
  static constexpr std::size_t MaxBytes = 10ul * 1024 * 1024;

  explicit UndoHistory(TarvikGUI::Panel &panel);
  ~UndoHistory() override;

  QUndoStack &Stack() { return m_stack; }
  /// While the user is in the middle of an entry both act on its text.
  void Undo();
  void Redo();
  /// Off, the history is empty and stays so.
  void SetEnabled(bool fEnabled);
  bool IsEnabled() const { return m_fEnabled; }
  void Clear();

  /// A page was marked as changed by the action at work.
  void NoteMark(TabNumEnum ePage);
  /// What has changed since the last step is a step of this name.
  void Take(const QString &strName);

  void ShowWindow(QWidget *beside);
  /// Bytes that the steps hold; what several share counts once.
  std::size_t HeldBytes() const;

 protected:
  /// Undo keys of a text box at rest belong to the panel.
  bool eventFilter(QObject *textBox, QEvent *event) override;

 private:
  void TakeAction(const void *owner);
  QWidget *ControlOf(const void *owner) const;
  void Record(KeptParts arrNow, const QString &strName, UndoStep::Pages pages, const PanelMemento::Part *owner);
  std::vector<UndoStep::Change> ChangesTo(const KeptParts &arrNow) const;
  bool HasSetting(const std::vector<UndoStep::Change> &arrChanges) const;
  bool IsSettingChange(const UndoStep::Change &change) const;
  UndoStep::Pages PagesOf(const std::vector<UndoStep::Change> &arrChanges) const;
  QString NameOf(QWidget &control, const std::vector<UndoStep::Change> &arrChanges) const;
  /// The run of the digit cursor that the change belongs to; empty for an entry and for everything else.
  std::optional<int> RunOf(const PanelMemento::Part *owner, const std::vector<UndoStep::Change> &arrChanges);
  /// False where a run of the digit cursor ended where it began, and its step has gone.
  bool Push(UndoStep *step);
  void Trim();

  const UndoStep &StepAt(int intStep) const;
  /// Shows the panel as it was when the stack stood there. False where that was refused; nothing has changed then.
  bool MoveTo(int intIndex);
  void StackMoved(int intIndex);
  bool MaySwitch(const PanelMemento::Outputs &arrNow, const PanelMemento::Outputs &arrThen) const;
  void SwitchOutputs(const PanelMemento::Outputs &arrNow, const PanelMemento::Outputs &arrThen);
  bool HasChannelOf(std::size_t lngOutput) const;
  /// What the open instrument lacks: the controls of another kind of instrument are enabled in another way.
  std::vector<bool> KindOfInstrument() const;
  QLineEdit *TextBoxInEntry() const;

  TarvikGUI::Panel &m_panel;
  PanelMemento m_memento;
  QUndoStack m_stack;
  int m_intAt = 0;        ///< index of the stack that the panel shows
  bool m_fMoves = false;  ///< the stack is moved from here
  bool m_fEnabled = true;
  KeptParts m_arrLast;              ///< the panel as the last step left it; empty before the start
  KeptParts m_arrBeforeRun;         ///< the panel as it was when the last run began
  std::vector<bool> m_arrKind;      ///< of the instrument that the steps were made with
  std::vector<bool> m_arrKindSeen;  ///< when the last action ended
  UndoStep::Pages m_marked;
  QString m_strPatternOperation;
  const PanelMemento::Part *m_typedIn =
      nullptr;                                  ///< the field in which an entry was at work when the last action ended
  const PanelMemento::Part *m_runIn = nullptr;  ///< the field of the run at work
  int m_intRun = 0;
  QPointer<QWidget> m_window;
  Event<const void *>::Connection m_actionConnection;
  std::vector<Event<const std::string &>::Connection> m_arrOperationConnections;
};

}  // namespace tarvik
