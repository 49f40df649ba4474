// A session without any window: opens the first instrument, sets a width and reads the timing back. With the address of
// a driver server as argument, as in tarvik://lab.example, the instrument is one of that machine.
#include <cstdio>

#include "instrument/clsInstrInterface.h"
#include "platform/ConsoleHost.h"

int main(int argc, char *argv[]) {
  tarvik::ConsoleHost host;
  tarvik::SetHost(&host);
  if (argc > 1) host.SaveSetting(tarvik::AppTitle, "LastUsed", "ServerURL", argv[1]);
  tarvik::clsInstrInterface instr;
  instr.StatusMessage.Connect([](const std::string &strStatus) { std::printf("%s\n", strStatus.c_str()); });

  tarvik::viInfo info;
  std::string strName;
  if (!instr.Connect() || !instr.GetViInfo(1, info, strName) || !instr.OpenInstrument(strName)) return 1;

  tarvik::udtTimingInfo timing;
  if (!instr.GetTiming(timing)) return 1;
  timing.dblFrequency = 100e3;
  timing.dblWidth[1] = 2.5e-6;
  if (!instr.SetTiming(timing)) return 1;

  tarvik::udtTimingInfo answer;
  if (!instr.GetTiming(answer)) return 1;
  std::printf("frequency %g Hz, width %g s\n", answer.dblFrequency, answer.dblWidth[1]);
  instr.CloseInstrument();
  return 0;
}
