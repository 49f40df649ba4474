#pragma once

#include <QPushButton>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// A push button.
class CommandButton : public WidgetControl<QPushButton> {
  Q_OBJECT

 public:
  explicit CommandButton(QWidget *parent = nullptr);

  std::string Caption() const { return text().toStdString(); }
  void SetCaption(const std::string &strCaption) { setText(QString::fromStdString(strCaption)); }

  Event<> Click;
};

}  // namespace tarvik
