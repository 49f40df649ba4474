#pragma once

#include "HookedCall.h"
#include "automation/Ref.h"

namespace tarvik::test {

/// What stands behind a driver whose objects do nothing of their own: every operation of every object comes here.
class DriverHook {
 public:
  /// Answers the status that the caller gets.
  virtual automation::Status Run(HookedCall &call) = 0;
  /// An object of this interface was made or referenced once more (1), or lost a reference (-1).
  virtual void CountReference(std::string_view /*strInterface*/, int /*intStep*/) {}

 protected:
  ~DriverHook() = default;
};

/// A root object whose operations, and those of all objects that follow from it, are the hook's. It outlives them.
automation::Ref<automation::IUnknown> MakeHookedRoot(DriverHook &hook);
/// The same without any interface of the contract.
automation::Ref<automation::IUnknown> MakeForeignObject(DriverHook &hook);

}  // namespace tarvik::test
