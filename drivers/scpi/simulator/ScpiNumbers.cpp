#include "scpi/simulator/ScpiNumbers.h"

#include <algorithm>
#include <iterator>

namespace tarvik::scpisim {

namespace {

struct NumberText {
  Long lngNumber;
  const char *strText;
};

constexpr NumberText Texts[] = {
    {ScpiNoError, "No error"},
    {-100, "Command error"},
    {ScpiInvalidCharacter, "Invalid character"},
    {ScpiSyntaxError, "Syntax error"},
    {ScpiInvalidSeparator, "Invalid separator"},
    {ScpiParameterNotAllowed, "Parameter not allowed"},
    {ScpiMissingParameter, "Missing parameter"},
    {ScpiHeaderSeparatorError, "Header separator error"},
    {ScpiMnemonicTooLong, "Program mnemonic too long"},
    {ScpiUndefinedHeader, "Undefined header"},
    {ScpiHeaderSuffixOutOfRange, "Header suffix out of range"},
    {ScpiNumericDataError, "Numeric data error"},
    {ScpiInvalidCharacterInNumber, "Invalid character in number"},
    {ScpiExponentTooLarge, "Exponent too large"},
    {ScpiTooManyDigits, "Too many digits"},
    {ScpiNumericDataNotAllowed, "Numeric data not allowed"},
    {ScpiInvalidSuffix, "Invalid suffix"},
    {ScpiSuffixTooLong, "Suffix too long"},
    {ScpiSuffixNotAllowed, "Suffix not allowed"},
    {ScpiInvalidCharacterData, "Invalid character data"},
    {ScpiCharacterDataTooLong, "Character data too long"},
    {ScpiCharacterDataNotAllowed, "Character data not allowed"},
    {ScpiInvalidStringData, "Invalid string data"},
    {ScpiStringDataNotAllowed, "String data not allowed"},
    {ScpiInvalidBlockData, "Invalid block data"},
    {ScpiBlockDataNotAllowed, "Block data not allowed"},
    {ScpiInvalidExpression, "Invalid expression"},
    {ScpiExpressionDataNotAllowed, "Expression data not allowed"},
    {ScpiExecutionError, "Execution error"},
    {ScpiTriggerIgnored, "Trigger ignored"},
    {ScpiSettingsConflict, "Settings conflict"},
    {ScpiDataOutOfRange, "Data out of range"},
    {ScpiTooMuchData, "Too much data"},
    {ScpiIllegalParameterValue, "Illegal parameter value"},
    {ScpiHardwareError, "Hardware error"},
    {ScpiHardwareMissing, "Hardware missing"},
    {-300, "Device-specific error"},
    {-310, "System error"},
    {ScpiSelfTestFailed, "Self-test failed"},
    {ScpiQueueOverflow, "Queue overflow"},
    {ScpiInputBufferOverrun, "Input buffer overrun"},
    {-400, "Query error"},
    {ScpiQueryInterrupted, "Query INTERRUPTED"},
    {ScpiQueryUnterminated, "Query UNTERMINATED"},
    {ScpiQueryDeadlocked, "Query DEADLOCKED"},
    {ScpiQueryAfterIndefiniteResponse, "Query UNTERMINATED after indefinite response"},
};

}  // namespace

const char *StandardText(Long lngNumber) {
  const auto found = std::ranges::find(Texts, lngNumber, &NumberText::lngNumber);
  return found == std::end(Texts) ? "" : found->strText;
}

}  // namespace tarvik::scpisim
