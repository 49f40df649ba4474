#include "scpi/simulator/Device.h"

namespace tarvik::scpisim {

namespace {

// Bits of the operation and of the questionable status, SCPI-99 volume 2, 20.1 and 20.3.
constexpr std::uint16_t Calibrating = 0x0001, WaitingForArm = 0x0040;
constexpr std::uint16_t VoltageQuestionable = 0x0001, TimeQuestionable = 0x0004, OtherQuestionable = 0x0200;

/// The model sleeps through self test and calibration. Here nobody may sleep: the time is kept apart.
simulator::InstrumentDescription WithoutDelays(simulator::InstrumentDescription description) {
  description.lngSelfTestDelay = 0;
  description.lngCalibrationDelay = 0;
  return description;
}

/// The range of each value was checked when it was read. What is out of range now has come of several settings: volts
/// that became amperes, an offset with an amplitude.
simulator::ScpiError AsConflict(simulator::ScpiError error) {
  if (error.lngNumber != ScpiDataOutOfRange) return error;
  const std::string strRange = std::string(StandardText(ScpiDataOutOfRange)) + ": ";
  if (error.strText.starts_with(strRange))
    error.strText.replace(0, strRange.size(), std::string(StandardText(ScpiSettingsConflict)) + ": ");
  error.lngNumber = ScpiSettingsConflict;
  return error;
}

std::uint16_t QuestionableBit(Long lngWarning) {
  switch (lngWarning) {
    case 101:
    case 102: return TimeQuestionable;
    case 103: return VoltageQuestionable;
    default: return OtherQuestionable;
  }
}

}  // namespace

Device::Device(const simulator::InstrumentDescription &description)
    : m_description(description), m_instrument(WithoutDelays(description)) {
  for (const simulator::ScpiError &error : m_instrument.TakeErrors()) status.Report(error);
  UpdateConditions();
}

void Device::Apply(const std::vector<simulator::Change> &arrChanges) {
  try {
    m_instrument.Apply(arrChanges);
  } catch (const simulator::Rejected &rejected) {
    for (const simulator::ScpiError &error : rejected.Errors()) status.Report(AsConflict(error));
  }
  UpdateConditions();
}

void Device::Reset() {
  m_instrument.Reset();
  UpdateConditions();
}

Long Device::SelfTest() {
  BusyFor(m_description.lngSelfTestDelay);
  const Integer intCode = m_instrument.SelfTest().first;
  for (const simulator::ScpiError &error : m_instrument.TakeErrors()) status.Report(error);
  return intCode;
}

void Device::Calibrate() {
  BusyFor(m_description.lngCalibrationDelay);
  const std::uint16_t intCondition = status.operation.Condition();
  status.operation.SetCondition(static_cast<std::uint16_t>(intCondition | Calibrating));
  status.operation.SetCondition(intCondition);
}

void Device::Save(std::size_t lngMemory) { m_arrMemories.at(lngMemory) = CurrentSettings(); }

void Device::Recall(std::size_t lngMemory) {
  Apply({[&stored = m_arrMemories.at(lngMemory)](simulator::Settings &settings) { settings = stored; }});
}

void Device::BusyFor(Long lngMilliseconds) { m_busyUntil = Clock::now() + std::chrono::milliseconds(lngMilliseconds); }

void Device::UpdateConditions() {
  const bool fWaits = CurrentSettings().mode.lngTriggerMode != eTriggerContinuous;
  status.operation.SetCondition(fWaits ? WaitingForArm : 0);
  std::uint16_t intQuestionable = 0;
  for (const simulator::ScpiError &warning : Warnings()) intQuestionable |= QuestionableBit(warning.lngNumber);
  status.questionable.SetCondition(intQuestionable);
}

}  // namespace tarvik::scpisim
