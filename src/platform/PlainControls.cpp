#include "platform/PlainControls.h"

#include <QHelpEvent>
#include <QToolTip>

namespace tarvik {

DisplayField::DisplayField(QWidget *parent) : WidgetControl(parent) {
  setReadOnly(true);
  TakeColours();
}

void DisplayField::TakeColours() {
  // Nobody types here, and it shows.
  QPalette colours = palette();
  const QColor back = colours.color(QPalette::Window);
  if (colours.color(QPalette::Base) == back) return;
  colours.setColor(QPalette::Base, back);
  setPalette(colours);
}

void DisplayField::changeEvent(QEvent *event) {
  WidgetControl::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) TakeColours();
}

void DisplayField::SetText(const std::string &strText) {
  if (strText == m_strText) return;
  m_strText = strText;
  setText(QString::fromStdString(strText));
  setCursorPosition(0);
}

bool DisplayField::event(QEvent *event) {
  if (event->type() != QEvent::ToolTip) return WidgetControl::event(event);
  const bool fIsCut = fontMetrics().horizontalAdvance(text()) > contentsRect().width();
  if (!fIsCut) return WidgetControl::event(event);
  // Rich text is broken into lines; the text itself is taken as it is.
  const QString tip = QStringLiteral("<qt>%1</qt>").arg(text().toHtmlEscaped());
  QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), tip, this);
  return true;
}

}  // namespace tarvik
