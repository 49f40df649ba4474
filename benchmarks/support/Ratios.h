#pragma once

#include <string>
#include <vector>

namespace tarvik::bench {

/// What one benchmark may cost: a multiple of another benchmark's time, and a fixed amount on top.
struct Bound {
  std::string strName;
  std::string strBase;
  double dblFactor;
  double dblExtraNanoseconds;
};

/// Runs the registered benchmarks, prints their times, then the ratio of each bound. 1 when one was missed.
int RunWithBounds(int &argc, char **argv, const std::vector<Bound> &arrBounds);

}  // namespace tarvik::bench
