#pragma once

#include "automation/ClassFactory.h"
#include "dispatch/LibraryUse.h"

namespace tarvik {

/// Makes automation faces of the instrument interface. Where no host is installed yet, the first of them installs one:
/// that of the toolkit within a program of the toolkit, otherwise the one without any window.
class InstrClassFactory final : public automation::ClassFactory {
 public:
  automation::Status TARVIK_CALL LockServer(std::int32_t fLock) override;

 private:
  automation::Status Make(const automation::Guid &riid, void **ppvObject) override;

  LibraryUse m_use;
};

}  // namespace tarvik
