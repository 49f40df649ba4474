#include "common/ClassFactory.h"

#include "common/DriverRoot.h"
#include "common/Guarded.h"

namespace tarvik::driver {

using namespace automation;

Status ClassFactory::Make(const Guid &riid, void **ppvObject) {
  return Guarded(false, [&] {
    m_rack->Load();
    const auto root = MakeObject<DriverRoot>(m_rack);
    if (Failed(root->QueryInterface(riid, ppvObject)))
      throw CallFailure{StatusNoInterface, "The driver's root object does not have the interface asked for"};
  });
}

}  // namespace tarvik::driver
