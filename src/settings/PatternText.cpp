#include "settings/PatternText.h"

#include <algorithm>
#include <charconv>

#include "support/Conversions.h"

namespace tarvik {

namespace {

constexpr Long WordBits = 16, LineBits = 256;
constexpr Long LineWords = LineBits / WordBits;
/// A stream of up to this many bits is shown whole.
constexpr Long ShownBits = 64;

Long WordsIn(Long lngLength) { return (lngLength + WordBits - 1) / WordBits; }

/// Word by its number from 0; bits behind the end are 0.
unsigned WordAt(const PatternStream &stream, Long lngWord) {
  const auto byteAt = [&](std::size_t at) -> unsigned { return at < stream.arrBytes.size() ? stream.arrBytes[at] : 0; };
  const auto at = static_cast<std::size_t>(lngWord) * 2;
  return byteAt(at) << 8 | byteAt(at + 1);
}

std::string HexWord(unsigned word) {
  constexpr std::string_view Digits = "0123456789ABCDEF";
  std::string strText;
  for (const unsigned shift : {12u, 8u, 4u, 0u}) strText += Digits[word >> shift & 0xF];
  return strText;
}

Long RunLength(const PatternStream &stream, Long lngWord, Long lngEnd) {
  Long lngNext = lngWord + 1;
  while (lngNext < lngEnd && WordAt(stream, lngNext) == WordAt(stream, lngWord)) ++lngNext;
  return lngNext - lngWord;
}

std::string Run(const PatternStream &stream, Long lngWord, Long lngCount) {
  return HexWord(WordAt(stream, lngWord)) + (lngCount > 1 ? "*" + std::to_string(lngCount) : std::string());
}

/// The words from lngWord up to lngEnd as runs.
std::string Runs(const PatternStream &stream, Long lngWord, Long lngEnd) {
  std::string strText;
  while (lngWord < lngEnd) {
    const Long lngCount = RunLength(stream, lngWord, lngEnd);
    strText += (strText.empty() ? "" : " ") + Run(stream, lngWord, lngCount);
    lngWord += lngCount;
  }
  return strText;
}

/// Where the line that begins with this word ends: behind a run over whole lines, or at the next line's start.
Long LineEnd(const PatternStream &stream, Long lngWord, Long lngWords) {
  const Long lngRun = RunLength(stream, lngWord, lngWords);
  const Long lngWholeLines = lngWord + lngRun == lngWords ? lngRun : lngRun / LineWords * LineWords;
  return lngWholeLines > LineWords ? lngWord + lngWholeLines : std::min(lngWord + LineWords, lngWords);
}

/// A whole number that fills the text.
std::optional<Long> WholeNumber(std::string_view strText, int intBase = 10) {
  Long lngNumber = 0;
  const char *end = strText.data() + strText.size();
  const auto [pos, error] = std::from_chars(strText.data(), end, lngNumber, intBase);
  if (error != std::errc() || pos != end || lngNumber < 0 || strText.front() == '-') return std::nullopt;
  return lngNumber;
}

/// Collects words and tells what is wrong with them.
class StreamReader {
 public:
  explicit StreamReader(Long lngLength) : m_lngLength(lngLength) {
    m_stream.lngLength = lngLength;
    m_stream.arrBytes.reserve(static_cast<std::size_t>(WordsIn(lngLength)) * 2);
  }

  std::string TakeLine(const std::string &strLine) {
    const std::size_t colon = strLine.find(':');
    const auto lngAddress = WholeNumber(colon == std::string::npos ? std::string() : Trim(strLine.substr(0, colon)));
    if (!lngAddress) return "an address and a colon are missing before the words";
    if (*lngAddress != m_lngWords * WordBits + 1)
      return "address " + std::to_string(*lngAddress) + " is not the next one, " +
             std::to_string(m_lngWords * WordBits + 1);
    for (const std::string &strRun : Split(strLine.substr(colon + 1), ' ')) {
      if (strRun.empty()) continue;
      if (std::string strWrong = TakeRun(strRun); !strWrong.empty()) return strWrong;
    }
    return {};
  }

  std::string Finish(PatternStream &stream) {
    if (m_lngWords != WordsIn(m_lngLength))
      return std::to_string(m_lngWords) + " words do not hold " + std::to_string(m_lngLength) + " bits, " +
             std::to_string(WordsIn(m_lngLength)) + " are needed";
    m_stream.arrBytes.resize((static_cast<std::size_t>(m_lngLength) + 7) / 8);
    if (m_lngLength % WordBits != 0 && (m_lngLastWord << m_lngLength % WordBits & 0xFFFF) != 0)
      return "bits are set behind the length of " + std::to_string(m_lngLength);
    stream = std::move(m_stream);
    return {};
  }

 private:
  std::string TakeRun(const std::string &strRun) {
    const std::size_t star = strRun.find('*');
    const std::string strWord = strRun.substr(0, star);
    const auto lngWord = strWord.size() == 4 ? WholeNumber(strWord, 16) : std::nullopt;
    const auto lngCount = star == std::string::npos ? Long{1} : WholeNumber(strRun.substr(star + 1));
    if (!lngWord || !lngCount || *lngCount < 1)
      return "\"" + strRun + "\" is neither a word of four hexadecimal digits nor one with its count, as 00FF*16";
    if (*lngCount > WordsIn(m_lngLength) - m_lngWords)
      return "more words than " + std::to_string(m_lngLength) + " bits have";
    for (Long i = 0; i < *lngCount; ++i) {
      m_stream.arrBytes.push_back(static_cast<Byte>(*lngWord >> 8));
      m_stream.arrBytes.push_back(static_cast<Byte>(*lngWord));
    }
    m_lngWords += *lngCount;
    m_lngLastWord = *lngWord;
    return {};
  }

  const Long m_lngLength;
  PatternStream m_stream;
  Long m_lngWords = 0;
  Long m_lngLastWord = 0;
};

}  // namespace

std::vector<std::string> PatternLines(const PatternStream &stream) {
  std::vector<std::string> arrLines;
  const Long lngWords = WordsIn(stream.lngLength);
  for (Long lngWord = 0; lngWord < lngWords;) {
    const Long lngEnd = LineEnd(stream, lngWord, lngWords);
    arrLines.push_back(std::to_string(lngWord * WordBits + 1) + ": " + Runs(stream, lngWord, lngEnd));
    lngWord = lngEnd;
  }
  return arrLines;
}

std::string ReadPatternLines(Long lngLength, const std::vector<std::string> &arrLines, PatternStream &stream) {
  if (lngLength < 0 || lngLength > PatternStream::MaxLength)
    return "a length of " + std::to_string(lngLength) + " bits is out of the range 0 to " +
           std::to_string(PatternStream::MaxLength);
  StreamReader reader(lngLength);
  for (std::size_t i = 0; i < arrLines.size(); ++i)
    if (const std::string strWrong = reader.TakeLine(arrLines[i]); !strWrong.empty())
      return "line " + std::to_string(i + 1) + ": " + strWrong;
  return reader.Finish(stream);
}

bool BitAt(const PatternStream &stream, Long lngAddress) {
  if (lngAddress < 1 || lngAddress > stream.lngLength) return false;
  const auto place = static_cast<std::size_t>(lngAddress) - 1;
  return place / 8 < stream.arrBytes.size() && (stream.arrBytes[place / 8] << place % 8 & 0x80) != 0;
}

std::string PatternSummary(const PatternStream &stream, const PatternStream *pOther) {
  std::string strText = std::to_string(stream.lngLength) + " bits";
  const Long lngWords = WordsIn(stream.lngLength);
  if (lngWords == 0) return strText;
  if (stream.lngLength <= ShownBits) return strText + ", " + Runs(stream, 0, lngWords);
  if (!pOther) return strText;
  Long lngWord = 0;
  while (lngWord < lngWords && WordAt(stream, lngWord) == WordAt(*pOther, lngWord)) ++lngWord;
  if (lngWord == lngWords) return strText;
  return strText + ", " + HexWord(WordAt(stream, lngWord)) + " at " + std::to_string(lngWord * WordBits + 1);
}

}  // namespace tarvik
