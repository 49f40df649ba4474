#include "support/RunTimeError.h"

namespace tarvik {

const char *StandardDescription(std::int32_t lngNumber) {
  switch (lngNumber) {
    case ErrOverflow: return "Overflow";
    case ErrOutOfMemory: return "Out of memory";
    case ErrSubscriptOutOfRange: return "Subscript out of range";
    case ErrArrayLocked: return "This array is fixed or temporarily locked";
    case ErrDivisionByZero: return "Division by zero";
    case ErrTypeMismatch: return "Type mismatch";
    case ErrFileNotFound: return "File not found";
    case ErrPermissionDenied: return "Permission denied";
    case ErrPathFileAccess: return "Path/File access error";
    case ErrPathNotFound: return "Path not found";
    case ErrObjectNotSet: return "Object variable or With block variable not set";
    case ErrInvalidFileFormat: return "Invalid file format";
    case ErrNoSuchElement: return "Control array element doesn't exist";
    case ErrNotAnArray: return "Object not an array";
    case ErrInvalidPropertyValue: return "Invalid property value";
    case ErrCannotCreateObject: return "Automation component can't create object";
    case ErrNoSuchProperty: return "Object doesn't support this property or method";
    default: return "Application-defined or object-defined error";
  }
}

void RaiseError(std::int32_t lngNumber) { throw RunTimeError(lngNumber, StandardDescription(lngNumber)); }

}  // namespace tarvik
