#include "simulator/model/SimulatedInstrument.h"

#include <chrono>
#include <thread>

#include "simulator/model/Validation.h"

namespace tarvik::simulator {

namespace {

constexpr std::size_t QueueLength = 32;

// Zero, a negative number and what is no number go through to the range check.
Double EdgeOf(Double dblEdge) { return dblEdge > 0 && dblEdge < FastestEdge ? FastestEdge : dblEdge; }

/// An edge below the fastest one is the fastest one: that is what the output stage makes of it.
void LimitEdges(Settings &settings) {
  for (const Long lngChannel : {1, 2}) {
    ChannelTiming &timing = settings.timing[lngChannel];
    timing.dblLeading = EdgeOf(timing.dblLeading);
    timing.dblTrailing = EdgeOf(timing.dblTrailing);
  }
}

void Wait(Long lngMilliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(lngMilliseconds)); }

}  // namespace

SimulatedInstrument::SimulatedInstrument(InstrumentDescription description)
    : m_description(std::move(description)),
      m_arrErrors(m_description.arrErrors),
      m_arrLastingWarnings(m_description.arrWarnings) {}

Settings SimulatedInstrument::CurrentSettings() {
  const std::lock_guard lock(m_mutex);
  return m_settings;
}

PatternRow SimulatedInstrument::CurrentPattern(Long lngRow) {
  return CurrentSettings().RowInForce(lngRow, m_description);
}

void SimulatedInstrument::Apply(const std::vector<Change> &arrChanges) {
  const std::lock_guard lock(m_mutex);
  Settings settings = m_settings;
  std::vector<ScpiError> arrErrors;
  for (const Change &change : arrChanges) {
    try {
      change(settings);
    } catch (const Rejected &rejected) {
      arrErrors.insert(arrErrors.end(), rejected.Errors().begin(), rejected.Errors().end());
    }
  }
  LimitEdges(settings);
  const std::vector<ScpiError> arrViolations = Violations(settings, m_description);
  arrErrors.insert(arrErrors.end(), arrViolations.begin(), arrViolations.end());
  if (!arrErrors.empty()) throw Rejected(std::move(arrErrors));
  m_settings = settings;
}

void SimulatedInstrument::Reset() {
  const std::lock_guard lock(m_mutex);
  m_settings = Settings{};
  m_arrLastingWarnings.clear();
}

std::pair<Integer, std::string> SimulatedInstrument::SelfTest() {
  Wait(m_description.lngSelfTestDelay);
  if (m_description.intSelfTestCode != 0)
    Report({ScpiSelfTestFailed, "Self-test failed: " + m_description.strSelfTestText, {}});
  return {m_description.intSelfTestCode, m_description.strSelfTestText};
}

void SimulatedInstrument::Calibrate() { Wait(m_description.lngCalibrationDelay); }

void SimulatedInstrument::Report(const ScpiError &error) {
  const std::lock_guard lock(m_mutex);
  if (m_arrErrors.size() < QueueLength)
    m_arrErrors.push_back(error);
  else
    m_arrErrors.back() = {ScpiQueueOverflow, "Queue overflow", {}};
}

std::vector<ScpiError> SimulatedInstrument::TakeErrors() {
  const std::lock_guard lock(m_mutex);
  return std::exchange(m_arrErrors, {});
}

std::vector<ScpiError> SimulatedInstrument::Warnings() {
  const std::lock_guard lock(m_mutex);
  std::vector<ScpiError> arrWarnings = m_arrLastingWarnings;
  const std::vector<ScpiError> arrConditions = ConditionWarnings(m_settings, m_description);
  arrWarnings.insert(arrWarnings.end(), arrConditions.begin(), arrConditions.end());
  return arrWarnings;
}

}  // namespace tarvik::simulator
