#pragma once

#include <gtest/gtest.h>

#include "scpi/simulator/Interpreter.h"
#include "simulator/model/RackFile.h"

namespace tarvik::scpisim {

/// An instrument on the bench, without a line in between.
class Bench : public testing::Test {
 protected:
  explicit Bench(const simulator::InstrumentDescription &description = Model("VP-210")) : device(description) {}

  static simulator::InstrumentDescription Model(const std::string &strModel) {
    for (const simulator::InstrumentDescription &description : simulator::DefaultRack())
      if (description.strName == strModel) return description;
    throw std::runtime_error("no model " + strModel);
  }

  /// The answer to a message; empty without one.
  std::string Say(std::string_view strMessage) { return Interpreter(device, 1).Execute(strMessage); }
  std::string Error() { return device.status.TakeError(); }
  /// The number of the oldest error that a message brings, 0 for none.
  Long NumberFrom(std::string_view strMessage) {
    device.status.Clear();
    Say(strMessage);
    return static_cast<Long>(std::stol(Error()));
  }

  Device device;
};

}  // namespace tarvik::scpisim
