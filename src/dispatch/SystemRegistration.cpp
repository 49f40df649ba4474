#include "automation/ServerRegistration.h"
#include "dispatch/Registration.h"

namespace tarvik {

automation::Status RegisterLibrary() {
  return automation::RegisterServer(InstrProgId, "Instrument interface of TarvikVI",
                                    reinterpret_cast<const void *>(&RegisterLibrary));
}

automation::Status UnregisterLibrary() { return automation::UnregisterServer(InstrProgId); }

}  // namespace tarvik
