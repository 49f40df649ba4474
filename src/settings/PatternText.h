#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/Setup.h"

namespace tarvik {

/// The bits of a stream as text: hexadecimal words of 16 bits, the first address in the highest bit. Each line begins
/// with its address; a word that repeats is a run with its count, and lines break where the address is a multiple of
/// 256, so that a change of a bit changes one line:
///
///     1: FF00*16
///     257: 0001 0000*14 8000
std::vector<std::string> PatternLines(const PatternStream &stream);

/// Reads what PatternLines writes, or what a person has written that way: words in either case, lines and runs of any
/// length. The lines have to follow one another and to hold lngLength bits. Hands back the reason why not, with the
/// number of the line; empty when the stream was filled.
std::string ReadPatternLines(Long lngLength, const std::vector<std::string> &arrLines, PatternStream &stream);

/// "16 bits, FF00"; a long stream is told by its length and the words around the first bit in which it differs from the
/// other one.
std::string PatternSummary(const PatternStream &stream, const PatternStream *pOther = nullptr);

/// The bit at an address from 1; 0 behind the end.
bool BitAt(const PatternStream &stream, Long lngAddress);

}  // namespace tarvik
