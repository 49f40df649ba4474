#pragma once

#include "support/Types.h"

namespace tarvik::simulator {

/// Bits of the capability mask: a set bit takes something away from a model.
enum Lack : Long {
  LackSeparateEdges = 4,        ///< the trailing edge always follows the leading edge
  LackOutputImpedance = 64,     ///< the output impedance is fixed
  LackLoadCompensation = 128,   ///< levels are not corrected for the load
  LackChannelMath = 256,        ///< the outputs cannot be added
  LackComplementOutput = 512,   ///< there is no complement output
  LackVxiSource = 1024,         ///< the source of the VXI trigger line is fixed
  LackVxiLine = 2048,           ///< no VXI trigger line can be driven
  LackVxiArming = 4096,         ///< VXI trigger lines cannot arm
  LackFreeLeadingEdge = 16384,  ///< the leading edge has two fixed values
};

/// Every bit that a model may lack.
inline constexpr Long AllLacks = LackSeparateEdges | LackOutputImpedance | LackLoadCompensation | LackChannelMath |
                                 LackComplementOutput | LackVxiSource | LackVxiLine | LackVxiArming |
                                 LackFreeLeadingEdge;

}  // namespace tarvik::simulator
