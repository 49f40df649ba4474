#pragma once

#include <optional>

#include "support/Types.h"

namespace tarvik {

/// Bounds of a time field, seconds.
struct TimeRange {
  Double dblMin = 0;
  Double dblMax = 0;

  /// The same range, widened as far as needed so that it does not cut this value.
  TimeRange Holding(Double dblValue) const;
  bool operator==(const TimeRange &) const = default;
};

/// Seconds: what the fields take before any range is known. The instruments' real bound of the width is a little
/// higher.
inline constexpr Double ShortestWidthOfForm = 1.5E-9, LongestTime = 999.5;
inline constexpr Double ShortestWidth = 1.515E-9;
inline constexpr TimeRange WidthRangeOfForm{ShortestWidthOfForm, LongestTime};
inline constexpr TimeRange DelayRangeOfForm{0, LongestTime};

/// What the rules of the period need of a channel.
struct ChannelWidth {
  Boolean fOutputOn;     ///< normal output
  Boolean fOutputInvOn;  ///< inverse output
  Boolean fRz;           ///< returns to zero
  Double dblWidth = 0;   ///< seconds

  Boolean IsOn() const { return fOutputOn || fOutputInvOn; }
  /// The bits of a pattern without return to zero have no width of their own.
  Boolean Counts(Boolean fPatternMode) const { return IsOn() && (fRz || !fPatternMode); }
};

/// The widest width that the period has to hold, for an instrument with this many channels; where no output is on it is
/// left as it was. Answers whether any channel counts; false without channels.
Boolean GetWidestWidth(Long lngCount, const ChannelArray<ChannelWidth> &widths, Boolean fPatternMode, Double &dblWidth);

/// The two forms in which one field shows the period.
struct PeriodForm {
  const char *strCaption;
  const char *strBaseUnit;
};
const PeriodForm &FormOf(Boolean fFrequency);

/// What a field that shows dblShown, in either form, has to show so that the period holds the width; empty where the
/// period is long enough or the field shows that already.
std::optional<Double> PushedPeriod(Double dblPeriod, Double dblWidth, Boolean fFrequency, Double dblShown);

/// Ranges of a channel after a change of the period: the delay reaches over the whole period, whatever the width.
TimeRange WidthRange(Double dblPeriod, Boolean fDoublePulse);
TimeRange DelayRange(Double dblPeriod, Boolean fDoublePulse, Double dblWidth);
/// Range of the delay after a change of the width, which has to find room behind it. dblWidestWidth is the upper bound
/// of the width.
TimeRange DelayRangeBesideWidth(Double dblWidestWidth, Boolean fDoublePulse, Double dblWidth);

/// A pattern has no double pulses.
ChannelArray<Boolean> DoublePulses(Boolean fPatternMode, Long ePulseType1, Long ePulseType2);
const char *DelayCaption(Boolean fDoublePulse);
/// The width of a channel is locked where it has none.
Boolean IsWidthLocked(Boolean fPatternMode, Boolean fRz);

/// How a trailing edge stands to its leading edge.
struct TrailEdge {
  Boolean fTeEqLe;         ///< follows the leading edge
  Boolean fLocked;         ///< the user cannot choose
  Boolean fShowsAsBefore;  ///< the lock was not lifted: field and menu keep their state
};

/// Couples or frees the edge. A locked one always follows; only fClearLock lifts a lock.
TrailEdge CoupleTrailEdge(Boolean fIsLocked, Boolean fTeEqLe, Boolean fLocked, Boolean fClearLock);

/// List of the values that a leading edge can have; empty where it is free.
const char *LeadingEdgeValues(Boolean fFixedEdges);

}  // namespace tarvik
