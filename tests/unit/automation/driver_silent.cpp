#include "automation/ErrorInfo.h"

using namespace tarvik::automation;

TARVIK_DRIVER_EXPORT Status DllGetClassObject(const Guid &, const Guid &, void **) { return StatusClassNotAvailable; }
