// SOURce:DIGital:PATTern: the rows of the pattern memory and how their bits leave the outputs.

#include "scpi/simulator/CommandTable.h"

namespace tarvik::scpisim {

namespace {

using simulator::PatternRow;
using simulator::Settings;

Values ReadRow(const Settings &settings, const Place &place) {
  const PatternRow row = settings.RowInForce(place.lngNumber, place.description);
  const std::vector<Byte> bytes = row.Read();
  return {static_cast<Double>(row.Length()), std::string(bytes.begin(), bytes.end())};
}

void WriteRow(Settings &settings, const Place &place, const Values &values) {
  const Long lngLength = WholeIn(values, 0);
  const std::string &strBytes = TextIn(values, 1);
  if (strBytes.size() > static_cast<std::size_t>((lngLength + 7) / 8))
    simulator::Reject(ScpiTooMuchData, "Too much data: " + std::to_string(strBytes.size()) + " bytes for " +
                                           std::to_string(lngLength) + " bits");
  const std::vector<Byte> bytes(strBytes.begin(), strBytes.end());
  settings.Row(place.lngNumber, place.description).Write(bytes, lngLength);
}

}  // namespace

std::vector<Command> PatternCommands() {
  return {
      Plain(
          "[:SOURce#]:DIGital:PATTern:FORMat", Parameter::OneWord({{"NRZ", eFormatNrz}, {"RZ", eFormatRz}}),
          [](auto &s, Long n) -> auto & { return s.timing[n].lngSignalFormat; }),
      {.header = HeaderPattern("[:SOURce]:DIGital:PATTern#3:DATA"),
       .arrParameters = {Parameter::Whole(1, simulator::PatternBits), Parameter::Block()},
       .read = ReadRow,
       .write = WriteRow},
  };
}

}  // namespace tarvik::scpisim
