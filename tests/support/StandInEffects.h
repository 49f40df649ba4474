#pragma once

#include <functional>

#include "HookedCall.h"
#include "StandInDriver.h"

namespace tarvik::test {

/// An operation of the stand-in at work: the call, and the settings of the place at which its object stands.
struct StandInWork {
  StandInDriver &driver;
  HookedCall &call;

  StandInState &Instrument() const { return static_cast<StandInState &>(*call.place.instrument); }
  InstrumentSettings &Settings() const { return Instrument().settings; }
  ChannelSettings &Channel() const { return Settings().channels[static_cast<std::size_t>(call.place.lngChannel - 1)]; }
  /// Hands out the object that belongs there, or what the driver's next object is to be instead.
  void Hand() const;
  void Hand(std::shared_ptr<StandInState> instrument) const;
};

/// What an operation does when nothing makes it fail. A DriverFailure that it throws is the operation's own.
using StandInEffect = std::function<void(const StandInWork &)>;

/// The effect of each operation of the contract.
const StandInEffect &StandInEffectOf(const Operation &operation);

}  // namespace tarvik::test
