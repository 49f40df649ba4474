#pragma once

#include <QWidget>
#include <memory>

#include "support/Export.h"
#include "support/modGlobals.h"

namespace tarvik {

/// The front panel: a host places it on a form and gets a complete panel. It starts when it is shown and its
/// first frame painted: options are restored, the driver is connected, the instruments are listed. Until then it takes
/// no command. Hiding saves the options and ends the session; a later show starts anew. All of it lives on the thread
/// that made it; only the last panel shown is told of changes.
class TARVIK_EXPORT TarvikGUI : public QWidget, public PanelReference {
  Q_OBJECT

 public:
  class Panel;

  explicit TarvikGUI(QWidget *parent = nullptr);
  ~TarvikGUI() override;

  /// Gives one page, the visible page (eCurrPage) or all pages (eAllPages) a state, or with ePageSetStatus none, and
  /// shows the highlights anew. A dirty mark during a download is dropped. Another page number is error 9.
  void SetTabState(TabStates eState, TabNumEnum ePage) override;

  /// Turns the normal and the inverse output of each channel off at once, also where the output switches wait for an
  /// upload; asks nothing, changes no mark, and the pages follow. False without an open instrument, in silence, and
  /// when an output failed, whose box the user has seen; the others are off then all the same.
  Boolean AllOutputsOff();

  /// Whether what is typed into a number field at rest takes the place of the whole number instead of the selected
  /// digit; in all fields of the panel alike. False at first.
  void SetTypingReplacesNumber(Boolean fReplaces);
  Boolean TypingReplacesNumber() const;

  /// Whether controls whose value differs from the instrument's carry a mark; on at first. Marks only show: no value,
  /// no page state and no call of the driver depends on them.
  void SetMarks(Boolean fMarks);
  Boolean Marks() const;

  /// Shows the setup of a file on all pages, exactly. Nothing goes to the instrument before an upload; the pages that
  /// it has to send turn dirty. What the open instrument does not have is left out, which one box tells. A file that is
  /// not wholly right is refused: false, one box with all reasons, and nothing changes. Works on a panel that has
  /// started, with or without an instrument.
  Boolean OpenSetup(const QString &strFile);
  /// Writes what the pages show to a file. False, with a box and the old file whole, when it cannot be written.
  Boolean SaveSetup(const QString &strFile);
  /// The file that was opened or saved last; empty before.
  QString SetupFile() const;
  /// Whether the pages show something else than that file has.
  Boolean IsSetupModified() const;
  /// Lets the user compare the panel with the instrument and with a file, and take over what differs.
  void CompareSettings();

  /// Whether the driver's server or the driver's session was lost, and what was changed waits on the pages for the next
  /// Refresh and tick.
  Boolean IsConnectionLost() const;

  /// Whether what the user changes can be undone. True at first; switched off, the history is emptied.
  void SetUndoEnabled(Boolean fEnabled);
  Boolean UndoEnabled() const;
  bool canUndo() const;
  bool canRedo() const;
  /// What the next undo or redo changes, as "Width, channel 1: 100.0 ns to 50.00 ns"; empty for none.
  QString undoText() const;
  QString redoText() const;
  /// Opens the list of steps beside the panel's window, or brings it to the front.
  void ShowHistory();

  static constexpr Long MinZoom = 50, MaxZoom = 400;
  /// Shows the panel larger or smaller than its font asks for, in percent (MinZoom to MaxZoom, 100 at first); its size
  /// hints follow. Another percentage is error 380, and nothing changes. Where a style sheet gives the controls a font
  /// of their own, that font stands.
  void SetZoom(Long lngPercent);
  Long Zoom() const;
  /// The zoom at which the whole panel is as large as it can be in this many pixels; MinZoom where even that is cut
  /// off.
  Long ZoomToFit(const QSize &room) const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 public Q_SLOTS:
  /// Shows the settings as they were before the last step, or behind the next one, and marks the pages that changes. In
  /// the middle of an entry it acts on the text. Nothing is sent but output switches that act at once, which the user
  /// is asked about first.
  void undo();
  void redo();

 Q_SIGNALS:
  void canUndoChanged(bool fCan);
  void canRedoChanged(bool fCan);
  void undoTextChanged(const QString &strText);
  void redoTextChanged(const QString &strText);
  /// A text came into the status line; comes from within the operation that tells it. A slot must let no exception out.
  void statusMessage(const QString &strStatus);
  /// An output was switched on at once while marked levels or times of its channel were not uploaded: one line says
  /// with which ones it runs now. Comes from within the user's action. A slot must let no exception out.
  void outputRunsWithOthers(const QString &strText);
  /// SetupFile or IsSetupModified changed; comes when the message loop turns.
  void setupFileChanged();

 protected:
  void showEvent(QShowEvent *event) override;
  void hideEvent(QHideEvent *event) override;
  void changeEvent(QEvent *event) override;
  void customEvent(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  const std::unique_ptr<Panel> m;
};

}  // namespace tarvik
