#pragma once

#include <functional>

#include "DriverScript.h"
#include "HookedCall.h"

namespace tarvik::paneltest {

/// An operation of the scripted driver at work.
struct ScriptedWork {
  DriverScript &script;
  test::HookedCall &call;

  InstrumentScript &Instrument() const { return static_cast<InstrumentScript &>(*call.place.instrument); }
  /// The scripted answer for the channel at which the object stands.
  Double Answer(const std::string &strField) const { return script.Answer(strField, call.place.lngChannel); }
};

/// What an operation answers when no failure is scripted. A FailureScript that it throws is the operation's own.
using ScriptedEffect = std::function<void(const ScriptedWork &)>;

/// Empty for an operation that answers nothing.
const ScriptedEffect &ScriptedEffectOf(const test::Operation &operation);

}  // namespace tarvik::paneltest
