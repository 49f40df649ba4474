#pragma once

#include <string>

#include "automation/Abi.h"
#include "support/Export.h"

namespace tarvik::automation {

/// Writes a class of a library into the system's registry, so that the system creates its objects by ProgID: the body
/// of DllRegisterServer where automation is native. The address is any one within the library.
TARVIK_AUTOMATION_EXPORT Status RegisterServer(const std::string &strProgId, const std::string &strTitle,
                                               const void *pAddress);
/// Takes everything of that back; not an error if there is none.
TARVIK_AUTOMATION_EXPORT Status UnregisterServer(const std::string &strProgId);

}  // namespace tarvik::automation
