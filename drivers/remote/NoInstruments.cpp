#include "remote/NoInstruments.h"

namespace tarvik::remote {

using namespace automation;

NoInstruments &NoInstruments::Factory() {
  static NoInstruments factory;
  return factory;
}

Status NoInstruments::QueryInterface(const Guid &riid, void **ppvObject) {
  if (!ppvObject) return StatusPointer;
  *ppvObject = nullptr;
  if (!(riid == IidUnknown || riid == IidClassFactory)) return StatusNoInterface;
  *ppvObject = static_cast<IClassFactory *>(this);
  return StatusOk;
}

Status NoInstruments::CreateInstance(IUnknown *, const Guid &, void **ppvObject) {
  if (!ppvObject) return StatusPointer;
  *ppvObject = nullptr;
  return StatusOk;
}

}  // namespace tarvik::remote
