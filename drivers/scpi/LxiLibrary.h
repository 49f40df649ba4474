#pragma once

#include <string>
#include <vector>

namespace tarvik::scpi {

/// Prepares liblxi once for the process; raises driver::Failure where that fails. It sends nothing.
void RequireLxiLibrary();

/// What answered a search of the local network.
struct FoundInstrument {
  std::string strAddress;   ///< as Address reads it
  std::string strIdentity;  ///< what it calls itself; may be empty
};

/// Asks all instruments of the local network who is there, by VXI-11 broadcast and mDNS, and waits for answers for
/// so many milliseconds each. Sends to the whole network, so only where the user asked for it.
std::vector<FoundInstrument> DiscoverInstruments(int intTimeout);

}  // namespace tarvik::scpi
