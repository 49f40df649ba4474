#pragma once

#include "support/Types.h"

namespace tarvik {

/// Which of the values that depend on one another keeps what it has. For hosts with timing rules of their own; the
/// panel's precedence is fixed.
enum PeriodPrecedence : Long {
  ePrePeriod = 0,
  ePreFrequency = 1,
  ePreWidth = 2,
  ePreDelay = 3,
};

}  // namespace tarvik
