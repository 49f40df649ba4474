#include "platform/CommandButton.h"

#include "platform/ControlEvent.h"

namespace tarvik {

CommandButton::CommandButton(QWidget *parent) : WidgetControl(parent) {
  // Enter belongs to the fields and lists of the panel, not to a default button.
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, [this] { RunUserEvent(*this, "Click", [this] { Click.Raise(); }); });
}

void CommandButton::SetCaption(const std::string &strCaption) {
  m_strCaption = strCaption;
  setText(QString::fromStdString(strCaption));
}

}  // namespace tarvik
