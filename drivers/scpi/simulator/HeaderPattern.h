#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/Types.h"

namespace tarvik::scpisim {

/// A word in the notation of SCPI: TRANsition has the long form TRANSITION and the short form TRAN. Digits belong to
/// both forms.
class Keyword {
 public:
  explicit Keyword(std::string_view strNotation);

  /// For a word in upper case.
  bool Matches(std::string_view strWord) const { return strWord == m_strShort || strWord == m_strLong; }
  const std::string &Short() const { return m_strShort; }

 private:
  std::string m_strShort;
  std::string m_strLong;
};

/// What a header may look like, in the notation of SCPI: "[:SOURce]:PULSe#:WIDTh". Nodes in brackets may be left out. A
/// node with # takes a numeric suffix from 1 to the number of channels, or to the number that stands behind the #
/// ("REGister#9"). All other nodes take the suffix 1 and no other.
class HeaderPattern {
 public:
  explicit HeaderPattern(std::string_view strNotation);

  enum class Match { None, SuffixOutOfRange, Full };
  /// Whether the header with these nodes, in upper case, is meant. Only after a full match arrSuffixes has one number
  /// for each # of the pattern; 1 for one that was left out.
  Match Matches(std::span<const std::string> arrNodes, Long lngChannels, std::vector<Long> &arrSuffixes) const;

  const std::string &Notation() const { return m_strNotation; }

 private:
  struct Node {
    Keyword keyword;
    bool fOptional;
    bool fNumbered;
    Long lngLast;  ///< largest suffix; 0 for the number of channels
  };
  static Node NodeOf(std::string_view strNotation, bool fOptional);
  Match MatchFrom(std::size_t lngNode, std::span<const std::string> arrNodes, Long lngChannels,
                  std::vector<Long> &arrSuffixes) const;

  std::string m_strNotation;
  std::vector<Node> m_arrNodes;
};

}  // namespace tarvik::scpisim
