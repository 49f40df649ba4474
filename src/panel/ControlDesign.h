#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/PropertyBag.h"
#include "platform/Twips.h"
#include "support/Types.h"

namespace tarvik {

enum class ControlKind {
  Frame,
  Option,
  Field,
  List,
  Check,
  Button,
  Text,
  Display,
  DisplayBox,
  Picture,
  Highlight,
  Menu,
  ListView,
  Pattern,
  Container,
};

/// The index of a control outside of any control array.
inline constexpr Integer NoIndex = -1;

/// "esWidth(0)", or the bare name for NoIndex.
std::string ControlName(const std::string &strName, Long lngIndex);

/// One row of a form: what the control is, its name and index, its container, its place and its stored properties.
/// Built in one expression, for example
///
///     Field("esDelay", k).In(strBox).At({120, 345, 3810, 315}).Caption("Delay", 1440).BaseUnit("s")
///
/// Each setter stores the property of its own name where nothing else is said. The factories in namespace form start a
/// row.
class ControlDesign {
 public:
  /// An index outside the range of an Integer is error 6.
  ControlDesign(ControlKind eKind, std::string strName, Long lngIndex = NoIndex);

  /// The container, a control of an earlier row. Rows without one stand on the page itself.
  ControlDesign &In(const std::string &strContainer, Long lngIndex = NoIndex);
  /// Twips, relative to the container.
  ControlDesign &At(const TwipsRect &place);

  ControlDesign &Caption(const std::string &strCaption);
  /// A caption left of the control itself, in a column of this many twips.
  ControlDesign &Caption(const std::string &strCaption, Double dblCaptionWidth);
  ControlDesign &ToolTip(const std::string &strToolTip);
  /// Aligned to the right within its column ("CaptionAlignment").
  ControlDesign &CaptionAtRight();
  /// What a screen reader says in place of the caption ("AccessibleName").
  ControlDesign &SpokenName(const std::string &strName);
  ControlDesign &Tag(const std::string &strTag);
  /// The mask of a list that depends on the mode ("TagX").
  ControlDesign &TagX(const std::string &strTagX);
  /// The option of its group that is on at first ("Value").
  ControlDesign &Chosen();
  ControlDesign &Disabled();
  ControlDesign &Hidden();
  ControlDesign &WordWrap();

  ControlDesign &BaseUnit(const std::string &strUnit);
  ControlDesign &DefaultValue(Double dblValue);
  ControlDesign &Min(Double dblMin);
  /// "Min" and "Max".
  ControlDesign &Range(Double dblMin, Double dblMax);
  ControlDesign &MinExponent(Long lngMin);
  /// "MinExponent" and "MaxExponent".
  ControlDesign &Exponents(Long lngMin, Long lngMax);
  ControlDesign &NumberFormat(const std::string &strFormat);

  ControlDesign &BackColor(Long lngColour);
  ControlDesign &ForeColor(Long lngColour);

  /// The entries of a menu: the key that ButtonMenuClick tells, and the text. Neither holds a "|", and no key a "=".
  ControlDesign &Menu(std::initializer_list<std::pair<std::string, std::string>> entries);
  /// The headers of a list view, none with a "|" in it.
  ControlDesign &Columns(std::initializer_list<std::string> headers);
  /// Twips, from the first column on; the last one takes the rest.
  ControlDesign &ColumnWidths(std::initializer_list<Long> widths);

  ControlKind Kind() const { return m_eKind; }
  const std::string &Name() const { return m_strName; }
  Integer Index() const { return m_intIndex; }
  std::string FullName() const { return ControlName(m_strName, m_intIndex); }
  /// Full name, empty for the page itself.
  const std::string &ContainerName() const { return m_strContainer; }
  const TwipsRect &Place() const { return m_place; }
  const PropertyBag &Properties() const { return m_properties; }

 private:
  ControlDesign &Store(const char *strKey, Variant vValue);

  ControlKind m_eKind;
  std::string m_strName;
  Integer m_intIndex;
  std::string m_strContainer;
  TwipsRect m_place;
  PropertyBag m_properties;
};

/// The rows of a form in the order in which the controls are made: the order of the Tab key, and, where controls
/// overlap, from back to front.
class FormTable {
 public:
  FormTable() = default;
  FormTable(std::initializer_list<ControlDesign> rows) : m_rows(rows) {}

  void Add(const FormTable &rows) { m_rows.insert(m_rows.end(), rows.m_rows.begin(), rows.m_rows.end()); }

  auto begin() const { return m_rows.begin(); }
  auto end() const { return m_rows.end(); }

 private:
  std::vector<ControlDesign> m_rows;
};

/// The factories: each starts a row of its kind.
namespace form {

ControlDesign Frame(std::string strName, Long lngIndex = NoIndex);
ControlDesign Option(std::string strName, Long lngIndex = NoIndex);
ControlDesign Field(std::string strName, Long lngIndex = NoIndex);
/// Its caption is aligned to the right, as that of a field is by default.
ControlDesign List(std::string strName, Long lngIndex = NoIndex);
ControlDesign Check(std::string strName);
ControlDesign Button(std::string strName);
ControlDesign Text(std::string strName, Long lngIndex = NoIndex);
ControlDesign Display(std::string strName);
ControlDesign DisplayBox(std::string strName);
ControlDesign Picture(std::string strName);
ControlDesign Highlight(std::string strName);
ControlDesign Menu(std::string strName, Long lngIndex = NoIndex);
ControlDesign ListView(std::string strName);
ControlDesign Pattern(std::string strName);
ControlDesign Container(std::string strName, Long lngIndex = NoIndex);

}  // namespace form
}  // namespace tarvik
