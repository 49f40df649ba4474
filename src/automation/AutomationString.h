#pragma once

#include <string>
#include <string_view>

#include "automation/Abi.h"
#include "support/Export.h"

namespace tarvik::automation {

/// A new string from UTF-8; the empty text is a string of no units. What is no UTF-8 becomes U+FFFD.
TARVIK_AUTOMATION_EXPORT AutomationString AllocString(std::string_view strText);
TARVIK_AUTOMATION_EXPORT void FreeString(AutomationString bstr);

/// UTF-8 of the string; null gives the empty text. Lone surrogates become U+FFFD.
TARVIK_AUTOMATION_EXPORT std::string ToText(const AutomationChar *bstr);
/// Number of UTF-16 units.
TARVIK_AUTOMATION_EXPORT std::uint32_t StringLength(const AutomationChar *bstr);

/// UTF-8 of units that end with a zero, as names of members do.
TARVIK_AUTOMATION_EXPORT std::string NameText(const AutomationChar *strName);

TARVIK_AUTOMATION_EXPORT std::u16string ToUtf16(std::string_view strText);
#ifdef _WIN32
/// The same, as the system's own calls take it.
TARVIK_AUTOMATION_EXPORT std::wstring ToWide(std::string_view strText);
#endif
TARVIK_AUTOMATION_EXPORT std::string ToUtf8(std::u16string_view strText);

/// Owns an automation string.
class String {
 public:
  String() = default;
  explicit String(std::string_view strText) : m_bstr(AllocString(strText)) {}
  static String Adopt(AutomationString bstr) {
    String text;
    text.m_bstr = bstr;
    return text;
  }
  String(String &&other) noexcept : m_bstr(other.Detach()) {}
  String &operator=(String &&other) noexcept {
    AutomationString bstr = other.Detach();
    FreeString(m_bstr);
    m_bstr = bstr;
    return *this;
  }
  ~String() { FreeString(m_bstr); }

  AutomationString Get() const { return m_bstr; }
  AutomationString Detach() {
    AutomationString bstr = m_bstr;
    m_bstr = nullptr;
    return bstr;
  }
  /// Place for a call to hand out a string.
  AutomationString *Out() {
    FreeString(m_bstr);
    m_bstr = nullptr;
    return &m_bstr;
  }
  std::string Text() const { return ToText(m_bstr); }

 private:
  AutomationString m_bstr = nullptr;
};

}  // namespace tarvik::automation
