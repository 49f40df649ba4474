#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "RecordingHost.h"
#include "support/Conversions.h"
#include "support/Variant.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;

class ConversionsTest : public testing::TestWithParam<char> {
 protected:
  ConversionsTest() { host.chSeparator = GetParam(); }
  /// The text with this separator in place of the point.
  std::string Local(std::string strText) const { return Replace(strText, ".", std::string(1, GetParam())); }

  RecordingHost host;
};

INSTANTIATE_TEST_SUITE_P(Separators, ConversionsTest, testing::Values('.', ','),
                         [](const auto &row) { return row.param == '.' ? "Point" : "Comma"; });

TEST_P(ConversionsTest, NumbersAsText) {
  EXPECT_EQ(CStr(0.0), "0");
  EXPECT_EQ(CStr(-0.0), "0");
  EXPECT_EQ(CStr(1.5), Local("1.5"));
  EXPECT_EQ(CStr(0.1 + 0.2), Local("0.3"));
  EXPECT_EQ(CStr(0.0001), Local("0.0001"));
  EXPECT_EQ(CStr(0.000015), Local("1.5E-05"));
  EXPECT_EQ(CStr(123456789012345.0), "123456789012345");
  EXPECT_EQ(CStr(1e15), "1E+15");
  EXPECT_EQ(CStr(1e9), "1000000000");
  EXPECT_EQ(CStr(-999999999.0), "-999999999");
  EXPECT_EQ(CStr(4294967296.0), "4294967296");
  EXPECT_EQ(CStr(-2.5), Local("-2.5"));
  EXPECT_EQ(CStr(1e300), "1E+300");
  EXPECT_EQ(CStr(Long{-12}), "-12");
  EXPECT_EQ(CStr(True), "True");
  EXPECT_EQ(CStr(False), "False");
}

TEST_P(ConversionsTest, TextAsNumbers) {
  const auto parse = [&](const char *strText) { return ParseNumber(Local(strText), GetParam()); };
  EXPECT_EQ(parse("5."), 5.0);
  EXPECT_EQ(parse(".5"), 0.5);
  EXPECT_EQ(parse("  -1.25e3 "), -1250.0);
  EXPECT_EQ(parse("+2E-2"), 0.02);
  EXPECT_EQ(parse("1e-400"), 0.0);
  for (const char *strBad : {"", " ", ".", "-", "1.2.3", "1e", "0x10", "inf", "nan", "1 2", "--1"})
    EXPECT_EQ(parse(strBad), std::nullopt) << strBad;
  EXPECT_THROW(parse("1e400"), RunTimeError);
  EXPECT_TRUE(IsNumeric("1e400", GetParam()));
}

TEST_P(ConversionsTest, TheOtherSeparatorIsNoNumber) {
  EXPECT_EQ(ParseNumber(GetParam() == '.' ? "1,5" : "1.5", GetParam()), std::nullopt);
}

TEST_P(ConversionsTest, RoundingIsHalfToEven) {
  EXPECT_EQ(CLng(0.5), 0);
  EXPECT_EQ(CLng(1.5), 2);
  EXPECT_EQ(CLng(2.5), 2);
  EXPECT_EQ(CLng(-0.5), 0);
  EXPECT_EQ(CLng(-1.5), -2);
  EXPECT_EQ(CInt(32767.4), 32767);
  EXPECT_EQ(CLng(std::string_view("7")), 7);
}

TEST_P(ConversionsTest, AValueOfAnyTypeIsAWholeNumberByTheSameRounding) {
  EXPECT_EQ(CLng(Variant(2.5)), 2);
  EXPECT_EQ(CLng(Variant(-1.5)), -2);
  EXPECT_EQ(CLng(Variant(Long{7})), 7);
  EXPECT_EQ(CLng(Variant(True)), -1);
  EXPECT_EQ(CLng(Variant(Local("12.6"))), 13);
  EXPECT_EQ(CLng(Variant()), 0);
  EXPECT_THROW(CLng(Variant("volt")), RunTimeError);
}

TEST_P(ConversionsTest, WhatDoesNotFitIsAnOverflow) {
  EXPECT_THROW(CInt(32767.5), RunTimeError);
  EXPECT_THROW(CInt(-32769.0), RunTimeError);
  EXPECT_EQ(CInt(32767.0), 32767);
  EXPECT_EQ(CInt(-32768.0), -32768);
  EXPECT_EQ(CLng(2147483647.0), 2147483647);
  EXPECT_THROW(CLng(2147483647.5), RunTimeError);
  EXPECT_EQ(CLng(-2147483648.0), std::numeric_limits<Long>::min());
  EXPECT_THROW(CLng(std::numeric_limits<Double>::quiet_NaN()), RunTimeError);
}

TEST_P(ConversionsTest, TextThatIsNoNumberIsATypeMismatch) {
  try {
    CDbl(std::string_view("volt"));
    FAIL();
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 13);
    EXPECT_EQ(error.Description(), "Type mismatch");
  }
}

TEST_P(ConversionsTest, FormatStrings) {
  EXPECT_EQ(Format(3.05e-6, "0.000000000E+00"), Local("3.050000000E-06"));
  EXPECT_EQ(Format(0, "0.000000000E+00"), Local("0.000000000E+00"));
  EXPECT_EQ(Format(9.9999999999, "0.000000000E+00"), Local("1.000000000E+01"));
  EXPECT_EQ(Format(0.5, "#"), "1");
  EXPECT_EQ(Format(0.4, "#"), "");
  EXPECT_EQ(Format(2.5, "#"), "3") << "an exact tie goes away from zero";
  EXPECT_EQ(Format(-0.4, "0"), "0") << "a zero has no sign";
  EXPECT_EQ(Format(1, "##0.0##"), Local("1.0"));
  EXPECT_EQ(Format(1.2346, "##0.0##"), Local("1.235"));
  EXPECT_EQ(Format(13, "##### "), "13 ");
  EXPECT_EQ(Format(0, "##### "), " ");
  EXPECT_EQ(Format(-2147221503, "##### "), "-2147221503 ");
}

TEST_P(ConversionsTest, FormatStringsWithTextAroundTheDigits) {
  EXPECT_EQ(Format(-5, "<0.0>"), Local("-<5.0>"));
  EXPECT_EQ(Format(5, ".00 V"), Local("5.00 V"));
  EXPECT_EQ(Format(0, "none"), "none") << "text alone";
}

TEST_P(ConversionsTest, FormatStringsShowEachZeroAndNoMoreThanTheirPlaces) {
  EXPECT_EQ(Format(7, "000"), "007");
  EXPECT_EQ(Format(7, "#00"), "07");
  EXPECT_EQ(Format(7, "0#"), "07") << "a place behind a zero is shown as well";
  EXPECT_EQ(Format(1234, "0"), "1234");
  EXPECT_EQ(Format(0.5, "#.0#"), Local(".5"));
  EXPECT_EQ(Format(0.25, "0.0#0"), Local("0.250"));
  EXPECT_EQ(Format(0.05, "0.0"), Local("0.1")) << "0.05 is a little more than that";
  EXPECT_EQ(Format(0.04, "0.0"), Local("0.0"));
  EXPECT_EQ(Format(99.95, "0.0"), Local("100.0")) << "99.95 is a little more than that";
  EXPECT_EQ(Format(0.996, "0.00"), Local("1.00"));
  EXPECT_EQ(Format(100, "0.0"), Local("100.0"));
}

TEST_P(ConversionsTest, FormatStringsWithAnExponent) {
  EXPECT_EQ(Format(1234, "0.0E+00"), Local("1.2E+03"));
  EXPECT_EQ(Format(1234, "00.0E+0"), Local("12.3E+2"));
  EXPECT_EQ(Format(1e-120, "0E+00 V"), "1E-120 V");
  EXPECT_EQ(Format(9.96, "0.0E+000"), Local("1.0E+001"));
  EXPECT_EQ(Format(0, "0E+0"), "0E+0");
}

TEST_P(ConversionsTest, WhatIsNotFiniteHasNoFormat) {
  for (const Double dblValue : {HUGE_VAL, -HUGE_VAL, std::nan("")}) EXPECT_THROW(Format(dblValue, "0"), RunTimeError);
}

TEST_P(ConversionsTest, PiecesOfText) {
  EXPECT_THAT(Split("a,,b", ','), ElementsAre("a", "", "b"));
  EXPECT_THAT(Split("", ','), ElementsAre(""));
  EXPECT_EQ(Trim("  a b "), "a b");
  EXPECT_EQ(Trim("ab"), "ab");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Replace("abc", "", "x"), "abc");
  EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");
  EXPECT_EQ(Replace("a;b;", ";", "\r\n"), "a\r\nb\r\n");
}

class UtilsTest : public testing::Test {
 protected:
  RecordingHost host;
};

TEST_F(UtilsTest, HexadecimalTextOfAFixedWidth) {
  EXPECT_EQ(FmtHex(255, 4), "0x00FF");
  EXPECT_EQ(FmtHex(65535, 4), "0xFFFF");
  EXPECT_EQ(FmtHex(-1, 8), "0xFFFFFFFF");
  EXPECT_THAT(host.TakeBoxes(), testing::IsEmpty());
  EXPECT_EQ(FmtHex(65536, 4), "10000");
  EXPECT_EQ(FmtHex(1, 3), "1");
  EXPECT_EQ(FmtHex(1, 0), "1");
  EXPECT_THAT(host.TakeBoxes(),
              ElementsAre("box stop: Hex format invalid (FmtHex())", "box stop: Num hex digits must be multiple of 4",
                          "box stop: Invalid num hex digits"));
}

TEST_F(UtilsTest, TheHourglassIsNotCounted) {
  SetHourglass(True);
  SetHourglass(True);
  SetHourglass(False);
  EXPECT_EQ(host.intPointer, 0);
  EXPECT_THAT(host.TakeLines(), ElementsAre("pointer 11", "pointer 0"));
}

TEST_F(UtilsTest, APointerOfSomebodyElseSurvives) {
  host.intPointer = 2;
  SetHourglass(True);
  SetHourglass(False);
  EXPECT_EQ(host.intPointer, 2);
}

TEST_F(UtilsTest, EachReportIsOneRecord) {
  LogError("Mod", "Proc", 13, "Type mismatch");
  LogError("Mod", "Proc", 13, "Type mismatch");
  const char *strRecord = "log: 02/03/01 04:05\r\n  Error: 13 Type mismatch\r\n  Mod: Mod; Proc: Proc\r\n\r\n\r\n";
  EXPECT_THAT(host.TakeLines(),
              ElementsAre("box stop: Type mismatch", strRecord, "box stop: Type mismatch", strRecord));
}

TEST_F(UtilsTest, AReportedFailureIsFollowedByWhatHasToBeDoneAlsoWhereItCannotBeWritten) {
  int intDone = 0;
  const auto run = [&](Long lngFailure) {
    return RunReported(
        "Mod", "Proc",
        [=] {
          if (lngFailure != 0) throw RunTimeError(lngFailure, "failed");
        },
        [&] { ++intDone; });
  };
  EXPECT_TRUE(run(0));
  EXPECT_EQ(intDone, 0);
  EXPECT_FALSE(run(ErrTypeMismatch));
  EXPECT_EQ(intDone, 1);
  host.logFailure = ScriptedFailure{ErrPermissionDenied, "Permission denied", 1};
  EXPECT_THROW(run(ErrTypeMismatch), RunTimeError);
  EXPECT_EQ(intDone, 2);
}

TEST_F(UtilsTest, TheLargerOfTwo) {
  EXPECT_EQ(MaxDouble(2, 1), 2);
  EXPECT_EQ(MaxDouble(1, 2), 2);
  EXPECT_TRUE(std::signbit(MaxDouble(0.0, -0.0))) << "the second of two equal ones";
}

class CountingControl : public Control {
 public:
  Boolean Enabled() const override { return fEnabled; }
  void SetEnabled(Boolean fValue) override {
    fEnabled = fValue;
    ++intWrites;
  }
  void SetFocus() override { ++intFocus; }

  Boolean fEnabled = True;
  int intWrites = 0, intFocus = 0;
};

TEST_F(UtilsTest, OnlyADifferentValueIsWritten) {
  CountingControl control;
  SetEnabled(control, True);
  EXPECT_EQ(control.intWrites, 0);
  SetEnabled(control, False);
  EXPECT_EQ(control.intWrites, 1);
  SetFocusIfEnabled(control);
  EXPECT_EQ(control.intFocus, 0);
  SetEnabled(control, True);
  SetFocusIfEnabled(control);
  EXPECT_EQ(control.intFocus, 1);
}

TEST_F(UtilsTest, APropertyThatAControlDoesNotHaveIsError438) {
  CountingControl control;
  try {
    SetVisible(control, True);
    FAIL() << "written";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), 438);
    EXPECT_EQ(error.Description(), "Object doesn't support this property or method");
  }
}

class TaggedButton : public OptionButtonControl {
 public:
  explicit TaggedButton(std::string strTag) : m_strTag(std::move(strTag)) {}
  Integer Index() const override { return 0; }
  const std::string &Tag() const override { return m_strTag; }
  Boolean Value() const override { return fValue; }
  void SetValue(Boolean fOn) override { fValue = fOn; }

  Boolean fValue;

 private:
  std::string m_strTag;
};

TEST_F(UtilsTest, TheFirstButtonWhoseTagHoldsTheTextIsTurnedOn) {
  TaggedButton zero("0"), ten("10"), one("1");
  const std::vector<OptionButtonControl *> arrButtons{&zero, &ten, &one};
  EXPECT_TRUE(SetOptionButtonToTag(arrButtons, "1"));
  EXPECT_FALSE(zero.fValue);
  EXPECT_TRUE(ten.fValue);
  EXPECT_FALSE(one.fValue);
  EXPECT_FALSE(SetOptionButtonToTag(arrButtons, "2"));
}

TEST_F(UtilsTest, TheEmptyTextFindsTheFirstButtonWithATag) {
  TaggedButton none(""), first("1"), second("2");
  EXPECT_TRUE(SetOptionButtonToTag(std::vector<OptionButtonControl *>{&none, &first, &second}, ""));
  EXPECT_FALSE(none.fValue);
  EXPECT_TRUE(first.fValue);
  EXPECT_FALSE(second.fValue);
  EXPECT_FALSE(SetOptionButtonToTag(std::vector<OptionButtonControl *>{&none}, ""));
}

}  // namespace
}  // namespace tarvik::test
