#pragma once

#include <QObject>

class QWidget;

namespace tarvik {

/// While it exists, a widget and everything in it take no input: neither mouse and keys, nor what assistive technology
/// or a host does in their place, such as click(). Focus still moves. A button that was pressed by such a way and is
/// still down at the end stays blocked until it is up.
class InputBlock : public QObject {
 public:
  explicit InputBlock(QWidget &part);
  ~InputBlock() override;

  /// Whether events of this control are not to be raised.
  static bool Covers(const QObject &control);

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  bool IsInPart(const QWidget *widget) const;
  bool IsForPart(QObject *receiver, const QEvent &event) const;
  void BlockWhatIsDown() const;

  QWidget &m_part;
};

}  // namespace tarvik
