#pragma once

#include <string>

#include "engrspin/FieldDefaults.h"
#include "engrspin/ValueFormat.h"
#include "support/Types.h"

namespace tarvik {

/// Result of parsing a typed text.
struct Entry {
  enum class Kind {
    Empty,   ///< the text is empty: the minimum is shown, the value stays
    Number,  ///< assign dblValue
    Bad,     ///< no number, or a tail that is neither prefix nor unit
  };
  Kind kind = Kind::Bad;
  Double dblValue = 0;
};

/// The number model of a field: value, limits, and conversion to and from text.
/// Exponents are powers of ten, multiples of 3 from -12 to 12.
class EngrNumber {
 public:
  /// The formats must outlive the number.
  explicit EngrNumber(const ValueFormat &engineering = EngineeringFormat(), const ValueFormat &plain = PlainFormat())
      : m_engineering(&engineering), m_plain(&plain) {}

  /// State of a field that was just placed on a form.
  void InitProperties();
  /// Resets value, old value and exponent.
  void ForgetValue();

  Double Value() const { return m_dblValue; }
  /// The value before the latest assignment.
  Double OldValue() const { return m_dblOldValue; }
  /// Clamps the value to the limits. A magnitude below Smallest becomes the lower limit when the value falls and
  /// Smallest when it rises. NaN counts as too small.
  void Assign(Double dblValue);

  /// 1 / value, or the upper limit for 0.
  Double Reciprocal() const;
  /// The value whose reciprocal this is: the upper limit for 0.
  Double ValueOfReciprocal(Double dblReciprocal) const;

  Double Min() const { return m_dblMin; }
  Double Max() const { return m_dblMax; }
  /// A limit that crosses the other one moves it along. NaN is ignored.
  void SetMin(Double dblMin);
  void SetMax(Double dblMax);

  Long MinExponent() const { return m_lngMinExponent; }
  Long MaxExponent() const { return m_lngMaxExponent; }
  void SetMinExponent(Long lngExponent);
  void SetMaxExponent(Long lngExponent) { m_lngMaxExponent = lngExponent; }
  /// Smallest magnitude other than 0 and smallest step: 10^(MinExponent - 2).
  Double Smallest() const { return m_dblSmallest; }

  Long SignificantDigits() const { return m_lngSignificantDigits; }
  void SetSignificantDigits(Long lngDigits) { TakeFormat(m_lngSignificantDigits, lngDigits); }

  const std::string &BaseUnit() const { return m_strBaseUnit; }
  void SetBaseUnit(const std::string &strUnit) { TakeFormat(m_strBaseUnit, strUnit); }
  const std::string &NumberFormat() const { return m_strNumberFormat; }
  void SetNumberFormat(const std::string &strFormat) { TakeFormat(m_strNumberFormat, strFormat); }

  char Decimal() const { return m_chDecimal; }
  void SetDecimal(char chDecimal) { TakeFormat(m_chDecimal, chDecimal); }

  Boolean EngrMode() const { return m_fEngrMode; }
  void SetEngrMode(Boolean fEngrMode) { TakeFormat(m_fEngrMode, fEngrMode); }
  /// Exponent of the last text in engineering format; a value of 0 keeps it.
  Long Exponent() const { return m_lngExponent; }
  /// Incremented by every change that can alter the text of an unchanged value, and by a failed conversion.
  Long FormatVersion() const { return m_lngFormatVersion; }

  /// Prefix letter in engineering format, "*" outside of -12 to 12; always empty in plain format.
  std::string ExponentToPrefix(Long lngExponent) const;
  /// Exponent of a tail: a prefix within the exponents of the field, the unit, or both. strUnits is left
  /// with the text that was compared last.
  void UnitsToExponent(std::string &strUnits, Long &lngExponent, Boolean &fFound) const;
  void FormatEngr(Double dblValue, Long &lngExponent, std::string &strText) const;
  /// Text of the value in the format in force. A failure is reported and gives the empty text.
  std::string ConvertValue2Engr();

  /// Parses the typed text. Errors 6 and 13 where it looks like a number but does not convert.
  Entry ReadEntry(std::string strEntry) const;

  /// Everything but the formats, of which a field never gets others.
  template <class Archive>
  void VisitState(Archive &archive) {
    archive.Setting(m_dblValue);
    archive.Shown(m_dblOldValue);
    archive.Shown(m_dblMin);
    archive.Shown(m_dblMax);
    archive.Shown(m_lngExponent);
    archive.Shown(m_strBaseUnit);
    archive.Shown(m_fEngrMode);
    ++m_lngFormatVersion;
  }

 private:
  template <class Setting>
  void TakeFormat(Setting &setting, const Setting &value) {
    setting = value;
    ++m_lngFormatVersion;
  }

  const ValueFormat *m_engineering;
  const ValueFormat *m_plain;
  Double m_dblValue = 0;
  Double m_dblOldValue = 0;
  Double m_dblMin = 0;
  Double m_dblMax = 0;
  Double m_dblSmallest = 0;
  Long m_lngMinExponent = 0;
  Long m_lngMaxExponent = 0;
  Long m_lngSignificantDigits = MinDigits;
  Long m_lngExponent = 0;
  Long m_lngFormatVersion = 0;
  std::string m_strBaseUnit;
  std::string m_strNumberFormat;
  Boolean m_fEngrMode = False;
  char m_chDecimal = '.';
};

}  // namespace tarvik
