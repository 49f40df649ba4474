#include "engrspin/DigitCursor.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarvik {
namespace {

class Box : public CursorText {
 public:
  std::u16string strText;
  Long lngStart = 0, lngLength = 0;

  std::u16string Content() const override { return strText; }
  Long SelStart() const override { return lngStart; }
  Long SelLength() const override { return lngLength; }
  void SetSelStart(Long lngNew) override {
    if (lngNew < 0) RaiseError(ErrInvalidPropertyValue);
    lngStart = std::min(lngNew, static_cast<Long>(strText.size()));
    lngLength = 0;
  }
  void SetSelLength(Long lngNew) override {
    lngLength = std::min(lngNew, static_cast<Long>(strText.size()) - lngStart);
  }
};

struct Cursor : testing::Test {
  Box box;
  DigitCursor cursor{box};
  Long After(const char16_t *strText, std::initializer_list<Long> modes) {
    box.strText = strText;
    box.SetSelStart(0);
    for (const Long lngMode : modes) cursor.MoveCursor(lngMode);
    return box.lngStart;
  }
};

TEST_F(Cursor, WrapsAndSkipsTheSeparatorBothWays) {
  EXPECT_EQ(After(u"1.000", {curFirst, curRight}), 2);
  EXPECT_EQ(After(u"1.000", {curFirst, curRight, curLeft}), 0);
  EXPECT_EQ(After(u"1.000", {curFirst, curLeft}), 4);
  EXPECT_EQ(After(u"1.000", {curLast, curRight}), 0);
}

TEST_F(Cursor, NeverRestsOnTheSign) {
  EXPECT_EQ(After(u"-1.50", {curFirst}), 1);
  EXPECT_EQ(After(u"-1.50", {curFirst, curLeft}), 4);
}

TEST_F(Cursor, GoesToDecimalPositions) {
  EXPECT_EQ(After(u"123.4", {0}), 2);
  EXPECT_EQ(After(u"123.4", {2}), 0);
  EXPECT_EQ(After(u"123.4", {-1}), 4);
}

TEST_F(Cursor, APlaceBeforeTheTextMovesNothing) {
  EXPECT_EQ(After(u"1.000", {curLast, 5}), 4);
  EXPECT_EQ(cursor.LastMode(), curLast);
}

TEST_F(Cursor, AnEmptyTextCannotFail) {
  for (const Long lngMode : {curNext, curRestore, curRight, curLeft, curLast, curFirst})
    EXPECT_EQ(After(u"", {lngMode}), 0);
}

TEST_F(Cursor, UnitsAndSeparatorBothCountAsZero) {
  box.strText = u"123.4";
  const Long expected[] = {2, 1, 0, 0, -1};
  for (Long i = 0; i < 5; ++i) {
    box.SetSelStart(i);
    EXPECT_EQ(cursor.GetCursorDigit(), expected[i]);
  }
  box.strText = u"57";
  box.SetSelStart(1);
  EXPECT_EQ(cursor.GetCursorDigit(), -2);
}

}  // namespace
}  // namespace tarvik
