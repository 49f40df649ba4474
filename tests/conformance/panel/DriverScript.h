#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "HookedCall.h"
#include "Recorder.h"
#include "Words.h"
#include "support/DynamicArray.h"

namespace tarvik::paneltest {

/// One instrument that the scripted driver knows.
struct InstrumentScript : test::HookedInstrument {
  std::string strName = "INSTR";
  Integer intKind = 2, intSlot = 1, intAddress = 1, intBox = 0, intModel = 0;
  Long lngChannels = 2, lngMask = 0;
  std::string strIdentity = "MAKER,PRODUCT,SERIAL,VERSION", strOptions;
  bool fOpens = true;

  bool fVerbose = false;
  bool fTransaction = false;
};

struct PatternScript {
  std::vector<Byte> arrBytes{0};
  Long lngBits = 2;
};

struct FailureScript {
  std::string strOperation = {};
  Long lngNumber = 0;
  std::string strText = {};
  Long lngTimes = 1;
};

/// What the scripted driver answers. Setters do not change the answers.
class DriverScript {
 public:
  enum class Creation { Ok, None, Error, NoneUntilInput };

  explicit DriverScript(Recorder &recorder) : m_recorder(recorder) { Reset(); }

  void Reset();

  /// `group.field`, for the channel (from 1) where there are two; the last value serves all further channels.
  Double Answer(const std::string &strField, Long lngChannel = 1) const;
  /// Takes "Field=value" and "Field=value,value" words.
  void SetAnswers(const std::string &strGroup, Words &words);
  void SetAnswer(const std::string &strField, std::vector<Double> arrValues) { m_answers[strField] = arrValues; }

  /// Records the leaf call; the failure that is scripted for it, if any.
  std::optional<FailureScript> Enter(std::string_view strLeaf, const Json &arguments);
  void AddFailure(FailureScript failure) { m_arrFailures.push_back(std::move(failure)); }

  void AddInstrument(Words &words);
  void ChangeInstrument(Long lngNumber, Words &words);
  /// By number from 1; null where there is none.
  std::shared_ptr<InstrumentScript> Instrument(Long lngNumber) const;
  std::shared_ptr<InstrumentScript> Instrument(const std::string &strName) const;
  Long InstrumentCount() const { return static_cast<Long>(m_arrInstruments.size()); }
  void RemoveInstruments() { m_arrInstruments.clear(); }

  /// The public operation of the instrument class that is running; empty between operations.
  std::string strOperation;

  Creation creation = Creation::Ok;
  FailureScript creationFailure;
  bool fInputShown = false;

  std::optional<std::string> commitFailure;
  std::string strErrors, strWarnings, strSelfTest;
  std::array<PatternScript, 4> arrRows;

 private:
  void Apply(InstrumentScript &instrument, Words &words);

  Recorder &m_recorder;
  std::map<std::string, std::vector<Double>> m_answers;
  std::vector<FailureScript> m_arrFailures;
  std::vector<std::shared_ptr<InstrumentScript>> m_arrInstruments;
};

}  // namespace tarvik::paneltest
