#pragma once

#include <QObject>
#include <QRadioButton>
#include <string>

#include "support/Control.h"

namespace tarvik {

/// Adapts a QRadioButton of a form to OptionButtonControl. Index and Tag are the button's dynamic properties of these
/// names; without "Index" it belongs to no control array. Owned by its button.
class ForeignOption : public QObject, public OptionButtonControl {
  Q_OBJECT

 public:
  static constexpr const char *IndexProperty = "Index", *TagProperty = "Tag";

  /// The adapter of this button, created on first use.
  static ForeignOption &Of(QRadioButton &button);

  Boolean Enabled() const override;
  void SetEnabled(Boolean fEnable) override { m_button.setEnabled(fEnable); }
  Boolean Visible() const override;
  void SetVisible(Boolean fShow) override { m_button.setVisible(fShow); }
  void SetFocus() override;

  Integer Index() const override;
  const std::string &Tag() const override;
  Boolean Value() const override { return m_button.isChecked(); }
  void SetValue(Boolean fValue) override;

 private:
  explicit ForeignOption(QRadioButton &button) : QObject(&button), m_button(button) {}

  QRadioButton &m_button;
  mutable std::string m_strTag;
};

}  // namespace tarvik
