#include "remote/CallingAhead.h"

#include <algorithm>

#include "automation/CallsAhead.h"
#include "automation/ReadAhead.h"
#include "remote/Stub.h"

namespace tarvik::remote {

namespace {

const Operation &OperationOf(const Asked &asked) {
  return Contract()[asked.intInterface].operations[asked.intOperation];
}

}  // namespace

CallingAhead::Occasion CallingAhead::Now() {
  if (const auto calls = automation::CallsAhead::OfThread(); calls.lngNumber != 0) return {nullptr, calls.lngNumber};
  const auto reads = automation::ReadAhead::OfThread();
  return reads.strName ? Occasion{reads.strName, reads.lngNumber} : Occasion{};
}

CallingAhead::Way CallingAhead::Next(const Asked &asked, bool fWaited, ObjectId &lngNewId, ObjectId &lngLastId) {
  const Occasion now = Now();
  if (now != m_occasion) {
    End();
    m_occasion = now;
    if (now.lngNumber != 0) Begin(asked, lngLastId);
  }
  if (now.lngNumber == 0) return Way::Plain;
  if (automation::CallsAhead::OfThread().fRehearsing) return Note(asked, fWaited, lngNewId);
  EndRehearsal();
  if (now.strName && fWaited && !IsRead(OperationOf(asked))) {
    GiveUp();
    m_fRecording = false;
    return Way::Plain;
  }
  Way eWay = Way::Plain;
  if (IsNext(asked, fWaited)) {
    if (lngNewId != 0) lngNewId = m_arrIds[m_lngAt];
    eWay = !fWaited ? Way::Waiting : m_lngAt < m_lngDone ? Way::Take : Way::Ask;
    ++m_lngAt;
  } else if (now.strName || m_lngAt != m_lngDone) {
    // What comes between the steps of an operation, such as the report of a failure, is no reason to give up the rest.
    GiveUp();
  }
  if (m_fRecording) Record(asked, fWaited, lngNewId);
  return eWay;
}

void CallingAhead::Begin(const Asked &first, ObjectId &lngLastId) {
  m_lngInstrument = Contract()[first.intInterface].strName == "IInstrument" ? first.lngId : 0;
  m_trail = m_occasion.strName ? CallTrail::Known(m_occasion.strName) : CallTrail();
  m_arrIds.clear();
  for (const CallTrail::Step &step : m_trail.Steps()) m_arrIds.push_back(step.fObject ? ++lngLastId : 0);
  m_fPlaying = !m_trail.Steps().empty();
  m_lngAt = m_lngDone = m_lngTaken = 0;
  m_arrAnswers.clear();
  m_record = {};
  m_places.clear();
  m_fRecording = m_occasion.strName != nullptr;
  m_fNoting = !m_fRecording;
  m_fOver = false;
  m_rehearsed = m_foresight;
}

/// An order of reads that has come to its end is known from now on.
void CallingAhead::End() {
  GiveUp();
  m_record.Trim();
  if (m_occasion.strName && !m_record.Steps().empty()) CallTrail::Learn(m_occasion.strName, m_record);
  m_record = {};
  m_occasion = {};
}

/// Takes a call of a rehearsal into the trail. One whose answer cannot be foreseen is the last.
CallingAhead::Way CallingAhead::Note(const Asked &asked, bool fWaited, ObjectId lngNewId) {
  const Operation &operation = OperationOf(asked);
  const std::optional<int> intOn = PlaceOf(asked.lngId);
  const bool fObject = lngNewId != 0;
  const bool fKnown = m_fNoting && intOn && fObject != fWaited && asked.strArguments.size() < m_lngRoom;
  if (m_fOver || !fKnown || (fWaited && !operation.strName.starts_with("Get") && !IsSetting(operation))) {
    m_fOver = true;
    return Way::Over;
  }
  m_foreseen = fWaited ? m_rehearsed.Of(asked) : std::nullopt;
  m_fOver = fWaited && !m_foreseen && !IsSetting(operation);
  CallTrail::Step step{*intOn, fObject, fWaited, asked.intInterface, asked.intOperation, {}, asked.strArguments, {}};
  if (m_foreseen) step.strRelied = m_foreseen->strRelied;
  if (fObject) m_places[lngNewId] = static_cast<int>(m_arrIds.size());
  m_arrIds.push_back(lngNewId);
  m_trail.Add(std::move(step));
  if (m_fOver) return Way::Over;
  if (fWaited) m_rehearsed.Note(asked, Reader(m_foreseen ? m_foreseen->strFilled : std::string_view()));
  return Way::Noted;
}

/// The first call behind a rehearsal: what was noted is what will follow.
void CallingAhead::EndRehearsal() {
  if (!m_fNoting) return;
  m_fNoting = false;
  m_trail.Trim();
  m_fPlaying = std::ranges::count(m_trail.Steps(), true, &CallTrail::Step::fWaited) > 1;
}

bool CallingAhead::IsRehearsed(ObjectId lngId) const {
  return automation::CallsAhead::OfThread().fRehearsing && std::ranges::find(m_arrIds, lngId) != m_arrIds.end();
}

/// What follows is not what was expected. Fetches that waited for the trail are sent after all, and what the server has
/// done for nothing is let go.
void CallingAhead::GiveUp() {
  if (!m_fPlaying) return;
  m_fPlaying = false;
  Writer out;
  for (std::size_t i = m_lngDone; i < m_lngAt; ++i) WriteStep(out, i, Command::Fetch);
  if (m_lngAt < m_lngDone) {
    std::uint32_t lngCalls = 0;
    for (std::size_t i = m_lngAt; i < m_lngDone; ++i) {
      const auto &step = m_trail.Steps()[i];
      if (step.fWaited) ++lngCalls;
      if (!step.fObject) continue;
      out.Put(static_cast<std::uint8_t>(Command::ReleaseIfThere));
      out.Put(m_arrIds[i]);
    }
    out.Put(static_cast<std::uint8_t>(Command::Untaken));
    out.Put(lngCalls);
  }
  m_strCorrection += out.Take();
}

/// Reads are the same when they ask for the same; a rehearsed call is the same to the last byte.
bool CallingAhead::IsNext(const Asked &asked, bool fWaited) const {
  if (!m_fPlaying || m_lngAt >= m_trail.Steps().size()) return false;
  const CallTrail::Step &step = m_trail.Steps()[m_lngAt];
  const bool fSameArguments =
      m_occasion.strName ? step.strInputs == asked.strInputs : step.strArguments == asked.strArguments;
  return fSameArguments && step.intInterface == asked.intInterface && step.intOperation == asked.intOperation &&
         step.fWaited == fWaited && IdOf(step.intOn) == asked.lngId;
}

ObjectId CallingAhead::IdOf(int intOn) const {
  if (intOn == CallTrail::OnRoot) return RootId;
  if (intOn == CallTrail::OnInstrument) return m_lngInstrument;
  return m_arrIds[static_cast<std::size_t>(intOn)];
}

/// Nothing for an object from before.
std::optional<int> CallingAhead::PlaceOf(ObjectId lngId) const {
  if (const auto found = m_places.find(lngId); found != m_places.end()) return found->second;
  if (lngId == m_lngInstrument) return CallTrail::OnInstrument;
  if (lngId == RootId) return CallTrail::OnRoot;
  return std::nullopt;
}

void CallingAhead::Record(const Asked &asked, bool fWaited, ObjectId lngNewId) {
  const std::optional<int> intOn = PlaceOf(asked.lngId);
  m_fRecording = intOn.has_value();
  if (!intOn) return;
  if (lngNewId != 0) m_places[lngNewId] = static_cast<int>(m_record.Steps().size());
  m_record.Add({*intOn,
                lngNewId != 0,
                fWaited,
                asked.intInterface,
                asked.intOperation,
                asked.strInputs,
                asked.strArguments,
                {}});
}

void CallingAhead::WriteStep(Writer &out, std::size_t lngStep, Command eCommand) const {
  const CallTrail::Step &step = m_trail.Steps()[lngStep];
  out.Put(static_cast<std::uint8_t>(eCommand));
  out.Put(IdOf(step.intOn));
  out.Put(step.intInterface);
  out.Put(step.intOperation);
  out.Put(m_arrIds[lngStep]);
  out.PutBytes(step.strArguments);
  if (step.strRelied.empty()) return;
  out.Put(static_cast<std::uint8_t>(Command::Expect));
  out.PutText(step.strRelied);
}

std::string CallingAhead::Frame() const {
  Writer frame, next;
  std::size_t lngCalls = 0;
  for (std::size_t i = m_lngDone; i < m_trail.Steps().size() && lngCalls < MostQueued; ++i) {
    const bool fWaited = m_trail.Steps()[i].fWaited;
    WriteStep(next, i, fWaited ? Command::Queue : Command::Fetch);
    if (!fWaited) continue;
    // Ends with a call, whose answer tells how far the server has come.
    if (lngCalls > 0 && frame.Size() + next.Size() > m_lngRoom) break;
    frame.PutBytes(next.Take());
    ++lngCalls;
  }
  return frame.Take();
}

void CallingAhead::Arrived(std::vector<std::string> arrAnswers) {
  m_arrAnswers = std::move(arrAnswers);
  m_lngTaken = 0;
  std::size_t lngCalls = 0;
  while (m_lngDone < m_trail.Steps().size() && lngCalls < m_arrAnswers.size())
    if (m_trail.Steps()[m_lngDone++].fWaited) ++lngCalls;
  // Behind an answer that nobody foresaw the operation goes another way.
  const std::string &strLast = m_arrAnswers.back();
  const bool fFailed = strLast.size() > 1 && strLast[1] != 0;
  if (!fFailed && m_lngDone > 0 && !strLast.ends_with(m_trail.Steps()[m_lngDone - 1].strRelied)) m_trail.Cut(m_lngDone);
}

}  // namespace tarvik::remote
