#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <vector>

#include "panel/MarkLayer.h"

namespace tarvik {

/// A sentence that is added to what is told about a control, by its tool tip and so to screen readers. It goes with the
/// note.
class MarkNote {
 public:
  explicit MarkNote(QWidget &control);
  MarkNote(const MarkNote &) = delete;
  MarkNote &operator=(const MarkNote &) = delete;
  ~MarkNote();

  void Say(const QString &strSentence);
  /// Over the part of the control that shows the value. Empty while the control is not to be seen.
  std::vector<MarkLayer::Corner> CornersOn(const QWidget &below) const;

 private:
  /// A widget that is pointed at or focused for the control, and what it told by itself.
  struct Teller {
    QPointer<QWidget> widget;
    QString strToolTip, strDescription;
  };

  QPointer<QWidget> m_control;
  std::vector<Teller> m_arrTellers;
  QString m_strSentence;
};

}  // namespace tarvik
