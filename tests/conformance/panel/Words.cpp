#include "Words.h"

#include <charconv>

namespace tarvik::paneltest {

namespace {

/// Place behind the closing quotation mark of the text that begins at `begin`.
std::size_t EndOfText(std::string_view strLine, std::size_t begin) {
  for (std::size_t i = begin + 1; i < strLine.size(); ++i) {
    if (strLine[i] == '\\')
      ++i;
    else if (strLine[i] == '"')
      return i + 1;
  }
  throw BadLine("text without end");
}

std::string Decoded(std::string_view strText) { return Json::parse(strText).get<std::string>(); }

}  // namespace

Words::Words(std::string_view strLine) : m_strLine(strLine) {
  std::size_t at = 0;
  while ((at = m_strLine.find_first_not_of(' ', at)) != std::string::npos) {
    const std::size_t begin = at;
    Word word;
    if (m_strLine[at] == '"') {
      at = EndOfText(m_strLine, at);
      word = {Decoded(std::string_view(m_strLine).substr(begin, at - begin)), true};
    } else if (m_strLine[at] == '{') {
      word.strText = m_strLine.substr(at);
      at = m_strLine.size();
    } else {
      const std::size_t blank = std::min(m_strLine.find(' ', at), m_strLine.size());
      const std::size_t text = m_strLine.find("=\"", at);
      if (text < blank) {
        at = EndOfText(m_strLine, text + 1);
        word.strText = m_strLine.substr(begin, text + 1 - begin) +
                       Decoded(std::string_view(m_strLine).substr(text + 1, at - text - 1));
      } else {
        word.strText = m_strLine.substr(begin, blank - begin);
        at = blank;
      }
    }
    m_arrWords.push_back({std::move(word), begin});
  }
}

const Word &Words::Peek() const {
  if (Empty()) throw BadLine("a word is missing");
  return m_arrWords.front().word;
}

Word Words::Take() {
  Word word = Peek();
  m_arrWords.pop_front();
  return word;
}

Long Words::Number() {
  const Double dblValue = Real();
  const auto lngValue = static_cast<Long>(dblValue);
  if (lngValue != dblValue) throw BadLine("no whole number");
  return lngValue;
}

Double Words::Real() {
  std::string strText = Text();
  if (strText.starts_with('+')) strText.erase(0, 1);
  Double dblValue = 0;
  const char *end = strText.data() + strText.size();
  const auto [stop, fault] = std::from_chars(strText.data(), end, dblValue);
  if (fault != std::errc() || stop != end) throw BadLine("no number: " + strText);
  return dblValue;
}

bool Words::Flag() {
  const std::string strText = Text();
  if (strText == "1" || strText == "true") return true;
  if (strText == "0" || strText == "false") return false;
  throw BadLine("no truth value: " + strText);
}

Json Words::Value() {
  const Word word = Take();
  if (word.fQuoted) return word.strText;
  Json value = Json::parse(word.strText, nullptr, false);
  return value.is_discarded() ? Json(word.strText) : value;
}

std::string Words::Rest() const { return Empty() ? std::string() : m_strLine.substr(m_arrWords.front().begin); }

std::pair<std::string, std::string> KeyAndValue(const std::string &strWord) {
  const std::size_t pos = strWord.find('=');
  if (pos == std::string::npos) throw BadLine("no value: " + strWord);
  return {strWord.substr(0, pos), strWord.substr(pos + 1)};
}

}  // namespace tarvik::paneltest
