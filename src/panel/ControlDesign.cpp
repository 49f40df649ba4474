#include "panel/ControlDesign.h"

#include "support/Conversions.h"

namespace tarvik {

std::string ControlName(const std::string &strName, Long lngIndex) {
  return lngIndex == NoIndex ? strName : strName + "(" + std::to_string(lngIndex) + ")";
}

ControlDesign::ControlDesign(ControlKind eKind, std::string strName, Long lngIndex)
    : m_eKind(eKind), m_strName(std::move(strName)), m_intIndex(CInt(Double(lngIndex))) {}

ControlDesign &ControlDesign::Store(const char *strKey, Variant vValue) {
  m_properties.Set(strKey, std::move(vValue));
  return *this;
}

ControlDesign &ControlDesign::In(const std::string &strContainer, Long lngIndex) {
  m_strContainer = ControlName(strContainer, lngIndex);
  return *this;
}

ControlDesign &ControlDesign::At(const TwipsRect &place) {
  m_place = place;
  return *this;
}

ControlDesign &ControlDesign::Caption(const std::string &strCaption) { return Store("Caption", strCaption); }

ControlDesign &ControlDesign::Caption(const std::string &strCaption, Double dblCaptionWidth) {
  return Caption(strCaption).Store("CaptionWidth", dblCaptionWidth);
}

ControlDesign &ControlDesign::CaptionAtRight() { return Store("CaptionAlignment", Long{1}); }

ControlDesign &ControlDesign::ToolTip(const std::string &strToolTip) { return Store("ToolTip", strToolTip); }

ControlDesign &ControlDesign::SpokenName(const std::string &strName) { return Store("AccessibleName", strName); }

ControlDesign &ControlDesign::Tag(const std::string &strTag) { return Store("Tag", strTag); }

ControlDesign &ControlDesign::TagX(const std::string &strTagX) { return Store("TagX", strTagX); }

ControlDesign &ControlDesign::Chosen() { return Store("Value", True); }

ControlDesign &ControlDesign::Disabled() { return Store("Enabled", False); }

ControlDesign &ControlDesign::Hidden() { return Store("Visible", False); }

ControlDesign &ControlDesign::WordWrap() { return Store("WordWrap", True); }

ControlDesign &ControlDesign::BaseUnit(const std::string &strUnit) { return Store("BaseUnit", strUnit); }

ControlDesign &ControlDesign::DefaultValue(Double dblValue) { return Store("DefaultValue", dblValue); }

ControlDesign &ControlDesign::Min(Double dblMin) { return Store("Min", dblMin); }

ControlDesign &ControlDesign::Range(Double dblMin, Double dblMax) { return Min(dblMin).Store("Max", dblMax); }

ControlDesign &ControlDesign::MinExponent(Long lngMin) { return Store("MinExponent", lngMin); }

ControlDesign &ControlDesign::Exponents(Long lngMin, Long lngMax) {
  return MinExponent(lngMin).Store("MaxExponent", lngMax);
}

ControlDesign &ControlDesign::NumberFormat(const std::string &strFormat) { return Store("NumberFormat", strFormat); }

ControlDesign &ControlDesign::BackColor(Long lngColour) { return Store("BackColor", lngColour); }

ControlDesign &ControlDesign::ForeColor(Long lngColour) { return Store("ForeColor", lngColour); }

ControlDesign &ControlDesign::Menu(std::initializer_list<std::pair<std::string, std::string>> entries) {
  std::string strMenu;
  for (const auto &[strKey, strText] : entries) strMenu += (strMenu.empty() ? "" : "|") + strKey + "=" + strText;
  return Store("Menu", strMenu);
}

ControlDesign &ControlDesign::Columns(std::initializer_list<std::string> headers) {
  std::string strColumns;
  for (const std::string &strHeader : headers) strColumns += (strColumns.empty() ? "" : "|") + strHeader;
  return Store("Columns", strColumns);
}

ControlDesign &ControlDesign::ColumnWidths(std::initializer_list<Long> widths) {
  std::string strWidths;
  for (const Long lngWidth : widths) strWidths += (strWidths.empty() ? "" : "|") + std::to_string(lngWidth);
  return Store("ColumnWidths", strWidths);
}

namespace form {

ControlDesign Frame(std::string strName, Long lngIndex) { return {ControlKind::Frame, std::move(strName), lngIndex}; }

ControlDesign Option(std::string strName, Long lngIndex) { return {ControlKind::Option, std::move(strName), lngIndex}; }

ControlDesign Field(std::string strName, Long lngIndex) { return {ControlKind::Field, std::move(strName), lngIndex}; }

ControlDesign List(std::string strName, Long lngIndex) {
  return ControlDesign(ControlKind::List, std::move(strName), lngIndex).CaptionAtRight();
}

ControlDesign Check(std::string strName) { return {ControlKind::Check, std::move(strName)}; }

ControlDesign Button(std::string strName) { return {ControlKind::Button, std::move(strName)}; }

ControlDesign Text(std::string strName, Long lngIndex) { return {ControlKind::Text, std::move(strName), lngIndex}; }

ControlDesign Display(std::string strName) { return {ControlKind::Display, std::move(strName)}; }

ControlDesign DisplayBox(std::string strName) { return {ControlKind::DisplayBox, std::move(strName)}; }

ControlDesign Picture(std::string strName) { return {ControlKind::Picture, std::move(strName)}; }

ControlDesign Highlight(std::string strName) { return {ControlKind::Highlight, std::move(strName)}; }

ControlDesign Menu(std::string strName, Long lngIndex) { return {ControlKind::Menu, std::move(strName), lngIndex}; }

ControlDesign ListView(std::string strName) { return {ControlKind::ListView, std::move(strName)}; }

ControlDesign Pattern(std::string strName) { return {ControlKind::Pattern, std::move(strName)}; }

ControlDesign Container(std::string strName, Long lngIndex) {
  return {ControlKind::Container, std::move(strName), lngIndex};
}

}  // namespace form
}  // namespace tarvik
