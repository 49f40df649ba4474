#pragma once

#include "automation/Abi.h"

namespace tarvik {

/// Under this name clients create the instrument interface.
inline constexpr const char *InstrProgId = "TarvikVI.clsInstrInterface";

/// Writes the manifest that names this library into the user's manifest folder, where CreateObject finds it; a later
/// one replaces an earlier one. Where automation is native, the system's registry takes the place of the manifest.
automation::Status RegisterLibrary();
/// Removes it; not an error if there is none.
automation::Status UnregisterLibrary();

}  // namespace tarvik
