#pragma once

namespace tarvik::test {

/// The next write of the greatest value of a scroll bar fails as an invalid property value. For programs with the
/// library tarvik_refused_scrolling, which the write comes to as the calls of WatchedCalls.h do.
void RefuseNextScrollMax(bool fRefuse = true);

}  // namespace tarvik::test
