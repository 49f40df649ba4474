#pragma once

/// The contract of the instrument driver: what is called on it, in the order of its binary interface.
///
/// Each interface is a dual automation interface: the three counting operations, the four dispatch operations,
/// then the operations below, top to bottom. Places that this system never calls are kept, so that the binary
/// interface fits; in a driver they answer "not implemented".
///
/// Every operation returns a status; below zero it is a failure and fills nothing, and the driver may leave a
/// description (ErrorInfo.h). Values come back through the last arguments. What a call hands out, objects and
/// strings, belongs to the caller; instrument state lives in the driver whoever holds its objects. Truth values
/// are 0 and -1. Enumerated values are Long and pass uninterpreted; the comments name their types, which stand in
/// Vocabulary.h. Times are in seconds, frequencies in hertz,
/// voltages in volts, currents in amperes, impedances in ohms. All calls are synchronous and come from the one
/// thread that owns the connection.

#include "automation/Abi.h"
#include "instrument/Vocabulary.h"
#include "support/Types.h"

namespace tarvik::kolven {

using automation::AutomationArray;
using automation::AutomationString;
using automation::AutomationVariant;
using automation::Guid;
using automation::IDispatch;
using automation::Status;
using automation::StatusNotImplemented;
using automation::VariantBool;

/// The class that every driver registers.
inline constexpr const char *DriverProgId = "KolvenAtl.Kolven";

/// Commands of IInstrument::Transaction.
enum TransactionCommand : Long {
  TransactionBegin = 0,
  TransactionCommit = 1,
  TransactionAbort = 2,
};
/// The one packing of pattern bits in use.
inline constexpr Long PatternForm = 2;

/// The reference of the phase-locked loop.
class IPllReference : public IDispatch {
 public:
  static constexpr Guid Iid{0xC66BF399, 0x8B0F, 0x898B, {0xBD, 0x5C, 0x11, 0x2D, 0x71, 0xF7, 0x5D, 0x0F}};

  /// Frequency in hertz, and a PllReferenceSource.
  virtual Status TARVIK_CALL GetReference(Double *pFreq, Long *pSource) = 0;
  /// Sets both; the driver may write back the frequency it took.
  virtual Status TARVIK_CALL SetReference(Double *pFreq, Long source) = 0;

 protected:
  ~IPllReference() = default;
};

/// The pattern memory. A channel is a PatternRowNumber, a form PatternForm. Arrays stay the caller's.
class IPatternMemory : public IDispatch {
 public:
  static constexpr Guid Iid{0x6262E42D, 0x075A, 0x8A29, {0xAB, 0x89, 0x07, 0x5F, 0x41, 0xF5, 0x2C, 0xDD}};

  /// Fills the addresses with a pseudo-random sequence of period 2^base - 1.
  virtual Status TARVIK_CALL CalcPrbs(Long startAddr, Long lastAddr, Long base, AutomationArray **ppArray) = 0;
  /// Writes `length` bits, first address in the highest bit of the first byte.
  virtual Status TARVIK_CALL SetPattern(Long channel, Long form, AutomationArray **ppArray, Long length) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  /// Reads the row; the driver may resize the array.
  virtual Status TARVIK_CALL GetPattern(Long channel, Long form, AutomationArray **ppArray, Long *pLength) = 0;

 protected:
  ~IPatternMemory() = default;
};

/// Trigger output, strobe output and VXI trigger. What is addressed is an AuxOutput.
class IAuxOutputs : public IDispatch {
 public:
  static constexpr Guid Iid{0xCEB671AA, 0xCDD2, 0x836F, {0x86, 0x66, 0xB8, 0xB4, 0xA7, 0x84, 0x92, 0x5C}};

  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  /// Its OutLevel.
  virtual Status TARVIK_CALL GetOutLevel(Long which, Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetOutLevel(Long which, Long value) = 0;
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  /// What goes to the VXI trigger line, a VxiTriggerSource.
  virtual Status TARVIK_CALL GetVxiSource(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetVxiSource(Long value) = 0;
  /// The VxiLine that is driven.
  virtual Status TARVIK_CALL GetVxiLine(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetVxiLine(Long value) = 0;

 protected:
  ~IAuxOutputs() = default;
};

/// The external input: impedance in ohms, threshold in volts.
class IExtInput : public IDispatch {
 public:
  static constexpr Guid Iid{0xD74C30D3, 0x107F, 0x8304, {0xB2, 0x38, 0x4B, 0xD5, 0x88, 0x25, 0x71, 0x06}};

  /// Input impedance.
  virtual Status TARVIK_CALL GetImpedance(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetImpedance(Double value) = 0;
  /// Threshold.
  virtual Status TARVIK_CALL GetThreshold(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetThreshold(Double value) = 0;

 protected:
  ~IExtInput() = default;
};

/// The clock input: impedance in ohms, threshold in volts.
class IClockInput : public IDispatch {
 public:
  static constexpr Guid Iid{0x224FA3A9, 0xC41C, 0x8EF9, {0xA4, 0x86, 0x5D, 0x45, 0x52, 0x93, 0xA6, 0xFC}};

  /// Input impedance.
  virtual Status TARVIK_CALL GetImpedance(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetImpedance(Double value) = 0;
  /// The active edge, a Slope.
  virtual Status TARVIK_CALL GetSlope(Long *pValue) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  /// Threshold.
  virtual Status TARVIK_CALL GetThreshold(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetThreshold(Double value) = 0;

 protected:
  ~IClockInput() = default;
};

/// What arms a trigger or a gate.
class IArmSource : public IDispatch {
 public:
  static constexpr Guid Iid{0x41A630AA, 0xEED0, 0x8EF9, {0xB2, 0x5E, 0x9F, 0xEA, 0x1D, 0xE3, 0x8F, 0xAE}};

  /// Frequency of the internal PLL as arming source, hertz.
  virtual Status TARVIK_CALL GetPllFrequency(Double *pValue) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved5() { return StatusNotImplemented; }
  /// The Slope or gate level that arms.
  virtual Status TARVIK_CALL GetSlope(Long *pValue) = 0;
  virtual Status TARVIK_CALL Reserved6() { return StatusNotImplemented; }
  /// An ArmingSource or a VxiLine.
  virtual Status TARVIK_CALL GetSource(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetSource(Long value) = 0;

 protected:
  ~IArmSource() = default;
};

/// The trigger system.
class ITriggerSystem : public IDispatch {
 public:
  static constexpr Guid Iid{0x9E7D9406, 0x16A6, 0x855F, {0xAB, 0x5B, 0x4B, 0x86, 0xBC, 0x23, 0x7A, 0xD9}};

  /// The arming block.
  virtual Status TARVIK_CALL GetArmSource(IArmSource **ppObject) = 0;
  /// The clock input.
  virtual Status TARVIK_CALL GetClockInput(IClockInput **ppObject) = 0;
  /// Pulses in a burst.
  virtual Status TARVIK_CALL GetBurstLength(Long *pValue) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  /// The external input.
  virtual Status TARVIK_CALL GetExtInput(IExtInput **ppObject) = 0;
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  /// The TriggerMode.
  virtual Status TARVIK_CALL GetTriggerMode(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetTriggerMode(Long value) = 0;
  /// Trigger output, strobe output and VXI.
  virtual Status TARVIK_CALL GetAuxOutputs(IAuxOutputs **ppObject) = 0;
  /// The PeriodSource.
  virtual Status TARVIK_CALL GetPeriodSource(Long *pValue) = 0;

 protected:
  ~ITriggerSystem() = default;
};

/// Puts the instrument into one combination of trigger mode and pulse mode in a single call.
/// pllFormat, a PllFormat, tells how pllPeriodOrFreq is to be read. A selector without a choice in the mode is sent as
/// KeptSelector has it.
class IModeSetup : public IDispatch {
 public:
  static constexpr Guid Iid{0xB41DC108, 0x915A, 0x8ABF, {0x96, 0xF0, 0x79, 0xBF, 0x31, 0xD3, 0x0C, 0x9F}};

  /// Bursts one after the other.
  virtual Status TARVIK_CALL SetContinuousBurst(Long burstLength, Long periodSource, Long triggerSlope) = 0;
  /// The pattern over and over.
  virtual Status TARVIK_CALL SetContinuousPattern(Long periodSource, Long triggerSlope) = 0;
  /// Pulses without end.
  virtual Status TARVIK_CALL SetContinuousPulses(Long periodSource, Long triggerSlope) = 0;
  /// Bursts while the gate is open.
  virtual Status TARVIK_CALL SetGatedBurst(Long burstLength, Long periodSource, Long triggerSlope, Long armingSource,
                                           Long armSlope) = 0;
  /// The pattern while the gate is open.
  virtual Status TARVIK_CALL SetGatedPattern(Long periodSource, Long triggerSlope, Long armingSource,
                                             Long armSlope) = 0;
  /// Pulses while the gate is open.
  virtual Status TARVIK_CALL SetGatedPulses(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope) = 0;
  /// One burst a trigger.
  virtual Status TARVIK_CALL SetTriggeredBurst(Long burstLength, Long periodSource, Long triggerSlope,
                                               Long armingSource, Long armSlope, Long pllFormat,
                                               Double pllPeriodOrFreq) = 0;
  /// One pattern a trigger.
  virtual Status TARVIK_CALL SetTriggeredPattern(Long periodSource, Long triggerSlope, Long armingSource, Long armSlope,
                                                 Long pllFormat, Double pllPeriodOrFreq) = 0;
  /// One pulse a trigger.
  virtual Status TARVIK_CALL SetTriggeredPulses(Long armingSource, Long armSlope) = 0;

 protected:
  ~IModeSetup() = default;
};

/// Levels and output switches of a channel.
class IChannelLevels : public IDispatch {
 public:
  static constexpr Guid Iid{0x51000F37, 0x3755, 0x8EC5, {0xB9, 0xEF, 0x26, 0x41, 0x2C, 0x12, 0x2E, 0x5D}};

  /// Whether the complement output is on.
  virtual Status TARVIK_CALL GetComplementOutput(VariantBool *pValue) = 0;
  /// Switches it.
  virtual Status TARVIK_CALL SetComplementOutput(VariantBool on) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  /// Load compensation, ohms.
  virtual Status TARVIK_CALL GetLoadCompensation(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetLoadCompensation(Double value) = 0;
  /// Output impedance, ohms.
  virtual Status TARVIK_CALL GetImpedance(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetImpedance(Double value) = 0;
  /// Whether the normal output is on.
  virtual Status TARVIK_CALL GetOutput(VariantBool *pValue) = 0;
  /// Switches it.
  virtual Status TARVIK_CALL SetOutput(VariantBool on) = 0;
  /// The OutputPolarity.
  virtual Status TARVIK_CALL GetPolarity(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetPolarity(Long value) = 0;
  /// Levels in the format asked for, an OutputLevel; the type is an OutputType.
  virtual Status TARVIK_CALL GetLevel(Long format, Long *pType, Double *pAmplOrHigh, Double *pOffsetOrLow) = 0;
  /// Sets both levels at once.
  virtual Status TARVIK_CALL SetLevel(Long format, Long type, Double amplOrHigh, Double offsetOrLow) = 0;

 protected:
  ~IChannelLevels() = default;
};

/// The delay block in effect for a double pulse. Selectors are 0 on entry; times in seconds.
class IDoublePulse : public IDispatch {
 public:
  static constexpr Guid Iid{0x9EF7540C, 0x0142, 0x8926, {0xA8, 0xFE, 0x38, 0x2C, 0xFA, 0xD9, 0xE9, 0xE9}};

  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  /// Whether the channel makes a double pulse.
  virtual Status TARVIK_CALL GetEnabled(VariantBool *pValue) = 0;
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved5() { return StatusNotImplemented; }
  /// Delay of the second pulse.
  virtual Status TARVIK_CALL GetDelay(Long *pSelector, Double *pValue) = 0;
  /// Sets it, and makes the channel a double-pulse channel.
  virtual Status TARVIK_CALL SetDelay(Long *pSelector, Double value) = 0;

 protected:
  ~IDoublePulse() = default;
};

/// The delay block in effect for a single pulse. Selectors are 0 on entry; times in seconds.
class ISinglePulse : public IDispatch {
 public:
  static constexpr Guid Iid{0x029BEA21, 0xEA17, 0x80A1, {0xB4, 0x5F, 0xC4, 0x59, 0x2D, 0x34, 0x7B, 0x86}};

  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  /// Delay of the pulse.
  virtual Status TARVIK_CALL GetDelay(Long *pSelector, Double *pValue) = 0;
  /// Sets it, and makes the channel a single-pulse channel.
  virtual Status TARVIK_CALL SetDelay(Long *pSelector, Double value) = 0;

 protected:
  ~ISinglePulse() = default;
};

/// The edges of a channel. Selectors are 0 on entry; times in seconds.
class IEdges : public IDispatch {
 public:
  static constexpr Guid Iid{0xCCE5C1EE, 0xC48B, 0x8932, {0x87, 0xAC, 0xDA, 0xC6, 0x96, 0xA6, 0xC2, 0xD0}};

  /// Not eEdgesIndependent when the trailing edge follows the leading edge.
  virtual Status TARVIK_CALL GetCoupling(Long *pValue) = 0;
  /// An EdgeCoupling.
  virtual Status TARVIK_CALL SetCoupling(Long value) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  /// Leading edge.
  virtual Status TARVIK_CALL GetLeading(Long *pSelector, Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetLeading(Long *pSelector, Double value) = 0;
  /// Trailing edge.
  virtual Status TARVIK_CALL GetTrailing(Long *pSelector, Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetTrailing(Long *pSelector, Double value) = 0;

 protected:
  ~IEdges() = default;
};

/// Timing of a channel; times in seconds.
class IChannelTiming : public IDispatch {
 public:
  static constexpr Guid Iid{0x5251FD92, 0x84E9, 0x8D06, {0xB5, 0xE3, 0xF1, 0x4E, 0xF1, 0xDB, 0xBA, 0x2D}};

  /// The block whose delay makes a single pulse.
  virtual Status TARVIK_CALL GetSinglePulse(ISinglePulse **ppObject) = 0;
  /// The block whose delay makes a double pulse.
  virtual Status TARVIK_CALL GetDoublePulse(IDoublePulse **ppObject) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  /// Pulse frequency in hertz, one for the whole instrument.
  virtual Status TARVIK_CALL GetFrequency(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetFrequency(Double value) = 0;
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved5() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved6() { return StatusNotImplemented; }
  /// The edge block.
  virtual Status TARVIK_CALL GetEdges(IEdges **ppObject) = 0;
  /// The PulseType.
  virtual Status TARVIK_CALL GetPulseType(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetPulseType(Long value) = 0;
  /// Pulse width.
  virtual Status TARVIK_CALL GetWidth(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetWidth(Double value) = 0;

 protected:
  ~IChannelTiming() = default;
};

/// High and low limit of one quantity (volts or amperes). The switch is one for the channel.
class ILimitPair : public IDispatch {
 public:
  static constexpr Guid Iid{0x54BABF44, 0xD385, 0x815B, {0x92, 0xF4, 0xE9, 0x9B, 0xBB, 0x4E, 0xA8, 0x64}};

  /// Whether limits are in force; read on the voltage pair.
  virtual Status TARVIK_CALL GetEnabled(VariantBool *pValue) = 0;
  /// Turns them on or off; written on the current pair.
  virtual Status TARVIK_CALL SetEnabled(VariantBool enable) = 0;
  /// High limit.
  virtual Status TARVIK_CALL GetHigh(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetHigh(Double value) = 0;
  /// Low limit.
  virtual Status TARVIK_CALL GetLow(Double *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetLow(Double value) = 0;

 protected:
  ~ILimitPair() = default;
};

/// The limits of one quantity of a channel; voltage and current have one each.
class ILimitGroup : public IDispatch {
 public:
  static constexpr Guid Iid{0x059D263A, 0x6190, 0x880B, {0xB2, 0x4D, 0xB6, 0x6E, 0x96, 0xC0, 0x46, 0xF8}};

  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  /// The limit block of this group.
  virtual Status TARVIK_CALL GetLimits(ILimitPair **ppObject) = 0;

 protected:
  ~ILimitGroup() = default;
};

/// One output channel.
class IChannel : public IDispatch {
 public:
  static constexpr Guid Iid{0x623E3BAA, 0x708C, 0x8AE5, {0x87, 0x4B, 0xBC, 0xF9, 0xC6, 0xBD, 0xF9, 0x7F}};

  /// The current limits.
  virtual Status TARVIK_CALL GetCurrentLimits(ILimitGroup **ppObject) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  /// The levels block as a generic reference, to be narrowed to IChannelLevels.
  virtual Status TARVIK_CALL GetLevels(IDispatch **ppObject) = 0;
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  /// The timing block.
  virtual Status TARVIK_CALL GetTiming(IChannelTiming **ppObject) = 0;
  /// The SignalFormat of patterns.
  virtual Status TARVIK_CALL GetSignalFormat(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetSignalFormat(Long value) = 0;
  /// The voltage limits.
  virtual Status TARVIK_CALL GetVoltageLimits(ILimitGroup **ppObject) = 0;

 protected:
  ~IChannel() = default;
};

/// The channels of an instrument.
class IChannelList : public IDispatch {
 public:
  static constexpr Guid Iid{0x380B4FDD, 0x55D3, 0x8681, {0x88, 0x49, 0x19, 0x04, 0x85, 0xB5, 0x93, 0x6C}};

  /// 1 or 2.
  virtual Status TARVIK_CALL GetCount(Long *pValue) = 0;
  /// The channel, counted from 1; another index fails.
  virtual Status TARVIK_CALL GetItem(Long index, IChannel **ppObject) = 0;

 protected:
  ~IChannelList() = default;
};

/// Errors and warnings of a session. Texts are entries separated by ";", possibly quoted.
class IErrorQueue : public IDispatch {
 public:
  static constexpr Guid Iid{0x5DD99C43, 0xE782, 0x8D35, {0x83, 0xAD, 0x14, 0x25, 0x92, 0x27, 0x43, 0x2E}};

  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  /// The pending errors, each returned once; empty when there are none.
  virtual Status TARVIK_CALL GetErrors(AutomationString *pValue) = 0;
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved5() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved6() { return StatusNotImplemented; }
  /// Whether the driver words its error text at length.
  virtual Status TARVIK_CALL GetVerbose(VariantBool *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetVerbose(VariantBool enable) = 0;
  /// The pending warnings; the same text may come back while the condition lasts.
  virtual Status TARVIK_CALL GetWarnings(AutomationString *pValue) = 0;

 protected:
  ~IErrorQueue() = default;
};

/// What this model lacks.
class IRestrictions : public IDispatch {
 public:
  static constexpr Guid Iid{0xF05C1AA2, 0x52DD, 0x84FD, {0xB5, 0x53, 0x6F, 0x74, 0xB5, 0x8D, 0x9C, 0x4C}};

  /// The capability mask, a sum of Functionality bits.
  virtual Status TARVIK_CALL GetMask(Long *pValue) = 0;

 protected:
  ~IRestrictions() = default;
};

/// One instrument. Operations below Open are for an open session unless told otherwise.
class IInstrument : public IDispatch {
 public:
  static constexpr Guid Iid{0x1B6ED75A, 0x5CB6, 0x8D36, {0x89, 0x8A, 0x2F, 0x49, 0xEA, 0xA6, 0x75, 0x38}};

  /// Writes the information record (viInfo.h) into the caller's array of 28 bytes; needs no open session.
  virtual Status TARVIK_CALL GetViInfo(AutomationArray **ppBuffer) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  /// The driver's own error detection after each access.
  virtual Status TARVIK_CALL SetAutoDetectErrors(VariantBool enable) = 0;
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved4() { return StatusNotImplemented; }
  /// Runs the calibration and returns when it ends.
  virtual Status TARVIK_CALL Calibrate() = 0;
  /// The ChannelMath.
  virtual Status TARVIK_CALL GetChannelMath(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetChannelMath(Long value) = 0;
  /// The channels.
  virtual Status TARVIK_CALL GetChannels(IChannelList **ppObject) = 0;
  /// Ends the session; an open transaction is dropped.
  virtual Status TARVIK_CALL Close() = 0;
  virtual Status TARVIK_CALL Reserved5() { return StatusNotImplemented; }
  /// Errors and warnings of this session.
  virtual Status TARVIK_CALL GetErrorQueue(IErrorQueue **ppObject) = 0;
  virtual Status TARVIK_CALL Reserved6() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved7() { return StatusNotImplemented; }
  /// At least four comma-separated fields: maker, product, serial number, system version.
  virtual Status TARVIK_CALL GetIdentity(AutomationString *pValue) = 0;
  virtual Status TARVIK_CALL Reserved8() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved9() { return StatusNotImplemented; }
  /// Whether a transaction is open on this session; the first value is the driver's own.
  virtual Status TARVIK_CALL GetTransactionState(Integer *pFirst, VariantBool *pIsOpen) = 0;
  virtual Status TARVIK_CALL Reserved10() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved11() { return StatusNotImplemented; }
  /// The setters of trigger and pulse mode.
  virtual Status TARVIK_CALL GetModeSetup(IModeSetup **ppObject) = 0;
  /// The name by which the list finds it; needs no open session.
  virtual Status TARVIK_CALL GetName(AutomationString *pValue) = 0;
  /// Opens the session. Not opened is a normal answer and no failure.
  virtual Status TARVIK_CALL Open(VariantBool idQuery, VariantBool reset, VariantBool autoDetectErrors,
                                  VariantBool *pOpened) = 0;
  /// The option text.
  virtual Status TARVIK_CALL GetOptions(AutomationString *pValue) = 0;
  virtual Status TARVIK_CALL Reserved12() { return StatusNotImplemented; }
  /// The pattern memory.
  virtual Status TARVIK_CALL GetPatternMemory(IPatternMemory **ppObject) = 0;
  virtual Status TARVIK_CALL Reserved13() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved14() { return StatusNotImplemented; }
  /// The reference of the PLL.
  virtual Status TARVIK_CALL GetPllReference(IPllReference **ppObject) = 0;
  /// The PulseMode; the selector is 0 on entry.
  virtual Status TARVIK_CALL GetPulseMode(Long *pSelector, Long *pValue) = 0;
  virtual Status TARVIK_CALL Reserved15() { return StatusNotImplemented; }
  /// Puts the instrument in its default state.
  virtual Status TARVIK_CALL Reset() = 0;
  /// The capability mask.
  virtual Status TARVIK_CALL GetRestrictions(IRestrictions **ppObject) = 0;
  virtual Status TARVIK_CALL Reserved16() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved17() { return StatusNotImplemented; }
  /// Runs the self test; the text tells the user how it went.
  virtual Status TARVIK_CALL SelfTest(Integer *pCode, AutomationString *pText) = 0;
  virtual Status TARVIK_CALL Reserved18() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved19() { return StatusNotImplemented; }
  /// The driver's communication time-out, milliseconds.
  virtual Status TARVIK_CALL GetPnpTimeout(Long *pValue) = 0;
  /// Sets it.
  virtual Status TARVIK_CALL SetPnpTimeout(Long value) = 0;
  /// A TransactionCommand. A failing commit is how a rejected set of settings comes back;
  /// after a commit or an abort no transaction is open.
  virtual Status TARVIK_CALL Transaction(Long command) = 0;
  /// The trigger system.
  virtual Status TARVIK_CALL GetTriggerSystem(ITriggerSystem **ppObject) = 0;

 protected:
  ~IInstrument() = default;
};

/// The instruments that the driver knows on its connection.
class IInstrumentList : public IDispatch {
 public:
  static constexpr Guid Iid{0xBC6FAB6A, 0xCC0F, 0x87EF, {0xB9, 0x44, 0x70, 0x62, 0x23, 0x51, 0x4D, 0x0D}};

  /// Number of instruments.
  virtual Status TARVIK_CALL GetCount(Long *pValue) = 0;
  /// By name (string) or by number from 1 (16-bit integer): a generic reference, to be narrowed to
  /// IInstrument; not yet open. Nothing, or a failure, when there is none.
  virtual Status TARVIK_CALL GetItem(AutomationVariant key, IDispatch **ppObject) = 0;
  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  /// Searches again.
  virtual Status TARVIK_CALL Refresh() = 0;

 protected:
  ~IInstrumentList() = default;
};

/// The driver on one connection; creating it is connecting.
class IDriverRoot : public IDispatch {
 public:
  static constexpr Guid Iid{0x2A36D5D2, 0x43D3, 0x8736, {0x89, 0x93, 0xAD, 0x20, 0x5F, 0x2A, 0x99, 0xB0}};

  virtual Status TARVIK_CALL Reserved1() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved2() { return StatusNotImplemented; }
  virtual Status TARVIK_CALL Reserved3() { return StatusNotImplemented; }
  /// The list of instruments.
  virtual Status TARVIK_CALL GetInstruments(IInstrumentList **ppObject) = 0;

 protected:
  ~IDriverRoot() = default;
};

}  // namespace tarvik::kolven
