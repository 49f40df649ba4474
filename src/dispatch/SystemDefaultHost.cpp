#include "automation/Abi.h"
#include "dispatch/DefaultHost.h"
#include "dispatch/SystemHost.h"

namespace tarvik {

namespace {

/// The library of the support room may stay in a program that lets go of this one, with references to the host and to
/// what makes the instrument interface. So this one stays as well.
void StayLoaded() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<LPCWSTR>(&EnsureHost), &module);
}

}  // namespace

void EnsureHost() {
  static SystemHost host;
  if (InstalledHost()) return;
  StayLoaded();
  SetHost(&host);
}

}  // namespace tarvik
