#include "controls/FrameEnhanced.h"

#include <QChildEvent>
#include <QRadioButton>
#include <algorithm>

#include "controls/ForeignControl.h"
#include "controls/ForeignOption.h"
#include "platform/OptionButton.h"
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

FrameEnhanced::FrameEnhanced(QWidget *parent) : FrameEnhanced(parent, RunTimeSite()) { BeginForm(); }

FrameEnhanced::FrameEnhanced(QWidget *parent, ControlSite &site)
    : QWidget(parent),
      m_site(site),
      m_form(*this, site, FormTable(), [this](const PropertyBag &bag) { ReadProperties(bag); }),
      m_fra(new QGroupBox(this)) {
  m_fra->setObjectName(QStringLiteral("fra"));
  m_fra->installEventFilter(this);
}

void FrameEnhanced::FindControls() const {
  m_arrControls.clear();
  m_arrButtons.clear();
  m_latest = {};
  for (QObject *child : m_fra->children()) {
    if (auto *control = dynamic_cast<Control *>(child)) m_arrControls.push_back(control);
    if (auto *button = dynamic_cast<OptionButtonControl *>(child)) m_arrButtons.push_back(button);
  }
  FindControlsOfForm();
  m_fControlsKnown = true;
}

void FrameEnhanced::FindControlsOfForm() const {
  for (QObject *child : children()) {
    auto *widget = qobject_cast<QWidget *>(child);
    if (!widget || widget == m_fra) continue;
    auto *control = dynamic_cast<Control *>(child);
    if (auto *radio = qobject_cast<QRadioButton *>(child); radio && !control) {
      control = &ForeignOption::Of(*radio);
      // Its tag may be changed as any dynamic property.
      radio->installEventFilter(const_cast<FrameEnhanced *>(this));
    }
    if (!control) control = &ForeignControl::Of(*widget);
    m_arrControls.push_back(control);
    if (auto *button = dynamic_cast<OptionButtonControl *>(control)) m_arrButtons.push_back(button);
  }
}

bool FrameEnhanced::ChangesControls(const QEvent &event) const {
  // A child that was just added is no control yet; it is polished when it is whole.
  const auto eType = event.type();
  return eType == QEvent::ChildAdded || eType == QEvent::ChildPolished || eType == QEvent::ChildRemoved ||
         eType == QEvent::DynamicPropertyChange || eType == OptionButton::TagChange();
}

bool FrameEnhanced::eventFilter(QObject *watched, QEvent *event) {
  if (ChangesControls(*event)) m_fControlsKnown = false;
  if (watched == m_fra && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QWidget::eventFilter(watched, event);
}

const OptionButtonControl *FrameEnhanced::Chosen() const {
  for (const OptionButtonControl *button : OptionButtons())
    if (button->Value()) return button;
  return nullptr;
}

Integer FrameEnhanced::ArrayIndex() const {
  Integer intResult = 0;
  Reported("ArrayIndex", [&] {
    if (const OptionButtonControl *button = Chosen()) intResult = button->Index();
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
    if (const OptionButtonControl *button = Chosen()) vResult = button->Tag();
  });
  return vResult;
}

bool FrameEnhanced::Choose(const Variant &vValue) {
  const auto &arrButtons = OptionButtons();
  if (!m_latest.button || m_latest.vValue != vValue) {
    const std::string strTag = CStr(vValue);
    const auto found = std::find_if(arrButtons.begin(), arrButtons.end(),
                                    [&](const OptionButtonControl *button) { return button->Tag() == strTag; });
    if (found == arrButtons.end()) return false;
    m_latest = {vValue, *found};
  }
  m_latest.button->SetValue(True);
  return true;
}

void FrameEnhanced::SetValue(const Variant &vValue) {
  Reported("Value", [&] { Choose(vValue); });
}

void FrameEnhanced::Match(const Variant &vMatchValue, const Variant &vDefault) {
  Reported("Match", [&] {
    if (!Choose(vMatchValue)) Choose(vDefault);
  });
}

std::string FrameEnhanced::Caption() const { return m_fra->title().toStdString(); }

void FrameEnhanced::SetCaption(const std::string &strCaption) {
  m_fra->setTitle(QString::fromStdString(strCaption));
  updateGeometry();
  KeepContentsWithin();
}

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
  KeepContentsWithin();
}

void FrameEnhanced::KeepContentsWithin() {
  // A layout that a form gives the frame begins below the caption.
  setContentsMargins(m_fra->contentsMargins());
}

Boolean FrameEnhanced::Visible() const { return OwnVisible(*this); }

void FrameEnhanced::SetEnabled(Boolean fEnable) {
  if (fEnable != m_fEnabled) {
    m_fEnabled = fEnable;
    m_fra->setEnabled(fEnable);
    for (const auto arrControls = ContainedControls(); Control * control : arrControls) control->SetEnabled(fEnable);
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
  if (ChangesControls(*event)) m_fControlsKnown = false;
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
  KeepContentsWithin();
}

void FrameEnhanced::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && OwnEnabled(*this) != m_fEnabled)
    m_form.Write("Enabled", QVariant(static_cast<bool>(OwnEnabled(*this))));
}

QSize FrameEnhanced::sizeHint() const { return QWidget::sizeHint().expandedTo(m_fra->sizeHint()); }

QSize FrameEnhanced::minimumSizeHint() const { return QWidget::minimumSizeHint().expandedTo(m_fra->minimumSizeHint()); }

}  // namespace tarvik
