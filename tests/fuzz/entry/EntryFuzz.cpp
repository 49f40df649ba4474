#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "engrspin/EngrNumber.h"

/// Any typed text gives a finite number, a bad entry or a run-time error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  tarvik::EngrNumber number;
  number.InitProperties();
  number.SetBaseUnit("V");
  try {
    const auto entry = number.ReadEntry({reinterpret_cast<const char *>(data), size});
    if (!std::isfinite(entry.dblValue)) std::abort();
    number.Assign(entry.dblValue);
    if (number.Value() < number.Min() || number.Value() > number.Max()) std::abort();
  } catch (const tarvik::RunTimeError &) {
  }
  return 0;
}
