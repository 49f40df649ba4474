#include "controls/FrameEnhanced.h"

#include "support/modErrorLog.h"

namespace tarvik {

namespace {

constexpr const char *DefaultCaption = "Frame";

/// Runs a step whose failure is reported and ends it.
template <class Step>
void Reported(const char *strProc, Step &&step) {
  try {
    step();
  } catch (const RunTimeError &error) {
    LogError("FrameEnhanced", strProc, error.Number(), error.Description());
  }
}

}  // namespace

FrameEnhanced::FrameEnhanced(QWidget *parent, ControlSite &site)
    : QWidget(parent),
      m_site(site),
      m_form(*this, site, FormTable(), [this](const PropertyBag &bag) { ReadProperties(bag); }),
      m_fra(new QGroupBox(this)) {
  m_fra->setObjectName(QStringLiteral("fra"));
}

std::vector<Control *> FrameEnhanced::ContainedControls() const {
  std::vector<Control *> arrControls;
  for (QObject *child : m_fra->children())
    if (auto *control = dynamic_cast<Control *>(child)) arrControls.push_back(control);
  return arrControls;
}

std::vector<OptionButtonControl *> FrameEnhanced::OptionButtons() const {
  std::vector<OptionButtonControl *> arrButtons;
  for (Control *control : ContainedControls())
    if (auto *button = dynamic_cast<OptionButtonControl *>(control)) arrButtons.push_back(button);
  return arrButtons;
}

Integer FrameEnhanced::ArrayIndex() const {
  Integer intResult = 0;
  Reported("ArrayIndex", [&] {
    for (const OptionButtonControl *button : OptionButtons())
      if (button->Value()) {
        intResult = button->Index();
        return;
      }
  });
  return intResult;
}

void FrameEnhanced::SetArrayIndex(Integer intIndex) {
  Reported("ArrayIndex", [&] {
    for (OptionButtonControl *button : OptionButtons())
      if (button->Index() == intIndex) {
        button->SetValue(True);
        return;
      }
  });
}

Variant FrameEnhanced::Value() const {
  Variant vResult;
  Reported("Value", [&] {
    for (const OptionButtonControl *button : OptionButtons())
      if (button->Value()) {
        vResult = button->Tag();
        return;
      }
  });
  return vResult;
}

bool FrameEnhanced::ChooseByTag(const std::string &strTag) {
  for (OptionButtonControl *button : OptionButtons())
    if (button->Tag() == strTag) {
      button->SetValue(True);
      return true;
    }
  return false;
}

void FrameEnhanced::SetValue(const Variant &vValue) {
  Reported("Value", [&] { ChooseByTag(CStr(vValue)); });
}

void FrameEnhanced::Match(const Variant &vMatchValue, const Variant &vDefault) {
  Reported("Match", [&] {
    if (!ChooseByTag(CStr(vMatchValue))) ChooseByTag(CStr(vDefault));
  });
}

std::string FrameEnhanced::Caption() const { return m_fra->title().toStdString(); }

void FrameEnhanced::SetCaption(const std::string &strCaption) { m_fra->setTitle(QString::fromStdString(strCaption)); }

void FrameEnhanced::SetAppearance(Long lngAppearance) {
  m_lngAppearance = lngAppearance;
  ShowBorder();
}

void FrameEnhanced::SetBorderStyle(Long lngBorderStyle) {
  m_lngBorderStyle = lngBorderStyle;
  ShowBorder();
}

void FrameEnhanced::ShowBorder() {
  m_fra->setFlat(m_lngBorderStyle == 0 || m_lngAppearance == 0);
  m_fra->setStyleSheet(m_lngBorderStyle == 0 ? QStringLiteral("QGroupBox#fra { border: none; }") : QString());
}

void FrameEnhanced::SetEnabled(Boolean fEnable) {
  if (fEnable != m_fEnabled) {
    m_fEnabled = fEnable;
    m_fra->setEnabled(fEnable);
    for (Control *control : ContainedControls()) control->SetEnabled(fEnable);
  }
  setEnabled(fEnable);
  if (!m_site.UserMode()) m_site.PropertyChanged("Enabled");
}

void FrameEnhanced::SetFocusOnOpt() {
  if (!m_fEnabled) return;
  for (OptionButtonControl *button : OptionButtons())
    if (button->Value() && button->Enabled()) {
      button->SetFocus();
      return;
    }
}

std::vector<FormProperties::Property> FrameEnhanced::FormTable() {
  using F = FormProperties;
  return {
      F::Stored(*this, "BorderStyle", Long{1}, &FrameEnhanced::BorderStyle, &FrameEnhanced::SetBorderStyle),
      F::Stored(*this, "Caption", DefaultCaption, &FrameEnhanced::Caption, &FrameEnhanced::SetCaption),
      F::Passing(*this, "Appearance", Long{1}, &FrameEnhanced::Appearance, &FrameEnhanced::SetAppearance),
      F::Passing(*this, "Enabled", True, &FrameEnhanced::Enabled, &FrameEnhanced::SetEnabled),
  };
}

bool FrameEnhanced::event(QEvent *event) {
  m_form.NoteEvent(*event);
  return QWidget::event(event);
}

void FrameEnhanced::ReadProperties(const PropertyBag &bag) {
  IgnoreErrors([&] { SetBorderStyle(bag.ReadProperty("BorderStyle", Long{1})); });
  IgnoreErrors([&] { SetCaption(bag.ReadProperty("Caption", DefaultCaption)); });
  m_fEnabled = True;
}

void FrameEnhanced::WriteProperties(PropertyBag &bag) const {
  IgnoreErrors([&] { bag.WriteProperty("BorderStyle", BorderStyle(), Long{1}); });
  IgnoreErrors([&] { bag.WriteProperty("Caption", Caption(), std::string(DefaultCaption)); });
}

void FrameEnhanced::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  m_fra->setGeometry(rect());
}

}  // namespace tarvik
