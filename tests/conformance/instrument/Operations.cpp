#include "Reply.h"

namespace tarvik::test {

namespace {

clsInstrInterface &Instr() { return *InstrInterface(); }

/// Writes the argument by reference when the operation is left, however it is left.
template <class Value>
class ByRef {
 public:
  ByRef(Reply &reply, const char *strName, Value &value) : m_reply(reply), m_strName(strName), m_value(value) {}
  ByRef(const ByRef &) = delete;
  ByRef &operator=(const ByRef &) = delete;
  ~ByRef() { m_reply.byref[m_strName] = AsJson(m_value); }

 private:
  static Json AsJson(const ByteArray &arr) { return ToHex(arr.Elements()); }
  static Json AsJson(const viInfo &info) { return ToHex({info.arrBytes.begin(), info.arrBytes.end()}); }
  static Json AsJson(const BooleanArray &arr) {
    Json values = Json::array();
    for (const Boolean fValue : arr.Elements()) values.push_back(fValue.Word());
    return {{"dims", arr.Dimensions()}, {"lb", arr.LowerBound()}, {"v", values}};
  }
  template <class T>
  static Json AsJson(const T &value) {
    if constexpr (HasFields<T>)
      return WriteRecord(value);
    else
      return ToJson(value);
  }

  Reply &m_reply;
  const char *m_strName;
  Value &m_value;
};

template <class Record, class Operation>
Command OnRecord(const char *strName, Operation operation) {
  return [=](const Arguments &args, Reply &reply) {
    Record record = ReadRecord<Record>(args.At(0));
    const ByRef byRef(reply, strName, record);
    reply.Set((Instr().*operation)(record));
  };
}

template <class Result>
Command Question(Result (clsInstrInterface::*operation)()) {
  return [=](const Arguments &, Reply &reply) { reply.Set((Instr().*operation)()); };
}

template <class Result>
Command Question(Result (clsInstrInterface::*operation)() const) {
  return [=](const Arguments &, Reply &reply) { reply.Set((Instr().*operation)()); };
}

template <class Value>
Command Setter(void (clsInstrInterface::*operation)(Value)) {
  return [=](const Arguments &args, Reply &) { (Instr().*operation)(args.Get<Value>(0)); };
}

/// An operation with one Boolean that may be left out; both forms of the call are written out, so that the
/// default stays the operation's own.
Command OptionalFlag(Boolean (*fWith)(Boolean), Boolean (*fWithout)()) {
  return
      [=](const Arguments &args, Reply &reply) { reply.Set(args.Has(0) ? fWith(args.Get<Boolean>(0)) : fWithout()); };
}

Command Transaction(Boolean (*fWith)(Boolean), Boolean (*fWithout)()) {
  return [=](const Arguments &args, Reply &reply) {
    if (!args.Has(0)) return reply.Set(fWithout());
    const Boolean fGlobal = args.Get<Boolean>(0);
    reply.byref["fGlobalTrans"] = fGlobal.Word();
    reply.Set(fWith(fGlobal));
  };
}

void OpenInstrument(const Arguments &args, Reply &reply) {
  auto strName = args.Get<std::string>(0);
  const ByRef byRef(reply, "strName", strName);
  const auto flag = [&](std::size_t place) { return args.Get<Boolean>(place, False); };
  switch (args.Count()) {
    case 1: return reply.Set(Instr().OpenInstrument(strName));
    case 2: return reply.Set(Instr().OpenInstrument(strName, flag(1)));
    case 3: return reply.Set(Instr().OpenInstrument(strName, flag(1), flag(2)));
    default: return reply.Set(Instr().OpenInstrument(strName, flag(1), flag(2), flag(3)));
  }
}

void InstrumentCommand(const Arguments &args, Reply &reply) {
  const auto eIC = static_cast<InstrCommands>(args.Get<Long>(0));
  if (!args.Has(1)) {
    reply.Set(args.Has(2) ? Instr().InstrumentCommands(eIC, nullptr, args.Get<Integer>(2))
                          : Instr().InstrumentCommands(eIC));
    return;
  }
  auto strT = args.Get<std::string>(1);
  const ByRef byRef(reply, "strT", strT);
  reply.Set(args.Has(2) ? Instr().InstrumentCommands(eIC, &strT, args.Get<Integer>(2))
                        : Instr().InstrumentCommands(eIC, &strT));
}

void GetViInfo(const Arguments &args, Reply &reply) {
  viInfo info;
  const std::vector<Byte> arrBytes = FromHex(args.Get<std::string>(1));
  std::copy_n(arrBytes.begin(), std::min(arrBytes.size(), info.arrBytes.size()), info.arrBytes.begin());
  auto strName = args.Get<std::string>(2);
  const ByRef byRefInfo(reply, "viInfo", info);
  const ByRef byRefName(reply, "strName", strName);
  reply.Set(Instr().GetViInfo(args.Get<Integer>(0), info, strName));
}

void PllRefSource(const Arguments &args, Reply &reply) {
  auto dblFreq = args.Get<Double>(0);
  auto eSource = args.Get<Long>(1);
  const ByRef byRefFreq(reply, "dblFreq", dblFreq);
  const ByRef byRefSource(reply, "eSource", eSource);
  reply.Set(Instr().PllRefSource(dblFreq, eSource, args.Get<Boolean>(2)));
}

void Output(const Arguments &args, Reply &reply) {
  const auto intChan = args.Get<Integer>(0);
  const auto fState = args.Get<Boolean>(1);
  reply.Set(args.Has(2) ? Instr().Output(intChan, fState, args.Get<Boolean>(2)) : Instr().Output(intChan, fState));
}

BooleanArray RzArray(const Json &value) {
  if (const Integer intDimensions = value.value("dims", Integer{1}); intDimensions != 1)
    return BooleanArray::WithDimensions(intDimensions);
  BooleanArray arr(value.at("lb").get<Long>());
  for (const Json &entry : value.at("v")) arr.Elements().push_back(Boolean(entry.get<int>() != 0));
  return arr;
}

void SetRz(const Arguments &args, Reply &reply) {
  BooleanArray fRz = RzArray(args.At(0));
  const ByRef byRef(reply, "fRz", fRz);
  reply.Set(Instr().SetRz(fRz));
}

void GetRz(const Arguments &args, Reply &reply) {
  BooleanArray fRz = RzArray(args.At(0));
  const ByRef byRef(reply, "fRz", fRz);
  reply.Set(Instr().GetRz(fRz));
}

ByteArray PatternBytes(const Arguments &args, std::size_t place) {
  return ByteArray(0, FromHex(args.Get<std::string>(place)));
}

void SetPatternArray(const Arguments &args, Reply &reply) {
  ByteArray arr = PatternBytes(args, 1);
  const ByRef byRef(reply, "arr", arr);
  reply.Set(Instr().SetPatternArray(args.Get<Long>(0), arr, args.Get<Long>(2)));
}

void GetPatternArray(const Arguments &args, Reply &reply) {
  ByteArray arr = PatternBytes(args, 1);
  auto lngPatternLen = args.Get<Long>(2);
  const ByRef byRef(reply, "arr", arr);
  const ByRef byRefLength(reply, "lngPatternLen", lngPatternLen);
  reply.Set(Instr().GetPatternArray(args.Get<Long>(0), arr, lngPatternLen));
}

void CalcPRBS(const Arguments &args, Reply &reply) {
  ByteArray arr = PatternBytes(args, 3);
  const ByRef byRef(reply, "arr", arr);
  reply.Set(Instr().CalcPRBS(args.Get<Long>(0), args.Get<Long>(1), args.Get<Long>(2), arr));
}

}  // namespace

const CommandTable &InstrumentOperations() {
  using Class = clsInstrInterface;
  static const CommandTable table = {
      {"Connect", Question(&Class::Connect)},
      {"IsConnected", Question(&Class::IsConnected)},
      {"IsOnline", OptionalFlag([](Boolean f) { return Instr().IsOnline(f); }, [] { return Instr().IsOnline(); })},
      {"OpenInstrument", OpenInstrument},
      {"CloseInstrument", [](const Arguments &, Reply &) { Instr().CloseInstrument(); }},
      {"TransactionStart",
       Transaction([](Boolean f) { return Instr().TransactionStart(f); }, [] { return Instr().TransactionStart(); })},
      {"TransactionFinish",
       Transaction([](Boolean f) { return Instr().TransactionFinish(f); }, [] { return Instr().TransactionFinish(); })},
      {"TransactionCancel", [](const Arguments &, Reply &) { Instr().TransactionCancel(); }},
      {"GetInstrInfo", OnRecord<udtInstrInfo>("InstrInfo", &Class::GetInstrInfo)},
      {"InstrumentCommands", InstrumentCommand},
      {"GetVerboseErrorMsg", Question(&Class::GetVerboseErrorMsg)},
      {"LetVerboseErrorMsg", Setter(&Class::LetVerboseErrorMsg)},
      {"CheckErrors",
       OptionalFlag([](Boolean f) { return Instr().CheckErrors(f); }, [] { return Instr().CheckErrors(); })},
      {"CheckWarnings",
       OptionalFlag([](Boolean f) { return Instr().CheckWarnings(f); }, [] { return Instr().CheckWarnings(); })},
      {"GetErrorsEnabled", Question(&Class::GetErrorsEnabled)},
      {"LetErrorsEnabled", Setter(&Class::LetErrorsEnabled)},
      {"GetWarningsEnabled", Question(&Class::GetWarningsEnabled)},
      {"LetWarningsEnabled", Setter(&Class::LetWarningsEnabled)},
      {"GetPnpTimeout", Question(&Class::GetPnpTimeout)},
      {"LetPnpTimeout", Setter(&Class::LetPnpTimeout)},
      {"GetViInfo", GetViInfo},
      {"ChannelCount", Question(&Class::ChannelCount)},
      {"IsSingleChannel", Question(&Class::IsSingleChannel)},
      {"IsDualChannel", Question(&Class::IsDualChannel)},
      {"IsRestricted", [](const Arguments &args, Reply &reply) { reply.Set(Instr().IsRestricted(args.Get<Long>(0))); }},
      {"IsNotRestricted",
       [](const Arguments &args, Reply &reply) { reply.Set(Instr().IsNotRestricted(args.Get<Long>(0))); }},
      {"PllRefSource", PllRefSource},
      {"SetMode", OnRecord<udtModeInfo>("ModeInfo", &Class::SetMode)},
      {"GetMode", OnRecord<udtModeInfo>("ModeInfo", &Class::GetMode)},
      {"SetTiming", OnRecord<udtTimingInfo>("TimingInfo", &Class::SetTiming)},
      {"GetTiming", OnRecord<udtTimingInfo>("TimingInfo", &Class::GetTiming)},
      {"Output", Output},
      {"SetLevels", OnRecord<udtLevelInfo>("LevelInfo", &Class::SetLevels)},
      {"GetLevels", OnRecord<udtLevelInfo>("LevelInfo", &Class::GetLevels)},
      {"SetLimits", OnRecord<udtLimitsInfo>("Limits", &Class::SetLimits)},
      {"GetLimits", OnRecord<udtLimitsInfo>("Limits", &Class::GetLimits)},
      {"SetTriggerLevels", OnRecord<udtTrgLevelsInfo>("TrgLevels", &Class::SetTriggerLevels)},
      {"GetTriggerLevels", OnRecord<udtTrgLevelsInfo>("TrgLevels", &Class::GetTriggerLevels)},
      {"SetRz", SetRz},
      {"GetRz", GetRz},
      {"SetPatternArray", SetPatternArray},
      {"GetPatternArray", GetPatternArray},
      {"CalcPRBS", CalcPRBS},
  };
  return table;
}

}  // namespace tarvik::test
