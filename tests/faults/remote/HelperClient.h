#pragma once

#include <string>
#include <vector>

namespace tarvik::remote {

/// The test program itself, started again as a client of its own, so that a test can kill it.
/// Roles: "in-transaction URL INSTRUMENT" sets a width within a transaction, says "ready" and waits for its end;
/// "soak URL INSTRUMENT SECONDS" works with the instrument all the time and then says what it did.
std::vector<std::string> HelperCommand(std::vector<std::string> arrRole);

/// Plays the role when the arguments ask for one, and then answers true.
bool PlayedHelper(int argc, char **argv, int &lngExitStatus);

}  // namespace tarvik::remote
