#pragma once

#include <string>

#include "automation/Abi.h"
#include "automation/Ref.h"

namespace tarvik::automation {

/// Creates an object of a class that this process has not registered itself: by manifests, or by the system's own
/// creation call where automation is native. An empty driver name is the driver without one.
/// Raises a RunTimeError that says why not.
Ref<IUnknown> CreateHere(const std::string &strProgId, const std::string &strDriver);
/// The same on another machine.
Ref<IUnknown> CreateOnServer(const std::string &strProgId, const std::string &strServer);

}  // namespace tarvik::automation
