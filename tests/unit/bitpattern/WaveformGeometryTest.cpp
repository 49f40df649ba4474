#include "bitpattern/WaveformGeometry.h"

#include <gmock/gmock.h>

#include <vector>

namespace tarvik::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Range {
  Single sngX;
  Long lngFirst;
  Long lngLast;
  bool operator==(const Range &) const = default;
  friend void PrintTo(const Range &range, std::ostream *os) {
    *os << "x " << range.sngX << ", " << range.lngFirst << " to " << range.lngLast;
  }
};

Range Visible(Long lngAddress, Long lngLength, Long lngCells = 12) {
  Range range{1820, lngAddress, 0};
  GetVisibleRange(lngCells, lngLength, range.sngX, range.lngFirst, range.lngLast);
  return range;
}

TEST(WaveformGeometry, CellsAreCutNotRounded) {
  EXPECT_EQ(CellsPerView(5175), 12);
  EXPECT_EQ(CellsPerView(5300), 12);
  EXPECT_EQ(CellsPerView(5499), 12);
  EXPECT_EQ(CellsPerView(5500), 13);
}

TEST(WaveformGeometry, BaseLinesOfTheFourRows) {
  const std::vector<Single> arrExpected{340, 820, 1300, 1780};
  for (Long i = 0; i < 4; ++i) EXPECT_EQ(RowBaseY(i, 2175, 255), arrExpected[static_cast<std::size_t>(i)]);
  EXPECT_EQ(RowBaseY(3, 2055, 255), 1675);
}

TEST(WaveformGeometry, ActualAddressKeepsItsCell) {
  EXPECT_EQ(Visible(1, 100), (Range{1820, 1, 9}));
  EXPECT_EQ(Visible(2, 100), (Range{1420, 1, 10}));
  EXPECT_EQ(Visible(3, 100), (Range{1020, 1, 11}));
  EXPECT_EQ(Visible(4, 100), (Range{620, 1, 12}));
  EXPECT_EQ(Visible(50, 100), (Range{620, 47, 58}));
}

TEST(WaveformGeometry, NothingBehindTheLengthIsInView) {
  EXPECT_EQ(Visible(1, 2), (Range{1820, 1, 2}));
  EXPECT_EQ(Visible(91, 100), (Range{620, 88, 99}));
  EXPECT_EQ(Visible(92, 100), (Range{620, 89, 100}));
  EXPECT_EQ(Visible(93, 100), (Range{620, 90, 100}));
  EXPECT_EQ(Visible(100, 100), (Range{620, 97, 100}));
  EXPECT_EQ(Visible(16384, 16384), (Range{620, 16381, 16384}));
}

TEST(WaveformGeometry, BelowTheFirstAddressTheFirstTwoAreTaken) {
  EXPECT_EQ(Visible(0, 100), (Range{1820, 1, 2}));
  EXPECT_EQ(Visible(-5, 100), (Range{1820, 1, 2}));
}

TEST(WaveformGeometry, ClickBandHasItsEndsInIt) {
  EXPECT_TRUE(HitsRow(340, 140));
  EXPECT_TRUE(HitsRow(340, 340));
  EXPECT_TRUE(HitsRow(340, 200));
  EXPECT_FALSE(HitsRow(340, 139.5F));
  EXPECT_FALSE(HitsRow(340, 340.5F));
}

TEST(WaveformGeometry, LevelsHoldWithoutReturnToZero) {
  EXPECT_THAT(CellMoves(CellCase(false, false, false)), ElementsAre(PenMove{400, 0}));
  EXPECT_THAT(CellMoves(CellCase(false, false, true)), ElementsAre(PenMove{0, -200}, PenMove{400, 0}));
  EXPECT_THAT(CellMoves(CellCase(false, true, false)), ElementsAre(PenMove{0, 200}, PenMove{400, 0}));
  EXPECT_THAT(CellMoves(CellCase(false, true, true)), ElementsAre(PenMove{400, 0}));
}

TEST(WaveformGeometry, PulsesFillTheFirstHalfWithReturnToZero) {
  const auto pulse = ElementsAre(PenMove{0, -200}, PenMove{200, 0}, PenMove{0, 200}, PenMove{200, 0});
  EXPECT_THAT(CellMoves(CellCase(true, false, false)), ElementsAre(PenMove{400, 0}));
  EXPECT_THAT(CellMoves(CellCase(true, false, true)), pulse);
  EXPECT_THAT(CellMoves(CellCase(true, true, false)), ElementsAre(PenMove{400, 0}));
  EXPECT_THAT(CellMoves(CellCase(true, true, true)), pulse);
}

TEST(WaveformGeometry, CasesAreNumberedFromZeroToSeven) {
  EXPECT_EQ(CellCase(false, false, true), 1);
  EXPECT_EQ(CellCase(false, true, false), 2);
  EXPECT_EQ(CellCase(true, false, false), 4);
  EXPECT_EQ(CellCase(true, true, true), 7);
  EXPECT_THAT(CellMoves(-1), IsEmpty());
  EXPECT_THAT(CellMoves(8), IsEmpty());
}

}  // namespace
}  // namespace tarvik::test
