#pragma once

#include <QObject>
#include <QRadioButton>
#include <string>

#include "support/Control.h"

namespace tarvik {

/// A radio button of the toolkit that a form put into a frame, as an option of the frame. Its number and its tag are
/// the dynamic properties "Index" and "Tag"; without the first it stands outside of any array. It lives as long as its
/// button.
class ForeignOption : public QObject, public OptionButtonControl {
  Q_OBJECT

 public:
  static constexpr const char *IndexProperty = "Index", *TagProperty = "Tag";

  /// The one of this button; made when it is asked for first.
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
