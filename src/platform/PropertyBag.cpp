#include "platform/PropertyBag.h"

#include <utility>

#include "support/Conversions.h"

namespace tarvik {

namespace {

Double Number(const Variant &vValue) {
  const auto *strText = std::get_if<std::string>(&vValue);
  if (!strText) return CDbl(vValue);
  const auto number = ParseNumber(*strText, '.');
  if (!number) RaiseError(ErrTypeMismatch);
  return *number;
}

}  // namespace

const Variant *PropertyBag::Find(const std::string &strKey) const {
  const auto found = m_values.find(strKey);
  return found == m_values.end() ? nullptr : &found->second;
}

std::string PropertyBag::ReadProperty(const std::string &strKey, const char *strDefault) const {
  return ReadProperty(strKey, std::string(strDefault));
}

std::string PropertyBag::ReadProperty(const std::string &strKey, const std::string &strDefault) const {
  const Variant *value = Find(strKey);
  return value ? CStr(*value) : strDefault;
}

Boolean PropertyBag::ReadProperty(const std::string &strKey, Boolean fDefault) const {
  const Variant *value = Find(strKey);
  if (!value) return fDefault;
  if (const auto *strText = std::get_if<std::string>(value)) {
    if (*strText == "True" || *strText == "true") return True;
    if (*strText == "False" || *strText == "false") return False;
  }
  return Number(*value) != 0;
}

Long PropertyBag::ReadProperty(const std::string &strKey, Long lngDefault) const {
  const Variant *value = Find(strKey);
  return value ? CLng(Number(*value)) : lngDefault;
}

Double PropertyBag::ReadProperty(const std::string &strKey, Double dblDefault) const {
  const Variant *value = Find(strKey);
  return value ? Number(*value) : dblDefault;
}

Single PropertyBag::ReadProperty(const std::string &strKey, Single sngDefault) const {
  const Variant *value = Find(strKey);
  return value ? static_cast<Single>(Number(*value)) : sngDefault;
}

void PropertyBag::WriteProperty(const std::string &strKey, Variant vValue, Variant vDefault) {
  m_values[strKey] = vValue;
  m_arrWritten.push_back({strKey, std::move(vValue), std::move(vDefault)});
}

}  // namespace tarvik
