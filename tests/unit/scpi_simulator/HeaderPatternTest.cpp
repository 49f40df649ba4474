#include "scpi/simulator/HeaderPattern.h"

#include <gmock/gmock.h>

namespace tarvik::scpisim {
namespace {

using testing::ElementsAre;
using Match = HeaderPattern::Match;

class HeaderPatternTest : public testing::Test {
 protected:
  Match Try(const char *strPattern, const std::vector<std::string> &arrNodes) {
    return HeaderPattern(strPattern).Matches(arrNodes, 2, suffixes);
  }
  std::vector<Long> suffixes;
};

TEST_F(HeaderPatternTest, TakesTheShortAndTheLongFormAndNothingBetween) {
  EXPECT_EQ(Match::Full, Try(":PULSe:WIDTh", {"PULS", "WIDT"}));
  EXPECT_EQ(Match::Full, Try(":PULSe:WIDTh", {"PULSE", "WIDTH"}));
  EXPECT_EQ(Match::None, Try(":PULSe:WIDTh", {"PUL", "WIDT"}));
  EXPECT_EQ(Match::None, Try(":TRANsition", {"TRANSI"}));
  EXPECT_EQ(Match::None, Try(":PULSe:WIDTh", {"PULS"}));
  EXPECT_EQ(Match::None, Try(":PULSe:WIDTh", {"PULS", "WIDT", "X"}));
}

TEST_F(HeaderPatternTest, OptionalNodesMayBeLeftOutOneByOne) {
  const char *strPattern = "[:SOURce]:VOLTage[:LEVel][:IMMediate][:AMPLitude]";
  EXPECT_EQ(Match::Full, Try(strPattern, {"VOLT"}));
  EXPECT_EQ(Match::Full, Try(strPattern, {"SOUR", "VOLT", "AMPL"}));
  EXPECT_EQ(Match::Full, Try(strPattern, {"VOLT", "IMM"}));
  EXPECT_EQ(Match::Full, Try(strPattern, {"SOURCE", "VOLTAGE", "LEVEL", "IMMEDIATE", "AMPLITUDE"}));
  EXPECT_EQ(Match::None, Try(strPattern, {"VOLT", "IMM", "LEV"}));
  EXPECT_EQ(Match::None, Try(strPattern, {"SOUR"}));
}

TEST_F(HeaderPatternTest, NumericSuffixIsOneWhenItIsLeftOut) {
  EXPECT_EQ(Match::Full, Try("[:SOURce#]:PULSe:WIDTh", {"SOUR2", "PULS", "WIDT"}));
  EXPECT_THAT(suffixes, ElementsAre(2));
  EXPECT_EQ(Match::Full, Try("[:SOURce#]:PULSe:WIDTh", {"SOURCE", "PULS", "WIDT"}));
  EXPECT_THAT(suffixes, ElementsAre(1));
  EXPECT_EQ(Match::Full, Try("[:SOURce#]:PULSe:WIDTh", {"PULS", "WIDT"}));
  EXPECT_THAT(suffixes, ElementsAre(1));
}

TEST_F(HeaderPatternTest, SuffixBeyondTheChannelsIsOutOfRange) {
  EXPECT_EQ(Match::SuffixOutOfRange, Try(":OUTPut#", {"OUTP3"}));
  EXPECT_EQ(Match::SuffixOutOfRange, Try(":OUTPut#", {"OUTP0"}));
  EXPECT_EQ(Match::SuffixOutOfRange, Try(":OUTPut#", {"OUTP99999999999999999999"}));
}

TEST_F(HeaderPatternTest, BoundBehindTheHashIsTheLastSuffix) {
  EXPECT_EQ(Match::Full, Try(":PATTern#3:DATA", {"PATT3", "DATA"}));
  EXPECT_THAT(suffixes, ElementsAre(3));
  EXPECT_EQ(Match::SuffixOutOfRange, Try(":PATTern#3:DATA", {"PATT4", "DATA"}));
}

TEST_F(HeaderPatternTest, NodesWithoutNumbersTakeTheSuffixOneOnly) {
  EXPECT_EQ(Match::Full, Try(":TRIGger:LEVel", {"TRIG1", "LEV1"}));
  EXPECT_EQ(Match::SuffixOutOfRange, Try(":TRIGger:LEVel", {"TRIG2", "LEV"}));
}

TEST_F(HeaderPatternTest, KeywordKeepsItsDigitsInBothForms) {
  EXPECT_TRUE(Keyword("ECLTrg0").Matches("ECLT0"));
  EXPECT_TRUE(Keyword("ECLTrg0").Matches("ECLTRG0"));
  EXPECT_FALSE(Keyword("ECLTrg0").Matches("ECLT"));
  EXPECT_EQ("ECLT0", Keyword("ECLTrg0").Short());
}

}  // namespace
}  // namespace tarvik::scpisim
