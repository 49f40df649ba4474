// OUTPut: the outputs of the channels, the auxiliary outputs and the VXI trigger.

#include "scpi/simulator/CommandTable.h"
#include "scpi/simulator/SharedWords.h"
#include "simulator/model/Ranges.h"

namespace tarvik::scpisim {

std::vector<Command> OutputCommands() {
  const Parameter family = Parameter::OneWord({{"TTL", eOutLevelTTL}, {"ECL", eOutLevelECL}});
  return {
      Plain(
          ":OUTPut#[:STATe]", Parameter::Switch(), [](auto &s, Long n) -> auto & { return s.levels[n].fOutput; }),
      Plain(
          ":OUTPut#:COMPlement[:STATe]", Parameter::Switch(),
          [](auto &s, Long n) -> auto & { return s.levels[n].fComplementOutput; }),
      Plain(
          ":OUTPut#:POLarity", Polarity(), [](auto &s, Long n) -> auto & { return s.levels[n].lngPolarity; }),
      Plain(
          ":OUTPut#:IMPedance", Parameter::Choice(Unit::Ohm, {50, 1000}),
          [](auto &s, Long n) -> auto & { return s.levels[n].dblImpedance; }),
      Plain(
          ":OUTPut#:LOAD", Parameter::Number(Unit::Ohm, simulator::LoadRange.dblMin, simulator::LoadRange.dblMax),
          [](auto &s, Long n) -> auto & { return s.levels[n].dblLoadCompensation; }),
      Plain(
          ":OUTPut:COMBine", Parameter::OneWord({{"NONE", eMathSeparate}, {"ADD", eMathAdded}}),
          [](auto &s, Long) -> auto & { return s.lngChannelMath; }),
      Plain(
          ":OUTPut:TRIGger:LEVel", family,
          [](auto &s, Long) -> auto & { return s.triggerLevels.arrOutLevel[eOutTrigger]; }),
      Plain(
          ":OUTPut:STRobe:LEVel", family,
          [](auto &s, Long) -> auto & { return s.triggerLevels.arrOutLevel[eOutStrobe]; }),
      Plain(
          ":OUTPut:VXI:SOURce", Parameter::OneWord({{"TRIGger", eVxiSourceTrigger}, {"STRobe", eVxiSourceStrobe}}),
          [](auto &s, Long) -> auto & { return s.triggerLevels.lngVxiSource; }),
      Plain(
          ":OUTPut:VXI:LINE", Parameter::OneWord(VxiLines()),
          [](auto &s, Long) -> auto & { return s.triggerLevels.lngVxiLine; }),
  };
}

}  // namespace tarvik::scpisim
