#pragma once

#include <QPushButton>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// A push button. However it is pressed, it has the focus before its click, and Enter presses it as Space does.
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
  std::string m_strCaption;  ///< spares the pages a conversion each time they ask
};

}  // namespace tarvik
