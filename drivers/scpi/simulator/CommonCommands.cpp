// The common commands of IEEE 488.2.

#include "scpi/simulator/CommandTable.h"

namespace tarvik::scpisim {

namespace {

Parameter Byte8() { return Parameter::Whole(0, 255); }
Parameter Memory() { return Parameter::Whole(0, Device::Memories - 1); }

std::size_t MemoryIn(const Call &call) { return static_cast<std::size_t>(WholeIn(call.values)); }

/// *TRG is a trigger by hand: it is of use while the instrument waits for one.
void Trigger(Call &call) {
  const simulator::ModeSettings mode = call.device.CurrentSettings().mode;
  if (mode.lngTriggerMode == eTriggerContinuous || mode.lngArmSource != eArmManual)
    throw ScpiFault{ScpiTriggerIgnored, "not armed by hand"};
}

std::string Options(Call &call) {
  const std::string &strOptions = call.device.Description().strOptions;
  return strOptions.empty() ? "0" : strOptions;
}

/// Identity and options are arbitrary ASCII, which only the end of the message ends.
Command Indefinite(Command command) {
  command.fIndefiniteAnswer = true;
  return command;
}

}  // namespace

std::vector<Command> CommonCommands() {
  return {
      Indefinite(Question("*IDN", [](Call &c) { return c.device.Description().strIdentity; })),
      Indefinite(Question("*OPT", Options)),
      Action("*RST", {}, [](Call &c) { c.device.Reset(); }),
      Action("*CLS", {}, [](Call &c) { c.device.status.Clear(); }),
      // All operations are sequential: what was sent before is done when the next command is read.
      Both(
          "*OPC", {}, [](Call &c) { c.device.status.Complete(); }, [](Call &) { return WholeAnswer(1); }),
      Action("*WAI", {}, [](Call &) {}),
      Both(
          "*ESE", {Byte8()},
          [](Call &c) { c.device.status.byEventEnable = static_cast<std::uint8_t>(WholeIn(c.values)); },
          [](Call &c) { return WholeAnswer(c.device.status.byEventEnable); }),
      Question("*ESR", [](Call &c) { return WholeAnswer(c.device.status.TakeEvents()); }),
      // Bit 6 would enable the summary of itself.
      Both(
          "*SRE", {Byte8()},
          [](Call &c) { c.device.status.byServiceEnable = static_cast<std::uint8_t>(WholeIn(c.values) & ~0x40); },
          [](Call &c) { return WholeAnswer(c.device.status.byServiceEnable); }),
      Question("*STB", [](Call &c) { return WholeAnswer(c.device.status.StatusByte(c.fMessageAvailable)); }),
      Question("*TST", [](Call &c) { return WholeAnswer(c.device.SelfTest()); }),
      Both("*CAL", {}, {},
           [](Call &c) {
             c.device.Calibrate();
             return WholeAnswer(0);
           }),
      Action("*TRG", {}, Trigger),
      Action("*SAV", {Memory()}, [](Call &c) { c.device.Save(MemoryIn(c)); }),
      Action("*RCL", {Memory()}, [](Call &c) { c.device.Recall(MemoryIn(c)); }),
  };
}

}  // namespace tarvik::scpisim
