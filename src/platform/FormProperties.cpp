#include "platform/FormProperties.h"

#include <QDynamicPropertyChangeEvent>
#include <cstring>
#include <optional>

#include "platform/FormControl.h"
#include "platform/QtHost.h"
#include "support/Boxes.h"

namespace tarvik {

namespace {

struct ToQVariant {
  QVariant operator()(std::monostate) const { return {}; }
  QVariant operator()(Boolean fValue) const { return QVariant(static_cast<bool>(fValue)); }
  QVariant operator()(Long lngValue) const { return lngValue; }
  QVariant operator()(Double dblValue) const { return dblValue; }
  QVariant operator()(const std::string &strValue) const { return QString::fromStdString(strValue); }
};

/// The value converted to the type of the default; empty if that is impossible.
std::optional<Variant> Converted(const QVariant &value, const Variant &vDefault) {
  bool fDone = true;
  if (std::holds_alternative<Boolean>(vDefault)) {
    if (value.typeId() != QMetaType::Bool) return std::nullopt;
    return Variant(Boolean(value.toBool()));
  }
  if (std::holds_alternative<Long>(vDefault)) {
    const Long lngValue = value.toInt(&fDone);
    const bool fWhole = value.typeId() != QMetaType::Double || value.toDouble() == static_cast<double>(lngValue);
    return fDone && fWhole ? std::optional<Variant>(lngValue) : std::nullopt;
  }
  if (std::holds_alternative<Double>(vDefault)) {
    const Double dblValue = value.toDouble(&fDone);
    return fDone && qIsFinite(dblValue) ? std::optional<Variant>(dblValue) : std::nullopt;
  }
  if (!value.canConvert<QString>()) return std::nullopt;
  return Variant(value.toString().toStdString());
}

}  // namespace

FormProperties::FormProperties(FormControl &control, ControlSite &site, const PropertyTable &arrProperties,
                               std::function<void(const PropertyBag &)> ReadAll)
    : m_control(control), m_site(site), m_arrProperties(arrProperties), m_readAll(std::move(ReadAll)) {}

const ControlProperty *FormProperties::Find(const char *strKey) const {
  for (const ControlProperty &property : m_arrProperties)
    if (std::strcmp(property.strKey, strKey) == 0) return &property;
  return nullptr;
}

void FormProperties::Tell(const std::string &strWhat) const {
  qWarning("%s \"%s\": %s", m_control.metaObject()->className(), qPrintable(m_control.objectName()), strWhat.c_str());
}

QVariant FormProperties::Read(const char *strKey) const {
  const ControlProperty *property = Find(strKey);
  return property ? std::visit(ToQVariant{}, property->Get(m_control)) : QVariant();
}

void FormProperties::Begin() {
  EnsureQtHost();
  m_readAll({});
  m_arrStanding = Standing();
}

void FormProperties::BeginNew(const std::function<void()> &init) {
  init();
  m_fLoading = false;
  if (m_site.UserMode()) return;
  for (const ControlProperty &property : m_arrProperties)
    if (property.IsRead() && property.Get(m_control) != property.vDefault) m_site.PropertyChanged(property.strKey);
}

std::vector<Variant> FormProperties::Standing() const {
  std::vector<Variant> arrValues;
  for (const ControlProperty &property : m_arrProperties)
    arrValues.push_back(property.Assign && property.eKind != ControlProperty::Kind::Deaf ? property.Get(m_control)
                                                                                         : Variant());
  return arrValues;
}

bool FormProperties::ChangedByHost(const ControlProperty &besides) const {
  if (m_arrStanding.empty()) return false;
  const std::vector<Variant> arrNow = Standing();
  for (std::size_t i = 0; i < arrNow.size(); ++i)
    if (&m_arrProperties[i] != &besides && arrNow[i] != m_arrStanding[i]) return true;
  return false;
}

void FormProperties::Write(const char *strKey, const QVariant &value) {
  const ControlProperty *property = Find(strKey);
  if (!property || !property->Assign) return;
  EnsureQtHost();
  const auto vValue = Converted(value, property->vDefault);
  if (!vValue) {
    Tell(std::string("the property ") + strKey + " cannot be \"" + value.toString().toStdString() +
         "\" and keeps its value");
    return;
  }
  PropertyBag single;
  single.Set(strKey, *vValue);
  // Reading all properties again would undo what the host assigned.
  if (m_fLoading && ChangedByHost(*property)) m_fLoading = false;
  if (!m_fLoading) {
    Assign(*property, single);
    m_site.PropertyAssigned(strKey, property->Get(m_control) == property->vDefault);
    return;
  }
  Load(*property, single);
  m_arrStanding = Standing();
}

void FormProperties::Load(const ControlProperty &property, const PropertyBag &single) {
  if (!property.IsRead()) {
    std::erase_if(m_arrPassed, [&](const auto &passed) { return passed.first == &property; });
    m_arrPassed.emplace_back(&property, single);
    Assign(property, single);
    return;
  }
  // Reading drops a rejected value silently; only a direct assignment raises the reason.
  if (m_site.UserMode()) Assign(property, single);
  const Variant vValue = single.Values().at(property.strKey);
  m_loaded.Set(property.strKey, vValue);
  m_readAll(m_loaded);
  for (const auto &[passed, bag] : m_arrPassed) Assign(*passed, bag);
  if (!m_site.UserMode() && property.Get(m_control) != vValue)
    Tell(std::string("the property ") + property.strKey + " was refused and has its default");
}

void FormProperties::Assign(const ControlProperty &property, const PropertyBag &bag) {
  try {
    property.Assign(m_control, bag);
  } catch (const RunTimeError &error) {
    if (m_site.UserMode())
      Tell(error.Description());
    else
      ShowBox(error.Description(), BoxIcon::Stop);
  }
}

void FormProperties::Reset(const char *strKey) {
  if (const ControlProperty *property = Find(strKey)) Write(strKey, std::visit(ToQVariant{}, property->vDefault));
}

void FormProperties::NoteEvent(QEvent &event) {
  if (event.type() == QEvent::Polish) m_fLoading = false;
  if (event.type() != QEvent::DynamicPropertyChange) return;
  const QByteArray name = static_cast<QDynamicPropertyChangeEvent &>(event).propertyName();
  // Qt uses dynamic properties that begin with an underscore; Tag is set by the container.
  const bool fForeign = !name.startsWith('_') && name != "Tag" && m_control.property(name).isValid();
  if (fForeign) Tell("there is no property " + name.toStdString() + "; it is passed over");
}

}  // namespace tarvik
