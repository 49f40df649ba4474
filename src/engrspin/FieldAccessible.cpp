#include "engrspin/FieldAccessible.h"

#include <QFontMetrics>
#include <QStringList>
#include <QStyle>
#include <QStyleOptionFrame>

#include "engrspin/EngrSpin.h"
#include "platform/Accessibility.h"

namespace tarvik {

FieldAccessible::FieldAccessible(NumberTextBox &txtNumber)
    : QAccessibleWidget(&txtNumber, QAccessible::SpinBox), m_txtNumber(txtNumber) {}

const EngrSpin *FieldAccessible::Field() const { return dynamic_cast<const EngrSpin *>(m_txtNumber.parentWidget()); }

void *FieldAccessible::interface_cast(QAccessible::InterfaceType eType) {
  if (eType == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface *>(this);
  if (eType == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface *>(this);
  return QAccessibleWidget::interface_cast(eType);
}

QString FieldAccessible::text(QAccessible::Text eText) const {
  const EngrSpin *field = Field();
  if (!field) return {};
  switch (eText) {
    case QAccessible::Name: {
      const QString strGiven = field->accessibleName();
      const QString strCaption = PlainCaption(QString::fromStdString(field->Caption()));
      const QString strOwn = !strGiven.isEmpty() ? strGiven : !strCaption.isEmpty() ? strCaption : field->toolTip();
      return NameInBoxes(strOwn, *field);
    }
    case QAccessible::Value: return m_txtNumber.Events().ValueInWords();
    case QAccessible::Description: {
      QStringList arrSentences{m_txtNumber.Events().ValueInWords(), field->toolTip()};
      arrSentences.removeAll(QString());
      return arrSentences.join(QStringLiteral(". "));
    }
    default: return {};
  }
}

QAccessible::State FieldAccessible::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.readOnly = m_txtNumber.isReadOnly();
  state.editable = !m_txtNumber.isReadOnly();
  state.selectableText = true;
  return state;
}

// ---- value

QVariant FieldAccessible::currentValue() const {
  const EngrSpin *field = Field();
  return field ? QVariant(field->Value()) : QVariant();
}

void FieldAccessible::setCurrentValue(const QVariant &vValue) {
  bool fNumber = false;
  const double dblValue = vValue.toDouble(&fNumber);
  if (fNumber) m_txtNumber.Events().ValueAssigned(dblValue);
}

QVariant FieldAccessible::maximumValue() const {
  const EngrSpin *field = Field();
  return field ? QVariant(field->Max()) : QVariant();
}

QVariant FieldAccessible::minimumValue() const {
  const EngrSpin *field = Field();
  return field ? QVariant(field->Min()) : QVariant();
}

// ---- text

void FieldAccessible::selection(int intIndex, int *intStart, int *intEnd) const {
  *intStart = *intEnd = 0;
  if (intIndex != 0 || !m_txtNumber.hasSelectedText()) return;
  *intStart = m_txtNumber.selectionStart();
  *intEnd = m_txtNumber.selectionEnd();
}

int FieldAccessible::selectionCount() const { return m_txtNumber.hasSelectedText() ? 1 : 0; }

void FieldAccessible::removeSelection(int intIndex) {
  if (intIndex == 0) m_txtNumber.deselect();
}

void FieldAccessible::setSelection(int intIndex, int intStart, int intEnd) {
  if (intIndex == 0) m_txtNumber.setSelection(intStart, intEnd - intStart);
}

int FieldAccessible::cursorPosition() const { return m_txtNumber.cursorPosition(); }

void FieldAccessible::setCursorPosition(int intPosition) { m_txtNumber.setCursorPosition(intPosition); }

QString FieldAccessible::text(int intStart, int intEnd) const {
  return m_txtNumber.text().mid(intStart, intEnd < 0 ? -1 : intEnd - intStart);
}

int FieldAccessible::characterCount() const { return static_cast<int>(m_txtNumber.text().size()); }

QRect FieldAccessible::characterRect(int intOffset) const {
  const QString strText = m_txtNumber.text();
  if (intOffset < 0 || intOffset > strText.size()) return {};
  const QFontMetrics metrics = m_txtNumber.fontMetrics();
  QStyleOptionFrame frame;
  frame.initFrom(&m_txtNumber);
  const QRect line = m_txtNumber.style()->subElementRect(QStyle::SE_LineEditContents, &frame, &m_txtNumber);
  const QRect shown = QStyle::alignedRect(Qt::LeftToRight, m_txtNumber.alignment(),
                                          QSize(metrics.horizontalAdvance(strText), metrics.height()), line);
  const int left = shown.left() + metrics.horizontalAdvance(strText.left(intOffset));
  const int width = metrics.horizontalAdvance(strText.mid(intOffset, 1));
  return {m_txtNumber.mapToGlobal(QPoint(left, shown.top())), QSize(width, shown.height())};
}

int FieldAccessible::offsetAtPoint(const QPoint &point) const {
  const QPoint place = m_txtNumber.mapFromGlobal(point);
  return m_txtNumber.rect().contains(place) ? m_txtNumber.cursorPositionAt(place) : -1;
}

QString FieldAccessible::attributes(int, int *intStart, int *intEnd) const {
  *intStart = 0;
  *intEnd = characterCount();
  return {};
}

// ---- the field around

FieldBoxAccessible::FieldBoxAccessible(EngrSpin &field) : QAccessibleWidget(&field, QAccessible::Client) {}

QAccessibleInterface *FieldBoxAccessible::child(int intIndex) const {
  return intIndex == 0 ? QAccessible::queryAccessibleInterface(widget()->focusProxy()) : nullptr;
}

int FieldBoxAccessible::indexOfChild(const QAccessibleInterface *child) const {
  return child && child->object() == widget()->focusProxy() ? 0 : -1;
}

}  // namespace tarvik
