// DIAGnostic: for tests of whoever talks to the simulator: faults on demand, slow answers, a count of messages.

#include <cmath>

#include "scpi/simulator/CommandTable.h"
#include "scpi/simulator/FaultWords.h"

namespace tarvik::scpisim {

namespace {

constexpr Double MostMessages = 1e6, MostSecondsOfDelay = 60;

enum : Long { Once = 0, Ever = 1 };

std::vector<Word> FaultKinds() {
  std::vector<Word> arrKinds;
  for (const FaultWord &word : FaultWords) arrKinds.emplace_back(word.strNotation, static_cast<Long>(word.fault));
  return arrKinds;
}

void OrderFault(Call &call) {
  const bool fEver = call.values.size() > 2 && WholeIn(call.values, 2) == Ever;
  call.device.faults.Order(call.client, WholeIn(call.values, 0), static_cast<Fault>(WholeIn(call.values, 1)), fEver);
}

void SetDelay(Call &call) {
  call.device.answerDelay = std::chrono::milliseconds(std::llround(NumberIn(call.values) * 1000));
}
std::string Delay(Call &call) { return RealAnswer(static_cast<Double>(call.device.answerDelay.count()) / 1000); }

}  // namespace

std::vector<Command> DiagnosticCommands() {
  return {
      Action(":DIAGnostic:FAULt",
             {Parameter::Whole(1, MostMessages), Parameter::OneWord(FaultKinds()),
              Parameter::OneWord({{"ONCE", Once}, {"EVER", Ever}}).Optional()},
             OrderFault),
      Action(":DIAGnostic:FAULt:CLEar", {}, [](Call &c) { c.device.faults.Clear(c.client); }),
      Question(":DIAGnostic:FAULt:COUNt", [](Call &c) { return WholeAnswer(c.device.faults.Struck()); }),
      Question(":DIAGnostic:MESSage:COUNt", [](Call &c) { return WholeAnswer(c.device.faults.Messages()); }),
      Both(":DIAGnostic:DELay", {Parameter::Number(Unit::Second, 0, MostSecondsOfDelay)}, SetDelay, Delay),
  };
}

}  // namespace tarvik::scpisim
