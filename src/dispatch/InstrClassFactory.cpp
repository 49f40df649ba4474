#include "dispatch/InstrClassFactory.h"

#include <QApplication>
#include <new>

#include "automation/ErrorInfo.h"
#include "dispatch/InstrDispatch.h"
#include "platform/ConsoleHost.h"
#include "platform/QtHost.h"

namespace tarvik {

using namespace automation;

namespace {

void EnsureHost() {
  static const bool fDone = [] {
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) {
      EnsureQtHost();
      return true;
    }
    static ConsoleHost host;
    if (Host *before = SetHost(&host)) SetHost(before);
    return true;
  }();
  static_cast<void>(fDone);
}

}  // namespace

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

Status InstrClassFactory::LockServer(std::int32_t fLock) {
  LibraryUse::Lock(fLock != 0);
  return StatusOk;
}

}  // namespace tarvik
