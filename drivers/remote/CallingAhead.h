#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "remote/CallTrail.h"
#include "remote/Foresight.h"

namespace tarvik::remote {

/// Follows a client through calls that are known beforehand, has them made in one frame, and hands the answers out as
/// the client comes to them. Known are an order of reads from the last time (automation::ReadAhead) and an operation
/// from its rehearsal (automation::CallsAhead). The driver sees the calls that the client makes, in their order; what
/// was made ahead and is not wanted is let go and told to the server's log.
///
/// Knows no transport: Connection sends what it is told to.
class CallingAhead {
 public:
  /// What becomes of a command.
  enum class Way {
    Plain,    ///< send it as ever
    Waiting,  ///< a fetch of the trail; it has its number
    Ask,      ///< send Frame() and hand the answers to Arrived, then take the first
    Take,     ///< its answer is here
    Noted,    ///< it belongs to a rehearsal; Foreseen() tells what it brings back
    Over,     ///< it ends a rehearsal
  };

  /// A command of the client, before it is written. `fWaited`: it wants an answer; `lngNewId`: number of the object
  /// that it brings, 0 for none; the number is changed to that of the trail.
  Way Next(const Asked &asked, bool fWaited, ObjectId &lngNewId, ObjectId &lngLastId);
  /// To be told each call that succeeds, with what it brings back.
  void Succeeded(const Asked &asked, const Reader &filled) { m_foresight.Note(asked, filled); }
  /// The order is over, or another thing comes between.
  void Stop() { End(); }
  /// Fetches wait for the trail: nothing may be released ahead of them.
  bool IsHolding() const { return m_fPlaying && m_lngAt > m_lngDone; }
  /// Whether this is an object of the rehearsal at work, which the server has never seen.
  bool IsRehearsed(ObjectId lngId) const;
  /// Commands that have to be sent ahead of everything else.
  std::string TakeCorrection() { return std::exchange(m_strCorrection, {}); }
  /// Bytes that a frame may have.
  void SetRoom(std::size_t lngRoom) { m_lngRoom = lngRoom; }

  /// The trail as a frame, from its first step that is not made, as far as a frame reaches.
  std::string Frame() const;
  /// The answers of Frame, in their order; fewer than were asked when one failed.
  void Arrived(std::vector<std::string> arrAnswers);
  std::string TakeAnswer() { return std::move(m_arrAnswers.at(m_lngTaken++)); }
  /// Of the call that was noted last; nothing for one that leaves its arguments as they are.
  const std::optional<Foresight::Answer> &Foreseen() const { return m_foreseen; }

 private:
  /// What makes calls known: an order of reads by its name, or a rehearsed operation without one.
  struct Occasion {
    const char *strName = nullptr;
    std::uint64_t lngNumber = 0;  ///< 0: there is none
    bool operator==(const Occasion &) const = default;
  };
  static Occasion Now();

  void Begin(const Asked &first, ObjectId &lngLastId);
  void End();
  Way Note(const Asked &asked, bool fWaited, ObjectId lngNewId);
  void EndRehearsal();
  void GiveUp();
  bool IsNext(const Asked &asked, bool fWaited) const;
  ObjectId IdOf(int intOn) const;
  std::optional<int> PlaceOf(ObjectId lngId) const;
  void Record(const Asked &asked, bool fWaited, ObjectId lngNewId);
  void WriteStep(Writer &out, std::size_t lngStep, Command eCommand) const;

  Occasion m_occasion;
  ObjectId m_lngInstrument = 0;
  std::size_t m_lngRoom = 0;
  Foresight m_foresight;

  CallTrail m_trail;
  std::vector<ObjectId> m_arrIds;  ///< of what the steps bring
  bool m_fPlaying = false;
  std::size_t m_lngAt = 0;    ///< the step that should come next
  std::size_t m_lngDone = 0;  ///< steps that the server has done
  std::vector<std::string> m_arrAnswers;
  std::size_t m_lngTaken = 0;

  std::map<ObjectId, int> m_places;  ///< steps that brought the objects of what is recorded or rehearsed
  CallTrail m_record;
  bool m_fRecording = false;
  bool m_fNoting = false;
  bool m_fOver = false;  ///< nothing more of the rehearsal is noted
  Foresight m_rehearsed;
  std::optional<Foresight::Answer> m_foreseen;
  std::string m_strCorrection;
};

}  // namespace tarvik::remote
