#pragma once

#include <iosfwd>

#include "scpi/Profile.h"

namespace tarvik::scpi {

/// The settings of a profile with command and query, a line each.
void PrintProfile(const Profile &profile, std::ostream &out);

/// Asks each query of the profile by itself and prints what became of it: query, setting, answer or failure. Sends no
/// command that sets anything. False when an answer is missing or makes no sense.
bool CheckProfile(const Profile &profile, Talk &talk, std::ostream &out);

}  // namespace tarvik::scpi
