#include "support/SettingsText.h"

#include <utf8.h>
#include <utf8/unchecked.h>

#include <charconv>
#include <cstdint>
#include <iterator>

namespace tarvik {

namespace {

constexpr std::string_view Special = "abfnrtv", SpecialBytes = "\a\b\f\n\r\t\v";

bool IsHexDigit(char ch) { return (ch >= '0' && ch <= '9') || (ch >= 'a' && ch <= 'f') || (ch >= 'A' && ch <= 'F'); }

bool IsPlain(char ch) {
  return (ch >= '0' && ch <= '9') || (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || ch == '_' || ch == '-' ||
         ch == '.';
}

std::string Hex(unsigned char byte) {
  char text[2];
  const auto end = std::to_chars(text, text + sizeof text, byte, 16).ptr;
  return {text, end};
}

/// The hexadecimal number that begins at pos, which moves behind it.
std::uint32_t TakeHex(std::string_view strText, std::size_t &pos) {
  std::uint32_t value = 0;
  const char *first = strText.data() + pos;
  pos =
      static_cast<std::size_t>(std::from_chars(first, strText.data() + strText.size(), value, 16).ptr - strText.data());
  return value;
}

/// Decodes the escape behind a backslash; false at the end of the text.
bool TakeEscape(std::string_view strText, std::size_t &pos, std::string &strResult) {
  if (pos == strText.size()) return false;
  const char ch = strText[pos++];
  if (ch == 'x') {
    // A UTF-16 unit, as older versions of the toolkit wrote what is not in ASCII. Unchecked: it may be half a pair.
    const auto unit = static_cast<std::uint16_t>(TakeHex(strText, pos));
    utf8::unchecked::append(unit, std::back_inserter(strResult));
  } else if (ch == '0') {
    strResult += '\0';
  } else if (const std::size_t at = Special.find(ch); at != std::string_view::npos) {
    strResult += SpecialBytes[at];
  } else {
    strResult += ch;
  }
  return true;
}

}  // namespace

std::string EscapedName(std::string_view strName) {
  std::string strResult;
  for (const char ch : strName) {
    if (IsPlain(ch)) {
      strResult += ch;
    } else {
      const auto byte = static_cast<unsigned char>(ch);
      strResult += (byte < 0x10 ? "%0" : "%") + Hex(byte);
    }
  }
  return strResult;
}

std::string UnescapedName(std::string_view strName) {
  std::string strResult;
  for (std::size_t i = 0; i < strName.size(); ++i) {
    if (strName[i] == '%' && i + 2 < strName.size() && IsHexDigit(strName[i + 1]) && IsHexDigit(strName[i + 2])) {
      std::size_t pos = 0;
      strResult += static_cast<char>(TakeHex(strName.substr(i + 1, 2), pos));
      i += 2;
    } else {
      strResult += strName[i];
    }
  }
  return strResult;
}

std::string EscapedValue(std::string_view strValue) {
  std::string strResult;
  // A leading "@" names a type in these files, two of them are a text.
  if (strValue.starts_with('@')) strResult += '@';
  bool fQuotes = strValue.starts_with(' ') || strValue.ends_with(' ');
  bool fBehindNumber = false;
  for (const char ch : strValue) {
    const auto byte = static_cast<unsigned char>(ch);
    const std::size_t at = SpecialBytes.find(ch);
    const bool fAsNumber = at == std::string_view::npos && (byte < 0x20 || (fBehindNumber && IsHexDigit(ch)));
    if (ch == '"' || ch == '\\')
      strResult += '\\', strResult += ch;
    else if (at != std::string_view::npos)
      strResult += '\\', strResult += Special[at];
    else if (fAsNumber)
      strResult += "\\x" + Hex(byte);
    else
      strResult += ch;
    fBehindNumber = fAsNumber;
    fQuotes = fQuotes || ch == ';' || ch == ',' || ch == '=';
  }
  return fQuotes ? '"' + strResult + '"' : strResult;
}

std::optional<std::string> UnescapedValue(std::string_view strValue) {
  const std::size_t first = strValue.find_first_not_of(" \t");
  if (first == std::string_view::npos) return std::string();
  strValue = strValue.substr(first, strValue.find_last_not_of(" \t") - first + 1);
  std::string strResult;
  bool fQuoted = false;
  for (std::size_t pos = 0; pos < strValue.size();) {
    const char ch = strValue[pos++];
    if (ch == '"')
      fQuoted = !fQuoted;
    else if (ch != '\\')
      strResult += ch;
    else if (!TakeEscape(strValue, pos, strResult))
      return std::nullopt;
  }
  if (fQuoted) return std::nullopt;
  return strResult.starts_with("@@") ? strResult.substr(1) : strResult;
}

}  // namespace tarvik
