#pragma once

#include <optional>

#include "instrument/Records.h"
#include "settings/Choice.h"
#include "support/Types.h"

namespace tarvik {

/// Under Ext-Width the external signal makes the pulses.
Boolean HasPulseMode(Long eTriggerMode);

/// Single or double pulses; in a pattern return to zero or not. intChan is 1 or 2.
Choices PulseTypes(Boolean fPatternMode, Integer intChan);
Choices PeriodSources();
Choices ClockEdges();
/// The clock's edge matters only where the clock makes the period.
Boolean IsClockEdgeOfUse(Integer intModePos, Long ePeriodSource);

/// What the trigger mode makes of the lists of arming source and level. A caption that is null stays as it is.
struct ArmingMeaning {
  const char *strSourceCaption;
  const char *strLevelCaption;
  Boolean fPllAllowed;  ///< the PLL can arm a triggered burst or pattern and nothing else
};
/// Empty for a trigger mode that there is not.
std::optional<ArmingMeaning> MeaningOfArming(Long eTriggerMode, Long ePulseMode);
/// An instrument has the VXI lines or a key.
Choices ArmingSources(Boolean fPllAllowed, Boolean fVxiLines);

/// What the arming source leaves to be chosen.
struct ArmingLevels {
  const char *strCaption = nullptr;  ///< null: stays as it is
  Choices arrLevels = {};
  Boolean fPll = False;  ///< the levels tell how the PLL is given, ePllPeriod or ePllFrequency, and no slopes
};
/// Empty for a trigger mode that there is not.
std::optional<ArmingLevels> LevelsOfArming(Long eTriggerMode, Long ePulseMode, Long eArmingSource, Long ePeriodSource);

/// How the field of the PLL shows its number.
struct PllField {
  const char *strCaption;
  const char *strBaseUnit;
};
/// Empty for a level that is none of the PLL's.
std::optional<PllField> PllFieldOf(Boolean fPllLevels, Long lngLevel);

/// The one PLL cannot give the period and arm as well.
Boolean ClaimsPllTwice(Long eArmingSource, Long ePeriodSource);

/// What the controls of the mode page hold. Two of them stand for what the record keeps in two fields each: the pulse
/// type is the signal format in a pattern, the level is the format of the PLL where that arms.
struct ModeFields {
  Long eTriggerMode = 0, ePulseMode = 0;
  Double dblBurstLength = 0;
  ChannelArray<Long> ePulseType;
  Long ePeriodSource = 0, eTriggerSlope = 0, eArmingSource = 0;
  Long lngArmingLevel = 0;
  Double dblPllPeriodOrFreq = 0;  ///< seconds or hertz

  bool operator==(const ModeFields &) const = default;
};
/// The burst length is rounded.
udtModeInfo ToModeInfo(const ModeFields &fields);
ModeFields ToModeFields(const udtModeInfo &mode);

}  // namespace tarvik
