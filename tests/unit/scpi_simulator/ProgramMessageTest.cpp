#include "scpi/simulator/ProgramMessage.h"

#include <gmock/gmock.h>

#include <limits>

namespace tarvik::scpisim {
namespace {

using testing::ElementsAre;
using Kind = ProgramData::Kind;

std::vector<ProgramUnit> Units(std::string_view strMessage) {
  ProgramMessage message(strMessage);
  std::vector<ProgramUnit> arrUnits;
  while (auto unit = message.Next()) arrUnits.push_back(*unit);
  return arrUnits;
}

ProgramData DataOf(const std::string &strData) { return Units("A " + strData).at(0).arrData.at(0); }
Double NumberOf(const std::string &strData) { return DataOf(strData).dblNumber; }

Long FaultOf(std::string_view strMessage) {
  try {
    Units(strMessage);
  } catch (const ScpiFault &fault) {
    return fault.lngNumber;
  }
  return 0;
}

TEST(ProgramMessage, HeaderHasItsMnemonicsInUpperCase) {
  const ProgramUnit unit = Units("sour1:pULS:WIDTH?").at(0);
  EXPECT_THAT(unit.arrNodes, ElementsAre("SOUR1", "PULS", "WIDTH"));
  EXPECT_TRUE(unit.fQuery);
  EXPECT_FALSE(unit.fAbsolute);
  EXPECT_FALSE(unit.fCommon);
}

TEST(ProgramMessage, ColonInFrontIsAbsoluteAndAsteriskIsCommon) {
  const std::vector<ProgramUnit> units = Units(":FREQ 1;*RST;WIDT 2");
  ASSERT_EQ(3u, units.size());
  EXPECT_TRUE(units[0].fAbsolute);
  EXPECT_TRUE(units[1].fCommon);
  EXPECT_THAT(units[1].arrNodes, ElementsAre("RST"));
  EXPECT_FALSE(units[2].fAbsolute);
}

TEST(ProgramMessage, EmptyMessagesAndEmptyUnitsAreTaken) {
  EXPECT_EQ(0u, Units("").size());
  EXPECT_EQ(0u, Units(" \t\r").size());
  EXPECT_EQ(2u, Units("*RST;;*CLS;").size());
}

TEST(ProgramMessage, WhiteSpaceIsEveryControlCharacterButTheLineFeed) {
  const ProgramUnit unit = Units(std::string("\0\t A\x0b 1 \x1f,\r2\x0c", 13)).at(0);
  EXPECT_THAT(unit.arrNodes, ElementsAre("A"));
  ASSERT_EQ(2u, unit.arrData.size());
  EXPECT_EQ(2, unit.arrData[1].dblNumber);
}

TEST(ProgramMessage, DecimalNumbersOfAllForms) {
  EXPECT_EQ(12, NumberOf("12"));
  EXPECT_EQ(-12.5, NumberOf("-12.5"));
  EXPECT_EQ(0.5, NumberOf("+.5"));
  EXPECT_EQ(5, NumberOf("5."));
  EXPECT_EQ(1e-7, NumberOf("1e-7"));
  EXPECT_EQ(1.5e3, NumberOf("1.5 E +3"));
  EXPECT_EQ(7, NumberOf("007"));
}

TEST(ProgramMessage, NumbersBeyondADoubleAreInfiniteOrZero) {
  EXPECT_EQ(std::numeric_limits<Double>::infinity(), NumberOf("1e400"));
  EXPECT_EQ(-std::numeric_limits<Double>::infinity(), NumberOf("-0.001e400"));
  EXPECT_EQ(0, NumberOf("1e-400"));
  EXPECT_EQ(0, NumberOf("0." + std::string(400, '0') + "1"));
}

TEST(ProgramMessage, SuffixFollowsItsNumberWithOrWithoutBlanks) {
  EXPECT_EQ("NS", DataOf("100ns").strText);
  EXPECT_EQ("MHZ", DataOf("1.5 MHz").strText);
  EXPECT_EQ(1.5, NumberOf("1.5 MHz"));
  // An E without digits behind it is no exponent.
  EXPECT_EQ("EXHZ", DataOf("2EXHZ").strText);
  EXPECT_EQ("V/S", DataOf("2 V/S").strText);
}

TEST(ProgramMessage, NumbersOfOtherBases) {
  EXPECT_EQ(255, NumberOf("#HFF"));
  EXPECT_EQ(255, NumberOf("#hff"));
  EXPECT_EQ(8, NumberOf("#Q10"));
  EXPECT_EQ(5, NumberOf("#B101"));
  EXPECT_EQ(Kind::NonDecimal, DataOf("#B101").kind);
}

TEST(ProgramMessage, StringsInBothQuotesWithDoubledOnes) {
  EXPECT_EQ("it's", DataOf("\"it's\"").strText);
  EXPECT_EQ("it's", DataOf("'it''s'").strText);
  EXPECT_EQ("say \"a\"", DataOf("\"say \"\"a\"\"\"").strText);
  EXPECT_EQ("a;b,c", DataOf("'a;b,c'").strText);
  EXPECT_EQ("", DataOf("''").strText);
}

TEST(ProgramMessage, DefiniteBlockHoldsAnyBytes) {
  const std::vector<ProgramUnit> units = Units(std::string_view("A 3,#13\n;\0 ;B", 13));
  ASSERT_EQ(2u, units.size());
  EXPECT_EQ(Kind::Block, units[0].arrData.at(1).kind);
  EXPECT_EQ(std::string("\n;\0", 3), units[0].arrData.at(1).strText);
  EXPECT_EQ("ab", DataOf("#3002ab").strText);
  EXPECT_EQ("", DataOf("#10").strText);
}

TEST(ProgramMessage, IndefiniteBlockGoesToTheEndOfTheMessage) { EXPECT_EQ("a;b,c ", DataOf("#0a;b,c ").strText); }

TEST(ProgramMessage, CharacterDataAndExpressions) {
  EXPECT_EQ("MAX", DataOf("max").strText);
  EXPECT_EQ(Kind::Character, DataOf("max").kind);
  EXPECT_EQ("@1,2:3", DataOf("(@1,2:3)").strText);
  EXPECT_EQ(Kind::Expression, DataOf("(1)").kind);
}

TEST(ProgramMessage, UnitsBeforeAFaultAreHandedOut) {
  ProgramMessage message("*RST;FREQ !;*CLS");
  EXPECT_TRUE(message.Next());
  EXPECT_THROW(message.Next(), ScpiFault);
}

struct Fault {
  const char *strMessage;
  Long lngNumber;
};
void PrintTo(const Fault &fault, std::ostream *pStream) { *pStream << fault.strMessage; }

class GrammarFault : public testing::TestWithParam<Fault> {};

TEST_P(GrammarFault, HasItsStandardNumber) { EXPECT_EQ(GetParam().lngNumber, FaultOf(GetParam().strMessage)); }

INSTANTIATE_TEST_SUITE_P(Headers, GrammarFault,
                         testing::Values(Fault{"!", -101}, Fault{"FREQ! 1", -101}, Fault{"FR\xC4Q 1", -101},
                                         Fault{"1FREQ", -101}, Fault{"*", -102}, Fault{":", -102},
                                         Fault{"SOUR::FREQ 1", -102}, Fault{"SOUR:", -102}, Fault{"?", -102},
                                         Fault{"FREQ,1", -102}, Fault{"FREQ??", -102}, Fault{"*ESE\"1\"", -111},
                                         Fault{"FREQ#H10", -111}, Fault{"FREQ+1", -111}, Fault{"ABCDEFGHIJKLM", -112},
                                         Fault{"ABCDEFGHIJKL", 0}));

INSTANTIATE_TEST_SUITE_P(
    Parameters, GrammarFault,
    testing::Values(Fault{"A 1 2", -103}, Fault{"A 'x' 'y'", -103}, Fault{"A 1,", -102}, Fault{"A ,1", -102},
                    Fault{"A 1,,2", -102}, Fault{"A $", -101}, Fault{"A #Z", -102}, Fault{"A #", -102},
                    Fault{"A +", -120}, Fault{"A .", -120}, Fault{"A 1.2.3", -121}, Fault{"A #HG", -121},
                    Fault{"A #Q8", -121}, Fault{"A #B2", -121}, Fault{"A #H", -120}, Fault{"A 1E32001", -123},
                    Fault{"A 1E32000", 0}, Fault{"A #H10000000000000000", -124}, Fault{"A 1 ABCDEFGHIJKLM", -134},
                    Fault{"A B!", -141}, Fault{"A ABCDEFGHIJKLM", -144}, Fault{"A 'x", -151}, Fault{"A \"x'", -151},
                    Fault{"A 'x''", -151}, Fault{"A '\x80'", -151}, Fault{"A #15abcd", -161}, Fault{"A #2x1a", -161},
                    Fault{"A #9123", -161}, Fault{"A (1", -171}, Fault{"A (1;2)", -171}));

TEST(ProgramMessage, TwoHundredFiftySixDigitsAreTooMany) {
  EXPECT_EQ(-124, FaultOf("A " + std::string(256, '1')));
  EXPECT_EQ(0, FaultOf("A " + std::string(255, '1')));
  EXPECT_EQ(0, FaultOf("A " + std::string(300, '0') + "1"));
}

}  // namespace
}  // namespace tarvik::scpisim
