#pragma once

#include "automation/ClassFactory.h"
#include "dispatch/LibraryUse.h"

namespace tarvik {

/// Creates InstrDispatch objects. If no host is installed yet, the first one installs it: QtHost in a program with a
/// QApplication, otherwise ConsoleHost; SystemHost in a library for Windows.
class InstrClassFactory final : public automation::ClassFactory {
 public:
  automation::Status TARVIK_CALL LockServer(automation::LockFlag fLock) override;

 private:
  automation::Status Make(const automation::Guid &riid, void **ppvObject) override;

  LibraryUse m_use;
};

}  // namespace tarvik
