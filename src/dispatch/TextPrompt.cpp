#include "dispatch/TextPrompt.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "automation/AutomationString.h"

namespace tarvik {

namespace {

/// A place in the dialog, in quarters of a character's width and eighths of its height.
struct Place {
  short x, y, cx, cy;
};

/// The predefined window classes of a dialog template.
enum ControlClass : WORD { ButtonClass = 0x0080, EditClass = 0x0081, LabelClass = 0x0082 };

/// The description of a dialog as the system reads it from memory: records on borders of four bytes, each followed by
/// its texts.
class Template {
 public:
  Template(DWORD lngStyle, WORD intControls, Place place, const wchar_t *strFont, WORD intPoints) {
    Put(DLGTEMPLATE{lngStyle | DS_SETFONT, 0, intControls, place.x, place.y, place.cx, place.cy});
    Put(WORD{0});  // no menu
    Put(WORD{0});  // the usual class of dialogs
    PutText(L"");  // the title is set when the dialog opens
    Put(intPoints);
    PutText(strFont);
  }

  void Add(ControlClass eClass, int intId, DWORD lngStyle, Place place, const wchar_t *strText) {
    m_arrBytes.resize((m_arrBytes.size() + 3) / 4 * 4);
    Put(DLGITEMTEMPLATE{lngStyle | WS_CHILD | WS_VISIBLE, 0, place.x, place.y, place.cx, place.cy,
                        static_cast<WORD>(intId)});
    Put(WORD{0xFFFF});
    Put(static_cast<WORD>(eClass));
    PutText(strText);
    Put(WORD{0});  // no data of its own
  }

  const DLGTEMPLATE *Get() const { return reinterpret_cast<const DLGTEMPLATE *>(m_arrBytes.data()); }

 private:
  template <class T>
  void Put(const T &value) {
    const std::size_t begin = m_arrBytes.size();
    m_arrBytes.resize(begin + sizeof value);
    std::memcpy(m_arrBytes.data() + begin, &value, sizeof value);
  }
  void PutText(std::wstring_view strText) {
    for (const wchar_t ch : strText) Put(ch);
    Put(L'\0');
  }

  std::vector<std::uint8_t> m_arrBytes;
};

std::wstring TextOf(HWND control) {
  std::wstring strText(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
  strText.resize(static_cast<std::size_t>(GetWindowTextW(control, strText.data(), static_cast<int>(strText.size()))));
  return strText;
}

}  // namespace

TextPrompt::TextPrompt(const std::string &strPrompt, const std::string &strTitle)
    : m_strPrompt(automation::ToWide(strPrompt)), m_strTitle(automation::ToWide(strTitle)) {}

std::string TextPrompt::Ask(const std::string &strDefault) {
  m_strText = automation::ToWide(strDefault);
  Template dialog(DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_CAPTION | WS_SYSMENU, 4, {0, 0, 240, 80}, L"MS Shell Dlg",
                  8);
  dialog.Add(LabelClass, Label, SS_LEFT | SS_NOPREFIX, {7, 7, 226, 30}, L"");
  dialog.Add(EditClass, Field, ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, {7, 39, 226, 13}, L"");
  dialog.Add(ButtonClass, IDOK, BS_DEFPUSHBUTTON | WS_TABSTOP, {129, 59, 50, 14}, L"OK");
  dialog.Add(ButtonClass, IDCANCEL, BS_PUSHBUTTON | WS_TABSTOP, {183, 59, 50, 14}, L"Cancel");
  const INT_PTR intButton = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), dialog.Get(), GetActiveWindow(),
                                                    &OnMessage, reinterpret_cast<LPARAM>(this));
  if (intButton != IDOK) return {};
  return automation::ToUtf8({reinterpret_cast<const char16_t *>(m_strText.data()), m_strText.size()});
}

INT_PTR CALLBACK TextPrompt::OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, GWLP_USERDATA, lParam);
    const auto &prompt = *reinterpret_cast<TextPrompt *>(lParam);
    SetWindowTextW(dialog, prompt.m_strTitle.c_str());
    SetDlgItemTextW(dialog, Label, prompt.m_strPrompt.c_str());
    SetDlgItemTextW(dialog, Field, prompt.m_strText.c_str());
    // True: the focus goes to the field, the first control that takes it, with its text selected.
    return TRUE;
  }
  if (message != WM_COMMAND || (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL)) return FALSE;
  auto *prompt = reinterpret_cast<TextPrompt *>(GetWindowLongPtrW(dialog, GWLP_USERDATA));
  prompt->m_strText = TextOf(GetDlgItem(dialog, Field));
  EndDialog(dialog, LOWORD(wParam));
  return TRUE;
}

}  // namespace tarvik
