#include "engrspin/EngrNumber.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "engrspin/EngrFormat.h"
#include "engrspin/FieldLayout.h"
#include "engrspin/ValueList.h"

namespace tarvik {
namespace {

struct FormatRow {
  const char *strName;
  Double dblValue;
  Long lngDigits;
  const char *strText;
  Long lngExponent;
};

class Mantissa : public testing::TestWithParam<FormatRow> {};

TEST_P(Mantissa, HasTheExpectedTextAndExponentWithBothSeparators) {
  const FormatRow &row = GetParam();
  for (const char chDecimal : {'.', ','}) {
    Long lngExponent = 99;
    std::string strText;
    FormatMantissa(row.dblValue, row.lngDigits, chDecimal, lngExponent, strText);
    std::string strExpected = row.strText;
    if (const auto pos = strExpected.find('.'); pos != std::string::npos) strExpected[pos] = chDecimal;
    EXPECT_EQ(strText, strExpected);
    EXPECT_EQ(lngExponent, row.lngExponent);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Mantissa,
    testing::Values(FormatRow{"micro", 0.00000305, 4, "3.050", -6}, FormatRow{"kilo", 1234, 4, "1.234", 3},
                    FormatRow{"negative", -12.3456, 4, "-12.34", 0}, FormatRow{"zeroKeepsExponent", 0, 4, "0.000", 99},
                    FormatRow{"minusZero", -0.0, 4, "0.000", 99}, FormatRow{"hundredKilo", 100000, 4, "100.0", 3},
                    FormatRow{"cutNotRounded", 999.96, 4, "999.9", 0}, FormatRow{"exactPower", 1000, 4, "1.000", 3},
                    FormatRow{"carryIntoNextPower", 999.99999999999, 4, "1.000", 3},
                    FormatRow{"tieUpFromEven", 12345678905.0, 10, "12.34567891", 9},
                    FormatRow{"tieWithFraction", 1000000000.5, 10, "1.000000001", 9},
                    FormatRow{"negativeTie", -1000000000.5, 10, "-1.000000001", 9},
                    FormatRow{"tieIntoNextPower", 9999999999.5, 10, "10.00000000", 9},
                    FormatRow{"noTieJustBelow", std::nextafter(1000000000.5, 0), 10, "1.000000000", 9},
                    FormatRow{"smallest", 5e-324, 4, "4.940", -324},
                    FormatRow{"largest", std::numeric_limits<Double>::max(), 4, "179.7", 306}),
    [](const auto &row) { return row.param.strName; });

EngrNumber Volts() {
  EngrNumber number;
  number.InitProperties();
  number.SetBaseUnit("V");
  number.SetMax(1e12);
  number.SetMin(-1e12);
  return number;
}

TEST(FieldNumber, JumpsToTheLimitOnTheWayDownAndToTheSmallestOnTheWayUp) {
  EngrNumber number = Volts();
  number.SetMinExponent(-9);
  number.SetMin(0);
  number.Assign(1e-9);
  number.Assign(1e-12);
  EXPECT_EQ(number.Value(), 0);
  EXPECT_EQ(number.OldValue(), 1e-9);
  number.Assign(1e-12);
  EXPECT_EQ(number.Value(), 1e-11);
}

TEST(FieldNumber, HoldsWhatIsNoNumberWithinItsLimits) {
  EngrNumber number = Volts();
  number.SetMin(1);
  number.SetMax(5);
  number.Assign(std::numeric_limits<Double>::quiet_NaN());
  EXPECT_EQ(number.Value(), 1);
  number.Assign(std::numeric_limits<Double>::infinity());
  EXPECT_EQ(number.Value(), 5);
  number.Assign(-std::numeric_limits<Double>::infinity());
  EXPECT_EQ(number.Value(), 1);
  number.SetMax(std::numeric_limits<Double>::quiet_NaN());
  EXPECT_EQ(number.Max(), 5);
}

TEST(FieldNumber, LimitsPushEachOther) {
  EngrNumber number = Volts();
  number.SetMax(3);
  number.SetMin(5);
  EXPECT_EQ(number.Max(), 5);
  number.SetMax(-1);
  EXPECT_EQ(number.Min(), -1);
}

TEST(FieldNumber, SmallestIsTheNearestDoubleToTwoDecadesBelow) {
  EngrNumber number;
  number.SetMinExponent(-12);
  EXPECT_EQ(number.Smallest(), 1e-14);
  number.SetMinExponent(-9);
  EXPECT_EQ(number.Smallest(), 1e-11);
}

TEST(FieldNumber, ReciprocalOfZeroIsTheUpperLimit) {
  EngrNumber number = Volts();
  number.Assign(0);
  EXPECT_EQ(number.Reciprocal(), 1e12);
  EXPECT_EQ(number.ValueOfReciprocal(0), 1e12);
  EXPECT_EQ(number.ValueOfReciprocal(4), 0.25);
}

struct EntryRow {
  const char *strTyped;
  Entry::Kind kind;
  Double dblValue;
};

TEST(Entry, IsReadAsTyped) {
  EngrNumber number = Volts();
  number.SetMaxExponent(3);
  number.Assign(0.005);
  ASSERT_EQ(number.ConvertValue2Engr(), "5.000");
  using enum Entry::Kind;
  const EntryRow rows[] = {
      {"3.05uV", Number, 3.05e-6},
      {"3.05 uV", Number, 3.05e-6},
      {"3.05u", Number, 3.05e-6},
      {"3.05", Number, 0.00305},
      {"5V", Number, 5},
      {"2E6", Number, 2e6},
      {"1e-3", Number, 1e-3},
      {"-7", Number, -0.007},
      {"+7", Number, 0.007},
      {" 5m", Number, 0.005},
      {"5 ", Number, 0.005},
      {"2M", Bad, 0},
      {"5K", Bad, 0},
      {"5U", Bad, 0},
      {"5x", Bad, 0},
      {"abc", Bad, 0},
      {"~", Bad, 0},
      {"", Empty, 0},
      {"inf", Bad, 0},
      {"nan", Bad, 0},
      {"5\xC2\xB5V", Bad, 0},
      {"\xD9\xA3", Bad, 0},
  };
  for (const EntryRow &row : rows) {
    const Entry entry = number.ReadEntry(row.strTyped);
    EXPECT_EQ(entry.kind, row.kind) << row.strTyped;
    EXPECT_EQ(entry.dblValue, row.dblValue) << row.strTyped;
  }
}

TEST(Entry, LineBreaksAndTabsCountAsBlanks) {
  const EngrNumber number = Volts();
  for (const char *strPasted : {"3.5\n", "\t3.5", "\r\n3.5\r\n", "3.5\tV", "3.5 V\n"}) {
    const Entry entry = number.ReadEntry(strPasted);
    EXPECT_EQ(entry.kind, Entry::Kind::Number) << strPasted;
    EXPECT_EQ(entry.dblValue, 3.5) << strPasted;
  }
  for (const char *strPasted : {"3\n5", "3.\t5", "\n"})
    EXPECT_EQ(number.ReadEntry(strPasted).kind, Entry::Kind::Bad) << strPasted;
}

TEST(Entry, FailsWhereTheHeadIsNoNumberOrTheNumberIsTooLarge) {
  const EngrNumber number = Volts();
  for (const char *strTyped : {"3.0.5uV", "abc5m", "3e5m", "1e400", "1e400m"})
    EXPECT_THROW(number.ReadEntry(strTyped), RunTimeError) << strTyped;
  EXPECT_THROW(number.ReadEntry(std::string(1 << 20, '9')), RunTimeError);
  EXPECT_EQ(number.ReadEntry(std::string(1 << 20, '0') + "5V").dblValue, 5);
}

TEST(Entry, ReadsBackWhatIsShownForAMillionValues) {
  EngrNumber number = Volts();
  number.SetSignificantDigits(10);
  std::mt19937_64 random(20010203);
  std::uniform_real_distribution<Double> mantissa(-10, 10);
  std::uniform_int_distribution<int> power(-12, 11);
  for (int i = 0; i < 1000000; ++i) {
    const Double dblValue = mantissa(random) * PowerOfTen(power(random));
    number.Assign(dblValue);
    const Double dblHeld = number.Value();
    std::string strTyped = number.ConvertValue2Engr();
    strTyped += number.ExponentToPrefix(number.Exponent()) + "V";
    if (number.Exponent() < -12) continue;
    const Entry entry = number.ReadEntry(strTyped);
    ASSERT_EQ(entry.kind, Entry::Kind::Number) << strTyped;
    ASSERT_LE(std::fabs(entry.dblValue - dblHeld), 5.1e-10 * std::fabs(dblHeld)) << strTyped;
  }
}

TEST(Prefixes, FollowTheTableAndGiveAStarOutside) {
  EngrNumber number = Volts();
  EXPECT_EQ(number.ExponentToPrefix(-12), "p");
  EXPECT_EQ(number.ExponentToPrefix(-10), "p");
  EXPECT_EQ(number.ExponentToPrefix(-1), "m");
  EXPECT_EQ(number.ExponentToPrefix(0), "");
  EXPECT_EQ(number.ExponentToPrefix(11), "G");
  EXPECT_EQ(number.ExponentToPrefix(12), "T");
  EXPECT_EQ(number.ExponentToPrefix(15), "*");
  EXPECT_EQ(number.ExponentToPrefix(-15), "*");
  number.SetEngrMode(False);
  EXPECT_EQ(number.ExponentToPrefix(15), "");
}

TEST(ValueList, StepsRoundBothWaysAndFailsOnWhatIsNoNumber) {
  ValueList list;
  list.SetText("1; 2 ;5");
  EXPECT_EQ(list.GetArrayValue(1), 2);
  EXPECT_EQ(list.GetArrayValue(2), 5);
  EXPECT_EQ(list.GetArrayValue(3), 1);
  EXPECT_EQ(list.GetArrayValue(-1), 5);
  list.SetText("1;x");
  EXPECT_THROW(list.GetArrayValue(1), RunTimeError);
  EXPECT_EQ(list.Index(), 1);
}

TEST(FieldLayout, PlacesCaptionTextSpinAndUnit) {
  FieldLayout layout;
  layout.Arrange(false);
  EXPECT_EQ(layout.lblUnits.place, (FieldPlace{3130, 50, 500, 265}));
  EXPECT_EQ(layout.spinCtl.place, (FieldPlace{2850, 0, 240, 315}));
  EXPECT_EQ(layout.txtNumber.place, (FieldPlace{840, 0, 2000, 315}));
  EXPECT_EQ(layout.lblCaption.place, (FieldPlace{0, 50, 740, 265}));
  EXPECT_EQ(layout.sngTextBoxWidth, 2250);
}

TEST(FieldLayout, HoldsTheSizeAndLeavesOutNegativeWidths) {
  FieldLayout layout;
  layout.sngWidth = 100;
  layout.sngHeight = 5000;
  layout.lblCaption.place.sngWidth = 9000;
  layout.Arrange(false);
  EXPECT_EQ(layout.sngWidth, 1500);
  EXPECT_EQ(layout.sngHeight, 1000);
  EXPECT_FALSE(layout.txtNumber.fMoved);
}

}  // namespace
}  // namespace tarvik
