#include "support/NumberText.h"

#include <gtest/gtest.h>

#include "support/RunTimeError.h"

namespace tarvik {
namespace {

TEST(NumberText, TakesSignSeparatorAndExponentWithBlanksAround) {
  for (const char *strText : {"12", " 12 ", "+12", "12.", "1.2e1", "1.2E+1", "120e-1"}) {
    const NumberText number(strText, '.');
    EXPECT_TRUE(number.IsWhole()) << strText;
    EXPECT_EQ(number.Value(), 12) << strText;
  }
  EXPECT_EQ(NumberText("-.5", '.').Value(), -0.5);
  EXPECT_EQ(NumberText("-0,5", ',').Value(), -0.5);
}

TEST(NumberText, IsNotWholeWhereAnythingElseStands) {
  for (const char *strText : {"", " ", "+", ".", "e5", "1e", "1e+", "1.2.3", "1 2", "0x10", "inf", "12V", "1,5"})
    EXPECT_FALSE(NumberText(strText, '.').IsWhole()) << strText;
}

TEST(NumberText, TellsWhereItsMantissaEnds) {
  EXPECT_EQ(NumberText("3.05uV", '.').MantissaEnd(), 4u);
  EXPECT_EQ(NumberText("  -3.05 uV", '.').MantissaEnd(), 7u);
  EXPECT_EQ(NumberText("3.V", '.').MantissaEnd(), 1u) << "a separator at the end is no digit";
  EXPECT_EQ(NumberText("3.0.5uV", '.').MantissaEnd(), 3u);
  EXPECT_EQ(NumberText("3e5V", '.').MantissaEnd(), 1u);
  EXPECT_EQ(NumberText("uV", '.').MantissaEnd(), 0u);
}

TEST(NumberText, ScalesItsMantissaByAPowerOfTenWithOneRounding) {
  EXPECT_EQ(NumberText("3.05", '.').MantissaTimesPower(-6), 3.05e-6);
  EXPECT_EQ(NumberText("+1,1", ',').MantissaTimesPower(3), 1100);
  EXPECT_TRUE(NumberText("1e3", '.').HasExponent());
  EXPECT_FALSE(NumberText("1", '.').HasExponent());
}

TEST(NumberText, OverflowsToAnErrorAndUnderflowsToZero) {
  EXPECT_EQ(NumberText("1e-400", '.').Value(), 0);
  EXPECT_EQ(NumberText("1e-320", '.').Value(), 1e-320);
  try {
    (void)NumberText("1e400", '.').Value();
    FAIL() << "1e400 is too large";
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), ErrOverflow);
  }
}

TEST(NumberText, ConvertsTextsOfAnyLength) {
  EXPECT_EQ(NumberText("1" + std::string(300, '0'), '.').Value(), 1e300);
  EXPECT_EQ(NumberText("0." + std::string(299, '0') + "1", '.').Value(), 1e-300);
}

}  // namespace
}  // namespace tarvik
