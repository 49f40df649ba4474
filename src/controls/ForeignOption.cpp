#include "controls/ForeignOption.h"

#include <QVariant>
#include <limits>

#include "platform/WidgetControl.h"

namespace tarvik {

ForeignOption &ForeignOption::Of(QRadioButton &button) {
  if (auto *known = button.findChild<ForeignOption *>(QString(), Qt::FindDirectChildrenOnly)) return *known;
  return *new ForeignOption(button);
}

Boolean ForeignOption::Enabled() const { return OwnEnabled(m_button); }

Boolean ForeignOption::Visible() const { return OwnVisible(m_button); }

void ForeignOption::SetFocus() { GiveFocus(m_button); }

Integer ForeignOption::Index() const {
  bool fNumber = false;
  const int intIndex = m_button.property(IndexProperty).toInt(&fNumber);
  using Limits = std::numeric_limits<Integer>;
  if (!fNumber || intIndex < Limits::min() || intIndex > Limits::max()) RaiseError(ErrNotAnArray);
  return static_cast<Integer>(intIndex);
}

const std::string &ForeignOption::Tag() const {
  m_strTag = m_button.property(TagProperty).toString().toStdString();
  return m_strTag;
}

void ForeignOption::SetValue(Boolean fValue) {
  // QRadioButton refuses to uncheck the last button of an exclusive group.
  const bool fExclusive = m_button.autoExclusive();
  if (!fValue) m_button.setAutoExclusive(false);
  m_button.setChecked(fValue);
  m_button.setAutoExclusive(fExclusive);
}

}  // namespace tarvik
