#include "automation/AutomationString.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace tarvik::automation {

namespace {

constexpr char32_t Replacement = 0xFFFD;

/// The next code point of UTF-8; a byte that begins none is taken alone.
char32_t NextCodePoint(std::string_view strText, std::size_t &pos) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(strText[at]); };
  const unsigned char first = byte(pos);
  if (first < 0x80) {
    ++pos;
    return first;
  }
  int count = 0;
  char32_t point = 0, least = 0;
  if (first >= 0xC2 && first <= 0xDF) {
    count = 1;
    point = first & 0x1Fu;
    least = 0x80;
  } else if (first >= 0xE0 && first <= 0xEF) {
    count = 2;
    point = first & 0x0Fu;
    least = 0x800;
  } else if (first >= 0xF0 && first <= 0xF4) {
    count = 3;
    point = first & 0x07u;
    least = 0x10000;
  } else {
    ++pos;
    return Replacement;
  }
  std::size_t at = pos + 1;
  for (int i = 0; i < count; ++i, ++at) {
    if (at >= strText.size() || (byte(at) & 0xC0u) != 0x80) {
      ++pos;
      return Replacement;
    }
    point = (point << 6) | (byte(at) & 0x3Fu);
  }
  if (point < least || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) {
    ++pos;
    return Replacement;
  }
  pos = at;
  return point;
}

void AppendUtf8(std::string &strText, char32_t point) {
  const auto add = [&](char32_t value) { strText += static_cast<char>(value); };
  if (point < 0x80) {
    add(point);
  } else if (point < 0x800) {
    add(0xC0 | (point >> 6)), add(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    add(0xE0 | (point >> 12)), add(0x80 | ((point >> 6) & 0x3F)), add(0x80 | (point & 0x3F));
  } else {
    add(0xF0 | (point >> 18)), add(0x80 | ((point >> 12) & 0x3F)), add(0x80 | ((point >> 6) & 0x3F)),
        add(0x80 | (point & 0x3F));
  }
}

}  // namespace

std::u16string ToUtf16(std::string_view strText) {
  std::u16string strResult;
  strResult.reserve(strText.size());
  for (std::size_t pos = 0; pos < strText.size();) {
    char32_t point = NextCodePoint(strText, pos);
    if (point >= 0x10000) {
      point -= 0x10000;
      strResult += static_cast<char16_t>(0xD800 + (point >> 10));
      strResult += static_cast<char16_t>(0xDC00 + (point & 0x3FF));
    } else {
      strResult += static_cast<char16_t>(point);
    }
  }
  return strResult;
}

std::string ToUtf8(std::u16string_view strText) {
  std::string strResult;
  strResult.reserve(strText.size());
  for (std::size_t i = 0; i < strText.size(); ++i) {
    char32_t point = strText[i];
    const bool fHigh = point >= 0xD800 && point <= 0xDBFF;
    if (fHigh && i + 1 < strText.size() && strText[i + 1] >= 0xDC00 && strText[i + 1] <= 0xDFFF)
      point = 0x10000 + ((point - 0xD800) << 10) + (strText[++i] - 0xDC00u);
    else if (point >= 0xD800 && point <= 0xDFFF)
      point = Replacement;
    AppendUtf8(strResult, point);
  }
  return strResult;
}

#ifdef _WIN32

AutomationString AllocString(std::string_view strText) {
  const std::u16string strWide = ToUtf16(strText);
  return SysAllocStringLen(reinterpret_cast<const OLECHAR *>(strWide.data()), static_cast<UINT>(strWide.size()));
}
void FreeString(AutomationString bstr) { SysFreeString(bstr); }
std::uint32_t StringLength(const char16_t *bstr) {
  return SysStringLen(reinterpret_cast<BSTR>(const_cast<char16_t *>(bstr)));
}

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

std::uint32_t StringLength(const char16_t *bstr) {
  if (!bstr) return 0;
  std::uint32_t lngBytes = 0;
  std::memcpy(&lngBytes, reinterpret_cast<const unsigned char *>(bstr) - 4, sizeof lngBytes);
  return lngBytes / static_cast<std::uint32_t>(sizeof(char16_t));
}

#endif

std::string ToText(const char16_t *bstr) { return bstr ? ToUtf8({bstr, StringLength(bstr)}) : std::string{}; }

}  // namespace tarvik::automation
