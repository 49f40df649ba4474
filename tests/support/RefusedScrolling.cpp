#include "RefusedScrolling.h"

#include <utility>

#include "bitpattern/HScrollBar.h"
#include "support/RunTimeError.h"

namespace tarvik::test {

namespace {

bool g_fRefuse = false;

}  // namespace

void RealSetMax(HScrollBar *, Integer) asm("__real__ZN6tarvik10HScrollBar6SetMaxEs");

void RefuseNextScrollMax(bool fRefuse) { g_fRefuse = fRefuse; }

void WatchedSetMax(HScrollBar *, Integer) asm("__wrap__ZN6tarvik10HScrollBar6SetMaxEs");

void WatchedSetMax(HScrollBar *scrollBar, Integer intMax) {
  if (std::exchange(g_fRefuse, false)) RaiseError(ErrInvalidPropertyValue);
  RealSetMax(scrollBar, intMax);
}

}  // namespace tarvik::test
