#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

extern char **environ;

namespace {

constexpr int Runs = 21;
constexpr double LargestRatio = 2.5;

struct Start {
  double dblMilliseconds;  ///< from the start of the program to its first painted frame, or to the frame asked for
  double dblMebibytes;     ///< resident at most
};

Start Run(const char *strProgram, const char *strArgument = nullptr) {
  char *const arrArguments[] = {const_cast<char *>(strProgram), const_cast<char *>(strArgument), nullptr};
  const auto begin = std::chrono::steady_clock::now();
  pid_t pid = 0;
  if (posix_spawn(&pid, strProgram, nullptr, nullptr, arrArguments, environ) != 0) std::exit(2);
  int intStatus = 0;
  rusage used{};
  wait4(pid, &intStatus, 0, &used);
  if (intStatus != 0) {
    std::printf("%s ended with status %d\n", strProgram, intStatus);
    std::exit(2);
  }
  return {std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count(),
          static_cast<double>(used.ru_maxrss) / 1024};
}

double Median(std::vector<Start> arrStarts, double Start::*part) {
  std::ranges::nth_element(arrStarts, arrStarts.begin() + Runs / 2, {}, part);
  return arrStarts[Runs / 2].*part;
}

/// Runs all programs on one platform of the toolkit and prints the ratios; gives that of panel and empty window.
double Measure(const char *strPlatform) {
  setenv("QT_QPA_PLATFORM", strPlatform, 1);
  std::vector<Start> arrWindow, arrWord, arrPanel, arrListed;
  Run(START_PANEL);
  Run(START_WINDOW);
  // Interleaved, so that load on the machine hits all alike.
  for (int i = 0; i < Runs; ++i) {
    arrWindow.push_back(Run(START_WINDOW));
    arrWord.push_back(Run(START_WINDOW, "Word"));
    arrPanel.push_back(Run(START_PANEL));
    arrListed.push_back(Run(START_PANEL, "listed"));
  }
  const auto time = [](const std::vector<Start> &arrStarts) { return Median(arrStarts, &Start::dblMilliseconds); };
  const double dblWindow = time(arrWindow), dblWord = time(arrWord), dblPanel = time(arrPanel),
               dblListed = time(arrListed);
  std::printf("start to first frame (%s): empty window %.1f ms, window with one word %.1f ms, panel %.1f ms, ",
              strPlatform, dblWindow, dblWord, dblPanel);
  std::printf("panel with the instruments listed %.1f ms\n", dblListed);
  std::printf(
      "memory at its peak (%s): empty window %.1f MiB, window with one word %.1f MiB, panel with the instruments "
      "listed %.1f MiB\n",
      strPlatform, Median(arrWindow, &Start::dblMebibytes), Median(arrWord, &Start::dblMebibytes),
      Median(arrListed, &Start::dblMebibytes));
  std::printf("ratio panel / window with one word (%s): %.2f\n", strPlatform, dblPanel / dblWord);
  std::printf("ratio panel / empty window (%s): %.2f", strPlatform, dblPanel / dblWindow);
  return dblPanel / dblWindow;
}

}  // namespace

int main() {
  // Without a window system an empty window does next to nothing, not even load a font: a ratio for comparison only.
  Measure("offscreen");
  std::printf("\n");
  if (!std::getenv("DISPLAY")) {
    std::printf("no X server: the bound of %.1f holds for windows, and was not checked\n", LargestRatio);
    return 2;
  }
  const bool fOk = Measure("xcb") <= LargestRatio;
  std::printf(" (at most %.1f)  %s\n", LargestRatio, fOk ? "ok" : "MISSED");
  return fOk ? 0 : 1;
}
