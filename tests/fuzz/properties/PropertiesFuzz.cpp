#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "engrspin/EngrFormat.h"
#include "engrspin/EngrNumber.h"
#include "engrspin/FieldLayout.h"

/// Any numbers as limits, value and sizes leave a value within its limits and a layout within its bounds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  std::array<double, 4> numbers{};
  std::memcpy(numbers.data(), data, std::min(size, sizeof numbers));
  tarvik::EngrNumber number;
  number.InitProperties();
  number.SetMinExponent(size % 2 == 0 ? -9 : 0);
  number.SetMax(numbers[0]);
  number.SetMin(numbers[1]);
  number.Assign(numbers[2]);
  if (!(number.Min() <= number.Max())) std::abort();
  try {
    tarvik::Long lngExponent = 0;
    std::string strText;
    number.FormatEngr(number.Value(), lngExponent, strText);
    if (lngExponent % 3 != 0 || strText.size() < 5) std::abort();
  } catch (const tarvik::RunTimeError &) {
  }
  tarvik::FieldLayout layout;
  layout.sngHeight = 300;
  layout.lblCaption.place.sngWidth = static_cast<float>(std::clamp(numbers[3], -1e30, 1e30));
  layout.Arrange(false);
  if (layout.txtNumber.place.sngWidth < 0) std::abort();
  return 0;
}
