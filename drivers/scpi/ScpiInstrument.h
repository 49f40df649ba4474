#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "common/Instrument.h"
#include "scpi/Profile.h"
#include "scpi/SettingCommand.h"
#include "scpi/Talk.h"

namespace tarvik::scpi {

/// A real instrument. What was read from it is kept for the moment: until something is sent, until nobody has asked for
/// half a second, and at most for two seconds, so that what somebody turned at its front is seen. Settings that the
/// profile has no command for are kept here and answered as they were set.
///
/// Several settings are taken all or none: when the instrument refuses one, or the line fails, those that it has taken
/// are sent back. Where the line does not even let that happen, it is done as soon as the instrument is reached again.
class ScpiInstrument : public driver::Instrument {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// The profile is read by the first session: one that is wrong makes Connect fail and no other instrument.
  using ReadProfile = std::function<Profile()>;

  ScpiInstrument(driver::InstrumentDescription description, ReadProfile readProfile, std::unique_ptr<Talk> talk,
                 Clock clock = &std::chrono::steady_clock::now);

  const driver::InstrumentDescription &Description() const override { return m_description; }
  /// Connects, and asks who is there.
  bool Connect() override;
  void Disconnect() override;

  driver::Settings CurrentSettings() override;
  driver::PatternRow CurrentPattern(Long lngRow) override;
  void Apply(const std::vector<driver::Change> &arrChanges) override;
  void Reset() override;
  std::pair<Integer, std::string> SelfTest() override;
  void Calibrate() override;
  void Report(const driver::ScpiError &error) override;
  std::vector<driver::ScpiError> TakeErrors() override;
  std::vector<driver::ScpiError> Warnings() override;
  void SetTimeout(Long lngMilliseconds) override;

  /// Messages that were sent so far.
  std::size_t Messages() const { return m_talk->Messages(); }

 private:
  using Errors = std::vector<driver::ScpiError>;
  using Rows = std::array<bool, 3>;  ///< by PatternRowNumber - 1

  /// What is known of the instrument for this moment.
  struct Moment {
    std::optional<driver::Settings> settings;
    std::array<std::optional<driver::PatternRow>, 3> arrPattern;
    std::optional<Errors> warnings;
    bool fNoErrors = false;
    std::chrono::steady_clock::time_point began, used;
  };

  /// What has still to be sent back, and what it would replace.
  struct Undo {
    driver::Settings before;
    Rows rows;
  };

  /// Begins an operation: forgets what is too old, and sends back what is still to be sent back.
  void Begin();
  void Forget();

  driver::Settings ReadSettings();
  void Ask(const std::vector<ProfilePlace> &arrPlaces, driver::Settings &settings, std::size_t answerSize);
  const driver::Settings &Known();
  void KnowPatterns(const Rows &rows);
  /// The settings with these rows of the pattern memory.
  driver::Settings WithPatterns(const Rows &rows);

  void Check(const driver::Settings &before, const driver::Settings &after, Errors errors) const;
  void Tell(const driver::Settings &from, const driver::Settings &to);
  /// Sends the settings; raises Rejected or Failure when they are not taken, and puts back what was.
  void Send(const Undo &undo, const driver::Settings &after);
  /// Takes everything out of the instrument's error queue.
  Errors ReadErrors();
  /// Moves the instrument's error queue here.
  void FetchErrors();
  /// Puts the instrument back into the state before. The reason why it is not, empty when it is.
  std::string PutBack(const Undo &undo);
  /// The same, but for an instrument that cannot be reached: that waits until it can.
  std::string TryPutBack(const Undo &undo);
  Long NumberAnswer(const std::string &strQuery);

  driver::InstrumentDescription m_description;
  const ReadProfile m_readProfile;
  const std::unique_ptr<Talk> m_talk;
  const Clock m_clock;
  std::recursive_mutex m_mutex;
  std::size_t m_sessions = 0;
  Profile m_profile;
  driver::Settings m_kept;
  Moment m_moment;
  Errors m_arrErrors;
  std::optional<Undo> m_undo;
};

}  // namespace tarvik::scpi
