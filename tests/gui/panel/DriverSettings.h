#pragma once

#include <map>
#include <string>

#include "automation/Ref.h"
#include "instrument/KolvenDriver.h"
#include "support/Types.h"

namespace tarvik::test {

/// Settings by name, as numbers or bits in text, so that two sides can be laid side by side.
struct SettingsByName {
  std::map<std::string, Double> numbers;
  std::map<std::string, std::string> texts;
};

/// What an instrument holds, read through its driver and nothing else.
SettingsByName ReadDriver(const automation::Ref<kolven::IInstrument> &instrument);

}  // namespace tarvik::test
