#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scpi/simulator/ScpiNumbers.h"

namespace tarvik::scpisim {

/// One parameter of a program message unit, as it was written (IEEE 488.2, 7.7).
struct ProgramData {
  enum class Kind { Decimal, NonDecimal, Character, String, Block, Expression };

  Kind kind = Kind::Decimal;
  Double dblNumber = 0;  ///< of both kinds of numbers
  /// Decimal: the suffix. Otherwise the contents: characters in upper case, strings and blocks as they are.
  std::string strText;
  std::string strMantissa = {};  ///< of a decimal number, with its sign
  int intExponent = 0;

  /// A decimal number times a power of ten, rounded once: 50 NS is the Double nearest to 5e-8. Infinite above the range
  /// of a Double, 0 below it.
  Double TimesTenTo(int intPower) const;
};

/// One unit of a program message: a header with its parameters.
struct ProgramUnit {
  bool fCommon = false;               ///< begins with an asterisk
  bool fAbsolute = false;             ///< begins with a colon: leaves the header path
  bool fQuery = false;                ///< ends with a question mark
  std::vector<std::string> arrNodes;  ///< the mnemonics of the header in upper case, without asterisk or colons
  std::vector<ProgramData> arrData;
};

/// Scans a program message, unit by unit: what stands before a fault has been handed out when the fault is met. The
/// message comes without its terminator. Bytes 0 to 9 and 11 to 32 are white space.
class ProgramMessage {
 public:
  explicit ProgramMessage(std::string_view strMessage) : m_strRest(strMessage) {}

  /// The next unit; none behind the last one. Empty units are passed over. Throws ScpiFault with a number from -100
  /// to -199; the rest of the message cannot be understood then.
  std::optional<ProgramUnit> Next();

 private:
  char Peek(std::size_t lngAhead = 0) const { return lngAhead < m_strRest.size() ? m_strRest[lngAhead] : '\0'; }
  bool AtEnd() const { return m_strRest.empty(); }
  /// Whether the unit has ended.
  bool AtUnitEnd() const { return AtEnd() || Peek() == ';'; }
  std::string_view Take(std::size_t lngCount);
  /// Takes the characters from the front that the predicate accepts.
  template <class Accepts>
  std::string_view TakeWhile(Accepts accepts);
  bool SkipBlanks();

  void ReadHeader(ProgramUnit &unit);
  std::string ReadMnemonic();
  void EndHeader();
  void ReadParameters(ProgramUnit &unit);
  ProgramData ReadData();
  ProgramData ReadDecimal();
  std::string_view ReadMantissa();
  int ReadExponent();
  std::string ReadSuffix();
  ProgramData ReadCharacters();
  ProgramData ReadString();
  ProgramData ReadExpression();
  ProgramData ReadAfterHash();
  ProgramData ReadNonDecimal(unsigned lngBase);
  ProgramData ReadBlock();

  std::string_view m_strRest;
};

}  // namespace tarvik::scpisim
