#pragma once

#include <string>

#include "scpi/ProfileFolders.h"

namespace tarvik::scpi {

/// The profile that suits an instrument: one that names a part of its identity; otherwise one with a query that it
/// answers without an error; otherwise "scpi-99". Profiles that are wrong are passed over.
std::string ChooseProfile(const ProfileFolders &folders, Talk &talk, const std::string &strIdentity);

}  // namespace tarvik::scpi
