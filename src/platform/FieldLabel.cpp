#include "platform/FieldLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

namespace tarvik {

namespace {

/// Text condensed further than this is hard to read.
constexpr qreal MostSqueeze = 1.4;

}  // namespace

int FieldLabel::TextFlags() const {
  int intFlags = static_cast<int>(alignment()) | Qt::TextSingleLine;
  if (!buddy()) return intFlags;
  const bool fUnderlined = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0;
  return intFlags | (fUnderlined ? Qt::TextShowMnemonic : Qt::TextHideMnemonic);
}

qreal FieldLabel::Squeeze() const {
  const int intRoom = std::max(contentsRect().width(), 1);
  return static_cast<qreal>(fontMetrics().size(TextFlags(), text()).width()) / intRoom;
}

bool FieldLabel::event(QEvent *event) {
  if (event->type() != QEvent::ToolTip || Squeeze() <= MostSqueeze) return QLabel::event(event);
  // The caption is plain text; escape it for the tool tip, which takes rich text to wrap lines.
  const QString tip = QStringLiteral("<qt>%1</qt>").arg(text().toHtmlEscaped());
  QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), tip, this);
  return true;
}

void FieldLabel::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  QRectF target(contentsRect());
  QString strText = text();
  if (const qreal squeeze = std::min(Squeeze(), MostSqueeze); squeeze > 1) {
    // The room as it is before everything in it is drawn narrower.
    target.setRight(target.left() + target.width() * squeeze);
    if (Squeeze() > MostSqueeze)
      strText = fontMetrics().elidedText(strText, Qt::ElideRight, static_cast<int>(target.width()) - 2, TextFlags());
    painter.translate(target.left(), 0);
    painter.scale(1 / squeeze, 1);
    painter.translate(-target.left(), 0);
    target.setWidth(target.width() + 1);
  }
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
  painter.drawText(target, TextFlags(), strText);
}

}  // namespace tarvik
