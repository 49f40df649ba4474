#include <gmock/gmock.h>

#include <cstring>

#include "automation/AutomationArray.h"
#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"
#include "support/RunTimeError.h"

namespace tarvik::automation {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(AutomationString, HoldsItsByteCountBeforeTheFirstUnit) {
  const String text("a\xC3\xA4");
  std::uint32_t lngBytes = 0;
  std::memcpy(&lngBytes, reinterpret_cast<const unsigned char *>(text.Get()) - 4, sizeof lngBytes);
  EXPECT_EQ(lngBytes, 4u);
  EXPECT_EQ(text.Get()[0], u'a');
  EXPECT_EQ(text.Get()[1], u'\u00E4');
  EXPECT_EQ(text.Get()[2], u'\0');
}

TEST(AutomationString, CarriesEveryCharacterThereAndBack) {
  const std::string strText("\xCE\xA9 \xF0\x9F\x94\xA7 \0 end", 13);
  EXPECT_EQ(String(strText).Text(), strText);
  EXPECT_EQ(StringLength(String("\xF0\x9F\x94\xA7").Get()), 2u);
}

TEST(AutomationString, NothingIsTheEmptyText) {
  EXPECT_EQ(ToText(nullptr), "");
  EXPECT_EQ(StringLength(nullptr), 0u);
  EXPECT_NE(String("").Get(), nullptr);
}

TEST(AutomationString, WhatIsNoTextBecomesTheReplacementCharacter) {
  EXPECT_EQ(ToUtf8(std::u16string(1, char16_t{0xD800})), "\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf16("\xFF"), std::u16string(1, char16_t{0xFFFD}));
}

TEST(AutomationString, EachByteThatBelongsToNoCharacterIsReplacedAlone) {
  EXPECT_EQ(ToUtf16("a\xC0\x80z"), u"a\uFFFD\uFFFDz") << "longer than it has to be";
  EXPECT_EQ(ToUtf16("\xE2\x82"), u"\uFFFD\uFFFD") << "the text ends within a character";
  EXPECT_EQ(ToUtf16("\xE2\x82\xE2\x82\xAC"), u"\uFFFD\uFFFD\u20AC") << "a character begins within a character";
  EXPECT_EQ(ToUtf16("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD") << "half a pair";
  EXPECT_EQ(ToUtf16("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD") << "beyond the last character";
  EXPECT_EQ(ToUtf16("\xF0\x9F\x94\xA7\xBF"), u"\U0001F527\uFFFD");
}

TEST(AutomationString, EachHalfOfAPairThatStandsAloneIsReplaced) {
  const auto units = [](std::initializer_list<unsigned> arrUnits) {
    return std::u16string(arrUnits.begin(), arrUnits.end());
  };
  EXPECT_EQ(ToUtf8(units({'a', 0xDC00, 'z'})), "a\xEF\xBF\xBDz");
  EXPECT_EQ(ToUtf8(units({0xD83D, 0xD83D, 0xDD27})), "\xEF\xBF\xBD\xF0\x9F\x94\xA7");
  EXPECT_EQ(ToUtf8(units({0xDD27, 0xD83D})), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(AutomationArray, KeepsBoundsAndBytes) {
  const ArrayOwner array(ByteArray(1, {7, 8}));
  EXPECT_TRUE(IsByteArray(array.Get()));
  EXPECT_EQ(array.Get()->rgsabound[0].lLbound, 1);
  EXPECT_EQ(array.Get()->rgsabound[0].cElements, 2u);
  const ByteArray arr = ToByteArray(array.Get());
  EXPECT_EQ(arr.LowerBound(), 1);
  EXPECT_THAT(arr.Elements(), ElementsAre(7, 8));
}

TEST(AutomationArray, NothingIsAnArrayWithoutElements) { EXPECT_THAT(ToByteArray(nullptr).Elements(), IsEmpty()); }

TEST(AutomationArray, OtherElementsAndDimensionsFail) {
  const ArrayOwner array(ByteArray(0, {1, 2, 3, 4}));
  array.Get()->cbElements = 4;
  EXPECT_THROW(ToByteArray(array.Get()), RunTimeError);
  array.Get()->cbElements = 1;
  array.Get()->cDims = 2;
  EXPECT_FALSE(IsByteArray(array.Get()));
  EXPECT_THROW(ToByteArray(array.Get()), RunTimeError);
}

TEST(ErrorInfo, AStatusBecomesARunTimeErrorWithTheDriversWordsOnce) {
  try {
    Check(Fail(StatusFail, "the bench is on fire", "bench"));
    FAIL();
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Number(), StatusFail);
    EXPECT_EQ(error.Description(), "the bench is on fire");
    EXPECT_EQ(error.Source(), "bench");
  }
  try {
    Check(StatusFail);
    FAIL();
  } catch (const RunTimeError &error) {
    EXPECT_EQ(error.Description(), "Automation error 80004005");
  }
}

TEST(ErrorInfo, WhatIsNoFailurePasses) {
  EXPECT_NO_THROW(Check(StatusOk));
  EXPECT_NO_THROW(Check(StatusFalse));
}

}  // namespace
}  // namespace tarvik::automation
