#pragma once

#include <string>

#include "settings/Setup.h"

namespace tarvik {

/// A bit stream as a text of its own: "16 bits" and lines of words as in a setup file, or nothing but the digits 0 and
/// 1 with blanks and line breaks anywhere.
std::string PatternFileText(const PatternStream &stream, bool fDigits);

/// Reads either form. CtlFailure with eExitFile and the reason for any other text.
PatternStream ReadPatternFile(const std::string &strText);

}  // namespace tarvik
