#pragma once

#include <string_view>

namespace tarvik::remote {

/// The order of reads of that name on an instrument with two channels that lacks nothing, as CallTrail writes it; empty
/// for a name that is not known. A test holds it against what the panel does.
std::string_view UsualReads(std::string_view strName);

}  // namespace tarvik::remote
