#include "automation/AutomationString.h"

#include <utf8.h>
#include <utf8/unchecked.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>

namespace tarvik::automation {

namespace {

constexpr char16_t Replacement = 0xFFFD;

bool IsLead(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool IsTrail(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

}  // namespace

std::u16string ToUtf16(std::string_view strText) {
  std::u16string strResult;
  strResult.reserve(strText.size());
  for (;;) {
    const std::size_t valid = std::min(utf8::find_invalid(strText), strText.size());
    utf8::unchecked::utf8to16(strText.begin(), strText.begin() + valid, std::back_inserter(strResult));
    if (valid == strText.size()) return strResult;
    // One for each byte that is not part of a character.
    strResult += Replacement;
    strText.remove_prefix(valid + 1);
  }
}

std::string ToUtf8(std::u16string_view strText) {
  std::u16string strWhole(strText);
  for (std::size_t i = 0; i < strWhole.size(); ++i) {
    if (IsLead(strWhole[i]) && i + 1 < strWhole.size() && IsTrail(strWhole[i + 1]))
      ++i;
    else if (IsLead(strWhole[i]) || IsTrail(strWhole[i]))
      strWhole[i] = Replacement;
  }
  return utf8::utf16to8(strWhole);
}

#ifdef _WIN32

std::wstring ToWide(std::string_view strText) {
  const std::u16string strUnits = ToUtf16(strText);
  return {strUnits.begin(), strUnits.end()};
}

AutomationString AllocString(std::string_view strText) {
  const std::u16string strWide = ToUtf16(strText);
  return SysAllocStringLen(reinterpret_cast<const OLECHAR *>(strWide.data()), static_cast<UINT>(strWide.size()));
}
void FreeString(AutomationString bstr) { SysFreeString(bstr); }
std::uint32_t StringLength(const AutomationChar *bstr) { return SysStringLen(const_cast<BSTR>(bstr)); }

#else

AutomationString AllocString(std::string_view strText) {
  const std::u16string strWide = ToUtf16(strText);
  const auto lngBytes = static_cast<std::uint32_t>(strWide.size() * sizeof(char16_t));
  // The units begin 8 bytes into the block, so that they are aligned as in the native layout.
  auto *block = static_cast<unsigned char *>(std::malloc(8 + lngBytes + sizeof(char16_t)));
  if (!block) throw std::bad_alloc();
  std::memcpy(block + 4, &lngBytes, sizeof lngBytes);
  std::memcpy(block + 8, strWide.c_str(), lngBytes + sizeof(char16_t));
  return reinterpret_cast<AutomationString>(block + 8);
}

void FreeString(AutomationString bstr) {
  if (bstr) std::free(reinterpret_cast<unsigned char *>(bstr) - 8);
}

std::uint32_t StringLength(const AutomationChar *bstr) {
  if (!bstr) return 0;
  std::uint32_t lngBytes = 0;
  std::memcpy(&lngBytes, reinterpret_cast<const unsigned char *>(bstr) - 4, sizeof lngBytes);
  return lngBytes / static_cast<std::uint32_t>(sizeof(char16_t));
}

#endif

namespace {

/// A unit has 16 bits wherever automation is native, too, where it is of another type.
const char16_t *Units(const AutomationChar *units) {
  static_assert(sizeof(AutomationChar) == sizeof(char16_t));
  return reinterpret_cast<const char16_t *>(units);
}

}  // namespace

std::string ToText(const AutomationChar *bstr) {
  return bstr ? ToUtf8({Units(bstr), StringLength(bstr)}) : std::string{};
}

std::string NameText(const AutomationChar *strName) { return ToUtf8(Units(strName)); }

}  // namespace tarvik::automation
