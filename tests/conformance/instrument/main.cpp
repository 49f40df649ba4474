#include <cstdio>
#include <deque>

#include "RecordingHost.h"
#include "Reply.h"
#include "StandInDriver.h"
#include "Transport.h"

namespace tarvik::test {

namespace {

/// The instrument class between a stand-in driver and a recording host, driven by command lines.
class Adapter {
 public:
  Adapter();
  Adapter(const Adapter &) = delete;
  Adapter &operator=(const Adapter &) = delete;
  /// The destructor of the instrument class raises a last event.
  ~Adapter() { gobjInstr().reset(); }

  Json Answer(const std::string &strLine);

 private:
  Json Setup(const std::vector<Token> &arrTokens);
  Json Observed(const Reply &reply, const std::map<std::string, int> &held);
  void SetupDriver(const Arguments &args);
  void SetupSettings(const Arguments &args);
  void Reset();
  void TraceHost(const HostEntry &entry);
  void RaiseTo(const std::string &strEvent, const std::string &strText);
  static Json State();

  RecordingHost m_host;
  StandInDriver m_driver;
  Transport m_transport{m_driver};
  Json m_trace = Json::array();
  CommandTable m_procedures;
  std::map<std::string, std::deque<std::string>> m_handlers;
  bool m_fQuiet = false;
};

Adapter::Adapter() {
  m_host.OnEntry = [this](const HostEntry &entry) { TraceHost(entry); };
  m_driver.OnTrace = [this](const std::string &strLine) { m_trace.push_back({"drv", strLine}); };
  m_procedures = SharedProcedures([this](Json entry) { m_trace.push_back(std::move(entry)); });
  SetInstrFactory([this] {
    auto instr = std::make_shared<clsInstrInterface>();
    instr->StatusMessage.Connect([this](const std::string &strText) { RaiseTo("StatusMessage", strText); });
    instr->InstrWarnings.Connect([this](const std::string &strText) { RaiseTo("InstrWarnings", strText); });
    instr->InstrError.Connect([this](const std::string &strText) { RaiseTo("InstrError", strText); });
    return instr;
  });
}

void Adapter::Reset() {
  m_handlers.clear();
  gobjInstr().reset();
  m_transport.Settle();
  m_driver.Reset();
  m_host.Reset();
}

void Adapter::TraceHost(const HostEntry &entry) {
  switch (entry.kind) {
    case HostEntry::Box:
      m_trace.push_back({"box", entry.strText, IconName(entry.icon), ButtonsName(entry.buttons), entry.strTitle});
      return;
    case HostEntry::Input:
      m_trace.push_back({"input", entry.strText, entry.strTitle, entry.strDefault, entry.strAnswer});
      return;
    case HostEntry::Pointer: m_trace.push_back({"pointer", entry.intPointer}); return;
    case HostEntry::GetSetting:
      m_trace.push_back(
          {"setting", "get", entry.strTitle, entry.strSection, entry.strKey, entry.strDefault, entry.strText});
      return;
    case HostEntry::SaveSetting:
      m_trace.push_back({"setting", "save", entry.strTitle, entry.strSection, entry.strKey, entry.strText});
      return;
    case HostEntry::GetFailed:
      m_trace.push_back({"setting", "get-failed", entry.strTitle, entry.strSection, entry.strKey});
      return;
    case HostEntry::SaveFailed:
      m_trace.push_back({"setting", "save-failed", entry.strTitle, entry.strSection, entry.strKey});
      return;
    case HostEntry::Log: m_trace.push_back({"log", entry.strText}); return;
    case HostEntry::LogFailed: m_trace.push_back(Json::array({"log-failed"})); return;
    case HostEntry::Beep: m_trace.push_back(Json::array({"beep"})); return;
    case HostEntry::DoEvents: m_trace.push_back(Json::array({"doevents"})); return;
  }
}

void Adapter::RaiseTo(const std::string &strEvent, const std::string &strText) {
  m_trace.push_back({"event", strEvent, strText});
  auto &arrHandlers = m_handlers[strEvent];
  if (arrHandlers.empty()) return;
  const std::string strCommand = arrHandlers.front();
  arrHandlers.pop_front();
  m_trace.push_back({"handler-begin", strCommand});
  const Reply reply = RunCommand(InstrumentOperations(), Tokens(strCommand));
  m_trace.push_back({"handler-end", reply.result, reply.error, reply.byref});
}

Json Adapter::State() {
  const clsInstrInterface &instr = *InstrInterface();
  Reply count;
  count.Set(instr.ChannelCount());
  Json restricted = Json::array();
  for (const std::int64_t mask :
       {4LL, 64LL, 128LL, 256LL, 512LL, 1024LL, 2048LL, 4096LL, 7168LL, 16384LL, -2147483648LL})
    if (instr.IsRestricted(static_cast<Long>(mask))) restricted.push_back(mask);
  return {{"IsConnected", instr.IsConnected().Word()},
          {"IsOnline", instr.IsOnline(True).Word()},
          {"ChannelCount", count.result},
          {"IsSingleChannel", instr.IsSingleChannel().Word()},
          {"IsDualChannel", instr.IsDualChannel().Word()},
          {"ErrorsEnabled", instr.GetErrorsEnabled().Word()},
          {"WarningsEnabled", instr.GetWarningsEnabled().Word()},
          {"Restricted", restricted}};
}

Json Adapter::Observed(const Reply &reply, const std::map<std::string, int> &held) {
  int intOperations = 0;
  for (const Json &entry : m_trace) intOperations += entry.at(0) == "drv" ? 1 : 0;
  Json answer = {{"result", reply.result},       {"error", reply.error}, {"byref", reply.byref}, {"trace", m_trace},
                 {"pointer", m_host.intPointer}, {"held", held},         {"ops", intOperations}};
  answer["state"] = State();
  return answer;
}

Json Adapter::Answer(const std::string &strLine) {
  const std::vector<Token> arrTokens = Tokens(strLine);
  if (arrTokens.empty()) throw std::invalid_argument("an empty command");
  const std::string &strWord = arrTokens[0].strWord;
  m_trace = Json::array();
  Reply reply;
  if (strWord == "call")
    reply = RunCommand(InstrumentOperations(), arrTokens);
  else if (strWord == "util")
    reply = RunCommand(m_procedures, arrTokens);
  else if (strWord == "terminate")
    gobjInstr().reset();
  else
    return Setup(arrTokens);
  m_transport.Settle();
  if (m_fQuiet) return {{"quiet", true}};
  return Observed(reply, m_driver.References());
}

Json Adapter::Setup(const std::vector<Token> &arrTokens) {
  const std::string &strWord = arrTokens[0].strWord;
  const Arguments args(arrTokens, 1);
  const auto failure = [&](std::size_t number) {
    return DriverFailure{args.Get<Long>(number), args.Get<std::string>(number + 1)};
  };
  const auto textAt = [&](std::size_t place) { return args.Get<std::string>(place); };
  const auto intAt = [&](std::size_t place) { return static_cast<int>(args.Get<Long>(place)); };

  const std::map<std::string, std::function<void()>> table = {
      {"reset", [&] { Reset(); }},
      {"quiet", [&] { m_fQuiet = intAt(0) != 0; }},
      {"driver", [&] { SetupDriver(args); }},
      {"create",
       [&] {
         const std::string strHow = textAt(0);
         if (strHow == "ok") return m_driver.QueueCreation();
         if (strHow == "nothing") return m_driver.QueueEmptyCreation();
         if (strHow != "raise") throw std::invalid_argument("unknown creation");
         m_driver.QueueFailingCreation(failure(1));
       }},
      {"fail", [&] { m_driver.FailAt(intAt(0), failure(1), args.Has(3) ? intAt(3) : 1); }},
      {"failop", [&] { m_driver.FailMatching(textAt(0), intAt(1), failure(2), args.Has(4) ? intAt(4) : 1); }},
      {"nothing", [&] { m_driver.NothingAt(intAt(0)); }},
      {"wrong", [&] { m_driver.WrongAt(intAt(0)); }},
      {"clearfaults", [&] { m_driver.ClearFaults(); }},
      {"err", [&] { m_driver.strErrors = textAt(0); }},
      {"warn", [&] { m_driver.arrWarnings = {textAt(0)}; }},
      {"warnseq", [&] { m_driver.arrWarnings = args.At(0).get<std::deque<std::string>>(); }},
      {"answer", [&] { m_host.arrInputAnswers.push_back(textAt(1)); }},
      {"settings", [&] { SetupSettings(args); }},
      {"pointer", [&] { m_host.intPointer = args.Get<Integer>(0); }},
      {"clock",
       [&] {
         int year = 0, month = 0, day = 0, hour = 0, minute = 0;
         if (std::sscanf(textAt(0).c_str(), "%d-%d-%d %d:%d", &year, &month, &day, &hour, &minute) != 5)
           throw std::invalid_argument("no date and time");
         m_host.SetClock(year, month, day, hour, minute);
       }},
      {"boxtime", [&] { m_host.intBoxMinutes = intAt(0); }},
      {"log",
       [&] {
         if (textAt(0) == "ok") return m_host.logFailure.reset();
         m_host.logFailure = ScriptedFailure{args.Get<Long>(1), textAt(2), args.Has(3) ? intAt(3) : 0};
       }},
      {"on", [&] { m_handlers[textAt(0)].push_back(textAt(1)); }},
  };
  const auto found = table.find(strWord);
  if (found == table.end()) throw std::invalid_argument("unknown command " + strWord);
  found->second();
  return {{"ok", true}};
}

StandInConfig AsConfig(const Json &keys) {
  StandInConfig config;
  for (const auto &[strKey, value] : keys.items()) {
    if (value.is_string())
      config[strKey] = value.get<std::string>();
    else if (value.is_number_float())
      config[strKey] = value.get<Double>();
    else if (value.is_null())
      config[strKey] = {};
    else
      config[strKey] = value.get<std::int64_t>();
  }
  return config;
}

void Adapter::SetupDriver(const Arguments &args) {
  const std::string strHow = args.Get<std::string>(0), strName = args.Get<std::string>(1);
  const StandInConfig config = args.Has(2) ? AsConfig(args.At(2)) : StandInConfig();
  if (strHow == "add") return m_driver.Add(strName, config);
  if (strHow == "pending") return m_driver.AddPending(strName, config);
  if (strHow == "set") return m_driver.Configure(strName, config);
  if (strHow == "remove") return m_driver.Remove(strName);
  throw std::invalid_argument("unknown driver command");
}

void Adapter::SetupSettings(const Arguments &args) {
  const std::string strHow = args.Get<std::string>(0), strFirst = args.Get<std::string>(1);
  if (strHow == "fail") {
    auto &arrFailures = strFirst == "get" ? m_host.arrGetFailures : m_host.arrSaveFailures;
    arrFailures.push_back({args.Get<Long>(2), args.Get<std::string>(3), 1});
    return;
  }
  const std::pair key{strFirst, args.Get<std::string>(2)};
  if (strHow == "set")
    m_host.settings[key] = args.Get<std::string>(3);
  else
    m_host.settings.erase(key);
}

}  // namespace

}  // namespace tarvik::test

int main() {
  tarvik::test::Adapter adapter;
  return tarvik::test::ServeLines([&](const std::string &strLine) { return adapter.Answer(strLine); });
}
