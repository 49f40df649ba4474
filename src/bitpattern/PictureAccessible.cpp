#include "bitpattern/PictureAccessible.h"

#include "platform/Accessibility.h"

namespace tarvik {

PictureAccessible::PictureAccessible(WavePicture &picWave)
    : QAccessibleWidget(&picWave, QAccessible::Canvas), m_picWave(picWave) {}

void *PictureAccessible::interface_cast(QAccessible::InterfaceType eType) {
  if (eType == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface *>(this);
  return QAccessibleWidget::interface_cast(eType);
}

QString PictureAccessible::text(QAccessible::Text eText) const {
  if (eText != QAccessible::Name) return QAccessibleWidget::text(eText);
  const QString strName = QAccessibleWidget::text(eText);
  const QString strPlace = m_picWave.Place ? m_picWave.Place().strWords : QString();
  return strPlace.isEmpty() ? strName : strName + QStringLiteral(": ") + strPlace;
}

QVariant PictureAccessible::currentValue() const {
  return m_picWave.Place ? QVariant(m_picWave.Place().lngAddress) : QVariant();
}

QVariant PictureAccessible::maximumValue() const {
  return m_picWave.Place ? QVariant(m_picWave.Place().lngLength) : QVariant();
}

}  // namespace tarvik
