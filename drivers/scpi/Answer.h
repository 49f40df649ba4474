#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Types.h"

namespace tarvik::scpi {

/// Follows the characters of an instrument's answer and tells those that divide it from those within quotes and
/// definite blocks, which may hold any character.
class AnswerScanner {
 public:
  /// Takes the next character. False for one within quotes or a block, true for one that may divide.
  bool Take(char ch);
  /// Behind the last character: nothing is open.
  bool IsWhole() const { return m_eState == State::Text; }

 private:
  enum class State { Text, Quotes, BlockStart, BlockSize, Block };

  bool TakeText(char ch);

  State m_eState = State::Text;
  bool m_fBegins = true;  ///< the next character begins a value
  char m_chQuote = '"';
  int m_intDigits = 0;     ///< of the block's size, still to come
  std::size_t m_size = 0;  ///< of the block, still to come
};

/// Cuts an answer at each separator outside of quotes and blocks; blanks around the parts are dropped.
std::vector<std::string> SplitAnswer(std::string_view strAnswer, char chSeparator);

/// NR1, NR2 or NR3. Empty for what is none, and for the standard's "not a number".
std::optional<Double> NumberOf(std::string_view strAnswer);

/// A text without its quotes; doubled quotes within are single ones.
std::string Unquoted(std::string_view strAnswer);

/// The contents of a definite block and nothing else; empty for what is none.
std::optional<std::string> BlockOf(std::string_view strAnswer);
/// A definite block with these contents.
std::string ToBlock(std::string_view strBytes);

/// A header or word without the letters that may be left out: ":SOURce1" is ":SOUR1".
std::string ShortForm(std::string_view strLong);
/// Whether an instrument that answers this word means the one that is written with capitals for its short form.
bool IsWord(std::string_view strAnswer, std::string_view strWord);

}  // namespace tarvik::scpi
