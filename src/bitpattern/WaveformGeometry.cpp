#include "bitpattern/WaveformGeometry.h"

#include <algorithm>
#include <array>

namespace tarvik {

namespace {

constexpr Single SideMargins = 300;
constexpr Single RowGap = 200;
constexpr Long RowCount = 4;

constexpr PenMove Across{CellWidth, 0}, HalfAcross{CellWidth / 2, 0}, Rise{0, -HighLevel}, Fall{0, HighLevel};

constexpr std::array<PenMove, 1> LevelMoves{Across};
constexpr std::array<PenMove, 2> RiseMoves{Rise, Across};
constexpr std::array<PenMove, 2> FallMoves{Fall, Across};
constexpr std::array<PenMove, 4> PulseMoves{Rise, HalfAcross, Fall, HalfAcross};

/// By case: without and with return to zero, each for 0 after 0, 1 after 0, 0 after 1, 1 after 1.
constexpr std::array<std::span<const PenMove>, 8> MovesByCase{LevelMoves, RiseMoves,  FallMoves,  LevelMoves,
                                                              LevelMoves, PulseMoves, LevelMoves, PulseMoves};

}  // namespace

Long CellsPerView(Single sngScaleWidth) { return static_cast<Long>((sngScaleWidth - SideMargins) / CellWidth); }

Single RowBaseY(Long lngIndex, Single sngScaleHeight, Single sngScrollHeight) {
  const Single sngRowHeight = (sngScaleHeight - sngScrollHeight - RowCount * RowGap) / RowCount;
  const auto sngIndex = static_cast<Single>(lngIndex);
  return (sngIndex + 1) * RowGap + sngIndex * sngRowHeight + sngRowHeight / 2;
}

void GetVisibleRange(Long lngCellsPerView, Long lngLength, Single &sngX, Long &lngFirst, Long &lngLast) {
  if (lngFirst < 1) {
    lngFirst = 1;
    lngLast = 2;
    return;
  }
  const Long lngBack = std::min(lngFirst - 1, CellsBeforeActual);
  lngFirst -= lngBack;
  sngX -= static_cast<Single>(lngBack) * CellWidth;
  const Long lngCount = lngCellsPerView - CellsBeforeActual + lngBack;
  lngLast = std::min(lngFirst + lngCount - 1, lngLength);
}

std::span<const PenMove> CellMoves(Long lngCase) {
  if (lngCase < 0 || lngCase >= static_cast<Long>(MovesByCase.size())) return {};
  return MovesByCase[static_cast<std::size_t>(lngCase)];
}

}  // namespace tarvik
