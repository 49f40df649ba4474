#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "common/InstrumentDescription.h"
#include "common/Settings.h"

namespace tarvik::driver {

/// One change of settings. The body may raise Rejected for what it cannot even write down. A change that writes a
/// pattern names its row, so that an instrument far away need not tell the memory it is not asked for.
class Change {
 public:
  template <std::invocable<Settings &> Body>
  Change(Body body, Long lngPatternRow = 0)  // NOLINT(google-explicit-constructor): a body is a change
      : m_body(std::move(body)), m_lngPatternRow(lngPatternRow) {}

  void operator()(Settings &settings) const { m_body(settings); }
  /// A PatternRowNumber, or 0 for a change that writes no pattern.
  Long PatternRow() const { return m_lngPatternRow; }

 private:
  std::function<void(Settings &)> m_body;
  Long m_lngPatternRow;
};

/// What a driver's objects ask of an instrument. It outlives every object and session and may have several sessions;
/// whatever fails without being a refusal raises Failure.
class Instrument {
 public:
  virtual ~Instrument() = default;

  /// What is told of the identity may only be complete while a session is open.
  virtual const InstrumentDescription &Description() const = 0;

  /// A session begins. False when the instrument is there and does not open.
  virtual bool Connect() = 0;
  /// The session for which Connect answered true has ended.
  virtual void Disconnect() = 0;

  /// A copy of the settings in force. Patterns need not be in it.
  virtual Settings CurrentSettings() = 0;
  /// The row in force by its number in the contract; raises Rejected for one that is none.
  virtual PatternRow CurrentPattern(Long lngRow) = 0;

  /// Takes all changes in their order, or none: raises Rejected with every reason.
  virtual void Apply(const std::vector<Change> &arrChanges) = 0;
  virtual void Reset() = 0;

  /// Runs the self test: its code, 0 for passed, and text.
  virtual std::pair<Integer, std::string> SelfTest() = 0;
  /// Returns when the calibration has ended.
  virtual void Calibrate() = 0;

  /// Adds to what TakeErrors hands out.
  virtual void Report(const ScpiError &error) = 0;
  /// Empties the error queue.
  virtual std::vector<ScpiError> TakeErrors() = 0;
  /// The warnings whose conditions hold.
  virtual std::vector<ScpiError> Warnings() = 0;

  /// How long an answer may take, in milliseconds; 0 for the driver's own time-out.
  virtual void SetTimeout(Long lngMilliseconds) = 0;
};

}  // namespace tarvik::driver
