#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "simulator/model/RackFile.h"

// Whatever stands in a rack file, it is described or refused with file and line, and what is described keeps its
// bounds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace tarvik::simulator;
  try {
    for (const InstrumentDescription &d :
         ParseRack(std::string_view(reinterpret_cast<const char *>(data), size), "f")) {
      const bool fSound = !d.strName.empty() && (d.lngChannels == 1 || d.lngChannels == 2) &&
                          (d.lngMask & ~tarvik::AllFunctionality) == 0 && d.lngCalibrationDelay >= 0 &&
                          d.lngSelfTestDelay >= 0;
      if (!fSound) std::abort();
    }
  } catch (const RackFileError &error) {
    if (!std::string_view(error.what()).starts_with("f:")) std::abort();
  }
  return 0;
}
