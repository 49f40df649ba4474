#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "platform/InputBlock.h"

class QWidget;
class QWindow;

namespace tarvik {

/// Starts the panel once its window has been painted, because the start may wait long for the driver and ask the user.
/// Until then the panel takes no input.
class PanelStart : public QObject {
 public:
  /// `start` runs once for each Await that was not given up.
  PanelStart(QWidget &panel, std::function<void()> start);

  /// The panel was shown.
  void Await();
  /// The panel was hidden. Answers whether the start was still to come; it does not come then.
  bool GiveUp();

  bool IsAwaited() const { return m_block.has_value(); }

 protected:
  bool eventFilter(QObject *window, QEvent *event) override;
  void customEvent(QEvent *event) override;

 private:
  void RunBehindPainting();
  /// The panel's window if it is going to be exposed and painted, but is not yet; else null.
  QWindow *WindowToBeExposed() const;

  QWidget &m_panel;
  std::function<void()> m_start;
  std::optional<InputBlock> m_block;  ///< while the start is awaited
};

}  // namespace tarvik
