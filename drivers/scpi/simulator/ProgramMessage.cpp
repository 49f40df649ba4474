#include "scpi/simulator/ProgramMessage.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

#include "common/Characters.h"

namespace tarvik::scpisim {

namespace {

using driver::IsDigit;
using driver::IsLetter;
using driver::UpperText;

// Bounds of IEEE 488.2, 7.6 and 7.7.
constexpr std::size_t LongestWord = 12, MostDigits = 255;
constexpr int LargestExponent = 32000;

bool IsWordCharacter(char ch) { return IsLetter(ch) || IsDigit(ch) || ch == '_'; }
bool IsBlank(char ch) { return static_cast<unsigned char>(ch) <= ' ' && ch != '\n'; }
bool IsAscii(char ch) { return static_cast<unsigned char>(ch) < 0x80; }
bool IsSign(char ch) { return ch == '+' || ch == '-'; }
/// What the grammar knows, if not at every place.
bool IsPunctuation(char ch) { return ch == ':' || ch == '*' || ch == '?' || ch == ','; }

/// Digits before the decimal point that a mantissa has when it is written without leading zeros; negative for zeros
/// behind the point.
int Magnitude(std::string_view strMantissa) {
  const auto lngPoint = static_cast<int>(std::min(strMantissa.find('.'), strMantissa.size()));
  const auto lngFirst = static_cast<int>(std::min(strMantissa.find_first_not_of("0."), strMantissa.size()));
  return lngFirst < lngPoint ? lngPoint - lngFirst : lngPoint - lngFirst + 1;
}

}  // namespace

Double ProgramData::TimesTenTo(int intPower) const {
  const std::string strNumber = strMantissa + "e" + std::to_string(intExponent + intPower);
  Double dblValue = 0;
  const auto result = std::from_chars(strNumber.data(), strNumber.data() + strNumber.size(), dblValue);
  if (result.ec != std::errc::result_out_of_range) return dblValue;
  const bool fNegative = strMantissa.starts_with('-');
  const int intMagnitude = Magnitude(std::string_view(strMantissa).substr(fNegative ? 1 : 0)) + intExponent + intPower;
  if (intMagnitude <= 0) return 0;
  return std::numeric_limits<Double>::infinity() * (fNegative ? -1 : 1);
}

std::string_view ProgramMessage::Take(std::size_t lngCount) {
  const std::string_view strTaken = m_strRest.substr(0, lngCount);
  m_strRest.remove_prefix(strTaken.size());
  return strTaken;
}

template <class Accepts>
std::string_view ProgramMessage::TakeWhile(Accepts accepts) {
  const auto end = std::ranges::find_if_not(m_strRest, accepts);
  return Take(static_cast<std::size_t>(end - m_strRest.begin()));
}

bool ProgramMessage::SkipBlanks() { return !TakeWhile(IsBlank).empty(); }

std::optional<ProgramUnit> ProgramMessage::Next() {
  for (SkipBlanks(); Peek() == ';'; SkipBlanks()) Take(1);
  if (AtEnd()) return std::nullopt;
  ProgramUnit unit;
  ReadHeader(unit);
  ReadParameters(unit);
  return unit;
}

// ---- the header

void ProgramMessage::ReadHeader(ProgramUnit &unit) {
  unit.fCommon = Peek() == '*';
  unit.fAbsolute = Peek() == ':';
  if (unit.fCommon || unit.fAbsolute) Take(1);
  unit.arrNodes.push_back(ReadMnemonic());
  while (!unit.fCommon && Peek() == ':') {
    Take(1);
    unit.arrNodes.push_back(ReadMnemonic());
  }
  unit.fQuery = Peek() == '?';
  if (unit.fQuery) Take(1);
  EndHeader();
}

std::string ProgramMessage::ReadMnemonic() {
  if (!IsLetter(Peek())) Fail(AtUnitEnd() || IsPunctuation(Peek()) ? ScpiSyntaxError : ScpiInvalidCharacter);
  const std::string_view strWord = TakeWhile(IsWordCharacter);
  if (strWord.size() > LongestWord) Fail(ScpiMnemonicTooLong, std::string(strWord));
  return UpperText(strWord);
}

void ProgramMessage::EndHeader() {
  if (AtUnitEnd() || IsBlank(Peek())) return;
  const char ch = Peek();
  const bool fData = ch == '"' || ch == '\'' || ch == '#' || ch == '(' || ch == '.' || IsSign(ch) || IsDigit(ch);
  if (fData) Fail(ScpiHeaderSeparatorError);
  Fail(IsPunctuation(ch) ? ScpiSyntaxError : ScpiInvalidCharacter);
}

// ---- parameters

void ProgramMessage::ReadParameters(ProgramUnit &unit) {
  SkipBlanks();
  if (AtUnitEnd()) return;
  while (true) {
    unit.arrData.push_back(ReadData());
    SkipBlanks();
    if (AtUnitEnd()) return;
    if (Peek() != ',') Fail(IsAscii(Peek()) ? ScpiInvalidSeparator : ScpiInvalidCharacter);
    Take(1);
    SkipBlanks();
  }
}

ProgramData ProgramMessage::ReadData() {
  const char ch = Peek();
  if (IsDigit(ch) || IsSign(ch) || ch == '.') return ReadDecimal();
  if (IsLetter(ch)) return ReadCharacters();
  if (ch == '"' || ch == '\'') return ReadString();
  if (ch == '#') return ReadAfterHash();
  if (ch == '(') return ReadExpression();
  // A comma with nothing before or behind it, or what begins no kind of data.
  Fail(AtUnitEnd() || ch == ',' ? ScpiSyntaxError : ScpiInvalidCharacter);
}

ProgramData ProgramMessage::ReadDecimal() {
  const bool fNegative = Peek() == '-';
  if (IsSign(Peek())) Take(1);
  ProgramData data{.strText = {}, .strMantissa = (fNegative ? "-" : "") + std::string(ReadMantissa())};
  data.intExponent = ReadExponent();
  data.dblNumber = data.TimesTenTo(0);
  data.strText = ReadSuffix();
  return data;
}

/// Digits with at most one point among them.
std::string_view ProgramMessage::ReadMantissa() {
  const std::string_view strMantissa = TakeWhile([](char ch) { return IsDigit(ch) || ch == '.'; });
  const auto lngPoints = std::ranges::count(strMantissa, '.');
  const std::size_t lngDigits = strMantissa.size() - static_cast<std::size_t>(lngPoints);
  if (lngPoints > 1) Fail(ScpiInvalidCharacterInNumber, std::string(strMantissa));
  if (lngDigits == 0) Fail(ScpiNumericDataError);
  const std::size_t lngZeros = std::min(strMantissa.find_first_not_of("0."), strMantissa.size());
  if (strMantissa.size() - lngZeros > MostDigits) Fail(ScpiTooManyDigits);
  return strMantissa;
}

/// The exponent, 0 without one. An E that no digit follows begins a suffix.
int ProgramMessage::ReadExponent() {
  std::size_t lngAt = 0;
  const auto skipBlanks = [&] {
    while (lngAt < m_strRest.size() && IsBlank(Peek(lngAt))) ++lngAt;
  };
  skipBlanks();
  if (Peek(lngAt) != 'E' && Peek(lngAt) != 'e') return 0;
  ++lngAt;
  skipBlanks();
  const bool fNegative = Peek(lngAt) == '-';
  if (IsSign(Peek(lngAt))) ++lngAt;
  if (!IsDigit(Peek(lngAt))) return 0;
  Take(lngAt);
  int intExponent = 0;
  for (const char ch : TakeWhile(IsDigit)) intExponent = std::min(intExponent * 10 + (ch - '0'), LargestExponent + 1);
  if (intExponent > LargestExponent) Fail(ScpiExponentTooLarge);
  return fNegative ? -intExponent : intExponent;
}

std::string ProgramMessage::ReadSuffix() {
  SkipBlanks();
  if (AtUnitEnd() || Peek() == ',') return {};
  if (!IsLetter(Peek()) && Peek() != '/') return {};
  // Units with powers and quotients, such as V/S2, are read as one word to tell that they are not known.
  const std::string_view strSuffix =
      TakeWhile([](char ch) { return IsLetter(ch) || IsDigit(ch) || ch == '/' || ch == '.' || ch == '-'; });
  if (strSuffix.size() > LongestWord) Fail(ScpiSuffixTooLong, std::string(strSuffix));
  return UpperText(strSuffix);
}

ProgramData ProgramMessage::ReadCharacters() {
  const std::string_view strWord = TakeWhile(IsWordCharacter);
  if (strWord.size() > LongestWord) Fail(ScpiCharacterDataTooLong, std::string(strWord));
  if (!AtUnitEnd() && Peek() != ',' && !IsBlank(Peek())) Fail(ScpiInvalidCharacterData);
  return {ProgramData::Kind::Character, 0, UpperText(strWord)};
}

ProgramData ProgramMessage::ReadString() {
  const char chQuote = Take(1).front();
  ProgramData data{ProgramData::Kind::String, 0, {}};
  while (true) {
    data.strText += TakeWhile([chQuote](char ch) { return ch != chQuote && IsAscii(ch); });
    if (Peek() != chQuote) Fail(ScpiInvalidStringData);
    Take(1);
    if (Peek() != chQuote) return data;
    data.strText += Take(1);  // a doubled quote stands for one
  }
}

ProgramData ProgramMessage::ReadExpression() {
  const std::size_t lngEnd = m_strRest.find_first_of(")\"';#");
  if (lngEnd == m_strRest.npos || m_strRest[lngEnd] != ')') Fail(ScpiInvalidExpression);
  const std::string_view strWhole = Take(lngEnd + 1);
  return {ProgramData::Kind::Expression, 0, std::string(strWhole.substr(1, strWhole.size() - 2))};
}

// ---- what begins with #

ProgramData ProgramMessage::ReadAfterHash() {
  Take(1);
  const char ch = Peek();
  if (IsDigit(ch)) return ReadBlock();
  switch (ch) {
    case 'H':
    case 'h': return ReadNonDecimal(16);
    case 'Q':
    case 'q': return ReadNonDecimal(8);
    case 'B':
    case 'b': return ReadNonDecimal(2);
    default: Fail(ScpiSyntaxError);
  }
}

ProgramData ProgramMessage::ReadNonDecimal(unsigned lngBase) {
  Take(1);
  const std::string_view strDigits = TakeWhile(IsWordCharacter);
  if (strDigits.empty()) Fail(ScpiNumericDataError);
  std::uint64_t lngNumber = 0;
  const char *end = strDigits.data() + strDigits.size();
  const auto [last, error] = std::from_chars(strDigits.data(), end, lngNumber, static_cast<int>(lngBase));
  if (last != end || error == std::errc::invalid_argument) Fail(ScpiInvalidCharacterInNumber, std::string(strDigits));
  if (error == std::errc::result_out_of_range) Fail(ScpiTooManyDigits, std::string(strDigits));
  return {ProgramData::Kind::NonDecimal, static_cast<Double>(lngNumber), {}};
}

/// #3100 and a hundred bytes, or #0 and everything to the end of the message.
ProgramData ProgramMessage::ReadBlock() {
  const auto lngDigits = static_cast<std::size_t>(Take(1).front() - '0');
  ProgramData data{ProgramData::Kind::Block, 0, {}};
  std::size_t lngLength = m_strRest.size();
  if (lngDigits > 0) {
    const std::string_view strLength = Take(lngDigits);
    if (strLength.size() < lngDigits || !std::ranges::all_of(strLength, IsDigit)) Fail(ScpiInvalidBlockData);
    std::from_chars(strLength.data(), strLength.data() + strLength.size(), lngLength);
    if (lngLength > m_strRest.size()) Fail(ScpiInvalidBlockData);
  }
  data.strText = Take(lngLength);
  return data;
}

}  // namespace tarvik::scpisim
