#include "remote/ReadingAhead.h"

#include <algorithm>

#include "automation/ReadAhead.h"
#include "remote/Stub.h"

namespace tarvik::remote {

namespace {

bool IsInstrument(std::uint8_t intInterface) { return Contract()[intInterface].strName == "IInstrument"; }

}  // namespace

ReadingAhead::Way ReadingAhead::Next(const Asked &asked, bool fWaited, ObjectId &lngNewId, ObjectId &lngLastId) {
  const auto current = automation::ReadAhead::OfThread();
  const bool fSame = current.strName && current.lngNumber == m_lngNumber && !m_strName.empty();
  if (!fSame) {
    End();
    if (!current.strName) return Way::Plain;
    m_lngNumber = current.lngNumber;
    Begin(current.strName, IsInstrument(asked.intInterface) ? asked.lngId : 0, lngLastId);
  }
  if (!IsRead(asked.intInterface, asked.intOperation) && fWaited) {
    GiveUp();
    m_fRecording = false;
    return Way::Plain;
  }
  Way eWay = Way::Plain;
  if (m_fPlaying && m_lngAt < m_trail.Steps().size() && Matches(m_trail.Steps()[m_lngAt], asked, fWaited) &&
      (!m_fSent || m_lngAt < m_lngDone)) {
    if (lngNewId != 0) lngNewId = m_arrIds[m_lngAt];
    eWay = !fWaited ? Way::Waiting : m_fSent ? Way::Take : Way::Ask;
    ++m_lngAt;
  } else {
    GiveUp();
  }
  if (m_fRecording) Record(asked, fWaited, lngNewId);
  return eWay;
}

void ReadingAhead::Begin(const char *strName, ObjectId lngInstrument, ObjectId &lngLastId) {
  m_strName = strName;
  m_lngInstrument = lngInstrument;
  m_trail = ReadTrail::Known(m_strName);
  m_arrIds.clear();
  for (const ReadTrail::Step &step : m_trail.Steps()) m_arrIds.push_back(step.fObject ? ++lngLastId : 0);
  m_fPlaying = !m_trail.Steps().empty();
  m_fSent = false;
  m_lngAt = m_lngDone = m_lngTaken = 0;
  m_arrAnswers.clear();
  m_record = {};
  m_recorded.clear();
  m_fRecording = true;
}

/// The order has come to its end: what was seen of it is known from now on.
void ReadingAhead::End() {
  if (m_strName.empty()) return;
  GiveUp();
  m_record.Trim();
  if (!m_record.Steps().empty()) ReadTrail::Learn(m_strName, m_record);
  m_strName.clear();
}

/// What follows is not what was expected. Fetches that waited for the trail are sent after all, and what the server has
/// done for nothing is let go.
void ReadingAhead::GiveUp() {
  if (!m_fPlaying) return;
  m_fPlaying = false;
  Writer out;
  if (!m_fSent) {
    for (std::size_t i = 0; i < m_lngAt; ++i) WriteStep(out, i, Command::Fetch);
  } else if (m_lngAt < m_lngDone) {
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

bool ReadingAhead::Matches(const ReadTrail::Step &step, const Asked &asked, bool fWaited) const {
  return step.intInterface == asked.intInterface && step.intOperation == asked.intOperation &&
         step.fWaited == fWaited && step.strInputs == asked.strInputs && IdOf(step.intOn) == asked.lngId;
}

ObjectId ReadingAhead::IdOf(int intOn) const {
  if (intOn == ReadTrail::OnRoot) return RootId;
  if (intOn == ReadTrail::OnInstrument) return m_lngInstrument;
  return m_arrIds[static_cast<std::size_t>(intOn)];
}

void ReadingAhead::Record(const Asked &asked, bool fWaited, ObjectId lngNewId) {
  ReadTrail::Step step{ReadTrail::OnRoot,  lngNewId != 0,   fWaited,           asked.intInterface,
                       asked.intOperation, asked.strInputs, asked.strArguments};
  const auto found = m_recorded.find(asked.lngId);
  if (found != m_recorded.end())
    step.intOn = found->second;
  else if (asked.lngId == m_lngInstrument)
    step.intOn = ReadTrail::OnInstrument;
  else if (asked.lngId != RootId)
    m_fRecording = false;  // an object from before
  if (!m_fRecording) return;
  if (lngNewId != 0) m_recorded[lngNewId] = static_cast<int>(m_record.Steps().size());
  m_record.Add(std::move(step));
}

void ReadingAhead::WriteStep(Writer &out, std::size_t lngStep, Command eCommand) const {
  const ReadTrail::Step &step = m_trail.Steps()[lngStep];
  out.Put(static_cast<std::uint8_t>(eCommand));
  out.Put(IdOf(step.intOn));
  out.Put(step.intInterface);
  out.Put(step.intOperation);
  out.Put(m_arrIds[lngStep]);
  out.PutBytes(step.strArguments);
}

std::string ReadingAhead::Frame() const {
  Writer out;
  for (std::size_t i = 0; i < m_trail.Steps().size(); ++i)
    WriteStep(out, i, m_trail.Steps()[i].fWaited ? Command::Queue : Command::Fetch);
  return out.Take();
}

void ReadingAhead::Arrived(std::vector<std::string> arrAnswers) {
  m_fSent = true;
  m_arrAnswers = std::move(arrAnswers);
  std::size_t lngCalls = 0;
  while (m_lngDone < m_trail.Steps().size() && lngCalls < m_arrAnswers.size())
    if (m_trail.Steps()[m_lngDone++].fWaited) ++lngCalls;
}

std::string ReadingAhead::TakeAnswer() { return std::move(m_arrAnswers.at(m_lngTaken++)); }

}  // namespace tarvik::remote
