#include "support/modGlobals.h"

#include <utility>

namespace tarvik {

namespace {

std::function<std::shared_ptr<InstrReference>()> &InstrFactory() {
  static std::function<std::shared_ptr<InstrReference>()> factory;
  return factory;
}

}  // namespace

std::shared_ptr<InstrReference> &gobjInstr() {
  thread_local std::shared_ptr<InstrReference> objInstr;
  return objInstr;
}

PanelReference *&gobjPanel() {
  thread_local PanelReference *objPanel = nullptr;
  return objPanel;
}

void SetInstrFactory(std::function<std::shared_ptr<InstrReference>()> factory) { InstrFactory() = std::move(factory); }

InstrReference *InstrOnFirstUse() {
  if (!gobjInstr() && InstrFactory()) gobjInstr() = InstrFactory()();
  return gobjInstr().get();
}

}  // namespace tarvik
