#pragma once

#include <QRadioButton>
#include <optional>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// An option button. At most one button of a container is on; it is the tab stop of the group.
class OptionButton : public WidgetControl<QRadioButton, OptionButtonControl> {
  Q_OBJECT

 public:
  explicit OptionButton(QWidget *parent = nullptr, std::optional<Integer> intIndex = std::nullopt);

  Integer Index() const override;
  const std::string &Tag() const override { return m_strTag; }
  void SetTag(const std::string &strTag) { m_strTag = strTag; }
  Boolean Value() const override { return isChecked(); }
  void SetValue(Boolean fValue) override;

  /// Sets the initial choice of a form without raising Click.
  void SetDesignValue(Boolean fValue);

  Event<> Click;

 protected:
  bool hitButton(const QPoint &place) const override;
  void paintEvent(QPaintEvent *event) override;
  void focusInEvent(QFocusEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  void Choose(bool fValue);
  /// Makes the chosen button the tab stop of the container; without a choice, the first focusable one.
  void PassTabStop();

  std::optional<Integer> m_intIndex;
  std::string m_strTag;
  bool m_fProgramChange = false;
};

}  // namespace tarvik
