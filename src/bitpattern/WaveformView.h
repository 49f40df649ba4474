#pragma once

#include <array>
#include <optional>
#include <string>

#include "bitpattern/PatternStore.h"
#include "platform/PictureBox.h"

namespace tarvik {

/// Draws the rows of a pattern around the actual address, as waveforms or digits, and keeps which row is selected.
/// What it draws are lines and digits in twips; the picture paints them. The work does not depend on the length
/// of the pattern.
class WaveformView {
 public:
  /// Computes cell count and base lines from the sizes of the picture and of the scroll bar at its bottom.
  WaveformView(PictureBox &picWave, PatternStore &objStore, Single sngScrollHeight);

  Long CellsPerView() const { return lngCellsPerView; }

  /// Channel code of the selected row, 0 for none.
  Long Selected() const { return lngSelected; }
  void Select(Long lngCode) { lngSelected = lngCode; }
  /// Selects the row when sngY lies in its band and tells whether it does. sngX is ignored.
  bool SelectRowAt(Long lngCode, Single sngX, Single sngY);

  /// The whole picture with the actual address in its fixed cell.
  void Draw(Long lngAddress);

  /// Lines of a cell from the pen, in red when highlighted. An unknown case shows "Illegal Case".
  void DrawCell(Long lngCase, Boolean fHighlight);

 private:
  /// Twips.
  struct DigitSize {
    Single sngWidth;
    Single sngHeight;
  };

  void DrawRows(Single sngX, Long lngFirst, Long lngLast);
  void DrawBackground();
  void DrawRow(const ByteArray &arr, const RowInfo &row, Long lngFirst, Long lngLast, Boolean fHighlight);
  void DrawWaveform(const ByteArray &arr, const RowInfo &row, Long lngFirst, Long lngLast, Boolean fHighlight);
  void DrawDigit(Long lngValue, Boolean fHighlight);
  void DrawSelectedCell(Long lngAddress);
  const DigitSize &SizeOf(Long lngDigit, const std::string &strDigit);
  bool GetRowY(Long lngCode, Single &sngY) const;

  PictureBox &picWave;
  PatternStore &m_store;
  Long lngSelected = 0;
  Long lngCellsPerView = 0;
  std::array<std::optional<DigitSize>, 4> m_digitSizes;
};

}  // namespace tarvik
