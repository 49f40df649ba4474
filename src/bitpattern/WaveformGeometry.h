#pragma once

#include <span>

#include "support/Types.h"

/// Where the view puts things. All lengths are twips of the picture, Y grows downward.
namespace tarvik {

/// Width of the cell of one address.
inline constexpr Single CellWidth = 400;
/// Height of a high level above the base line of its row, and of the band in which a click selects the row.
inline constexpr Single HighLevel = 200;
/// The pattern scrolls under one fixed cell, that of the actual address: its left edge, and the two lines
/// around it.
inline constexpr Single ActualCellLeft = 1820;
inline constexpr Single CursorLeft = 1800;
inline constexpr Single CursorRight = 2240;
/// Cells to the left of the actual address, where the pattern has them.
inline constexpr Long CellsBeforeActual = 3;

/// Cells that fit between the margins of a picture.
Long CellsPerView(Single sngScaleWidth);

/// Base line of row lngIndex, 0 to 3 from the top, above a scroll bar at the bottom of the picture.
Single RowBaseY(Long lngIndex, Single sngScaleHeight, Single sngScrollHeight);

/// The addresses in view when lngFirst comes in as the actual address and sngX as the left edge of its cell;
/// both go out for the leftmost cell. Nothing behind lngLength is in view. Below address 1 the first two
/// addresses are taken.
void GetVisibleRange(Long lngCellsPerView, Long lngLength, Single &sngX, Long &lngFirst, Long &lngLast);

/// Whether a click at sngY selects the row of this base line.
constexpr bool HitsRow(Single sngBaseY, Single sngY) { return sngBaseY - HighLevel <= sngY && sngY <= sngBaseY; }

/// One straight line from the pen.
struct PenMove {
  Single sngX;
  Single sngY;
  bool operator==(const PenMove &) const = default;
};

/// Case of a cell: 4 in a row of return-to-zero pulses, plus 2 when the address before is 1, plus 1 when this one is.
constexpr Long CellCase(bool fRz, bool fBefore, bool fNow) {
  return (fRz ? 4 : 0) + (fBefore ? 2 : 0) + (fNow ? 1 : 0);
}

/// The lines of a cell for the cases 0 to 7; none for any other. A pulse fills the first half of its cell.
std::span<const PenMove> CellMoves(Long lngCase);

}  // namespace tarvik
