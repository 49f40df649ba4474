#include "scpi/simulator/HeaderPattern.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "common/Characters.h"

namespace tarvik::scpisim {

namespace {

struct NumberedWord {
  std::string_view strName;
  Long lngNumber;  ///< 1 without digits
};

/// Cuts the digits off the end of a mnemonic. A number beyond a Long is the largest Long, which is out of any range.
NumberedWord CutNumber(std::string_view strWord) {
  std::size_t lngName = strWord.size();
  while (lngName > 0 && driver::IsDigit(strWord[lngName - 1])) --lngName;
  NumberedWord word{strWord.substr(0, lngName), 1};
  const auto result = std::from_chars(strWord.data() + lngName, strWord.data() + strWord.size(), word.lngNumber);
  if (result.ec == std::errc::result_out_of_range) word.lngNumber = std::numeric_limits<Long>::max();
  return word;
}

}  // namespace

Keyword::Keyword(std::string_view strNotation) {
  for (const char ch : strNotation) {
    if (!driver::IsLower(ch)) m_strShort += ch;
    m_strLong += driver::Upper(ch);
  }
}

HeaderPattern::Node HeaderPattern::NodeOf(std::string_view strNotation, bool fOptional) {
  const std::size_t lngHash = std::min(strNotation.find('#'), strNotation.size());
  Node node{Keyword(strNotation.substr(0, lngHash)), fOptional, lngHash < strNotation.size(), 0};
  if (lngHash + 1 < strNotation.size())
    std::from_chars(strNotation.data() + lngHash + 1, strNotation.data() + strNotation.size(), node.lngLast);
  return node;
}

HeaderPattern::HeaderPattern(std::string_view strNotation) : m_strNotation(strNotation) {
  // A node ends where the next one begins, or its bracket.
  bool fOptional = false;
  std::size_t lngAt = 0;
  while (lngAt < strNotation.size()) {
    const char ch = strNotation[lngAt];
    if (ch == '[') fOptional = true;
    if (ch == ']') fOptional = false;
    if (ch == '[' || ch == ']' || ch == ':' || ch == '*') {
      ++lngAt;
      continue;
    }
    const std::size_t lngEnd = std::min(strNotation.find_first_of("[]:", lngAt), strNotation.size());
    m_arrNodes.push_back(NodeOf(strNotation.substr(lngAt, lngEnd - lngAt), fOptional));
    lngAt = lngEnd;
  }
}

HeaderPattern::Match HeaderPattern::MatchFrom(std::size_t lngNode, std::span<const std::string> arrNodes,
                                              Long lngChannels, std::vector<Long> &arrSuffixes) const {
  if (lngNode == m_arrNodes.size()) return arrNodes.empty() ? Match::Full : Match::None;
  const Node &node = m_arrNodes[lngNode];
  const std::size_t lngSuffixes = arrSuffixes.size();
  Match best = Match::None;

  if (!arrNodes.empty()) {
    const std::string &strWord = arrNodes.front();
    const NumberedWord word = node.keyword.Matches(strWord) ? NumberedWord{strWord, 1} : CutNumber(strWord);
    if (node.keyword.Matches(word.strName)) {
      if (node.fNumbered) arrSuffixes.push_back(word.lngNumber);
      best = MatchFrom(lngNode + 1, arrNodes.subspan(1), lngChannels, arrSuffixes);
      const Long lngLast = !node.fNumbered ? 1 : node.lngLast > 0 ? node.lngLast : lngChannels;
      const bool fInRange = word.lngNumber >= 1 && word.lngNumber <= lngLast;
      if (best == Match::Full && !fInRange) best = Match::SuffixOutOfRange;
      if (best == Match::Full) return best;
    }
  }
  if (!node.fOptional) return best;
  arrSuffixes.resize(lngSuffixes);
  if (node.fNumbered) arrSuffixes.push_back(1);
  const Match without = MatchFrom(lngNode + 1, arrNodes, lngChannels, arrSuffixes);
  return without == Match::None ? best : without;
}

HeaderPattern::Match HeaderPattern::Matches(std::span<const std::string> arrNodes, Long lngChannels,
                                            std::vector<Long> &arrSuffixes) const {
  arrSuffixes.clear();
  return MatchFrom(0, arrNodes, lngChannels, arrSuffixes);
}

}  // namespace tarvik::scpisim
