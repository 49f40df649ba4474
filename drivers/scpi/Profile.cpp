#include "scpi/Profile.h"

#include <algorithm>

namespace tarvik::scpi {

const ProfileSetting *Profile::Find(std::string_view strKey) const {
  const auto setting =
      std::ranges::find_if(arrSettings, [&](const ProfileSetting &known) { return known.pRow->strKey == strKey; });
  return setting == arrSettings.end() ? nullptr : &*setting;
}

}  // namespace tarvik::scpi
