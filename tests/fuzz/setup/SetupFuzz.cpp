#include <cstdint>
#include <cstdlib>
#include <string>

#include "settings/SetupFile.h"
#include "support/RunTimeError.h"

/// Any text is refused with its reasons, or is a setup that is written and read the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace tarvik;
  try {
    const Setup setup = SetupFromText(std::string(reinterpret_cast<const char *>(data), size));
    if (SetupFromText(SetupToText(setup)) != setup) std::abort();
  } catch (const RunTimeError &error) {
    if (error.Number() != ErrInvalidFileFormat || error.Description().empty()) std::abort();
  }
  return 0;
}
