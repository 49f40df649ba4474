#include "scpi/ProfileChoice.h"

#include <algorithm>

#include "support/RunTimeError.h"

namespace tarvik::scpi {

namespace {

bool NamesIt(const Profile &profile, const std::string &strIdentity) {
  return std::ranges::any_of(profile.arrSuitsIdentity, [&](const std::string &strPart) {
    return !strPart.empty() && strIdentity.find(strPart) != std::string::npos;
  });
}

bool IsAnswered(const Profile &profile, Talk &talk) {
  if (profile.strSuitsQuery.empty()) return false;
  try {
    talk.Ask(profile.strSuitsQuery);
    return true;
  } catch (const driver::Failure &) {
    talk.Tell({"*CLS"});  // what it thinks of the query is nobody's error
    return false;
  }
}

}  // namespace

std::string ChooseProfile(const ProfileFolders &folders, Talk &talk, const std::string &strIdentity) {
  std::vector<Profile> arrProfiles;
  for (const std::string &strName : folders.Names())
    IgnoreErrors([&] { arrProfiles.push_back(folders.Read(strName)); });
  for (const Profile &profile : arrProfiles)
    if (NamesIt(profile, strIdentity)) return profile.strName;
  for (const Profile &profile : arrProfiles)
    if (IsAnswered(profile, talk)) return profile.strName;
  return "scpi-99";
}

}  // namespace tarvik::scpi
