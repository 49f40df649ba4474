#pragma once

#include <string>
#include <utility>

#include "support/Types.h"

namespace tarvik::scpisim {

/// Error numbers of SCPI-99, volume 2, chapter 21, as far as the simulator reports them.
enum ScpiNumber : Long {
  ScpiNoError = 0,
  ScpiInvalidCharacter = -101,
  ScpiSyntaxError = -102,
  ScpiInvalidSeparator = -103,
  ScpiParameterNotAllowed = -108,
  ScpiMissingParameter = -109,
  ScpiHeaderSeparatorError = -111,
  ScpiMnemonicTooLong = -112,
  ScpiUndefinedHeader = -113,
  ScpiHeaderSuffixOutOfRange = -114,
  ScpiNumericDataError = -120,
  ScpiInvalidCharacterInNumber = -121,
  ScpiExponentTooLarge = -123,
  ScpiTooManyDigits = -124,
  ScpiNumericDataNotAllowed = -128,
  ScpiInvalidSuffix = -131,
  ScpiSuffixTooLong = -134,
  ScpiSuffixNotAllowed = -138,
  ScpiInvalidCharacterData = -141,
  ScpiCharacterDataTooLong = -144,
  ScpiCharacterDataNotAllowed = -148,
  ScpiInvalidStringData = -151,
  ScpiStringDataNotAllowed = -158,
  ScpiInvalidBlockData = -161,
  ScpiBlockDataNotAllowed = -168,
  ScpiInvalidExpression = -171,
  ScpiExpressionDataNotAllowed = -178,
  ScpiExecutionError = -200,
  ScpiTriggerIgnored = -211,
  ScpiSettingsConflict = -221,
  ScpiDataOutOfRange = -222,
  ScpiTooMuchData = -223,
  ScpiIllegalParameterValue = -224,
  ScpiHardwareError = -240,
  ScpiHardwareMissing = -241,
  ScpiSelfTestFailed = -330,
  ScpiQueueOverflow = -350,
  ScpiInputBufferOverrun = -363,
  ScpiQueryInterrupted = -410,
  ScpiQueryUnterminated = -420,
  ScpiQueryDeadlocked = -430,
  ScpiQueryAfterIndefiniteResponse = -440,
};

/// The standard's text of a number; empty for a number it does not have.
const char *StandardText(Long lngNumber);

/// A number with what the instrument adds to the standard's text. Thrown by whatever refuses a command.
struct ScpiFault {
  Long lngNumber = ScpiNoError;
  std::string strDetail;  ///< empty, or what exactly was wrong
};

[[noreturn]] inline void Fail(Long lngNumber, std::string strDetail = {}) {
  throw ScpiFault{lngNumber, std::move(strDetail)};
}

}  // namespace tarvik::scpisim
