// A session without any window: opens the first instrument, sets its timing and reads it back.
// Usage: console-session [SERVER [WIDTH]]
// SERVER is the address of a driver server, as in tarvik://lab.example, or "" for this machine; WIDTH is in seconds.
#include <cstdio>
#include <cstdlib>

#include "instrument/clsInstrInterface.h"
#include "platform/ConsoleHost.h"
#include "support/RunTimeError.h"

namespace {

/// Whether the instrument has taken the settings. SetTiming tells only that they were sent: what the instrument
/// refuses, it refuses with the commit, so the transaction is the host's own.
bool Upload(tarvik::clsInstrInterface &instr, const tarvik::udtTimingInfo &timing) {
  if (!instr.TransactionStart(tarvik::True)) return false;
  if (!instr.SetTiming(timing)) {
    instr.TransactionCancel();
    return false;
  }
  return instr.TransactionFinish(tarvik::True);
}

bool Run(const char *strServer, double dblWidth) {
  if (strServer) tarvik::TheHost().SaveSetting(tarvik::AppTitle, "LastUsed", "ServerURL", strServer);
  tarvik::clsInstrInterface instr;
  instr.StatusMessage.Connect([](const std::string &strStatus) { std::printf("%s\n", strStatus.c_str()); });

  tarvik::viInfo info;
  std::string strName;
  if (!instr.Connect() || !instr.GetViInfo(1, info, strName) || !instr.OpenInstrument(strName)) return false;

  tarvik::udtTimingInfo timing;
  if (!instr.GetTiming(timing)) return false;
  timing.dblFrequency = 100e3;
  timing.dblWidth[1] = dblWidth;
  const bool fTaken = Upload(instr, timing);
  if (!fTaken) std::printf("the instrument did not take the settings\n");

  if (!instr.GetTiming(timing)) return false;
  std::printf("frequency %g Hz, width %g s\n", timing.dblFrequency, timing.dblWidth[1]);
  instr.CloseInstrument();
  return fTaken;
}

}  // namespace

int main(int argc, char *argv[]) {
  tarvik::ConsoleHost host;
  tarvik::SetHost(&host);
  try {
    return Run(argc > 1 ? argv[1] : nullptr, argc > 2 ? std::atof(argv[2]) : 2.5e-6) ? 0 : 1;
  } catch (const tarvik::RunTimeError &error) {
    // Operations report their failures and let none out, but for a log or settings that cannot be written.
    std::fprintf(stderr, "console-session: %s\n", error.what());
    return 1;
  }
}
