#include "dispatch/SystemHost.h"

#include "automation/Abi.h"
#include "automation/AutomationString.h"
#include "dispatch/TextPrompt.h"

namespace tarvik {

using automation::ToWide;

namespace {

bool HasStandardError() {
  const HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
  return handle && handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_UNKNOWN;
}

/// The window station of a service is not visible.
bool IsOnVisibleDesktop() {
  USEROBJECTFLAGS flags{};
  return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

UINT IconFlag(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Question: return MB_ICONQUESTION;
    case BoxIcon::Exclamation: return MB_ICONEXCLAMATION;
    case BoxIcon::Information: return MB_ICONINFORMATION;
    case BoxIcon::Stop:
    case BoxIcon::Critical: break;
  }
  return MB_ICONSTOP;
}

}  // namespace

bool SystemHost::ShowsWindows() { return IsOnVisibleDesktop() && !HasStandardError(); }

BoxAnswer SystemHost::MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons,
                             const std::string &strTitle) {
  const UINT intStyle = IconFlag(icon) | (buttons == BoxButtons::YesNo ? MB_YESNO : MB_OK) | MB_TASKMODAL;
  const int intButton =
      ShowsWindows() ? MessageBoxW(GetActiveWindow(), ToWide(strText).c_str(), ToWide(strTitle).c_str(), intStyle) : 0;
  switch (intButton) {
    case IDOK: return BoxAnswer::Ok;
    case IDYES: return BoxAnswer::Yes;
    case IDNO: return BoxAnswer::No;
    default: return ConsoleHost::MsgBox(strText, icon, buttons, strTitle);
  }
}

std::string SystemHost::InputBox(const std::string &strPrompt, const std::string &strTitle,
                                 const std::string &strDefault) {
  if (!ShowsWindows()) return ConsoleHost::InputBox(strPrompt, strTitle, strDefault);
  return TextPrompt(strPrompt, strTitle).Ask(strDefault);
}

void SystemHost::Beep() {
  if (ShowsWindows()) MessageBeep(MB_OK);
}

}  // namespace tarvik
