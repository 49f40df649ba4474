#include "EditorFixture.h"
#include "WatchedCalls.h"

namespace tarvik::test {
namespace {

using testing::ElementsAre;

/// A primitive in one short line.
std::string ToLine(const DrawPrimitive &primitive) {
  const auto numbers = [&] {
    std::string strText;
    for (const Single sng : {primitive.sngX1, primitive.sngY1, primitive.sngX2, primitive.sngY2})
      strText += " " + std::to_string(static_cast<int>(sng));
    return strText;
  };
  switch (primitive.kind) {
    case DrawPrimitive::Kind::Clear: return "clear";
    case DrawPrimitive::Kind::Line: return (primitive.style == LineStyle::Dotted ? "dots" : "line") + numbers();
    case DrawPrimitive::Kind::Box: return "box" + numbers();
    case DrawPrimitive::Kind::Text: return "text " + primitive.strText;
  }
  return {};
}

class DrawingTest : public EditorFixture {
 protected:
  DrawingTest() { m_editor.EnableChannel2(False); }

  /// What stands between two heights of the picture, without clearing and cursor lines.
  std::vector<std::string> Drawn(Single sngFrom, Single sngTo) {
    std::vector<std::string> arrLines;
    for (const DrawPrimitive &primitive : picWave().DisplayList()) {
      const bool fInside = primitive.sngY1 >= sngFrom && primitive.sngY1 <= sngTo;
      if (fInside && primitive.kind != DrawPrimitive::Kind::Clear && primitive.style != LineStyle::Dotted)
        arrLines.push_back(ToLine(primitive));
    }
    return arrLines;
  }
  void Show(Byte byChan1, Long lngNumBits) {
    m_editor.SetPatternInit();
    m_editor.SetPattern(1, ByteArray(1, {byChan1}), lngNumBits);
    m_editor.SetRz(BooleanArray(1, {False, False}), False);
  }
};

TEST_F(DrawingTest, OneRiseAndOneFallWithoutReturnToZero) {
  Show(0x60, 4);
  EXPECT_THAT(Drawn(140, 340),
              ElementsAre("line 1820 340 2220 340", "line 2220 340 2220 140", "line 2220 140 2620 140",
                          "line 2620 140 3020 140", "line 3020 140 3020 340", "line 3020 340 3420 340"));
}

TEST_F(DrawingTest, SeparatePulsesWithReturnToZero) {
  Show(0x60, 4);
  m_editor.SetRz(BooleanArray(1, {True, True}), False);
  EXPECT_THAT(Drawn(140, 340), ElementsAre("line 1820 340 2220 340", "line 2220 340 2220 140", "line 2220 140 2420 140",
                                           "line 2420 140 2420 340", "line 2420 340 2620 340", "line 2620 340 2620 140",
                                           "line 2620 140 2820 140", "line 2820 140 2820 340", "line 2820 340 3020 340",
                                           "line 3020 340 3420 340"));
}

TEST_F(DrawingTest, LevelBeforeTheFirstCellCarriesOn) {
  Show(0xFE, 8);
  TypeNumber(esAddress(), "8");
  EXPECT_THAT(Drawn(140, 340), ElementsAre("line 620 140 1020 140", "line 1020 140 1420 140", "line 1420 140 1820 140",
                                           "line 1820 140 1820 340", "line 1820 340 2220 340"));
}

TEST_F(DrawingTest, SelectedCellIsRedOnAGreyBox) {
  Show(0x00, 4);
  Click(Tool(0), QPoint(10, 10));
  EXPECT_THAT(Drawn(100, 380),
              ElementsAre("box 1800 380 2240 100", "line 1820 340 2220 340", "line 2220 340 2620 340",
                          "line 2620 340 3020 340", "line 3020 340 3420 340", "line 1820 340 2220 340"));
  EXPECT_EQ(picWave().DisplayList().back().colour, 0xFFu);
  EXPECT_EQ(picWave().ForeColor(), 0xC7D863u);
  EXPECT_EQ(picWave().DrawStyle(), LineStyle::Solid);
}

TEST_F(DrawingTest, CursorLinesRunFromTopToBottom) {
  Show(0x00, 4);
  std::vector<std::string> arrDots;
  for (const DrawPrimitive &primitive : picWave().DisplayList())
    if (primitive.style == LineStyle::Dotted) arrDots.push_back(ToLine(primitive));
  EXPECT_THAT(arrDots, ElementsAre("dots 1800 0 1800 2175", "dots 2240 0 2240 2175"));
}

TEST_F(DrawingTest, RowsOfADisabledChannel2AreLeftOut) {
  Show(0x00, 4);
  EXPECT_TRUE(Drawn(600, 1300).empty());
  m_editor.EnableChannel2(True);
  m_editor.SetRz(BooleanArray(1, {False, False}), False);
  EXPECT_EQ(Drawn(600, 1300).size(), 8u) << "four lines and four digits";
}

TEST_F(DrawingTest, LongPatternDrawsNoMoreThanAShortOne) {
  Show(0x00, 20);
  TypeNumber(esAddress(), "10");
  const std::size_t count = picWave().DisplayList().size();
  TypeNumber(esLast(), "16384");
  TypeNumber(esAddress(), "8000");
  EXPECT_EQ(picWave().DisplayList().size(), count);
}

TEST_F(DrawingTest, PictureFollowsAKeyAtOnce) {
  Show(0x00, 8);
  Click(Tool(0), QPoint(10, 10));
  const QImage before = picWave().grab().toImage();
  TypeBits("1");
  EXPECT_NE(picWave().grab().toImage(), before);
}

TEST_F(DrawingTest, LargerFontScalesTheWholeForm) {
  const QSize size = m_editor.sizeHint();
  const int intPictureWidth = picWave().width();
  QFont font = m_editor.font();
  font.setPointSizeF(font.pointSizeF() * 2);
  m_editor.setFont(font);
  EXPECT_GT(m_editor.sizeHint().width(), size.width() * 3 / 2);
  EXPECT_GT(picWave().width(), intPictureWidth * 3 / 2);
}

TEST_F(DrawingTest, RowButtonsStandBesideTheirRows) {
  const Single arrBase[] = {340, 820, 1300, 1780};
  for (int i = 0; i < 4; ++i) {
    const QRect button = Tool(i).geometry();
    const int intRow =
        picWave().y() + static_cast<int>((arrBase[i] - 100) * static_cast<Single>(picWave().height()) / 2175);
    EXPECT_LE(button.top(), intRow) << i;
    EXPECT_GE(button.bottom(), intRow) << i;
    EXPECT_LT(button.right(), picWave().x());
  }
}

TEST_F(DrawingTest, ThePictureOfTheSameIsDrawnAgainAndAnyChangeIsSeen) {
  Show(0x60, 4);
  std::size_t intHeard = 0;
  const auto connection = test::Drawn().ConnectScoped([&](const PictureBox &, const DrawPrimitive &) { ++intHeard; });
  const auto arrBefore = Drawn(0, 2175);
  m_editor.SetRz(BooleanArray(1, {False, False}), False);
  EXPECT_EQ(Drawn(0, 2175), arrBefore);
  EXPECT_EQ(intHeard, picWave().DisplayList().size());
  m_editor.SetRz(BooleanArray(1, {True, False}), False);
  EXPECT_NE(Drawn(0, 2175), arrBefore) << "another form of the pulses";
  Show(0x60, 4);
  EXPECT_EQ(Drawn(0, 2175), arrBefore);
  Show(0x20, 4);
  EXPECT_NE(Drawn(0, 2175), arrBefore) << "another bit";
}

}  // namespace
}  // namespace tarvik::test
