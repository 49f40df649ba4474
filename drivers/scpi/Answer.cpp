#include "scpi/Answer.h"

#include <algorithm>
#include <cmath>

#include "common/Characters.h"
#include "support/Conversions.h"
#include "support/RunTimeError.h"

namespace tarvik::scpi {

namespace {

using driver::IsDigit;
using driver::IsLower;

/// SCPI's number for what is none.
constexpr Double NotANumber = 9.91e37;

bool IsBlank(char ch) { return ch == ' ' || ch == '\t' || ch == '\r'; }

bool SameLetters(std::string_view strFirst, std::string_view strSecond) {
  return std::ranges::equal(strFirst, strSecond, {}, driver::Upper, driver::Upper);
}

}  // namespace

bool AnswerScanner::Take(char ch) {
  switch (m_eState) {
    case State::Text: return TakeText(ch);
    case State::Quotes:
      if (ch == m_chQuote) m_eState = State::Text;
      return false;
    case State::BlockStart:
      // A number in another base also begins with "#".
      if (!IsDigit(ch) || ch == '0') {
        m_eState = State::Text;
        return TakeText(ch);
      }
      m_intDigits = ch - '0';
      m_size = 0;
      m_eState = State::BlockSize;
      return false;
    case State::BlockSize:
      if (!IsDigit(ch)) {
        m_eState = State::Text;
        return TakeText(ch);
      }
      m_size = m_size * 10 + static_cast<std::size_t>(ch - '0');
      if (--m_intDigits == 0) m_eState = m_size > 0 ? State::Block : State::Text;
      return false;
    case State::Block:
      if (--m_size == 0) m_eState = State::Text;
      return false;
  }
  return true;
}

bool AnswerScanner::TakeText(char ch) {
  if (ch == '"' || ch == '\'') {
    m_chQuote = ch;
    m_eState = State::Quotes;
    m_fBegins = false;
    return false;
  }
  if (ch == '#' && m_fBegins) {
    m_eState = State::BlockStart;
    m_fBegins = false;
    return false;
  }
  m_fBegins = ch == ',' || ch == ';' || ch == ' ';
  return true;
}

std::vector<std::string> SplitAnswer(std::string_view strAnswer, char chSeparator) {
  std::vector<std::string> arrParts(1);
  AnswerScanner scanner;
  std::size_t kept = 0;  // of the last part, without the blanks at its end; those of a block stay
  for (const char ch : strAnswer) {
    const bool fDivides = scanner.Take(ch);
    std::string &strPart = arrParts.back();
    if (fDivides && ch == chSeparator) {
      strPart.resize(kept);
      arrParts.emplace_back();
      kept = 0;
    } else if (!fDivides || !IsBlank(ch)) {
      strPart += ch;
      kept = strPart.size();
    } else if (kept > 0) {
      strPart += ch;
    }
  }
  arrParts.back().resize(kept);
  return arrParts;
}

std::optional<Double> NumberOf(std::string_view strAnswer) {
  try {
    const auto dblValue = ParseNumber(strAnswer, '.');
    return dblValue == NotANumber ? std::nullopt : dblValue;
  } catch (const RunTimeError &) {
    return std::nullopt;  // too large for a Double
  }
}

std::string Unquoted(std::string_view strAnswer) {
  const std::string strText = Trim(strAnswer);
  if (strText.size() < 2 || strText.front() != strText.back() || (strText.front() != '"' && strText.front() != '\''))
    return strText;
  const std::string strQuote(1, strText.front());
  return Replace(std::string_view(strText).substr(1, strText.size() - 2), strQuote + strQuote, strQuote);
}

std::optional<std::string> BlockOf(std::string_view strAnswer) {
  if (strAnswer.size() < 2 || strAnswer[0] != '#' || !IsDigit(strAnswer[1])) return std::nullopt;
  const auto digits = static_cast<std::size_t>(strAnswer[1] - '0');
  if (digits == 0 || strAnswer.size() < 2 + digits) return std::nullopt;
  std::size_t size = 0;
  for (const char ch : strAnswer.substr(2, digits)) {
    if (!IsDigit(ch)) return std::nullopt;
    size = size * 10 + static_cast<std::size_t>(ch - '0');
  }
  if (strAnswer.size() != 2 + digits + size) return std::nullopt;
  return std::string(strAnswer.substr(2 + digits));
}

std::string ToBlock(std::string_view strBytes) {
  const std::string strSize = std::to_string(strBytes.size());
  return "#" + std::to_string(strSize.size()) + strSize + std::string(strBytes);
}

std::string ShortForm(std::string_view strLong) {
  std::string strShort;
  bool fBraces = false;
  for (const char ch : strLong) {
    fBraces = ch == '{' || (fBraces && ch != '}');
    if (fBraces || !IsLower(ch)) strShort += ch;
  }
  return strShort;
}

bool IsWord(std::string_view strAnswer, std::string_view strWord) {
  return SameLetters(strAnswer, strWord) || SameLetters(strAnswer, ShortForm(strWord));
}

}  // namespace tarvik::scpi
