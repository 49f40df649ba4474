// SYSTem and STATus: errors, warnings, and the two status registers that SCPI asks for.

#include "scpi/simulator/CommandTable.h"

namespace tarvik::scpisim {

namespace {

using RegisterOf = StatusRegister &(*)(Device &);

StatusRegister &Operation(Device &device) { return device.status.operation; }
StatusRegister &Questionable(Device &device) { return device.status.questionable; }

/// A 16-bit mask is taken; the highest bit of a register stays 0.
Command Mask(const std::string &strHeader, RegisterOf registerOf, std::uint16_t StatusRegister::*mask) {
  return Both(
      strHeader, {Parameter::Whole(0, 65535)},
      [=](Call &c) {
        registerOf(c.device).*mask = static_cast<std::uint16_t>(WholeIn(c.values) & StatusRegister::AllBits);
      },
      [=](Call &c) { return WholeAnswer(registerOf(c.device).*mask); });
}

std::vector<Command> Register(const std::string &strHeader, RegisterOf registerOf) {
  return {
      Question(strHeader + "[:EVENt]", [=](Call &c) { return WholeAnswer(registerOf(c.device).TakeEvents()); }),
      Question(strHeader + ":CONDition", [=](Call &c) { return WholeAnswer(registerOf(c.device).Condition()); }),
      Mask(strHeader + ":ENABle", registerOf, &StatusRegister::intEnable),
      Mask(strHeader + ":PTRansition", registerOf, &StatusRegister::intPositive),
      Mask(strHeader + ":NTRansition", registerOf, &StatusRegister::intNegative),
  };
}

std::string Warnings(Call &call) {
  std::string strAll;
  for (const simulator::ScpiError &warning : call.device.Warnings())
    strAll += (strAll.empty() ? "" : ",") + warning.Entry(true);
  return strAll.empty() ? R"(0,"No warning")" : strAll;
}

}  // namespace

std::vector<Command> StatusCommands() {
  std::vector<Command> arrCommands{
      Question(":SYSTem:ERRor[:NEXT]", [](Call &c) { return c.device.status.TakeError(); }),
      Question(":SYSTem:ERRor:ALL", [](Call &c) { return c.device.status.TakeAllErrors(); }),
      Question(":SYSTem:ERRor:COUNt",
               [](Call &c) { return WholeAnswer(static_cast<Double>(c.device.status.Errors())); }),
      Question(":SYSTem:WARNing", Warnings),
      Question(":SYSTem:VERSion", [](Call &) { return std::string("1999.0"); }),
      Action(":STATus:PRESet", {}, [](Call &c) { c.device.status.Preset(); }),
  };
  for (Command &command : Register(":STATus:OPERation", Operation)) arrCommands.push_back(std::move(command));
  for (Command &command : Register(":STATus:QUEStionable", Questionable)) arrCommands.push_back(std::move(command));
  return arrCommands;
}

}  // namespace tarvik::scpisim
