#pragma once

#include <vector>

#include "instrument/Vocabulary.h"
#include "scpi/simulator/Parameter.h"

namespace tarvik::scpisim {

/// The polarity of an output, which SOURce and OUTPut both set.
inline Parameter Polarity() {
  return Parameter::OneWord(
      {{"NORMal", ePolarityNormal}, {"COMPlement", ePolarityComplement}, {"INVerted", ePolarityComplement}});
}

/// The words for the VXI trigger lines, as arming sources and as outputs.
inline std::vector<Word> VxiLines() {
  std::vector<Word> arrLines{{"ECLTrg0", eVxiEclt0}, {"ECLTrg1", eVxiEclt1}};
  for (Long lngLine = eVxiTtlt0; lngLine <= eVxiTtlt7; ++lngLine)
    arrLines.emplace_back("TTLTrg" + std::to_string(lngLine - eVxiTtlt0), lngLine);
  return arrLines;
}

}  // namespace tarvik::scpisim
