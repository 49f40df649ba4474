#include "scpi/Answer.h"

#include <gmock/gmock.h>

namespace tarvik::scpi {
namespace {

using testing::ElementsAre;

TEST(ScpiAnswer, PartsAreCutAtSeparatorsOutsideOfQuotesAndBlocks) {
  EXPECT_THAT(SplitAnswer("1.5E-09;+50; VOLT ", ';'), ElementsAre("1.5E-09", "+50", "VOLT"));
  EXPECT_THAT(SplitAnswer(R"(-222,"Data out of range; width";0)", ';'),
              ElementsAre(R"(-222,"Data out of range; width")", "0"));
  EXPECT_THAT(SplitAnswer("16,#12;;;#11\n;7", ';'), ElementsAre("16,#12;;", "#11\n", "7"));
  EXPECT_THAT(SplitAnswer("", ';'), ElementsAre(""));
  EXPECT_THAT(SplitAnswer("1;", ';'), ElementsAre("1", ""));
}

TEST(ScpiAnswer, BytesOfABlockThatLookLikeBlanksStay) {
  EXPECT_THAT(SplitAnswer("16,#12 \r;#12  ", ';'), ElementsAre("16,#12 \r", "#12  "));
}

TEST(ScpiAnswer, NumbersHaveAllThreeForms) {
  EXPECT_EQ(50, NumberOf("50"));
  EXPECT_EQ(-0.5, NumberOf("-.5"));
  EXPECT_EQ(1.5e-9, NumberOf("+1.500000E-09"));
  for (const char *strText : {"", "V", "1.5V", "1,5", "0x10", "nan", "inf", "1e999", "9.91E37", "1 2"})
    EXPECT_EQ(std::nullopt, NumberOf(strText)) << strText;
}

TEST(ScpiAnswer, TextIsReadWithoutItsQuotes) {
  EXPECT_EQ("No error", Unquoted("\"No error\""));
  EXPECT_EQ("say \"so\"", Unquoted("\"say \"\"so\"\"\""));
  EXPECT_EQ("plain", Unquoted(" plain "));
  EXPECT_EQ("\"", Unquoted("\""));
}

TEST(ScpiAnswer, BlockIsExactlyAsLongAsItSays) {
  EXPECT_EQ("ab", BlockOf("#12ab"));
  EXPECT_EQ("#210" + std::string(10, 'x'), ToBlock(std::string(10, 'x')));
  EXPECT_EQ("#10", ToBlock(""));
  EXPECT_EQ("", BlockOf("#10"));
  for (const char *strText : {"", "#", "#0ab", "#12a", "#12abc", "#x2ab", "#9", "#21", "#1x"})
    EXPECT_EQ(std::nullopt, BlockOf(strText)) << strText;
}

TEST(ScpiAnswer, WordsAreUnderstoodInShortAndLongFormOnly) {
  EXPECT_EQ(":SOUR{channel}:PULS:WIDT", ShortForm(":SOURce{channel}:PULSe:WIDTh"));
  EXPECT_TRUE(IsWord("VOLT", "VOLTage"));
  EXPECT_TRUE(IsWord("voltage", "VOLTage"));
  EXPECT_FALSE(IsWord("VOLTA", "VOLTage"));
  EXPECT_TRUE(IsWord("TTLT7", "TTLTrg7"));
  EXPECT_FALSE(IsWord("", "VOLTage"));
}

}  // namespace
}  // namespace tarvik::scpi
