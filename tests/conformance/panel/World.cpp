#include "World.h"

#include "WatchedCalls.h"
#include "support/EventBoundary.h"
#include "support/modGlobals.h"

namespace tarvik::paneltest {

namespace {

const char *KindOf(Long lngNumber) {
  switch (lngNumber) {
    case ErrOverflow: return "overflow";
    case ErrSubscriptOutOfRange:
    case ErrNoSuchElement: return "bounds";
    case ErrDivisionByZero: return "division";
    case ErrTypeMismatch: return "type";
    case ErrObjectNotSet: return "object";
    case ErrNotAnArray: return "noarray";
    case ErrInvalidPropertyValue: return "property";
    case ErrNoSuchProperty: return "noproperty";
    default: return "driver";
  }
}

}  // namespace

World::World() {
  SetHost(&host);
  SetInstrFactory([this] { return std::make_shared<RecordingInstr>(recorder, script); });
  test::UnhandledErrors() = [this](const std::string &, const std::string &, const RunTimeError &error) {
    recorder.Add({"failure", KindOf(error.Number())});
  };
  test::FocusRequested().Connect([this](const std::string &strControl) { recorder.Add({"focus", strControl}); });
  host.InputShown = [this] { script.fInputShown = true; };
}

World::~World() {
  gobjInstr().reset();
  test::UnhandledErrors() = nullptr;
}

void World::Reset() {
  gobjInstr().reset();
  gobjPanel() = nullptr;
  host.Reset();
  script.Reset();
  arrAtYield.clear();
  recorder.Take();
}

RecordingInstr *World::Instr() const { return dynamic_cast<RecordingInstr *>(gobjInstr().get()); }

void World::Run(const std::function<void()> &procedure) { RunUserEvent("adapter", "command", procedure); }

}  // namespace tarvik::paneltest
