#pragma once

#include <QRadioButton>
#include <optional>

#include "platform/WidgetControl.h"
#include "support/Event.h"

namespace tarvik {

/// An option button. Among the buttons of one container at most one is on; the tab key comes to that one, and the arrow
/// keys lead to the others.
class OptionButton : public WidgetControl<QRadioButton, OptionButtonControl> {
  Q_OBJECT

 public:
  explicit OptionButton(QWidget *parent = nullptr, std::optional<Integer> intIndex = std::nullopt);

  Integer Index() const override;
  const std::string &Tag() const override { return m_strTag; }
  void SetTag(const std::string &strTag) { m_strTag = strTag; }
  Boolean Value() const override { return isChecked(); }
  void SetValue(Boolean fValue) override;

  /// As the form brings it: changes the choice and raises nothing.
  void SetDesignValue(Boolean fValue);

  Event<> Click;

 protected:
  void focusInEvent(QFocusEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  void Choose(bool fValue);
  /// Makes the chosen button of the container the one to which the tab key comes; without a choice the first that can
  /// be reached.
  void PassTabStop();

  std::optional<Integer> m_intIndex;
  std::string m_strTag;
  bool m_fProgramChange = false;
};

}  // namespace tarvik
