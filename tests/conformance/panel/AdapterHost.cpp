#include "AdapterHost.h"

#include <regex>

#include "support/RunTimeError.h"

namespace tarvik::paneltest {

namespace {

const char *Name(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Stop:
    case BoxIcon::Critical: return "stop";
    case BoxIcon::Question: return "question";
    case BoxIcon::Exclamation: return "warning";
    case BoxIcon::Information: return "info";
  }
  return "";
}

/// Number, description, module and procedure of a log record.
Json LogEntry(std::string_view strBytes) {
  static const std::regex form(
      "[^\\r]*\\r\\n  Error: (-?[0-9]*) ([^]*)\\r\\n  Mod: ([^]*); Proc: ([^]*)\\r\\n\\r\\n\\r\\n");
  const std::string strRecord(strBytes);
  std::smatch parts;
  if (!std::regex_match(strRecord, parts, form)) return {"log", "?", "?", 0, strRecord};
  const std::string strNumber = parts[1];
  return {"log", parts[3].str(), parts[4].str(), strNumber.empty() ? 0 : std::stol(strNumber), parts[2].str()};
}

}  // namespace

void AdapterHost::Reset() {
  arrAnswers.clear();
  store.clear();
  failingWrite.reset();
  logFailure.reset();
  intPointer = PointerDefault;
}

std::optional<std::string> AdapterHost::NextAnswer() {
  if (arrAnswers.empty()) return std::nullopt;
  std::string strAnswer = arrAnswers.front();
  arrAnswers.pop_front();
  return strAnswer;
}

BoxAnswer AdapterHost::MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons,
                              const std::string &strTitle) {
  const bool fAsks = buttons == BoxButtons::YesNo;
  const bool fNo = fAsks && NextAnswer().value_or("yes") == "no";
  m_recorder.Add({"box", strText, Name(icon), fAsks ? "yesno" : "ok", strTitle, !fAsks ? "ok" : fNo ? "no" : "yes"});
  if (!fAsks) return BoxAnswer::Ok;
  return fNo ? BoxAnswer::No : BoxAnswer::Yes;
}

std::string AdapterHost::InputBox(const std::string &strPrompt, const std::string &strTitle,
                                  const std::string &strDefault) {
  std::optional<std::string> answer = NextAnswer();
  if (answer == "cancel") answer.reset();
  m_recorder.Add({"input", strPrompt, strTitle, strDefault, answer ? Json(*answer) : Json(nullptr)});
  if (InputShown) InputShown();
  return answer.value_or("");
}

void AdapterHost::SetMousePointer(Integer intNewPointer) {
  if (intNewPointer == intPointer) return;
  intPointer = intNewPointer;
  m_recorder.Add({"pointer", intNewPointer});
}

std::string AdapterHost::GetSetting(const std::string &, const std::string &strSection, const std::string &strKey,
                                    const std::string &strDefault) {
  const auto found = store.find({strSection, strKey});
  return found == store.end() ? strDefault : found->second;
}

void AdapterHost::SaveSetting(const std::string &, const std::string &strSection, const std::string &strKey,
                              const std::string &strValue) {
  if (failingWrite && failingWrite->first == strKey) throw RunTimeError(ErrPathFileAccess, failingWrite->second);
  store[{strSection, strKey}] = strValue;
  m_recorder.Add({"store", strSection, strKey, strValue});
}

std::tm AdapterHost::Now() const {
  std::tm time{};
  time.tm_year = 101;
  time.tm_mday = 1;
  return time;
}

void AdapterHost::AppendToFile(const std::string &, std::string_view strBytes) {
  if (logFailure) throw RunTimeError(ErrPathFileAccess, *logFailure);
  if (LogWritten)
    LogWritten(strBytes);
  else
    m_recorder.Add(LogEntry(strBytes));
}

void AdapterHost::DoEvents() {
  m_recorder.Add(Json::array({"yield"}));
  if (Yielded) Yielded();
}

}  // namespace tarvik::paneltest
