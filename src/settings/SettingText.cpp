#include "settings/SettingText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "engrspin/EngrFormat.h"
#include "engrspin/EngrNumber.h"
#include "settings/PatternText.h"
#include "settings/SetupDifferences.h"
#include "settings/TimingRules.h"
#include "support/Conversions.h"

namespace tarvik {

namespace {

bool HasPrefix(Long lngExponent) { return lngExponent >= LowestExponent && lngExponent <= HighestExponent; }

bool SameWord(std::string_view strFirst, std::string_view strSecond) {
  const auto lower = [](char ch) { return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch; };
  return std::ranges::equal(strFirst, strSecond, {}, lower, lower);
}

std::string Quoted(const std::string &strText) { return "\"" + strText + "\""; }

[[noreturn]] void Refuse(const std::string &strWhy) { throw RunTimeError(ErrInvalidPropertyValue, strWhy); }

/// Listed as "A, B or C".
std::string Listed(const std::vector<std::string> &arrTexts) {
  std::string strText;
  for (std::size_t i = 0; i < arrTexts.size(); ++i)
    strText += (i == 0 ? "" : i + 1 == arrTexts.size() ? " or " : ", ") + arrTexts[i];
  return strText;
}

std::string ChoiceText(const Setting &setting, Long lngValue) {
  const std::string_view strWord = setting.WordOf(lngValue);
  return strWord.empty() ? std::to_string(lngValue) : std::string(strWord);
}

/// The pattern on one line, so that it fits a command line: "16 1: FF00".
std::string PatternEntry(const PatternStream &stream) {
  std::string strText = std::to_string(stream.lngLength) + " bits";
  for (const std::string &strLine : PatternLines(stream)) strText += "; " + strLine;
  return strText;
}

Double ReadQuantity(const Setting &setting, std::string_view strUnit, const std::string &strText) {
  // A new number takes all prefixes and the point as separator.
  EngrNumber number;
  number.InitProperties();
  number.SetBaseUnit(std::string(strUnit));
  Entry entry;
  try {
    entry = number.ReadEntry(strText);
  } catch (const RunTimeError &) {
    entry = {};
  }
  if (entry.kind == Entry::Kind::Number) return entry.dblValue;
  const std::string strExample = strUnit.empty()   ? "12"
                                 : strUnit == "s"  ? "50ns"
                                 : strUnit == "Hz" ? "1MHz"
                                                   : "2.5" + std::string(strUnit);
  Refuse(Quoted(strText) + " is no number" + (setting.strUnit.empty() && !setting.fLevelUnit ? "" : " with a unit") +
         " like " + strExample);
}

Long ReadCount(const Setting &setting, const std::string &strText) {
  const Double dblValue = ReadQuantity(setting, "", strText);
  if (dblValue != std::floor(dblValue) || std::abs(dblValue) > std::numeric_limits<Long>::max())
    Refuse(Quoted(strText) + " is no whole number");
  return static_cast<Long>(dblValue);
}

Long ReadChoice(const Setting &setting, const std::string &strText) {
  for (const SettingWord &word : setting.arrWords)
    if (SameWord(word.strWord, strText)) return word.lngValue;
  Long lngValue = 0;
  const char *end = strText.data() + strText.size();
  const auto [pos, error] = std::from_chars(strText.data(), end, lngValue);
  if (error == std::errc() && pos == end && !setting.fOnlyWords) return lngValue;
  Refuse(Quoted(strText) + " is not " + WordsOf(setting));
}

Boolean ReadSwitch(const std::string &strText) {
  if (SameWord(strText, "on")) return True;
  if (SameWord(strText, "off")) return False;
  Refuse(Quoted(strText) + " is not On or Off");
}

PatternStream ReadStream(const std::string &strText) {
  std::vector<std::string> arrParts = Split(strText, ';');
  const std::string strHead = Trim(arrParts.front());
  Long lngLength = -1;
  const auto [pos, error] = std::from_chars(strHead.data(), strHead.data() + strHead.size(), lngLength);
  if (error != std::errc() || std::string_view(pos, strHead.data() + strHead.size()) != " bits")
    Refuse(Quoted(strText) + " is no pattern like \"16 bits; 1: FF00\"");
  arrParts.erase(arrParts.begin());
  PatternStream stream;
  if (const std::string strWrong = ReadPatternLines(lngLength, arrParts, stream); !strWrong.empty()) Refuse(strWrong);
  return stream;
}

std::string OutOfRange(const Setting &setting, std::string_view strUnit, Double dblValue) {
  const auto text = [&](Double dblNumber) { return ExactText(dblNumber, strUnit); };
  return text(dblValue) + " is out of the range " + text(setting.dblMin) + " to " + text(setting.dblMax);
}

}  // namespace

std::string ShortestText(Double dblValue) {
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), dblValue).ptr;
  return {text.data(), end};
}

std::string EngineeringText(Double dblValue, std::string_view strUnit, Long lngDigits, char chSeparator) {
  Long lngExponent = 0;
  std::string strText;
  if (std::isfinite(dblValue)) FormatMantissa(dblValue, lngDigits, chSeparator, lngExponent, strText);
  if (!std::isfinite(dblValue) || !HasPrefix(lngExponent)) {
    strText = ShortestText(dblValue);
    lngExponent = 0;
  }
  const std::string strTail = std::string(PrefixOfExponent(lngExponent)) + std::string(strUnit);
  return strTail.empty() ? strText : strText + " " + strTail;
}

std::string ExactText(Double dblValue, std::string_view strUnit) {
  std::array<char, 32> text;
  const char *end = std::to_chars(text.data(), text.data() + text.size(), dblValue, std::chars_format::scientific).ptr;
  std::string strDigits(static_cast<const char *>(text.data()), end);
  const std::size_t mark = strDigits.find('e');
  if (!std::isfinite(dblValue) || mark == std::string::npos) return ShortestText(dblValue);
  Long lngPower = 0;
  std::from_chars(strDigits.data() + mark + (strDigits[mark + 1] == '+' ? 2 : 1), strDigits.data() + strDigits.size(),
                  lngPower);
  const Long lngRest = ((lngPower % 3) + 3) % 3;
  const Long lngExponent = lngPower - lngRest;
  if (!HasPrefix(lngExponent)) return ShortestText(dblValue);

  strDigits.resize(mark);
  const std::string strSign = strDigits.front() == '-' ? "-" : "";
  std::erase_if(strDigits, [](char ch) { return ch == '.' || ch == '-'; });
  const auto whole = static_cast<std::size_t>(lngRest) + 1;
  if (strDigits.size() < whole) strDigits.resize(whole, '0');
  if (strDigits.size() > whole) strDigits.insert(whole, ".");
  return strSign + strDigits + std::string(PrefixOfExponent(lngExponent)) + std::string(strUnit);
}

std::string WordsOf(const Setting &setting) {
  std::vector<std::string> arrWords;
  for (const SettingWord &word : setting.arrWords) arrWords.emplace_back(word.strWord);
  return Listed(arrWords);
}

std::string ShownText(const Setting &setting, const Setup &setup, Long lngChannel, Long lngDigits, char chSeparator) {
  const SettingValue value = setting.Read(setup, lngChannel);
  switch (setting.eKind) {
    case SettingKind::Switch: return std::get<Boolean>(value) ? "On" : "Off";
    case SettingKind::Count: return std::to_string(std::get<Long>(value));
    case SettingKind::Choice: return ChoiceText(setting, std::get<Long>(value));
    case SettingKind::Quantity:
      return EngineeringText(std::get<Double>(value), setting.Unit(setup, lngChannel), lngDigits, chSeparator);
    case SettingKind::Stream: return PatternSummary(std::get<PatternStream>(value));
  }
  return {};
}

std::string EntryText(const Setting &setting, const Setup &setup, Long lngChannel) {
  const SettingValue value = setting.Read(setup, lngChannel);
  if (setting.eKind == SettingKind::Quantity)
    return ExactText(std::get<Double>(value), setting.Unit(setup, lngChannel));
  if (setting.eKind == SettingKind::Stream) return PatternEntry(std::get<PatternStream>(value));
  return ShownText(setting, setup, lngChannel);
}

SettingValue ReadEntryText(const Setting &setting, const Setup &setup, Long lngChannel, const std::string &strText) {
  switch (setting.eKind) {
    case SettingKind::Switch: return ReadSwitch(strText);
    case SettingKind::Count: return ReadCount(setting, strText);
    case SettingKind::Choice: return ReadChoice(setting, strText);
    case SettingKind::Quantity: return ReadQuantity(setting, setting.Unit(setup, lngChannel), strText);
    case SettingKind::Stream: return ReadStream(strText);
  }
  RaiseError(ErrTypeMismatch);
}

std::string LackObjection(const Setting &setting, const Setup &instrument, const SettingValue &value) {
  if (setting.eKind == SettingKind::Choice) {
    const auto word = std::ranges::find(setting.arrWords, std::get<Long>(value), &SettingWord::lngValue);
    if (word != setting.arrWords.end() && (word->eLack & instrument.lngLacks) != 0)
      return "the instrument does not have " + std::string(word->strWord);
  }
  if ((instrument.lngLacks & setting.eFixed) == 0) return {};
  std::vector<std::string> arrAllowed;
  for (const std::string &strAllowed : Split(LeadingEdgeValues(True), ';')) {
    const Double dblAllowed = ParseNumber(strAllowed, '.').value_or(0);
    if (SameQuantity(std::get<Double>(value), dblAllowed, setting.strUnit)) return {};
    arrAllowed.push_back(ExactText(dblAllowed, setting.strUnit));
  }
  return "the instrument has " + Listed(arrAllowed) + " only";
}

std::string Objection(const Setting &setting, const Setup &setup, Long lngChannel, const SettingValue &value) {
  if (std::string strLack = LackObjection(setting, setup, value); !strLack.empty()) return strLack;
  if (setting.eKind == SettingKind::Choice) {
    const Long lngValue = std::get<Long>(value);
    const bool fUnknown = setting.fOnlyWords && setting.WordOf(lngValue).empty();
    return fUnknown ? std::to_string(lngValue) + " is not " + WordsOf(setting) : std::string();
  }
  if (setting.eKind == SettingKind::Count) {
    const Long lngValue = std::get<Long>(value), lngMin = CLng(setting.dblMin), lngMax = CLng(setting.dblMax);
    if (lngValue >= lngMin && lngValue <= lngMax) return {};
    return std::to_string(lngValue) + " is out of the range " + std::to_string(lngMin) + " to " +
           std::to_string(lngMax);
  }
  if (setting.eKind != SettingKind::Quantity) return {};
  const auto dblValue = std::get<Double>(value);
  if (dblValue >= setting.dblMin && dblValue <= setting.dblMax) return {};
  return OutOfRange(setting, setting.Unit(setup, lngChannel), dblValue);
}

}  // namespace tarvik
