#pragma once

#include <QCheckBox>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// A check box: 0 not ticked, 1 ticked, 2 greyed.
class CheckBox : public WidgetControl<QCheckBox> {
  Q_OBJECT

 public:
  explicit CheckBox(QWidget *parent = nullptr);

  Integer Value() const;
  /// Raises Click when the value changes; error 380 for anything but 0, 1 and 2.
  void SetValue(Integer intValue);

  Event<> Click;

 protected:
  bool hitButton(const QPoint &place) const override;
  void paintEvent(QPaintEvent *event) override;
  /// A user only ticks and unticks; a greyed box becomes ticked.
  void nextCheckState() override;

 private:
  bool m_fProgramChange = false;
};

}  // namespace tarvik
