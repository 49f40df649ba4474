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

  const std::string &Caption() const { return m_strCaption; }
  void SetCaption(const std::string &strCaption);

  Event<> Click;

 private:
  std::string m_strCaption;  ///< spares the pages a conversion each time they ask
};

}  // namespace tarvik
