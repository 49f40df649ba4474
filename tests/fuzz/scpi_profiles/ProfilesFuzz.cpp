#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "scpi/ProfileReader.h"
#include "scpi/SettingCommand.h"
#include "support/RunTimeError.h"

namespace {

void Require(bool fSound) {
  if (!fSound) std::abort();
}

}  // namespace

// Whatever stands in a profile, it is refused with a reason or can be used.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace tarvik;
  using namespace tarvik::scpi;
  try {
    const JsonNode root = ReadJson(std::string(reinterpret_cast<const char *>(data), size));
    const auto none = [](const std::string &) -> Profile { throw RunTimeError(ErrFileNotFound, "no base"); };
    const Profile profile = ProfileReader(root, none).Read("fuzzed");
    Require(profile.lngChannels == 1 || profile.lngChannels == 2);
    Require((profile.lngMask & ~AllFunctionality) == 0 && !profile.strErrorQuery.empty());
    driver::Settings from, to;
    to.timing[1].dblWidth = 1e-3;
    to.levels[1].lngType = eTypeCurrent;
    to.mode.SetMode(eTriggerGated, ePulseBurst);
    for (const ProfilePlace &place : PlacesOf(profile)) TakeAnswer(place, "1", from);
    for (const auto &arrPlaces : StepsBetween(profile, from, to)) {
      bool fSent = true;
      for (const ProfilePlace &place : arrPlaces) fSent = fSent && WhyNotSent(place, to).empty();
      if (fSent) Require(CommandsOf(arrPlaces, to).find("{value}") == std::string::npos);
    }
  } catch (const RunTimeError &error) {
    Require(!error.Description().empty());
  }
  return 0;
}
