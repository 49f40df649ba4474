#include "PatternFile.h"

#include <algorithm>
#include <charconv>

#include "CtlFailure.h"
#include "settings/PatternText.h"
#include "support/Conversions.h"

namespace tarvik {

namespace {

constexpr Long DigitsInLine = 64;

[[noreturn]] void Refuse(const std::string &strWhy) { throw CtlFailure{eExitFile, "no pattern: " + strWhy}; }

PatternStream FromDigits(const std::string &strText) {
  PatternStream stream;
  for (const char ch : strText) {
    if (ch != '0' && ch != '1') continue;
    if (stream.lngLength == PatternStream::MaxLength)
      Refuse("more than " + std::to_string(PatternStream::MaxLength) + " bits");
    if (stream.lngLength % 8 == 0) stream.arrBytes.push_back(0);
    if (ch == '1') stream.arrBytes.back() = static_cast<Byte>(stream.arrBytes.back() | 0x80 >> stream.lngLength % 8);
    ++stream.lngLength;
  }
  return stream;
}

}  // namespace

std::string PatternFileText(const PatternStream &stream, bool fDigits) {
  if (fDigits) {
    std::string strText;
    for (Long lngAddress = 1; lngAddress <= stream.lngLength; ++lngAddress) {
      strText += BitAt(stream, lngAddress) ? '1' : '0';
      if (lngAddress % DigitsInLine == 0 || lngAddress == stream.lngLength) strText += '\n';
    }
    return strText;
  }
  std::string strText = std::to_string(stream.lngLength) + " bits\n";
  for (const std::string &strLine : PatternLines(stream)) strText += strLine + '\n';
  return strText;
}

PatternStream ReadPatternFile(const std::string &strText) {
  if (strText.find_first_not_of("01 \t\r\n") == std::string::npos) {
    if (strText.find_first_of("01") == std::string::npos) Refuse("there are no bits");
    return FromDigits(strText);
  }
  std::vector<std::string> arrLines;
  for (const std::string &strLine : Split(Replace(strText, "\r", ""), '\n'))
    if (!Trim(strLine).empty()) arrLines.push_back(strLine);
  const std::string strHead = Trim(arrLines.front());
  Long lngLength = -1;
  const auto [pos, error] = std::from_chars(strHead.data(), strHead.data() + strHead.size(), lngLength);
  if (error != std::errc() || std::string_view(pos, strHead.data() + strHead.size()) != " bits")
    Refuse("it begins neither with its length, as \"16 bits\", nor with the digits 0 and 1");
  arrLines.erase(arrLines.begin());
  PatternStream stream;
  if (const std::string strWrong = ReadPatternLines(lngLength, arrLines, stream); !strWrong.empty()) Refuse(strWrong);
  return stream;
}

}  // namespace tarvik
