#include "scpi/ScpiInstrument.h"

#include <algorithm>
#include <cmath>

#include "scpi/Answer.h"
#include "support/Conversions.h"
#include "support/RunTimeError.h"

namespace tarvik::scpi {

using driver::Failure;
using driver::Rejected;
using driver::ScpiError;
using driver::Settings;

namespace {

using namespace std::chrono_literals;

/// How long what was read stands for the instrument: since it was last asked for, and in all.
constexpr Milliseconds LongestPause = 500ms, LongestMoment = 2s;
/// Entries that are fetched from an error queue, against instruments that never say that it is empty.
constexpr int LongestQueue = 100;
/// Bytes of the answer with the longest pattern.
constexpr std::size_t PatternAnswer = driver::PatternBits / 8 + 16;
constexpr Milliseconds DefaultTimeout = 5s;

ScpiError NotPutBack(const std::string &strWhyNot) { return {-200, "Execution error: " + strWhyNot, {}}; }

std::array<bool, 3> RowsOf(const std::vector<driver::Change> &arrChanges) {
  std::array<bool, 3> rows{};
  for (const driver::Change &change : arrChanges)
    if (const Long lngRow = change.PatternRow(); lngRow >= ePatternChan1 && lngRow <= ePatternStrobe)
      rows[static_cast<std::size_t>(lngRow - 1)] = true;
  return rows;
}

/// An entry of an error queue: `-222,"Data out of range"`. The text may be without quotes.
std::optional<ScpiError> EntryOf(const std::string &strEntry) {
  const std::vector<std::string> arrParts = SplitAnswer(strEntry, ',');
  const auto dblNumber = NumberOf(arrParts.front());
  if (arrParts.size() < 2 || !dblNumber || *dblNumber != std::floor(*dblNumber) || std::abs(*dblNumber) > 1e6)
    return std::nullopt;
  // What is particular to the case stands behind a semicolon.
  const std::string strText = Replace(Unquoted(strEntry.substr(strEntry.find(',') + 1)), ";", ": ");
  return ScpiError{static_cast<Long>(*dblNumber), strText, {}};
}

}  // namespace

ScpiInstrument::ScpiInstrument(driver::InstrumentDescription description, ReadProfile readProfile,
                               std::unique_ptr<Talk> talk, Clock clock)
    : m_description(std::move(description)),
      m_readProfile(std::move(readProfile)),
      m_talk(std::move(talk)),
      m_clock(std::move(clock)) {}

// ---- Sessions ----

bool ScpiInstrument::Connect() {
  const std::lock_guard lock(m_mutex);
  if (m_sessions > 0) {
    ++m_sessions;
    return true;
  }
  try {
    m_profile = m_readProfile();
  } catch (const RunTimeError &error) {
    throw Failure(m_description.strName + ": " + error.Description());
  }
  m_talk->SetLimits(m_profile.limits);
  m_talk->SetTimeout(DefaultTimeout);
  m_description.lngChannels = m_profile.lngChannels;
  m_description.lngMask = m_profile.lngMask;
  m_description.strIdentity = Unquoted(m_talk->Ask("*IDN?"));
  m_description.strOptions.clear();
  if (!m_profile.strOptions.empty()) {
    try {
      m_description.strOptions = Unquoted(m_talk->Ask(m_profile.strOptions));
    } catch (const Failure &) {
      // Many instruments have no such query; what they think of it is nobody's error.
      m_talk->Tell({"*CLS"});
    }
  }
  Forget();
  m_sessions = 1;
  return true;
}

void ScpiInstrument::Disconnect() {
  const std::lock_guard lock(m_mutex);
  if (--m_sessions == 0) m_talk->Close();
}

void ScpiInstrument::SetTimeout(Long lngMilliseconds) {
  const std::lock_guard lock(m_mutex);
  m_talk->SetTimeout(lngMilliseconds > 0 ? Milliseconds(lngMilliseconds) : DefaultTimeout);
}

void ScpiInstrument::Begin() {
  const auto now = m_clock();
  if (now - m_moment.used > LongestPause || now - m_moment.began > LongestMoment) Forget();
  m_moment.used = now;
  if (!m_undo) return;
  const Undo undo = *m_undo;
  const std::string strWhyNot = PutBack(undo);  // fails while the instrument cannot be reached
  m_undo.reset();
  if (!strWhyNot.empty()) m_arrErrors.push_back(NotPutBack(strWhyNot));
}

void ScpiInstrument::Forget() {
  m_moment = {};
  m_moment.began = m_moment.used = m_clock();
}

// ---- Reading ----

void ScpiInstrument::Ask(const std::vector<ProfilePlace> &arrPlaces, Settings &settings, std::size_t answerSize) {
  std::vector<std::string> arrQueries;
  for (const ProfilePlace &place : arrPlaces) arrQueries.push_back(place.Query(settings));
  const std::vector<std::string> arrAnswers = m_talk->Ask(arrQueries, answerSize);
  for (std::size_t i = 0; i < arrPlaces.size(); ++i)
    if (const std::string strWhy = TakeAnswer(arrPlaces[i], arrAnswers[i], settings); !strWhy.empty())
      m_talk->RefuseAnswer(arrQueries[i], arrAnswers[i], strWhy);
}

Settings ScpiInstrument::ReadSettings() {
  Settings settings = m_kept;
  // The levels last: which query they have depends on their unit.
  std::vector<ProfilePlace> arrLevels, arrOthers;
  for (const ProfilePlace &place : PlacesOf(m_profile))
    if (place.pSetting->IsRead() && place.pSetting->pRow->lngPatternRow == 0)
      (place.pSetting->IsLevel() ? arrLevels : arrOthers).push_back(place);
  Ask(arrOthers, settings, Talk::UsualAnswer);
  Ask(arrLevels, settings, Talk::UsualAnswer);
  return settings;
}

const Settings &ScpiInstrument::Known() {
  if (!m_moment.settings) m_moment.settings = ReadSettings();
  return *m_moment.settings;
}

void ScpiInstrument::KnowPatterns(const Rows &rows) {
  Settings settings = m_kept;
  std::vector<ProfilePlace> arrPlaces;
  for (const ProfilePlace &place : PlacesOf(m_profile)) {
    const Long lngRow = place.pSetting->pRow->lngPatternRow;
    if (lngRow == 0 || !place.pSetting->IsRead()) continue;
    const auto row = static_cast<std::size_t>(lngRow - 1);
    if (rows[row] && !m_moment.arrPattern[row]) arrPlaces.push_back(place);
  }
  Ask(arrPlaces, settings, PatternAnswer);
  for (std::size_t row = 0; row < rows.size(); ++row)
    if (rows[row] && !m_moment.arrPattern[row]) m_moment.arrPattern[row] = settings.arrPattern[row];
}

Settings ScpiInstrument::WithPatterns(const Rows &rows) {
  Settings settings = Known();
  KnowPatterns(rows);
  for (std::size_t row = 0; row < rows.size(); ++row)
    if (rows[row]) settings.arrPattern[row] = *m_moment.arrPattern[row];
  return settings;
}

Settings ScpiInstrument::CurrentSettings() {
  const std::lock_guard lock(m_mutex);
  Begin();
  return Known();
}

driver::PatternRow ScpiInstrument::CurrentPattern(Long lngRow) {
  const std::lock_guard lock(m_mutex);
  Begin();
  // All rows in one message: who reads one reads the others too.
  KnowPatterns({true, true, true});
  Settings settings = m_kept;
  for (std::size_t row = 0; row < settings.arrPattern.size(); ++row)
    settings.arrPattern[row] = *m_moment.arrPattern[row];
  return settings.RowInForce(lngRow, m_description);
}

// ---- Writing ----

void ScpiInstrument::Apply(const std::vector<driver::Change> &arrChanges) {
  const std::lock_guard lock(m_mutex);
  Begin();
  const Undo undo{WithPatterns(RowsOf(arrChanges)), RowsOf(arrChanges)};
  Settings after = undo.before;
  Errors arrRefused;
  for (const driver::Change &change : arrChanges) {
    try {
      change(after);
    } catch (const Rejected &rejected) {
      arrRefused.insert(arrRefused.end(), rejected.Errors().begin(), rejected.Errors().end());
    }
  }
  Check(undo.before, after, std::move(arrRefused));
  if (StepsBetween(m_profile, undo.before, after).empty()) {
    m_moment.settings.reset();  // what is kept here may have changed
    m_moment.arrPattern = {};
  } else {
    FetchErrors();
    Send(undo, after);
    Forget();
  }
  m_kept = after;
}

void ScpiInstrument::Send(const Undo &undo, const Settings &after) {
  std::optional<Failure> failure;
  Errors arrErrors;
  try {
    Tell(undo.before, after);
  } catch (const Failure &lineFailure) {
    failure = lineFailure;
  }
  // An instrument that does not understand a message leaves it unconfirmed and tells why in its error queue.
  try {
    arrErrors = ReadErrors();
  } catch (const Failure &lineFailure) {
    if (!failure) failure = lineFailure;
  }
  if (!failure && arrErrors.empty()) return;
  const std::string strWhyNot = TryPutBack(undo);
  if (arrErrors.empty())
    throw Failure(failure->what() + ("; " + (strWhyNot.empty() ? "the instrument is as it was before" : strWhyNot)));
  if (!strWhyNot.empty()) arrErrors.push_back(NotPutBack(strWhyNot));
  throw Rejected(std::move(arrErrors));
}

void ScpiInstrument::Check(const Settings &before, const Settings &after, Errors arrErrors) const {
  for (const auto &arrPlaces : StepsBetween(m_profile, before, after))
    for (const ProfilePlace &place : arrPlaces)
      if (const std::string strWhy = WhyNotSent(place, after); !strWhy.empty())
        arrErrors.push_back(
            {place.pSetting->arrWords.empty() ? driver::ScpiDataOutOfRange : driver::ScpiIllegalParameterValue,
             (place.pSetting->arrWords.empty() ? "Data out of range: " : "Illegal parameter value: ") + place.Caption(),
             strWhy});
  if (!arrErrors.empty()) throw Rejected(std::move(arrErrors));
}

void ScpiInstrument::Tell(const Settings &from, const Settings &to) {
  std::vector<std::string> arrCommands;
  for (const auto &arrPlaces : StepsBetween(m_profile, from, to)) arrCommands.push_back(CommandsOf(arrPlaces, to));
  m_talk->Tell(arrCommands);
}

ScpiInstrument::Errors ScpiInstrument::ReadErrors() {
  Errors arrErrors;
  for (int i = 0; i < LongestQueue; ++i) {
    const std::string strAnswer = m_talk->Ask(m_profile.strErrorQuery);
    auto entry = EntryOf(strAnswer);
    if (!entry) m_talk->RefuseAnswer(m_profile.strErrorQuery, strAnswer, "is no entry of an error queue");
    if (entry->lngNumber == 0) break;
    arrErrors.push_back(*std::move(entry));
  }
  return arrErrors;
}

void ScpiInstrument::FetchErrors() {
  if (m_moment.fNoErrors) return;
  const Errors arrNew = ReadErrors();
  m_arrErrors.insert(m_arrErrors.end(), arrNew.begin(), arrNew.end());
  m_moment.fNoErrors = true;
}

std::string ScpiInstrument::PutBack(const Undo &undo) {
  Forget();
  const Settings now = WithPatterns(undo.rows);
  if (StepsBetween(m_profile, now, undo.before).empty()) return {};
  Tell(now, undo.before);
  ReadErrors();  // what it says of its own state is told by reading it
  Forget();
  const Settings restored = WithPatterns(undo.rows);
  std::string strPlaces;
  for (const auto &arrPlaces : StepsBetween(m_profile, restored, undo.before))
    for (const ProfilePlace &place : arrPlaces) strPlaces += (strPlaces.empty() ? "" : ", ") + place.Key();
  return strPlaces.empty() ? "" : "the instrument could not be put back in " + strPlaces;
}

std::string ScpiInstrument::TryPutBack(const Undo &undo) {
  try {
    return PutBack(undo);
  } catch (const Failure &) {
    Forget();
    m_undo = undo;
    return "the instrument may have taken a part of the settings, and is put back when it is reached again";
  }
}

// ---- Commands ----

void ScpiInstrument::Reset() {
  const std::lock_guard lock(m_mutex);
  m_undo.reset();
  Begin();
  if (m_profile.strReset.empty()) throw Failure(m_description.strName + " has no command for a reset");
  FetchErrors();
  m_talk->Tell({m_profile.strReset});
  const Errors arrErrors = ReadErrors();
  Forget();
  m_kept = Settings{};
  if (!arrErrors.empty()) throw Rejected(arrErrors);
}

Long ScpiInstrument::NumberAnswer(const std::string &strQuery) {
  const std::string strAnswer = m_talk->Ask(strQuery, std::chrono::seconds(m_profile.lngLongest));
  const auto dblCode = NumberOf(strAnswer);
  if (!dblCode || *dblCode != std::floor(*dblCode) || std::abs(*dblCode) > 32767)
    m_talk->RefuseAnswer(strQuery, strAnswer, "is no whole number");
  return static_cast<Long>(*dblCode);
}

std::pair<Integer, std::string> ScpiInstrument::SelfTest() {
  const std::lock_guard lock(m_mutex);
  Begin();
  if (m_profile.strSelfTest.empty()) throw Failure(m_description.strName + " has no self test");
  const Long lngCode = NumberAnswer(m_profile.strSelfTest);
  Forget();
  if (lngCode == 0) return {0, "Self test passed"};
  const std::size_t before = m_arrErrors.size();
  FetchErrors();
  std::string strText = "Self test failed with code " + std::to_string(lngCode);
  if (m_arrErrors.size() > before) strText += ": " + m_arrErrors.back().strText;
  return {static_cast<Integer>(lngCode), strText};
}

void ScpiInstrument::Calibrate() {
  const std::lock_guard lock(m_mutex);
  Begin();
  if (m_profile.strCalibrate.empty()) throw Failure(m_description.strName + " has no calibration");
  const Long lngCode = NumberAnswer(m_profile.strCalibrate);
  Forget();
  if (lngCode != 0)
    throw Failure(m_description.strName + ": the calibration failed with code " + std::to_string(lngCode));
}

// ---- Errors and warnings ----

void ScpiInstrument::Report(const ScpiError &error) {
  const std::lock_guard lock(m_mutex);
  m_arrErrors.push_back(error);
}

std::vector<ScpiError> ScpiInstrument::TakeErrors() {
  const std::lock_guard lock(m_mutex);
  Begin();
  FetchErrors();
  return std::exchange(m_arrErrors, {});
}

std::vector<ScpiError> ScpiInstrument::Warnings() {
  const std::lock_guard lock(m_mutex);
  Begin();
  if (m_profile.strWarningQuery.empty()) return {};
  if (!m_moment.warnings) {
    const std::string strAnswer = m_talk->Ask(m_profile.strWarningQuery);
    const std::vector<std::string> arrParts = SplitAnswer(strAnswer, ',');
    Errors arrWarnings;
    for (std::size_t i = 0; i < arrParts.size(); i += 2) {
      const auto entry = i + 1 < arrParts.size() ? EntryOf(arrParts[i] + "," + arrParts[i + 1]) : std::nullopt;
      if (!entry) m_talk->RefuseAnswer(m_profile.strWarningQuery, strAnswer, "is no list of warnings");
      if (entry->lngNumber != 0) arrWarnings.push_back(*entry);
    }
    m_moment.warnings = std::move(arrWarnings);
  }
  return *m_moment.warnings;
}

}  // namespace tarvik::scpi
