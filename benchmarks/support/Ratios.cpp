#include "Ratios.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>

namespace tarvik::bench {

namespace {

/// Keeps the minimum time of each benchmark: noise only adds.
class KeepingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run> &arrRuns) override {
    ConsoleReporter::ReportRuns(arrRuns);
    for (const Run &run : arrRuns) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double dblTime = run.GetAdjustedCPUTime();
      const auto [place, fNew] = times.try_emplace(run.run_name.function_name, dblTime);
      if (!fNew) place->second = std::min(place->second, dblTime);
    }
  }

  std::map<std::string, double> times;
};

}  // namespace

int RunWithBounds(int &argc, char **argv, const std::vector<Bound> &arrBounds) {
  // Interleaved repetitions: load on the machine hits all benchmarks alike.
  static char strInterleaved[] = "--benchmark_enable_random_interleaving=true";
  std::vector<char *> arrArguments(argv, argv + argc);
  arrArguments.insert(arrArguments.begin() + 1, strInterleaved);
  argc = static_cast<int>(arrArguments.size());
  benchmark::Initialize(&argc, arrArguments.data());
  KeepingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);

  std::puts("");
  bool fAllKept = true;
  for (const Bound &bound : arrBounds) {
    const auto time = reporter.times.find(bound.strName), base = reporter.times.find(bound.strBase);
    if (time == reporter.times.end() || base == reporter.times.end()) continue;
    const double dblLimit = bound.dblFactor * base->second + bound.dblExtraNanoseconds;
    const bool fKept = time->second <= dblLimit;
    fAllKept = fAllKept && fKept;
    std::printf("ratio %-14s %8.2f x %-8s %9.0f ns of %9.0f ns  %s\n", bound.strName.c_str(),
                time->second / base->second, bound.strBase.c_str(), time->second, dblLimit, fKept ? "ok" : "MISSED");
  }
  return fAllKept ? 0 : 1;
}

}  // namespace tarvik::bench
