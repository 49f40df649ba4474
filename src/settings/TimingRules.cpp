#include "settings/TimingRules.h"

#include <algorithm>

#include "instrument/Vocabulary.h"
#include "support/modUtilsGen.h"

namespace tarvik {

TimeRange TimeRange::Holding(Double dblValue) const { return {std::min(dblMin, dblValue), std::max(dblMax, dblValue)}; }

Boolean GetWidestWidth(Long lngCount, const ChannelArray<ChannelWidth> &widths, Boolean fPatternMode,
                       Double &dblWidth) {
  if (lngCount == 0) return False;
  const ChannelWidth &first = widths[1], &second = widths[2];
  const Boolean fFirst = first.Counts(fPatternMode), fSecond = second.Counts(fPatternMode);
  if (lngCount == 1 && fFirst) dblWidth = first.dblWidth;
  if (lngCount == 2) {
    // With two channels the outputs decide alone which width is taken.
    if (first.IsOn() && second.IsOn())
      dblWidth = MaxDouble(first.dblWidth, second.dblWidth);
    else if (first.IsOn())
      dblWidth = first.dblWidth;
    else if (second.IsOn())
      dblWidth = second.dblWidth;
  }
  return fFirst || fSecond;
}

const PeriodForm &FormOf(Boolean fFrequency) {
  static constexpr PeriodForm Period{"Period", "s"}, Frequency{"Frequency", "Hz"};
  return fFrequency ? Frequency : Period;
}

std::optional<Double> PushedPeriod(Double dblPeriod, Double dblWidth, Boolean fFrequency, Double dblShown) {
  if (!(dblPeriod < dblWidth)) return std::nullopt;
  const Double dblGrown = fFrequency ? 1 / dblWidth : dblWidth;
  // The period of the rounded frequency can still be a hair below the width. While the user types, each write asks for
  // the rule again, so writing the same frequency once more would never come to an end.
  return dblGrown == dblShown ? std::nullopt : std::optional(dblGrown);
}

TimeRange WidthRange(Double dblPeriod, Boolean fDoublePulse) {
  return {ShortestWidth, fDoublePulse ? dblPeriod / 2 : dblPeriod};
}

TimeRange DelayRange(Double dblPeriod, Boolean fDoublePulse, Double dblWidth) {
  return {fDoublePulse ? dblWidth : 0, dblPeriod};
}

TimeRange DelayRangeBesideWidth(Double dblWidestWidth, Boolean fDoublePulse, Double dblWidth) {
  if (fDoublePulse) return {dblWidth, 2 * dblWidestWidth - dblWidth};
  return {0, dblWidestWidth - dblWidth};
}

ChannelArray<Boolean> DoublePulses(Boolean fPatternMode, Long ePulseType1, Long ePulseType2) {
  return {!fPatternMode && ePulseType1 == eTypeDouble, !fPatternMode && ePulseType2 == eTypeDouble};
}

const char *DelayCaption(Boolean fDoublePulse) { return fDoublePulse ? "Dbl. Delay" : "Delay"; }

Boolean IsWidthLocked(Boolean fPatternMode, Boolean fRz) { return fPatternMode && !fRz; }

TrailEdge CoupleTrailEdge(Boolean fIsLocked, Boolean fTeEqLe, Boolean fLocked, Boolean fClearLock) {
  const Boolean fStaysLocked = fIsLocked && !fClearLock && !fLocked;
  return {fTeEqLe || fLocked || fStaysLocked, fLocked || fStaysLocked, fStaysLocked};
}

const char *LeadingEdgeValues(Boolean fFixedEdges) { return fFixedEdges ? "0.8E-9;1.6E-9" : ""; }

}  // namespace tarvik
