#include "bitpattern/WaveformView.h"

#include <algorithm>
#include <utility>

#include "bitpattern/WaveformGeometry.h"
#include "support/Conversions.h"
#include "support/modErrorLog.h"

namespace tarvik {

namespace {

constexpr Colour HighlightColour = 0x0000FF;
constexpr Colour SelectionColour = 0xC0C0C0;
/// How far the grey box of the selected cell reaches beyond a level, in twips.
constexpr Single SelectionMargin = 40;

/// Changes the fore colour for one cell.
class CellColour {
 public:
  CellColour(PictureBox &picture, Boolean fHighlight) : m_picture(picture), m_before(picture.ForeColor()) {
    if (fHighlight) m_picture.SetForeColor(HighlightColour);
  }
  ~CellColour() { m_picture.SetForeColor(m_before); }
  CellColour(const CellColour &) = delete;
  CellColour &operator=(const CellColour &) = delete;

 private:
  PictureBox &m_picture;
  Colour m_before;
};

}  // namespace

WaveformView::WaveformView(PictureBox &picture, PatternStore &objStore, Single sngScrollHeight)
    : picWave(picture), m_store(objStore), lngCellsPerView(tarvik::CellsPerView(picture.ScaleWidth())) {
  Long lngIndex = 0;
  for (RowInfo &row : m_store.Rows()) row.sngBaseY = RowBaseY(lngIndex++, picWave.ScaleHeight(), sngScrollHeight);
}

bool WaveformView::GetRowY(Long lngCode, Single &sngY) const {
  const RowInfo *row = m_store.RowOf(lngCode);
  if (row) sngY = row->sngBaseY;
  return row != nullptr;
}

bool WaveformView::SelectRowAt(Long lngCode, Single, Single sngY) {
  Single sngBaseY = 0;
  const bool fHit = GetRowY(lngCode, sngBaseY) && HitsRow(sngBaseY, sngY);
  if (fHit) lngSelected = lngCode;
  return fHit;
}

void WaveformView::Draw(Long lngAddress) {
  Single sngX = ActualCellLeft;
  Long lngFirst = lngAddress, lngLast = 0;
  GetVisibleRange(lngCellsPerView, m_store.Length(), sngX, lngFirst, lngLast);
  // Measured once per drawing, as the font may change in between.
  m_digitSizes.fill(std::nullopt);
  picWave.Cls();
  DrawBackground();
  DrawRows(sngX, lngFirst, lngLast);
  if (lngSelected != 0) DrawSelectedCell(lngAddress);
}

void WaveformView::DrawRows(Single sngX, Long lngFirst, Long lngLast) {
  for (const RowInfo &row : m_store.Rows()) {
    const bool fOfChannel2 = row.lngChannel == eChan2 || row.lngChannel == eBoth;
    if (fOfChannel2 && !m_store.Chan2Enabled()) continue;
    // The row of both channels is always numeric and reads both streams itself.
    const ByteArray *stream = m_store.StreamOf(row.lngChannel);
    picWave.SetCurrentX(sngX);
    DrawRow(stream ? *stream : m_store.Chan1(), row, lngFirst, lngLast, False);
  }
}

void WaveformView::DrawSelectedCell(Long lngAddress) {
  const RowInfo *row = m_store.RowOf(lngSelected);
  if (!row) {
    ShowStopMessage("Illegal Case");
    return;
  }
  const ByteArray *stream = m_store.StreamOf(lngSelected);
  picWave.SetCurrentX(ActualCellLeft);
  DrawRow(stream ? *stream : m_store.Chan1(), *row, lngAddress, lngAddress, True);
}

void WaveformView::DrawBackground() {
  const LineStyle styleBefore = picWave.DrawStyle();
  Single sngY = 0;
  if (lngSelected != 0 && GetRowY(lngSelected, sngY))
    picWave.FillBox(CursorLeft, sngY + SelectionMargin, CursorRight, sngY - HighLevel - SelectionMargin,
                    SelectionColour);
  picWave.SetDrawStyle(LineStyle::Dotted);
  for (const Single sngX : {CursorLeft, CursorRight}) picWave.Line(sngX, 0, sngX, picWave.ScaleHeight());
  picWave.SetDrawStyle(styleBefore);
}

void WaveformView::DrawRow(const ByteArray &arr, const RowInfo &row, Long lngFirst, Long lngLast, Boolean fHighlight) {
  picWave.SetCurrentY(row.sngBaseY);
  if (!row.fNumeric) {
    DrawWaveform(arr, row, lngFirst, lngLast, fHighlight);
    return;
  }
  for (Long lngAddress = lngFirst; lngAddress <= lngLast; ++lngAddress) {
    Long lngValue = 0;
    m_store.ReadChannelBit(row.lngChannel, lngAddress, lngValue);
    DrawDigit(lngValue, fHighlight);
  }
}

void WaveformView::DrawWaveform(const ByteArray &arr, const RowInfo &row, Long lngFirst, Long lngLast,
                                Boolean fHighlight) {
  Boolean fBefore, fNow;
  if (lngFirst > 1) GetBit(arr, lngFirst - 1, fBefore);
  if (fBefore && !row.fRz) picWave.SetCurrentY(row.sngBaseY - HighLevel);
  for (Long lngAddress = lngFirst; lngAddress <= lngLast; ++lngAddress) {
    GetBit(arr, lngAddress, fNow);
    DrawCell(CellCase(row.fRz, fBefore, fNow), fHighlight);
    fBefore = fNow;
  }
}

void WaveformView::DrawCell(Long lngCase, Boolean fHighlight) {
  const auto arrMoves = CellMoves(lngCase);
  if (arrMoves.empty()) {
    ShowStopMessage("Illegal Case");
    return;
  }
  const CellColour colour(picWave, fHighlight);
  for (const PenMove &move : arrMoves) picWave.LineTo(picWave.CurrentX() + move.sngX, picWave.CurrentY() + move.sngY);
}

const WaveformView::DigitSize &WaveformView::SizeOf(Long lngDigit, const std::string &strDigit) {
  auto &size = m_digitSizes.at(static_cast<std::size_t>(lngDigit));
  if (!size) size = DigitSize{picWave.TextWidth(strDigit), picWave.TextHeight(strDigit)};
  return *size;
}

void WaveformView::DrawDigit(Long lngValue, Boolean fHighlight) {
  const Single sngX = picWave.CurrentX(), sngY = picWave.CurrentY();
  const std::string strDigit = CStr(lngValue);
  {
    const CellColour colour(picWave, fHighlight);
    const DigitSize &size = SizeOf(lngValue, strDigit);
    picWave.SetCurrentY(sngY - (size.sngHeight + HighLevel) / 2);
    picWave.SetCurrentX(sngX + (CellWidth - size.sngWidth) / 2);
    picWave.Print(strDigit);
  }
  picWave.SetCurrentX(sngX + CellWidth);
  picWave.SetCurrentY(sngY);
}

}  // namespace tarvik
