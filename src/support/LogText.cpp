#include "support/LogText.h"

#include <utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>

namespace tarvik {

namespace {

struct Span {
  char32_t first, last;
};
/// Control characters, marks and overrides of the direction, separators of lines and paragraphs, and what has no width.
constexpr Span Harmful[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0xAD, 0xAD},     {0x61C, 0x61C},   {0x180E, 0x180E},
                            {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F}, {0xFEFF, 0xFEFF}, {0xE0000, 0xE007F}};

bool IsHarmful(char32_t ch) {
  return std::ranges::any_of(Harmful, [&](const Span &span) { return ch >= span.first && ch <= span.last; });
}

std::string Code(const char *strForm, std::uint32_t lngValue) {
  char strCode[16];
  std::snprintf(strCode, sizeof strCode, strForm, lngValue);
  return strCode;
}

/// Hands each character to `take`, and each byte that is none to `takeByte`.
template <class Take, class TakeByte>
void ForEachCharacter(std::string_view strText, Take take, TakeByte takeByte) {
  for (auto at = strText.begin(); at != strText.end();) {
    const auto begin = at;
    try {
      const std::uint32_t ch = utf8::next(at, strText.end());
      take(char32_t{ch}, std::string_view(begin, at));
    } catch (const utf8::exception &) {
      takeByte(static_cast<unsigned char>(*begin));
      at = std::next(begin);
    }
  }
}

}  // namespace

std::string WithoutControls(std::string_view strText) {
  std::string strResult;
  ForEachCharacter(
      strText,
      [&](char32_t ch, std::string_view strBytes) {
        if (!IsHarmful(ch))
          strResult += strBytes;
        else
          strResult += Code(ch < 0x80 ? "\\x%02X" : "\\u%04X", ch);
      },
      [&](unsigned char byte) { strResult += Code("\\x%02X", byte); });
  return strResult;
}

std::string JsonString(std::string_view strText) {
  std::string strResult = "\"";
  ForEachCharacter(
      strText,
      [&](char32_t ch, std::string_view strBytes) {
        if (ch == U'"' || ch == U'\\')
          strResult += "\\" + std::string(strBytes);
        else if (IsHarmful(ch) && ch <= 0xFFFF)
          strResult += Code("\\u%04x", ch);
        else if (!IsHarmful(ch))
          strResult += strBytes;
      },
      [&](unsigned char) { strResult += "\\ufffd"; });
  return strResult + "\"";
}

std::string Escaped(std::string_view strText) {
  std::string strDoubled;
  for (const char ch : strText) strDoubled += ch == '\\' ? "\\\\" : std::string(1, ch);
  return WithoutControls(strDoubled);
}

}  // namespace tarvik
