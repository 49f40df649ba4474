#pragma once

#include <deque>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "Recorder.h"
#include "support/Types.h"

namespace tarvik::paneltest {

/// The line was not understood.
struct BadLine : std::invalid_argument {
  using std::invalid_argument::invalid_argument;
};

/// One word of a command line.
struct Word {
  std::string strText;
  /// The word stood in quotation marks, so it is a text and nothing else.
  bool fQuoted = false;
};

/// The words of a command line, taken one after the other.
class Words {
 public:
  explicit Words(std::string_view strLine);

  bool Empty() const { return m_arrWords.empty(); }
  const Word &Peek() const;
  Word Take();
  std::string Text() { return Take().strText; }
  Long Number();
  Double Real();
  bool Flag();
  /// A quoted or bare word as the JSON value that it spells; bare text where it spells none.
  Json Value();
  /// Everything behind the words taken so far, as it stood in the line.
  std::string Rest() const;

 private:
  struct Placed {
    Word word;
    std::size_t begin;
  };
  std::string m_strLine;
  std::deque<Placed> m_arrWords;
};

/// Parts of "key=value"; error for a word of another form.
std::pair<std::string, std::string> KeyAndValue(const std::string &strWord);

}  // namespace tarvik::paneltest
