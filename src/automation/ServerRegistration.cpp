#include "automation/ServerRegistration.h"

#include <array>

#include "automation/Activation.h"
#include "automation/AutomationString.h"

#include <objbase.h>

namespace tarvik::automation {

namespace {

/// "{01234567-...}"
std::wstring ClassKey(const std::string &strProgId) {
  std::array<wchar_t, 64> text{};
  StringFromGUID2(ClassIdOf(strProgId), text.data(), static_cast<int>(text.size()));
  return std::wstring(L"CLSID\\") + text.data();
}

/// A value of a key below the classes' root; an unnamed one where strName is null.
LSTATUS Write(const std::wstring &strKey, const wchar_t *strName, const std::wstring &strValue) {
  HKEY key = nullptr;
  if (const LSTATUS error =
          RegCreateKeyExW(HKEY_CLASSES_ROOT, strKey.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr))
    return error;
  const auto bytes = static_cast<DWORD>((strValue.size() + 1) * sizeof(wchar_t));
  const LSTATUS error =
      RegSetValueExW(key, strName, 0, REG_SZ, reinterpret_cast<const BYTE *>(strValue.c_str()), bytes);
  RegCloseKey(key);
  return error;
}

}  // namespace

Status RegisterServer(const std::string &strProgId, const std::string &strTitle, const void *pAddress) {
  const std::wstring strClass = ClassKey(strProgId), strServer = strClass + L"\\InprocServer32";
  const std::wstring strName = ToWide(strProgId), strId = strClass.substr(strClass.find(L'{'));
  const std::wstring strLibrary = FileAt(pAddress).wstring();
  if (strLibrary.empty()) return StatusUnexpected;
  struct {
    std::wstring strKey;
    const wchar_t *strName;
    std::wstring strValue;
  } const arrValues[] = {
      {strName, nullptr, ToWide(strTitle)},  {strName + L"\\CLSID", nullptr, strId},
      {strClass, nullptr, ToWide(strTitle)}, {strClass + L"\\ProgID", nullptr, strName},
      {strServer, nullptr, strLibrary},      {strServer, L"ThreadingModel", L"Apartment"},
  };
  for (const auto &value : arrValues)
    if (const LSTATUS error = Write(value.strKey, value.strName, value.strValue)) {
      UnregisterServer(strProgId);
      return HRESULT_FROM_WIN32(static_cast<DWORD>(error));
    }
  return StatusOk;
}

Status UnregisterServer(const std::string &strProgId) {
  for (const std::wstring &strKey : {ClassKey(strProgId), ToWide(strProgId)}) {
    const LSTATUS error = RegDeleteTreeW(HKEY_CLASSES_ROOT, strKey.c_str());
    if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND) return HRESULT_FROM_WIN32(static_cast<DWORD>(error));
  }
  return StatusOk;
}

}  // namespace tarvik::automation
