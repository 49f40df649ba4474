#include "platform/FormControl.h"

#include "platform/ControlSite.h"
#include "platform/FormProperties.h"
#include "platform/WidgetControl.h"

namespace tarvik {

FormControl::FormControl(QWidget *parent, ControlSite &site, const PropertyTable &arrProperties,
                         std::function<void(const PropertyBag &)> ReadAll)
    : QWidget(parent),
      m_site(site),
      m_form(std::make_unique<FormProperties>(*this, site, arrProperties, std::move(ReadAll))) {}

FormControl::~FormControl() = default;

void FormControl::BeginForm() { m_form->Begin(); }

void FormControl::BeginNew(const std::function<void()> &Init) { m_form->BeginNew(Init); }

Boolean FormControl::Visible() const { return OwnVisible(*this); }

void FormControl::SetVisible(Boolean fShow) { setVisible(fShow); }

QVariant FormControl::PropertyValue(const char *strKey) const { return m_form->Read(strKey); }

void FormControl::SetPropertyValue(const char *strKey, const QVariant &value) { m_form->Write(strKey, value); }

void FormControl::ResetProperty(const char *strKey) { m_form->Reset(strKey); }

bool FormControl::event(QEvent *event) {
  m_form->NoteEvent(*event);
  return QWidget::event(event);
}

}  // namespace tarvik
