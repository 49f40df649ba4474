#include "scpi/simulator/ProgramMessage.h"

#include <gmock/gmock.h>

#include <limits>

namespace tarvik::scpisim {
namespace {

using testing::ElementsAre;

std::vector<ProgramUnit> Units(std::string_view strMessage) {
  ProgramMessage message(strMessage);
  std::vector<ProgramUnit> arrUnits;
  while (auto unit = message.Next()) arrUnits.push_back(*unit);
  return arrUnits;
}

ProgramData FirstData(const std::string &strData) { return Units("A " + strData).at(0).arrData.at(0); }
Double FirstNumber(const std::string &strData) { return FirstData(strData).dblNumber; }

Long GrammarFaultOf(std::string_view strMessage) {
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
  EXPECT_EQ(12, FirstNumber("12"));
  EXPECT_EQ(-12.5, FirstNumber("-12.5"));
  EXPECT_EQ(0.5, FirstNumber("+.5"));
  EXPECT_EQ(5, FirstNumber("5."));
  EXPECT_EQ(1e-7, FirstNumber("1e-7"));
  EXPECT_EQ(1.5e3, FirstNumber("1.5 E +3"));
  EXPECT_EQ(7, FirstNumber("007"));
}

TEST(ProgramMessage, NumbersBeyondADoubleAreInfiniteOrZero) {
  EXPECT_EQ(std::numeric_limits<Double>::infinity(), FirstNumber("1e400"));
  EXPECT_EQ(-std::numeric_limits<Double>::infinity(), FirstNumber("-0.001e400"));
  EXPECT_EQ(0, FirstNumber("1e-400"));
  EXPECT_EQ(0, FirstNumber("0." + std::string(400, '0') + "1"));
}

TEST(ProgramMessage, SuffixFollowsItsNumberWithOrWithoutBlanks) {
  EXPECT_EQ("NS", FirstData("100ns").strText);
  EXPECT_EQ("MHZ", FirstData("1.5 MHz").strText);
  EXPECT_EQ(1.5, FirstNumber("1.5 MHz"));
  // An E without digits behind it is no exponent.
  EXPECT_EQ("EXHZ", FirstData("2EXHZ").strText);
  EXPECT_EQ("V/S", FirstData("2 V/S").strText);
}

TEST(ProgramMessage, NumbersOfOtherBases) {
  EXPECT_EQ(255, FirstNumber("#HFF"));
  EXPECT_EQ(255, FirstNumber("#hff"));
  EXPECT_EQ(8, FirstNumber("#Q10"));
  EXPECT_EQ(5, FirstNumber("#B101"));
  EXPECT_EQ(ProgramData::Kind::NonDecimal, FirstData("#B101").kind);
}

TEST(ProgramMessage, StringsInBothQuotesWithDoubledOnes) {
  EXPECT_EQ("it's", FirstData("\"it's\"").strText);
  EXPECT_EQ("it's", FirstData("'it''s'").strText);
  EXPECT_EQ("say \"a\"", FirstData("\"say \"\"a\"\"\"").strText);
  EXPECT_EQ("a;b,c", FirstData("'a;b,c'").strText);
  EXPECT_EQ("", FirstData("''").strText);
}

TEST(ProgramMessage, DefiniteBlockHoldsAnyBytes) {
  const std::vector<ProgramUnit> units = Units(std::string_view("A 3,#13\n;\0 ;B", 13));
  ASSERT_EQ(2u, units.size());
  EXPECT_EQ(ProgramData::Kind::Block, units[0].arrData.at(1).kind);
  EXPECT_EQ(std::string("\n;\0", 3), units[0].arrData.at(1).strText);
  EXPECT_EQ("ab", FirstData("#3002ab").strText);
  EXPECT_EQ("", FirstData("#10").strText);
}

TEST(ProgramMessage, IndefiniteBlockGoesToTheEndOfTheMessage) { EXPECT_EQ("a;b,c ", FirstData("#0a;b,c ").strText); }

TEST(ProgramMessage, CharacterDataAndExpressions) {
  EXPECT_EQ("MAX", FirstData("max").strText);
  EXPECT_EQ(ProgramData::Kind::Character, FirstData("max").kind);
  EXPECT_EQ("@1,2:3", FirstData("(@1,2:3)").strText);
  EXPECT_EQ(ProgramData::Kind::Expression, FirstData("(1)").kind);
}

TEST(ProgramMessage, UnitsBeforeAFaultAreHandedOut) {
  ProgramMessage message("*RST;FREQ !;*CLS");
  EXPECT_TRUE(message.Next());
  EXPECT_THROW(message.Next(), ScpiFault);
}

struct Misspelt {
  const char *strMessage;
  Long lngNumber;
};
void PrintTo(const Misspelt &row, std::ostream *pStream) { *pStream << row.strMessage; }

class GrammarFault : public testing::TestWithParam<Misspelt> {};

TEST_P(GrammarFault, HasItsStandardNumber) { EXPECT_EQ(GetParam().lngNumber, GrammarFaultOf(GetParam().strMessage)); }

INSTANTIATE_TEST_SUITE_P(Headers, GrammarFault,
                         testing::Values(Misspelt{"!", -101}, Misspelt{"FREQ! 1", -101}, Misspelt{"FR\xC4Q 1", -101},
                                         Misspelt{"1FREQ", -101}, Misspelt{"*", -102}, Misspelt{":", -102},
                                         Misspelt{"SOUR::FREQ 1", -102}, Misspelt{"SOUR:", -102}, Misspelt{"?", -102},
                                         Misspelt{"FREQ,1", -102}, Misspelt{"FREQ??", -102},
                                         Misspelt{"*ESE\"1\"", -111}, Misspelt{"FREQ#H10", -111},
                                         Misspelt{"FREQ+1", -111}, Misspelt{"ABCDEFGHIJKLM", -112},
                                         Misspelt{"ABCDEFGHIJKL", 0}));

INSTANTIATE_TEST_SUITE_P(
    Parameters, GrammarFault,
    testing::Values(Misspelt{"A 1 2", -103}, Misspelt{"A 'x' 'y'", -103}, Misspelt{"A 1,", -102},
                    Misspelt{"A ,1", -102}, Misspelt{"A 1,,2", -102}, Misspelt{"A $", -101}, Misspelt{"A #Z", -102},
                    Misspelt{"A #", -102}, Misspelt{"A +", -120}, Misspelt{"A .", -120}, Misspelt{"A 1.2.3", -121},
                    Misspelt{"A #HG", -121}, Misspelt{"A #Q8", -121}, Misspelt{"A #B2", -121}, Misspelt{"A #H", -120},
                    Misspelt{"A 1E32001", -123}, Misspelt{"A 1E32000", 0}, Misspelt{"A #H10000000000000000", -124},
                    Misspelt{"A 1 ABCDEFGHIJKLM", -134}, Misspelt{"A B!", -141}, Misspelt{"A ABCDEFGHIJKLM", -144},
                    Misspelt{"A 'x", -151}, Misspelt{"A \"x'", -151}, Misspelt{"A 'x''", -151},
                    Misspelt{"A '\x80'", -151}, Misspelt{"A #15abcd", -161}, Misspelt{"A #2x1a", -161},
                    Misspelt{"A #9123", -161}, Misspelt{"A (1", -171}, Misspelt{"A (1;2)", -171}));

TEST(ProgramMessage, TwoHundredFiftySixDigitsAreTooMany) {
  EXPECT_EQ(-124, GrammarFaultOf("A " + std::string(256, '1')));
  EXPECT_EQ(0, GrammarFaultOf("A " + std::string(255, '1')));
  EXPECT_EQ(0, GrammarFaultOf("A " + std::string(300, '0') + "1"));
}

}  // namespace
}  // namespace tarvik::scpisim
