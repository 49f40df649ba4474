#pragma once

#include <QObject>
#include <functional>

class QWidget;
class QWindow;

namespace tarvik {

/// The way from a panel's showing to its start. The window stands painted before the start runs, which may ask the
/// driver for long and put questions; until it runs, whatever the user does to the panel is dropped.
class PanelStart : public QObject {
 public:
  /// `start` runs once for each Await that was not given up.
  PanelStart(QWidget &panel, std::function<void()> start);

  /// The panel was shown.
  void Await();
  /// The panel was hidden. Answers whether the start was still to come; it does not come then.
  bool GiveUp();

  bool IsAwaited() const { return m_fAwaited; }
  /// At least once, to whatever end.
  bool HasRun() const { return m_fHasRun; }

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;
  void customEvent(QEvent *event) override;

 private:
  void PostBehindPainting();
  void RunWhenPainted();
  /// The panel's window where its exposure will bring the first frame; null where that has been or is not to come.
  QWindow *WindowToBeExposed() const;
  bool IsForPanel(QObject *receiver, const QEvent &event) const;

  QWidget &m_panel;
  std::function<void()> m_start;
  bool m_fAwaited = false;
  bool m_fHasRun = false;
};

}  // namespace tarvik
