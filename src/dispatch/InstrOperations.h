#pragma once

#include <vector>

#include "dispatch/DispatchObject.h"
#include "instrument/clsInstrInterface.h"

namespace tarvik {

/// One use of one member of the instrument interface: its shape, and how it is carried out.
struct InstrOperation {
  MemberShape shape;
  Value (*Run)(clsInstrInterface &instr, Arguments &arguments);
};

/// The members of clsInstrInterface as a dispatch interface, in the order of its public face, numbered from 1. Get and
/// put of a property stand one behind the other under one number.
const std::vector<InstrOperation> &InstrOperations();

}  // namespace tarvik
