#include "dispatch/DefaultHost.h"
#include "platform/ConsoleHost.h"

namespace tarvik {

void EnsureHost() {
  static ConsoleHost host;
  if (!InstalledHost()) SetHost(&host);
}

}  // namespace tarvik
