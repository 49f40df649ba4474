#include "Benches.h"

#include "CboBench.h"
#include "FrameBench.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik::paneltest {

Benches::Benches(World &world) : m_world(world) {}

Benches::~Benches() = default;

void Benches::Reset() {
  m_fDesignMode = false;
  m_lists.clear();
  m_frames.clear();
  m_plain.clear();
}

template <class Made>
void Benches::RunOn(std::map<std::string, std::unique_ptr<Made>> &benches, const char *strKind, Words &words,
                    Json &answer) {
  const std::string strName = words.Text();
  if (strName == "new") {
    const std::string strNew = words.Text();
    benches[strNew] = std::make_unique<Made>(strNew, m_world.recorder, m_fDesignMode);
    return;
  }
  const auto found = benches.find(strName);
  if (found == benches.end()) throw BadLine(std::string("no such ") + strKind + ": " + strName);
  const std::string strCommand = words.Text();
  m_world.Run([&] { found->second->Run(strCommand, words, answer); });
}

bool Benches::Run(const std::string &strCommand, Words &words, Json &answer) {
  if (strCommand == "designmode")
    m_fDesignMode = words.Flag();
  else if (strCommand == "cbo")
    RunOn(m_lists, "list", words, answer);
  else if (strCommand == "frame")
    RunOn(m_frames, "frame", words, answer);
  else if (strCommand == "util")
    Util(words, answer);
  else
    return false;
  return true;
}

CountingButton &Benches::Plain(const std::string &strName) {
  auto &button = m_plain[strName];
  if (!button) {
    button = std::make_unique<CountingButton>();
    button->setObjectName(QString::fromStdString(strName));
  }
  return *button;
}

Json Benches::LogText(Words &words) {
  const std::string strModule = words.Text(), strProcedure = words.Text();
  const Long lngNumber = words.Number();
  std::string strBytes;
  m_world.host.LogWritten = [&](std::string_view bytes) { strBytes += bytes; };
  WriteLogRecord(strModule, strProcedure, lngNumber, words.Text());
  m_world.host.LogWritten = nullptr;
  return "<now>" + strBytes.substr(std::min(strBytes.find('\r'), strBytes.size()));
}

void Benches::Util(Words &words, Json &answer) {
  using Procedure = std::function<void()>;
  const std::map<std::string, Procedure> procedures{
      {"fmthex",
       [&] {
         const Long lngValue = words.Number();
         answer["ret"] = FmtHex(lngValue, static_cast<Integer>(words.Number()));
       }},
      {"hourglass", [&] { SetHourglass(words.Flag()); }},
      {"pointer", [&] { m_world.host.intPointer = static_cast<Integer>(words.Number()); }},
      {"maxdouble",
       [&] {
         const Double dblFirst = words.Real();
         answer["ret"] = MaxDouble(dblFirst, words.Real());
       }},
      {"illegal", [] { ShowIllegalCase(); }},
      {"stop", [&] { ShowStopMessage(words.Text()); }},
      {"logerror",
       [&] {
         const std::string strModule = words.Text(), strProcedure = words.Text();
         const Long lngNumber = words.Number();
         LogError(strModule, strProcedure, lngNumber, words.Text());
       }},
      {"logtext", [&] { answer["ret"] = LogText(words); }},
      {"optbytag",
       [&] {
         const auto frame = m_frames.find(words.Text());
         if (frame == m_frames.end()) throw BadLine("no such frame");
         answer["ret"] = static_cast<bool>(SetOptionButtonToTag(frame->second->OptionButtons(), words.Text()));
       }},
      {"setenabled",
       [&] {
         CountingButton &button = Plain(words.Text());
         SetEnabled(button, words.Flag());
         answer["ret"] = Json::array({static_cast<bool>(button.Enabled()), button.intWrites});
       }},
      {"focusifenabled", [&] { SetFocusIfEnabled(Plain(words.Text())); }},
  };
  const std::string strCommand = words.Text();
  const auto procedure = procedures.find(strCommand);
  if (procedure == procedures.end()) throw BadLine("unknown procedure " + strCommand);
  m_world.Run(procedure->second);
}

}  // namespace tarvik::paneltest
