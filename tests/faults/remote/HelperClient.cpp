#include "HelperClient.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "RemoteClient.h"
#include "instrument/DriverCall.h"

namespace tarvik::remote {

namespace {

using namespace kolven;

constexpr const char *RoleOption = "--helper-client";

int WaitInTransaction(const std::string &strUrl, const std::string &strInstrument) {
  const auto instrument = Opened(strUrl, strInstrument);
  Begin(instrument);
  SetWidth(instrument, 3e-7);
  std::puts("ready");
  std::fflush(stdout);
  pause();
  return EXIT_FAILURE;
}

/// One client among many: uploads, reads back what the instrument has taken, and asks for the list.
int Soak(const std::string &strUrl, const std::string &strInstrument, int intSeconds) {
  using Clock = std::chrono::steady_clock;
  const auto root = Root(strUrl);
  const auto instrument = Opened(root, strInstrument);
  std::puts("ready");
  std::fflush(stdout);
  long lngCalls = 0, lngWrong = 0;
  double dblSlowest = 0;
  const auto timed = [&](const auto &statement) {
    dblSlowest = std::max(dblSlowest, SecondsOf(statement));
    ++lngCalls;
  };
  const auto until = Clock::now() + std::chrono::seconds(intSeconds);
  for (long i = 0; Clock::now() < until; ++i) {
    const Double dblWidth = 1e-7 + 1e-9 * static_cast<Double>(i % 100);
    timed([&] { Begin(instrument); });
    timed([&] { SetWidth(instrument, dblWidth); });
    timed([&] { Call(instrument, &IInstrument::Transaction, TransactionCommit); });
    timed([&] { lngWrong += Width(instrument) != dblWidth; });
    timed([&] { lngWrong += Read(Fetch(root, &IDriverRoot::GetInstruments), &IInstrumentList::GetCount) != 50; });
  }
  Call(instrument, &IInstrument::Close);
  std::printf("%ld %ld %.6f\n", lngCalls, lngWrong, dblSlowest);
  return EXIT_SUCCESS;
}

}  // namespace

std::vector<std::string> HelperCommand(std::vector<std::string> arrRole) {
  arrRole.insert(arrRole.begin(), {"/proc/self/exe", RoleOption});
  return arrRole;
}

bool PlayedHelper(int argc, char **argv, int &lngExitStatus) {
  const std::vector<std::string> arrArguments(argv, argv + argc);
  if (arrArguments.size() < 5 || arrArguments[1] != RoleOption) return false;
  try {
    lngExitStatus = arrArguments[2] == "soak"
                        ? Soak(arrArguments[3], arrArguments[4], std::atoi(arrArguments.at(5).c_str()))
                        : WaitInTransaction(arrArguments[3], arrArguments[4]);
  } catch (const RunTimeError &error) {
    std::printf("failed: %s\n", error.Description().c_str());
    lngExitStatus = EXIT_FAILURE;
  }
  return true;
}

}  // namespace tarvik::remote
