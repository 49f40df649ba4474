#pragma once

#include <QAccessibleValueInterface>
#include <QAccessibleWidget>

#include "bitpattern/WavePicture.h"

namespace tarvik {

/// The picture of the pattern for those who do not see it: its name tells row, address and bit of the selected cell,
/// its value is the address.
class PictureAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit PictureAccessible(WavePicture &picWave);

  void *interface_cast(QAccessible::InterfaceType eType) override;
  QString text(QAccessible::Text eText) const override;

  QVariant currentValue() const override;
  /// The place is moved by keys and by the address field.
  void setCurrentValue(const QVariant &) override {}
  QVariant maximumValue() const override;
  QVariant minimumValue() const override { return 1; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  WavePicture &m_picWave;
};

}  // namespace tarvik
