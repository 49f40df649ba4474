#include "scpi/simulator/Parameter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "scpi/simulator/UnitSuffix.h"
#include "simulator/model/Ranges.h"

namespace tarvik::scpisim {

namespace {

/// What no kind of parameter but the fitting one may be.
Long NotAllowed(ProgramData::Kind kind) {
  using Kind = ProgramData::Kind;
  switch (kind) {
    case Kind::Decimal:
    case Kind::NonDecimal: return ScpiNumericDataNotAllowed;
    case Kind::Character: return ScpiCharacterDataNotAllowed;
    case Kind::String: return ScpiStringDataNotAllowed;
    case Kind::Block: return ScpiBlockDataNotAllowed;
    case Kind::Expression: return ScpiExpressionDataNotAllowed;
  }
  return ScpiSyntaxError;
}

bool IsNumeric(ProgramData::Kind kind) {
  return kind == ProgramData::Kind::Decimal || kind == ProgramData::Kind::NonDecimal;
}

}  // namespace

Parameter Parameter::Number(Unit unit, Double dblMin, Double dblMax) {
  return {.kind = Kind::Number, .unit = unit, .dblMin = dblMin, .dblMax = dblMax, .arrChoices = {}, .arrWords = {}};
}

Parameter Parameter::Choice(Unit unit, std::vector<Double> arrChoices) {
  const auto [least, most] = std::ranges::minmax(arrChoices);
  Parameter parameter = Number(unit, least, most);
  parameter.arrChoices = std::move(arrChoices);
  return parameter;
}

Parameter Parameter::OneWord(std::vector<Word> arrWords) {
  Parameter parameter = WithoutUnit(Kind::OneWord);
  parameter.arrWords = std::move(arrWords);
  return parameter;
}

Parameter Parameter::Whole(Double dblMin, Double dblMax) { return WithoutUnit(Kind::Whole, dblMin, dblMax); }
Parameter Parameter::Switch() { return WithoutUnit(Kind::Switch, 0, 1); }
Parameter Parameter::String() { return WithoutUnit(Kind::String); }
Parameter Parameter::Block() { return WithoutUnit(Kind::Block); }

Parameter Parameter::WithoutUnit(Kind kind, Double dblMin, Double dblMax) {
  Parameter parameter = Number(Unit::None, dblMin, dblMax);
  parameter.kind = kind;
  return parameter;
}

Parameter Parameter::Optional() const {
  Parameter parameter = *this;
  parameter.fOptional = true;
  return parameter;
}

void Parameter::CheckRange(Double dblValue) const {
  using simulator::NotAbove;
  if (!std::isfinite(dblValue) || !NotAbove(dblMin, dblValue) || !NotAbove(dblValue, dblMax))
    Fail(ScpiDataOutOfRange, RealAnswer(dblValue) + " is not from " + RealAnswer(dblMin) + " to " + RealAnswer(dblMax));
  const auto isValue = [=](Double dblChoice) { return simulator::SameQuantity(dblChoice, dblValue); };
  if (!arrChoices.empty() && std::ranges::none_of(arrChoices, isValue))
    Fail(ScpiIllegalParameterValue, RealAnswer(dblValue));
}

Double Parameter::SpecialNumber(const ProgramData &data, const std::function<Double()> &DefaultOf) const {
  static const Keyword minimum("MINimum"), maximum("MAXimum"), standard("DEFault");
  if (data.kind != ProgramData::Kind::Character) Fail(NotAllowed(data.kind));
  if (minimum.Matches(data.strText)) return dblMin;
  if (maximum.Matches(data.strText)) return dblMax;
  if (standard.Matches(data.strText) && DefaultOf) return DefaultOf();
  Fail(ScpiInvalidCharacterData, data.strText);
}

Double Parameter::NumberOf(const ProgramData &data, const std::function<Double()> &DefaultOf) const {
  static const Keyword infinity("INFinity"), negativeInfinity("NINFinity");
  if (IsNumeric(data.kind))
    return data.strText.empty() ? data.dblNumber : data.TimesTenTo(SuffixPower(data.strText, unit));
  if (infinity.Matches(data.strText)) return std::numeric_limits<Double>::infinity();
  if (negativeInfinity.Matches(data.strText)) return -std::numeric_limits<Double>::infinity();
  return SpecialNumber(data, DefaultOf);
}

Double Parameter::WordOf(const ProgramData &data) const {
  if (data.kind != ProgramData::Kind::Character) Fail(NotAllowed(data.kind));
  for (const Word &word : arrWords)
    if (word.keyword.Matches(data.strText)) return word.lngValue;
  Fail(ScpiInvalidCharacterData, data.strText);
}

/// ON, OFF, or a number that is rounded: everything but 0 is on.
Double Parameter::SwitchOf(const ProgramData &data) const {
  if (IsNumeric(data.kind)) {
    if (!data.strText.empty()) Fail(ScpiSuffixNotAllowed, data.strText);
    return std::abs(data.dblNumber) > 0.5 ? 1 : 0;
  }
  if (data.kind != ProgramData::Kind::Character) Fail(NotAllowed(data.kind));
  if (data.strText == "ON") return 1;
  if (data.strText == "OFF") return 0;
  Fail(ScpiInvalidCharacterData, data.strText);
}

Value Parameter::Convert(const ProgramData &data, const std::function<Double()> &DefaultOf) const {
  switch (kind) {
    case Kind::Switch: return SwitchOf(data);
    case Kind::OneWord: return WordOf(data);
    case Kind::String:
      if (data.kind != ProgramData::Kind::String) Fail(NotAllowed(data.kind));
      return data.strText;
    case Kind::Block:
      if (data.kind != ProgramData::Kind::Block) Fail(NotAllowed(data.kind));
      return data.strText;
    case Kind::Number:
    case Kind::Whole: break;
  }
  const Double dblNumber = NumberOf(data, DefaultOf);
  const Double dblValue = kind == Kind::Whole ? std::nearbyint(dblNumber) : dblNumber;
  CheckRange(dblValue);
  return dblValue;
}

std::string Parameter::Answer(const Value &value) const {
  if (kind == Kind::String) return StringAnswer(std::get<std::string>(value));
  if (kind == Kind::Block) return BlockAnswer(std::get<std::string>(value));
  const Double dblValue = std::get<Double>(value);
  if (kind == Kind::Number) return RealAnswer(dblValue);
  const auto hasValue = [=](const Word &candidate) { return candidate.lngValue == dblValue; };
  const auto word = std::ranges::find_if(arrWords, hasValue);
  return word == arrWords.end() ? WholeAnswer(dblValue) : word->keyword.Short();
}

std::string RealAnswer(Double dblValue) {
  // The numbers that stand for what has no digits, SCPI-99 volume 1, 7.2.1.4 and 7.2.1.5.
  if (std::isnan(dblValue)) return "9.91E+37";
  if (std::isinf(dblValue)) return dblValue > 0 ? "9.9E+37" : "-9.9E+37";
  char text[40];
  // Adding 0 takes the sign off a negative zero.
  const auto end = std::to_chars(text, text + sizeof text, dblValue + 0.0, std::chars_format::scientific).ptr;
  std::string strNumber(text, end);
  const std::size_t lngExponent = strNumber.find('e');
  strNumber[lngExponent] = 'E';
  if (strNumber.find('.') == strNumber.npos) strNumber.insert(lngExponent, ".0");
  return strNumber;
}

std::string WholeAnswer(Double dblValue) { return std::to_string(std::llround(dblValue)); }

std::string StringAnswer(const std::string &strText) {
  std::string strAnswer = "\"";
  for (const char ch : strText) strAnswer += ch == '"' ? std::string("\"\"") : std::string(1, ch);
  return strAnswer + '"';
}

std::string BlockAnswer(const std::string &strBytes) {
  const std::string strLength = std::to_string(strBytes.size());
  return "#" + std::to_string(strLength.size()) + strLength + strBytes;
}

}  // namespace tarvik::scpisim
