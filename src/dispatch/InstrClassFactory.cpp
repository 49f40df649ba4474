#include "dispatch/InstrClassFactory.h"

#include <new>

#include "automation/ErrorInfo.h"
#include "dispatch/DefaultHost.h"
#include "dispatch/InstrDispatch.h"

namespace tarvik {

using namespace automation;

Status InstrClassFactory::Make(const Guid &riid, void **ppvObject) {
  try {
    EnsureHost();
    auto instr = InstrInterface();
    if (!instr) return Fail(StatusUnexpected, "The instrument interface of this thread is of another class");
    return Ref<InstrDispatch>::Adopt(new InstrDispatch(std::move(instr)))->QueryInterface(riid, ppvObject);
  } catch (const std::bad_alloc &) {
    return StatusOutOfMemory;
  } catch (const std::exception &error) {
    return Fail(StatusFail, error.what());
  }
}

Status InstrClassFactory::LockServer(LockFlag fLock) {
  LibraryUse::Lock(fLock != 0);
  return StatusOk;
}

}  // namespace tarvik
