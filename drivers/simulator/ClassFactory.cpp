#include "simulator/ClassFactory.h"

#include "simulator/DriverRoot.h"
#include "simulator/Guarded.h"

namespace tarvik::simulator {

using namespace automation;

Status ClassFactory::QueryInterface(const Guid &riid, void **ppvObject) {
  if (!ppvObject) return StatusPointer;
  *ppvObject = nullptr;
  if (!(riid == IidUnknown || riid == IidClassFactory)) return StatusNoInterface;
  AddRef();
  *ppvObject = static_cast<IClassFactory *>(this);
  return StatusOk;
}

std::uint32_t ClassFactory::Release() {
  const std::uint32_t lngLeft = --m_lngReferences;
  if (lngLeft == 0) delete this;
  return lngLeft;
}

Status ClassFactory::CreateInstance(IUnknown *pUnkOuter, const Guid &riid, void **ppvObject) {
  if (!ppvObject) return StatusPointer;
  *ppvObject = nullptr;
  if (pUnkOuter) return StatusNoAggregation;
  return Guarded(false, [&] {
    m_rack->Load();
    const auto root = MakeObject<DriverRoot>(m_rack);
    if (Failed(root->QueryInterface(riid, ppvObject)))
      throw CallFailure{StatusNoInterface, "The driver's root object does not have the interface asked for"};
  });
}

// The library is never unloaded while the rack lives in it, so there is nothing to lock.
Status ClassFactory::LockServer(std::int32_t) { return StatusOk; }

}  // namespace tarvik::simulator
