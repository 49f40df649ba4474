#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "bitpattern/PatternBits.h"

namespace tarvik::test {

inline ByteArray EmptyStream() { return ByteArray(1, std::vector<Byte>(PatternArraySize)); }

/// The bits of the addresses 1 to lngLength as a text of 0 and 1; blanks between the bytes make it readable.
inline std::string BitsOf(const ByteArray &arr, Long lngLength) {
  std::string strBits;
  for (Long a = 1; a <= lngLength; ++a) {
    if (a > 1 && a % 8 == 1) strBits += ' ';
    Boolean fBit;
    GetBit(arr, a, fBit);
    strBits += fBit ? '1' : '0';
  }
  return strBits;
}

/// A stream whose first addresses have the bits of the text; blanks are passed over.
inline ByteArray StreamOf(std::string_view strBits) {
  ByteArray arr = EmptyStream();
  Long lngAddress = 1;
  for (const char ch : strBits) {
    if (ch == ' ') continue;
    if (ch == '1') SetBit(arr, lngAddress);
    ++lngAddress;
  }
  return arr;
}

}  // namespace tarvik::test
