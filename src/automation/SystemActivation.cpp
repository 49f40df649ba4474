#include <array>
#include <cstdio>

#include "automation/Activation.h"
#include "automation/AutomationString.h"
#include "automation/ErrorInfo.h"
#include "automation/PlatformActivation.h"
#include "support/RunTimeError.h"
#include "support/UserFolders.h"

// What automation/Activation.h promises, where automation is native: classes stand in the registry, and the system
// creates their objects.

#include <objbase.h>

namespace tarvik::automation {

namespace fs = std::filesystem;

namespace {

/// Automation is ready on a thread from its first creation to its end. A thread that its host has prepared in another
/// way stays so.
void PrepareThread() {
  thread_local const HRESULT Prepared = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  static_cast<void>(Prepared);
}

[[noreturn]] void RaiseCannotCreate(const std::string &strProgId, HRESULT status, const char *strWhy) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%08lX", static_cast<unsigned long>(status));
  throw RunTimeError(ErrCannotCreateObject, "Cannot create " + strProgId + ": " + strWhy + " (" + text.data() + ")");
}

CLSID RegisteredClass(const std::string &strProgId) {
  if (!IsProgId(strProgId)) throw RunTimeError(ErrCannotCreateObject, "Cannot create an object: the name is no ProgID");
  PrepareThread();
  CLSID clsid{};
  const HRESULT status = CLSIDFromProgID(ToWide(strProgId).c_str(), &clsid);
  if (FAILED(status)) RaiseCannotCreate(strProgId, status, "no class of this name is registered");
  return clsid;
}

}  // namespace

Ref<IUnknown> CreateHere(const std::string &strProgId, const std::string &strDriver) {
  if (!strDriver.empty())
    throw RunTimeError(ErrCannotCreateObject, "Cannot create " + strProgId + " by the driver \"" + strDriver +
                                                  "\": the registry of this system has one driver for a class");
  const CLSID clsid = RegisteredClass(strProgId);
  Ref<IUnknown> object;
  ForgetErrorInfo();
  const HRESULT status = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IidUnknown,
                                          reinterpret_cast<void **>(object.Out()));
  if (!FAILED(status)) return object;
  if (const auto info = TakeErrorInfo(); info && !info->strDescription.empty())
    throw RunTimeError(status, info->strDescription, info->strSource);
  RaiseCannotCreate(strProgId, status, "the class is registered and makes no object");
}

Ref<IUnknown> CreateOnServer(const std::string &strProgId, const std::string &strServer) {
  const CLSID clsid = RegisteredClass(strProgId);
  std::wstring strName = ToWide(strServer);
  COSERVERINFO server{};
  server.pwszName = strName.data();
  MULTI_QI wanted{};
  wanted.pIID = &IidUnknown;
  const HRESULT status = CoCreateInstanceEx(clsid, nullptr, CLSCTX_REMOTE_SERVER, &server, 1, &wanted);
  if (FAILED(status))
    RaiseCannotCreate(strProgId, status, ("the server \"" + strServer + "\" makes no object").c_str());
  return Ref<IUnknown>::Adopt(wanted.pItf);
}

std::vector<std::string> DriversOf(const std::string &) { return {}; }

fs::path UserManifestFolder() { return {}; }

std::vector<fs::path> ManifestFolders() {
  std::vector<fs::path> arrFolders;
  if (const fs::path user = UserDataFolder(); !user.empty()) arrFolders.push_back(user / "tarvikvi" / "drivers");
  arrFolders.push_back(FolderAt(reinterpret_cast<const void *>(&ClassIdOf)));
  return arrFolders;
}

fs::path FileAt(const void *pAddress) {
  HMODULE module = nullptr;
  constexpr DWORD ByAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (!GetModuleHandleExW(ByAddress, static_cast<LPCWSTR>(pAddress), &module)) return {};
  std::wstring strPath(32768, L'\0');
  strPath.resize(GetModuleFileNameW(module, strPath.data(), static_cast<DWORD>(strPath.size())));
  return strPath;
}

fs::path FolderAt(const void *pAddress) { return FileAt(pAddress).parent_path(); }

}  // namespace tarvik::automation
