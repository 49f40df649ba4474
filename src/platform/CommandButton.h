#pragma once

#include <QPushButton>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// A push button that takes the focus before its click, however it is pressed; Enter presses it like Space.
class CommandButton : public WidgetControl<QPushButton> {
  Q_OBJECT

 public:
  explicit CommandButton(QWidget *parent = nullptr);

  const std::string &Caption() const { return m_strCaption; }
  void SetCaption(const std::string &strCaption);

  Event<> Click;

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;

 private:
  std::string m_strCaption;  ///< avoids a conversion from UTF-16 for each read
};

}  // namespace tarvik
