#include "controls/FrameEnhanced.h"

#include <QEvent>
#include <QRadioButton>

#include "controls/ForeignControl.h"
#include "controls/ForeignOption.h"
#include "controls/FrameEnhancedPrivate.h"
#include "platform/ControlSite.h"
#include "platform/WidgetControl.h"
#include "support/RunReported.h"

namespace tarvik {

namespace {

template <class Step>
void Reported(const char *strProc, Step &&step) {
  RunReported("FrameEnhanced", strProc, step);
}

}  // namespace

FrameEnhanced::FrameEnhanced(QWidget *parent) : FrameEnhanced(parent, RunTimeSite()) { BeginForm(); }

FrameEnhanced::FrameEnhanced(QWidget *parent, ControlSite &site)
    : FormControl(parent, site, Private::Properties(), [this](const PropertyBag &bag) { ReadProperties(bag); }),
      m(std::make_unique<Private>(*this)) {
  m->fra->installEventFilter(this);
}

FrameEnhanced::~FrameEnhanced() = default;

FrameEnhanced::Private::Private(FrameEnhanced &objFrame) : frame(objFrame), fra(new QGroupBox(&frame)) {
  fra->setObjectName(QStringLiteral("fra"));
}

QWidget *FrameEnhanced::Container() const { return m->fra; }

std::vector<Control *> FrameEnhanced::Private::ContainedControls() const {
  std::vector<Control *> arrControls;
  for (QObject *child : fra->children())
    if (auto *control = dynamic_cast<Control *>(child)) arrControls.push_back(control);
  for (QObject *child : frame.children()) {
    auto *widget = qobject_cast<QWidget *>(child);
    if (!widget || widget == fra) continue;
    auto *radio = qobject_cast<QRadioButton *>(child);
    if (auto *control = dynamic_cast<Control *>(child))
      arrControls.push_back(control);
    else if (radio)
      arrControls.push_back(&ForeignOption::Of(*radio));
    else
      arrControls.push_back(&ForeignControl::Of(*widget));
  }
  return arrControls;
}

std::vector<OptionButtonControl *> FrameEnhanced::OptionButtons() const {
  std::vector<OptionButtonControl *> arrButtons;
  for (Control *control : m->ContainedControls())
    if (auto *button = dynamic_cast<OptionButtonControl *>(control)) arrButtons.push_back(button);
  return arrButtons;
}

bool FrameEnhanced::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m->fra && event->type() == QEvent::LayoutRequest) updateGeometry();
  return FormControl::eventFilter(watched, event);
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

bool FrameEnhanced::Private::Choose(const Variant &vValue) {
  const std::string strTag = CStr(vValue);
  for (OptionButtonControl *button : frame.OptionButtons())
    if (button->Tag() == strTag) {
      button->SetValue(True);
      return true;
    }
  return false;
}

void FrameEnhanced::SetValue(const Variant &vValue) {
  Reported("Value", [&] { m->Choose(vValue); });
}

void FrameEnhanced::Match(const Variant &vMatchValue, const Variant &vDefault) {
  Reported("Match", [&] {
    if (!m->Choose(vMatchValue)) m->Choose(vDefault);
  });
}

std::string FrameEnhanced::Caption() const { return m->fra->title().toStdString(); }

void FrameEnhanced::SetCaption(const std::string &strCaption) {
  m->fra->setTitle(QString::fromStdString(strCaption));
  updateGeometry();
  m->KeepContentsWithin();
}

Long FrameEnhanced::Appearance() const { return m->lngAppearance; }

void FrameEnhanced::SetAppearance(Long lngAppearance) {
  m->lngAppearance = lngAppearance;
  m->ShowBorder();
}

Long FrameEnhanced::BorderStyle() const { return m->lngBorderStyle; }

void FrameEnhanced::SetBorderStyle(Long lngBorderStyle) {
  m->lngBorderStyle = lngBorderStyle;
  m->ShowBorder();
}

void FrameEnhanced::Private::ShowBorder() {
  fra->setFlat(lngBorderStyle == 0 || lngAppearance == 0);
  fra->setStyleSheet(lngBorderStyle == 0 ? QStringLiteral("QGroupBox#fra { border: none; }") : QString());
  KeepContentsWithin();
}

void FrameEnhanced::Private::KeepContentsWithin() {
  // A layout of the frame itself must start below the caption.
  frame.setContentsMargins(fra->contentsMargins());
}

Boolean FrameEnhanced::Enabled() const { return m->fEnabled; }

void FrameEnhanced::SetEnabled(Boolean fEnable) {
  if (fEnable != m->fEnabled) {
    m->fEnabled = fEnable;
    m->fra->setEnabled(fEnable);
    for (const auto arrControls = m->ContainedControls(); Control * control : arrControls) control->SetEnabled(fEnable);
  }
  setEnabled(fEnable);
  if (!Site().UserMode()) Site().PropertyChanged("Enabled");
}

void FrameEnhanced::SetFocusOnOpt() {
  if (!m->fEnabled) return;
  for (OptionButtonControl *button : OptionButtons())
    if (button->Value() && button->Enabled()) {
      button->SetFocus();
      return;
    }
}

const PropertyTable &FrameEnhanced::Private::Properties() {
  using F = FrameEnhanced;
  using Row = PropertyRow<FrameEnhanced>;
  static const PropertyTable arrProperties{
      Row::Stored("BorderStyle", Long{1}, &F::BorderStyle, &F::SetBorderStyle),
      Row::Stored("Caption", "Frame", &F::Caption, &F::SetCaption),
      Row::Passing("Appearance", Long{1}, &F::Appearance, &F::SetAppearance),
      Row::Passing("Enabled", True, &F::Enabled, &F::SetEnabled),
  };
  return arrProperties;
}

void FrameEnhanced::ReadProperties(const PropertyBag &bag) {
  for (const ControlProperty &property : Private::Properties())
    if (property.IsRead()) IgnoreErrors([&] { property.Assign(*this, bag); });
  m->fEnabled = True;
}

void FrameEnhanced::WriteProperties(PropertyBag &bag) const { WriteStored(*this, Private::Properties(), bag); }

void FrameEnhanced::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  m->fra->setGeometry(rect());
  m->KeepContentsWithin();
}

void FrameEnhanced::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && OwnEnabled(*this) != m->fEnabled)
    SetPropertyValue("Enabled", QVariant(static_cast<bool>(OwnEnabled(*this))));
}

QSize FrameEnhanced::sizeHint() const { return QWidget::sizeHint().expandedTo(m->fra->sizeHint()); }

QSize FrameEnhanced::minimumSizeHint() const {
  return QWidget::minimumSizeHint().expandedTo(m->fra->minimumSizeHint());
}

}  // namespace tarvik
