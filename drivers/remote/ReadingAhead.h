#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "remote/ReadTrail.h"

namespace tarvik::remote {

/// Follows a client through an order of reads (automation::ReadAhead), asks for what will follow in one frame, and
/// hands the answers out as the client comes to them. The driver sees the calls that the client makes, in their order;
/// what was asked ahead and is not wanted is let go and told to the server's log.
///
/// Knows no transport: Connection sends what it is told to.
class ReadingAhead {
 public:
  /// What becomes of a command.
  enum class Way {
    Plain,    ///< send it as ever
    Waiting,  ///< a fetch that will be sent with the trail; it has its number
    Ask,      ///< send Frame() and hand the answers to Arrived, then take the first
    Take,     ///< its answer is here
  };

  /// A command of the client, before it is written. `fWaited`: it wants an answer; `lngNewId`: number of the object
  /// that it brings, 0 for none; the number is changed to that of the trail.
  Way Next(const Asked &asked, bool fWaited, ObjectId &lngNewId, ObjectId &lngLastId);
  /// The order is over, or another thing comes between.
  void Stop() { End(); }
  /// Fetches wait for the trail: nothing may be released ahead of them.
  bool IsHolding() const { return m_fPlaying && !m_fSent && m_lngAt > 0; }
  /// Commands that have to be sent ahead of everything else, after Next answered Plain.
  std::string TakeCorrection() { return std::exchange(m_strCorrection, {}); }

  /// The trail as a frame, from its first step that is not sent.
  std::string Frame() const;
  /// The answers of Frame, in their order; fewer than were asked when one failed.
  void Arrived(std::vector<std::string> arrAnswers);
  std::string TakeAnswer();

 private:
  void Begin(const char *strName, ObjectId lngInstrument, ObjectId &lngLastId);
  void End();
  void GiveUp();
  bool Matches(const ReadTrail::Step &step, const Asked &asked, bool fWaited) const;
  ObjectId IdOf(int intOn) const;
  void Record(const Asked &asked, bool fWaited, ObjectId lngNewId);
  void WriteStep(Writer &out, std::size_t lngStep, Command eCommand) const;

  std::uint64_t m_lngNumber = 0;  ///< of the order that is followed
  std::string m_strName;          ///< empty: none is
  ObjectId m_lngInstrument = 0;
  ReadTrail m_trail;
  std::vector<ObjectId> m_arrIds;  ///< of what the steps bring
  bool m_fPlaying = false;
  bool m_fSent = false;
  std::size_t m_lngAt = 0;    ///< the step that should come next
  std::size_t m_lngDone = 0;  ///< steps that the server has done
  std::vector<std::string> m_arrAnswers;
  std::size_t m_lngTaken = 0;

  ReadTrail m_record;
  std::map<ObjectId, int> m_recorded;
  bool m_fRecording = false;
  std::string m_strCorrection;
};

}  // namespace tarvik::remote
