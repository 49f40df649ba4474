#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/Failure.h"
#include "simulator/model/DriverTypes.h"

namespace tarvik::simulator {

/// What is wrong with a rack file; the text begins with the file's name and the line, "name:3: ...".
class RackFileError : public driver::Failure {
  using Failure::Failure;
};

/// The instruments described by the text of a rack file, in their order; the name of the file serves the messages.
/// Raises RackFileError at the first fault. A text without instruments describes an empty rack.
std::vector<InstrumentDescription> ParseRack(std::string_view strText, const std::string &strFile);

/// The rack that is there without a file: one instrument of each kind that the panel treats differently.
std::vector<InstrumentDescription> DefaultRack();

}  // namespace tarvik::simulator
