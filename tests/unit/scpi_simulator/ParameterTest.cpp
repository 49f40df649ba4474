#include "scpi/simulator/Parameter.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvik::scpisim {
namespace {

const Parameter Seconds = Parameter::Number(Unit::Second, -1e30, 1e30);

ProgramData DataOf(const std::string &strData) { return ProgramMessage("A " + strData).Next()->arrData.at(0); }

Double Value7() { return 7; }

Double NumberOf(const Parameter &parameter, const std::string &strData) {
  return std::get<Double>(parameter.Convert(DataOf(strData), Value7));
}

Double NumberIn(Unit unit, const std::string &strData) {
  return NumberOf(Parameter::Number(unit, -1e30, 1e30), strData);
}

Long FaultOf(const Parameter &parameter, const std::string &strData) {
  try {
    parameter.Convert(DataOf(strData), Value7);
  } catch (const ScpiFault &fault) {
    return fault.lngNumber;
  }
  return 0;
}

TEST(Units, MultipliersOfTheStandard) {
  const std::pair<const char *, Double> rows[] = {
      {"1S", 1},    {"1MS", 1e-3}, {"1US", 1e-6}, {"1NS", 1e-9}, {"1PS", 1e-12}, {"1FS", 1e-15}, {"1AS", 1e-18},
      {"1KS", 1e3}, {"1MAS", 1e6}, {"1GS", 1e9},  {"1TS", 1e12}, {"1PES", 1e15}, {"1EXS", 1e18}, {"2 ns", 2e-9}};
  for (const auto &[strData, dblExpected] : rows)
    EXPECT_DOUBLE_EQ(dblExpected, NumberIn(Unit::Second, strData)) << strData;
}

TEST(Units, NumberAndMultiplierAreRoundedOnce) {
  // 50 * 1e-9 and 300 * 1e-9 are other Doubles.
  EXPECT_EQ(5e-8, NumberIn(Unit::Second, "50NS"));
  EXPECT_EQ(3e-7, NumberIn(Unit::Second, "300 NS"));
  EXPECT_EQ(3e-7, NumberIn(Unit::Second, "0.3E3NS"));
}

TEST(Units, MIsMegaForHertzAndOhmAndMilliOtherwise) {
  EXPECT_DOUBLE_EQ(1e6, NumberIn(Unit::Hertz, "1MHZ"));
  EXPECT_DOUBLE_EQ(1e6, NumberIn(Unit::Hertz, "1MAHZ"));
  EXPECT_DOUBLE_EQ(1e6, NumberIn(Unit::Ohm, "1MOHM"));
  EXPECT_DOUBLE_EQ(1e-3, NumberIn(Unit::Volt, "1MV"));
  EXPECT_DOUBLE_EQ(1e6, NumberIn(Unit::Volt, "1MAV"));
}

TEST(Units, MaIsMilliampereAndMaaMegaampere) {
  EXPECT_DOUBLE_EQ(1e-3, NumberIn(Unit::Ampere, "1MA"));
  EXPECT_DOUBLE_EQ(1e6, NumberIn(Unit::Ampere, "1MAA"));
  EXPECT_DOUBLE_EQ(1, NumberIn(Unit::Ampere, "1A"));
  EXPECT_DOUBLE_EQ(1e-6, NumberIn(Unit::Ampere, "1UA"));
}

TEST(Units, PercentHasNoMultiplier) {
  EXPECT_DOUBLE_EQ(50, NumberIn(Unit::Percent, "50PCT"));
  EXPECT_EQ(-131, FaultOf(Parameter::Number(Unit::Percent, 0, 100), "50MPCT"));
}

TEST(Units, AnotherQuantitysUnitIsInvalid) {
  EXPECT_EQ(-131, FaultOf(Seconds, "1V"));
  EXPECT_EQ(-131, FaultOf(Seconds, "1QS"));
  EXPECT_EQ(-131, FaultOf(Seconds, "1E"));
  EXPECT_EQ(-138, FaultOf(Parameter::Whole(0, 9), "1S"));
  EXPECT_EQ(-138, FaultOf(Parameter::Switch(), "1S"));
}

TEST(Parameter, SpecialNumbersInBothForms) {
  const Parameter number = Parameter::Number(Unit::Volt, -3, 5);
  for (const char *strMin : {"MIN", "MINimum", "minimum"}) EXPECT_EQ(-3, NumberOf(number, strMin));
  for (const char *strMax : {"MAX", "MAXIMUM"}) EXPECT_EQ(5, NumberOf(number, strMax));
  EXPECT_EQ(-222, FaultOf(number, "DEF"));  // 7 is above 5
  EXPECT_EQ(7, NumberOf(Parameter::Number(Unit::Volt, 0, 10), "DEFAULT"));
  EXPECT_EQ(-222, FaultOf(number, "INF"));
  EXPECT_EQ(-222, FaultOf(number, "NINFINITY"));
  EXPECT_EQ(-141, FaultOf(number, "MINI"));
}

TEST(Parameter, DefWithoutADefaultIsInvalid) { EXPECT_THROW(Seconds.Convert(DataOf("DEF"), {}), ScpiFault); }

TEST(Parameter, RangeHoldsItsEndsAndNothingBeyond) {
  const Parameter number = Parameter::Number(Unit::Second, 1.5e-9, 999.5);
  EXPECT_EQ(1.5e-9, NumberOf(number, "1.5 NS"));
  EXPECT_EQ(999.5, NumberOf(number, "999.5"));
  EXPECT_EQ(-222, FaultOf(number, "1.4NS"));
  EXPECT_EQ(-222, FaultOf(number, "1000"));
  EXPECT_EQ(-222, FaultOf(number, "1e400"));
}

TEST(Parameter, ChoiceTakesItsNumbersOnly) {
  const Parameter impedance = Parameter::Choice(Unit::Ohm, {50, 1000});
  EXPECT_EQ(1000, NumberOf(impedance, "1 KOHM"));
  EXPECT_EQ(-224, FaultOf(impedance, "60"));
  EXPECT_EQ(-222, FaultOf(impedance, "10"));
  EXPECT_EQ(50, NumberOf(impedance, "MIN"));
}

TEST(Parameter, WholeNumbersAreRounded) {
  EXPECT_EQ(3, NumberOf(Parameter::Whole(0, 9), "2.6"));
  EXPECT_EQ(2, NumberOf(Parameter::Whole(0, 9), "2.5"));
  EXPECT_EQ(-222, FaultOf(Parameter::Whole(0, 9), "9.6"));
  EXPECT_EQ(255, NumberOf(Parameter::Whole(0, 255), "#HFF"));
}

TEST(Parameter, SwitchTakesWordsAndNumbers) {
  for (const char *strOn : {"ON", "on", "1", "2", "-1", "0.6", "#B1"})
    EXPECT_EQ(1, NumberOf(Parameter::Switch(), strOn)) << strOn;
  for (const char *strOff : {"OFF", "0", "0.4", "-0.5"}) EXPECT_EQ(0, NumberOf(Parameter::Switch(), strOff)) << strOff;
  EXPECT_EQ(-141, FaultOf(Parameter::Switch(), "YES"));
}

TEST(Parameter, WordsInShortAndLongForm) {
  const Parameter slope = Parameter::OneWord({{"NEGative", 0}, {"POSitive", 1}});
  EXPECT_EQ(1, NumberOf(slope, "pos"));
  EXPECT_EQ(0, NumberOf(slope, "NEGATIVE"));
  EXPECT_EQ(-141, FaultOf(slope, "NEGA"));
  EXPECT_EQ("POS", slope.Answer(1.0));
}

TEST(Parameter, DataOfAnotherKindIsNotAllowed) {
  const Parameter word = Parameter::OneWord({{"ON", 1}});
  EXPECT_EQ(-128, FaultOf(word, "1"));
  EXPECT_EQ(-128, FaultOf(Parameter::String(), "#H1"));
  EXPECT_EQ(-148, FaultOf(Parameter::Block(), "ABC"));
  EXPECT_EQ(-158, FaultOf(Seconds, "'1'"));
  EXPECT_EQ(-158, FaultOf(Parameter::Switch(), "'ON'"));
  EXPECT_EQ(-168, FaultOf(Seconds, "#11a"));
  EXPECT_EQ(-168, FaultOf(Parameter::String(), "#11a"));
  EXPECT_EQ(-178, FaultOf(Seconds, "(1+2)"));
}

TEST(Answers, RealNumbersReadBackTheSame) {
  EXPECT_EQ("1.0E-07", RealAnswer(1e-7));
  EXPECT_EQ("1.2345678901234567E+08", RealAnswer(123456789.01234567));
  EXPECT_EQ("0.0E+00", RealAnswer(-0.0));
  EXPECT_EQ("-2.5E+00", RealAnswer(-2.5));
  EXPECT_EQ("9.9E+37", RealAnswer(INFINITY));
  EXPECT_EQ("-9.9E+37", RealAnswer(-INFINITY));
  EXPECT_EQ("9.91E+37", RealAnswer(NAN));
}

TEST(Answers, StringsDoubleTheirQuotesAndBlocksTellTheirLength) {
  EXPECT_EQ(R"("say ""a""")", StringAnswer("say \"a\""));
  EXPECT_EQ("#10", BlockAnswer(""));
  EXPECT_EQ("#212abcdefghijkl", BlockAnswer("abcdefghijkl"));
}

}  // namespace
}  // namespace tarvik::scpisim
