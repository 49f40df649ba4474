#include "support/modUtils.h"

#include "support/Host.h"

namespace tarvik {

void SetHourglass(Boolean fOn) {
  Host &host = TheHost();
  const Integer intPointer = host.MousePointer();
  if (fOn && intPointer == PointerDefault) host.SetMousePointer(PointerHourglass);
  if (!fOn && intPointer == PointerHourglass) host.SetMousePointer(PointerDefault);
}

void SetFocusIfEnabled(Control &objControl) {
  if (objControl.Enabled()) objControl.SetFocus();
}

}  // namespace tarvik
