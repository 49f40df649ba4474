#pragma once

/// The values that go over the driver's interface, and the words for hosts.
///
/// The interface and the records carry all of them as Long: they are the driver's, and one that is not listed here
/// passes as it is.

#include "support/Types.h"

namespace tarvik {

/// How pulses are started.
enum TriggerMode : Long {
  eTriggerContinuous = 0,
  eTriggerTriggered = 1,
  eTriggerGated = 2,
  eTriggerExtWidth = 3,  ///< width and period follow the external input
};

/// What one trigger makes.
enum PulseMode : Long {
  ePulseStream = 0,
  ePulseBurst = 1,
  ePulsePattern = 2,
};

/// Pulses of a channel outside of pattern mode.
enum PulseType : Long {
  eTypeSingle = 1,
  eTypeDouble = 2,
};

/// Bits of a channel in pattern mode.
enum SignalFormat : Long {
  eFormatNrz = 0,  ///< non-return to zero
  eFormatRz = 1,   ///< return to zero
};

/// What makes the period.
enum PeriodSource : Long {
  eSourceOscillator = 0,
  eSourcePll = 1,
  eSourceClkIn = 2,
};

/// Active edge of the clock input or of arming; for a gate the active level.
enum Slope : Long {
  eSlopeFalling = 0,  ///< low level
  eSlopeRising = 1,   ///< high level
  eSlopeBoth = 2,     ///< arming only; for a gate: always open
};

/// A VXI trigger line, as an arming source and as an output.
enum VxiLine : Long {
  eVxiEclt0 = 5,
  eVxiEclt1 = 6,
  eVxiTtlt0 = 7,  ///< TTLT 0 to 7 run on from here
  eVxiTtlt7 = 14,
};

/// What arms a trigger or opens a gate; every VxiLine does as well.
enum ArmingSource : Long {
  eArmPll = 1,
  eArmExternal = 3,
  eArmManual = 4,
};

/// How a period or frequency of the PLL is to be read.
enum PllFormat : Long {
  ePllPeriod = 0,     ///< seconds
  ePllFrequency = 1,  ///< hertz
};

/// What a mode setter is sent for a selector that has no choice in that mode: the instrument keeps its own.
enum KeptSelector : Long {
  eKeepArmingSource = 0,
  eKeepSlope = 3,
  eKeepPllFormat = 3,
};

/// Where the reference of the PLL comes from.
enum PllReferenceSource : Long {
  ePllRefClkIn = 0,
  ePllRefInternal = 1,
};

/// How the two levels of a channel are to be read.
enum OutputLevel : Long {
  eLevelOffsetAmplitude = 0,
  eLevelHighLow = 1,
};

/// Unit of the two levels of a channel.
enum OutputType : Long {
  eTypeVoltage = 0,
  eTypeCurrent = 1,
};

/// Polarity of a channel's output.
enum OutputPolarity : Long {
  ePolarityNormal = 0,
  ePolarityComplement = 1,
};

/// Channel arithmetic, one for the instrument.
enum ChannelMath : Long {
  eMathSeparate = 0,
  eMathAdded = 1,  ///< both outputs added at output 1
};

/// Whether the trailing edge follows the leading edge.
enum EdgeCoupling : Long {
  eEdgesIndependent = 0,
  eEdgesCoupled = 1,
};

/// The auxiliary outputs.
enum AuxOutput : Long {
  eOutTrigger = 1,
  eOutStrobe = 2,
};

/// Level family of an auxiliary output.
enum OutLevel : Long {
  eOutLevelTTL = 0,
  eOutLevelECL = 1,
};

/// What goes to the VXI trigger line.
enum VxiTriggerSource : Long {
  eVxiSourceTrigger = 1,
  eVxiSourceStrobe = 2,
};

/// Rows of the pattern memory.
enum PatternRowNumber : Long {
  ePatternChan1 = 1,
  ePatternChan2 = 2,
  ePatternStrobe = 3,
};

/// Bits of the capability mask that a driver tells; a set bit means that the model lacks the thing.
enum Functionality : Long {
  eLacksTrailingEdge = 4,  ///< the trailing edge always follows the leading edge
  eLacksImpedance = 64,
  eLacksLoadCompensation = 128,
  eLacksChannelMath = 256,
  eLacksComplement = 512,
  eLacksVxiSource = 1024,
  eLacksVxiEnable = 2048,
  eLacksVxiLines = 4096,  ///< the VXI trigger lines as arming sources
  eLacksAnyVxi = eLacksVxiSource | eLacksVxiEnable | eLacksVxiLines,
  eLacksFreeLeadingEdge = 16384,  ///< the leading edge has two fixed values
};

/// Every bit that has a meaning.
inline constexpr Long AllFunctionality = eLacksTrailingEdge | eLacksImpedance | eLacksLoadCompensation |
                                         eLacksChannelMath | eLacksComplement | eLacksAnyVxi | eLacksFreeLeadingEdge;

/// What an entry of the instrument list is. Entries of other kinds are as a box: a logical address and nothing more.
enum InstrKind : Integer {
  eKindBox = 1,
  eKindSlot = 2,
  eKindSlotOnController = 3,
};

/// Whether entries of the kind have a slot and a model code.
constexpr bool IsSlotKind(Integer intKind) { return intKind == eKindSlot || intKind == eKindSlotOnController; }

/// Commands of clsInstrInterface that have no settings.
enum InstrCommands : Long {
  ICReset = 0,      ///< default state of the instrument
  ICSelftest = 1,   ///< self test; hands back its text
  ICCalibrate = 2,  ///< calibration; returns when it ends
  ICRefresh = 3,    ///< new search of the driver; needs a connection only
  ICOptions = 4,    ///< hands back the option text
};

/// How the two level fields of a channel are to be read, and where their values come from.
enum LevelFormatEnum : Long {
  eFormatTTL = 0,         ///< high and low, at the levels of TTL
  eFormatHighLow = 1,     ///< high and low
  eFormatOffsetAmpl = 2,  ///< offset and amplitude
  eFormatECL = 3,         ///< high and low, at the levels of ECL
};

/// Which of the values that depend on one another keeps what it has. For hosts with timing rules of their own; the
/// panel's precedence is fixed.
enum PeriodPrecedence : Long {
  ePrePeriod = 0,
  ePreFrequency = 1,
  ePreWidth = 2,
  ePreDelay = 3,
};

}  // namespace tarvik
