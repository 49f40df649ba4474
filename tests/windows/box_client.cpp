// Boxes and questions of a client that has a desktop and no standard error, answered by a user who is a hook of this
// thread, and what becomes of them where nobody sees a window.

#include <cstdio>
#include <string>
#include <vector>

#include "automation/AutomationString.h"
#include "dispatch/SystemHost.h"
#include "dispatch/TextPrompt.h"

namespace tarvik {

namespace {

using automation::ToWide;

int g_faults = 0;

void Expect(bool fRight, const char *strWhat) {
  std::printf("%s%s\n", fRight ? "" : "FAULT: ", strWhat);
  if (!fRight) ++g_faults;
}

std::wstring WindowText(HWND window) {
  std::wstring strText(512, L'\0');
  strText.resize(static_cast<std::size_t>(GetWindowTextW(window, strText.data(), static_cast<int>(strText.size()))));
  return strText;
}

/// Presses one button in each dialog that opens on this thread, and notes what is written in it.
class User {
 public:
  explicit User(int intButton, std::wstring strTyped = {}) : m_intButton(intButton), m_strTyped(std::move(strTyped)) {
    g_user = this;
    m_hook = SetWindowsHookExW(WH_CBT, &OnWindow, nullptr, GetCurrentThreadId());
  }
  User(const User &) = delete;
  User &operator=(const User &) = delete;
  ~User() {
    UnhookWindowsHookEx(m_hook);
    g_user = nullptr;
  }

  std::wstring strTitle, strField;
  std::vector<std::wstring> arrTexts;

 private:
  static LRESULT CALLBACK OnWindow(int intCode, WPARAM wParam, LPARAM lParam) {
    if (intCode == HCBT_ACTIVATE && !g_user->m_dialog) {
      g_user->m_dialog = reinterpret_cast<HWND>(wParam);
      // From the dialog's own message loop, when it is filled and shown.
      g_user->m_timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &OnTimer);
    }
    return CallNextHookEx(nullptr, intCode, wParam, lParam);
  }
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
    KillTimer(nullptr, g_user->m_timer);
    g_user->Answer(g_user->m_dialog);
  }

  void Answer(HWND dialog) {
    strTitle = WindowText(dialog);
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
      if (IsWindowVisible(child)) arrTexts.push_back(WindowText(child));
    strField = WindowText(GetDlgItem(dialog, TextPrompt::Field));
    if (!m_strTyped.empty()) SetDlgItemTextW(dialog, TextPrompt::Field, m_strTyped.c_str());
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(m_intButton), 0);
  }

  static inline User *g_user = nullptr;
  const int m_intButton;
  const std::wstring m_strTyped;
  HHOOK m_hook = nullptr;
  HWND m_dialog = nullptr;
  UINT_PTR m_timer = 0;
};

bool Holds(const User &user, const std::wstring &strText) {
  for (const std::wstring &strShown : user.arrTexts)
    if (strShown == strText) return true;
  return false;
}

void TryBoxes() {
  SystemHost host;
  Expect(SystemHost::ShowsWindows(), "a desktop and no standard error: boxes are windows");
  {
    const User user(IDOK);
    Expect(host.MsgBox("50 \xCE\xA9\r\nor less", BoxIcon::Information, BoxButtons::Ok, AppTitle) == BoxAnswer::Ok,
           "a box is answered");
    Expect(user.strTitle == L"TarvikVI", "its title");
    Expect(Holds(user, L"50 \x03A9\r\nor less"), "its text, with what is no ASCII");
  }
  {
    const User user(IDNO);
    Expect(host.MsgBox("Go on?", BoxIcon::Question, BoxButtons::YesNo, AppTitle) == BoxAnswer::No, "a question, No");
    Expect(Holds(user, L"&Yes") && Holds(user, L"&No") && !Holds(user, L"OK"), "it has the buttons Yes and No");
  }
  {
    const User user(IDYES);
    Expect(host.MsgBox("Go on?", BoxIcon::Question, BoxButtons::YesNo, AppTitle) == BoxAnswer::Yes, "a question, Yes");
  }
  {
    const User user(IDOK, ToWide("lab-\xC3\xBC"));
    Expect(host.InputBox("Address?\r\nOr nothing", AppTitle, "Unknown") == "lab-\xC3\xBC", "a text is asked for");
    Expect(user.strTitle == L"TarvikVI", "the title of the dialog");
    Expect(Holds(user, L"Address?\r\nOr nothing"), "its prompt");
    Expect(user.strField == L"Unknown", "the default stands in the field");
  }
  {
    const User user(IDCANCEL, L"typed in vain");
    Expect(host.InputBox("Address?", AppTitle, "Unknown").empty(), "cancelled: the empty text");
  }
}

/// A box of the class itself, as a client by name meets it.
void TryClass() {
  CLSID clsid{};
  IDispatch *face = nullptr;
  Expect(SUCCEEDED(CLSIDFromProgID(L"TarvikVI.clsInstrInterface", &clsid)) &&
             SUCCEEDED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, automation::IidDispatch,
                                        reinterpret_cast<void **>(&face))),
         "the class is created by name");
  if (!face) return;
  std::wstring strName = L"IsOnline";
  LPOLESTR name = strName.data();
  DISPID id = 0;
  face->GetIDsOfNames(automation::GuidNull, &name, 1, 0, &id);
  DISPPARAMS none{};
  VARIANT result{};
  const User user(IDOK);
  Expect(face->Invoke(id, automation::GuidNull, 0, DISPATCH_METHOD, &none, &result, nullptr, nullptr) == S_OK &&
             result.boolVal == VARIANT_FALSE,
         "IsOnline of no instrument");
  Expect(
      user.strTitle == L"TarvikVI" && Holds(user, L"You need to be online to an instrument to perform this operation"),
      "its box");
  face->Release();
}

void TryWithoutUser() {
  SystemHost host;
  const HANDLE nothing = CreateFileW(L"NUL", GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  SetStdHandle(STD_ERROR_HANDLE, nothing);
  Expect(!SystemHost::ShowsWindows(), "a standard error: boxes are lines");
  SetStdHandle(STD_ERROR_HANDLE, nullptr);
  Expect(SystemHost::ShowsWindows(), "none: boxes are windows");
  const HWINSTA station = CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
  Expect(station && SetProcessWindowStation(station), "a window station of a service");
  Expect(!SystemHost::ShowsWindows(), "a service shows no windows");
  Expect(host.MsgBox("Go on?", BoxIcon::Question, BoxButtons::YesNo, AppTitle) == BoxAnswer::Yes,
         "a question has its default answer there");
  Expect(host.InputBox("Address?", AppTitle, "Unknown") == "Unknown", "a text is the default");
}

}  // namespace

}  // namespace tarvik

int main() {
  CoInitialize(nullptr);
  SetStdHandle(STD_ERROR_HANDLE, nullptr);
  tarvik::TryBoxes();
  tarvik::TryClass();
  tarvik::TryWithoutUser();
  std::printf("%d faults\n", tarvik::g_faults);
  return tarvik::g_faults != 0;
}
