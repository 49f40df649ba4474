#include "EntryRules.h"

#include <algorithm>
#include <optional>

namespace tarvik::test {

namespace {

constexpr std::string_view PrefixLetters = "pnum kMGT";
constexpr std::int64_t ExponentBound = 1'000'000'000;

bool IsDigit(char ch) { return ch >= '0' && ch <= '9'; }

std::string_view WithoutBlanks(std::string_view strText) {
  while (strText.starts_with(' ')) strText.remove_prefix(1);
  while (strText.ends_with(' ')) strText.remove_suffix(1);
  return strText;
}

/// The whole number that is spelled by a sign and digits, held to the bound.
std::optional<std::int64_t> WholeNumber(std::string_view strText) {
  const bool fNegative = strText.starts_with('-');
  if (fNegative || strText.starts_with('+')) strText.remove_prefix(1);
  if (strText.empty() || !std::all_of(strText.begin(), strText.end(), IsDigit)) return std::nullopt;
  std::int64_t lngNumber = 0;
  for (const char ch : strText) lngNumber = std::min(ExponentBound, lngNumber * 10 + (ch - '0'));
  return fNegative ? -lngNumber : lngNumber;
}

/// Sign, digits and at most one separator.
std::optional<Decimal> Mantissa(std::string_view strText, char chSeparator) {
  Decimal decimal;
  decimal.fNegative = strText.starts_with('-');
  if (decimal.fNegative || strText.starts_with('+')) strText.remove_prefix(1);
  const auto separators = std::count(strText.begin(), strText.end(), chSeparator);
  const auto digits = std::count_if(strText.begin(), strText.end(), IsDigit);
  if (digits == 0 || separators > 1 || digits + separators != static_cast<std::ptrdiff_t>(strText.size()))
    return std::nullopt;
  if (separators == 1) decimal.lngExponent = -static_cast<std::int64_t>(strText.size() - strText.find(chSeparator) - 1);
  for (const char ch : strText)
    if (IsDigit(ch) && (ch != '0' || !decimal.strDigits.empty())) decimal.strDigits += ch;
  while (decimal.strDigits.ends_with('0')) {
    decimal.strDigits.pop_back();
    ++decimal.lngExponent;
  }
  return decimal;
}

/// Prefix, unit or both.
std::optional<int> TailExponent(std::string_view strTail, const FieldRules &rules) {
  strTail = WithoutBlanks(strTail);
  if (strTail == rules.strUnit) return 0;
  if (strTail.ends_with(rules.strUnit)) strTail.remove_suffix(rules.strUnit.size());
  if (strTail.empty() || !rules.fPrefixes) return std::nullopt;
  const int intExponent = ExponentOfPrefix(strTail);
  if (intExponent % 3 != 0 || intExponent < rules.intMinExponent || intExponent > rules.intMaxExponent)
    return std::nullopt;
  return intExponent;
}

Meaning Scaled(Decimal decimal, std::int64_t lngPower) {
  decimal.lngExponent = std::clamp(decimal.lngExponent + lngPower, -ExponentBound, ExponentBound);
  return {Meaning::Number, std::move(decimal)};
}

}  // namespace

int ExponentOfPrefix(std::string_view strPrefix) {
  const auto place = strPrefix.size() == 1 && strPrefix != " " ? PrefixLetters.find(strPrefix) : std::string_view::npos;
  return place == std::string_view::npos ? 1 : static_cast<int>(place) * 3 - 12;
}

Meaning MeaningOf(std::string strEntry, const FieldRules &rules) {
  for (char &ch : strEntry)
    if (ch == '\t' || ch == '\r' || ch == '\n') ch = ' ';
  if (strEntry.empty()) return {Meaning::Empty};

  const std::string_view strBare = WithoutBlanks(strEntry);
  const auto mark = strBare.find_first_of("eE");
  if (const auto mantissa = Mantissa(strBare.substr(0, mark), rules.chSeparator)) {
    if (mark == std::string_view::npos) return Scaled(*mantissa, rules.intShownExponent);
    if (const auto lngExponent = WholeNumber(strBare.substr(mark + 1))) return Scaled(*mantissa, *lngExponent);
  }

  const auto last = std::find_if(strEntry.rbegin(), strEntry.rend(), IsDigit);
  const auto tail = static_cast<std::size_t>(strEntry.rend() - last);
  if (tail == 0 || tail == strEntry.size()) return {Meaning::Bad};
  const auto intExponent = TailExponent(std::string_view(strEntry).substr(tail), rules);
  if (!intExponent) return {Meaning::Bad};
  const auto head = Mantissa(WithoutBlanks(std::string_view(strEntry).substr(0, tail)), rules.chSeparator);
  return head ? Scaled(*head, *intExponent) : Meaning{Meaning::NoNumber};
}

}  // namespace tarvik::test
