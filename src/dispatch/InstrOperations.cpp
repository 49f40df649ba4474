#include "dispatch/InstrOperations.h"

#include "dispatch/InstrRecord.h"

namespace tarvik {

namespace {

using Instr = clsInstrInterface;
using Object = automation::Ref<automation::IDispatch>;

Parameter In(const char *strName, ValueKind eKind) { return {strName, eKind}; }
Parameter InOut(const char *strName, ValueKind eKind) { return {strName, eKind, {}, true}; }
Parameter Optional(const char *strName, ValueKind eKind, Value vDefault) {
  return {strName, eKind, std::move(vDefault)};
}
Parameter OptionalInOut(const char *strName, ValueKind eKind, Value vDefault) {
  return {strName, eKind, std::move(vDefault), true};
}
Parameter Record(const char *strName, const char *strRecord) {
  return {strName, ValueKind::ObjectValue, {}, false, strRecord};
}

template <class T>
T &RecordIn(Arguments &args, std::size_t number) {
  return InstrRecord::In<T>(args.Get<Object>(number));
}

Value ChannelCount(Instr &instr, Arguments &) {
  const auto lngCount = instr.ChannelCount();
  return lngCount ? Value(*lngCount) : Value();
}

Value InstrumentCommand(Instr &instr, Arguments &args) {
  // An unknown command is handled by the instrument interface.
  return instr.InstrumentCommands(static_cast<InstrCommands>(args.Get<Long>(0)), &args.Get<std::string>(1),
                                  args.Get<Integer>(2));
}

}  // namespace

const std::vector<InstrOperation> &InstrOperations() {
  using K = ValueKind;
  using A = Arguments;
  static const std::vector<InstrOperation> arrOperations{
      {{"TransactionStart", 1, CallMethod, {OptionalInOut("fGlobalTrans", K::BooleanValue, False)}},
       [](Instr &i, A &a) { return Value(i.TransactionStart(a.Get<Boolean>(0))); }},
      {{"TransactionFinish", 2, CallMethod, {OptionalInOut("fGlobalTrans", K::BooleanValue, False)}},
       [](Instr &i, A &a) { return Value(i.TransactionFinish(a.Get<Boolean>(0))); }},
      {{"TransactionCancel", 3, CallMethod}, [](Instr &i, A &) { return i.TransactionCancel(), Value(); }},
      {{"IsConnected", 4, CallMethod}, [](Instr &i, A &) { return Value(i.IsConnected()); }},
      {{"IsOnline", 5, CallMethod, {Optional("fSilent", K::BooleanValue, False)}},
       [](Instr &i, A &a) { return Value(i.IsOnline(a.Get<Boolean>(0))); }},
      {{"OpenInstrument",
        6,
        CallMethod,
        {InOut("strName", K::StringValue), Optional("IdQuery", K::BooleanValue, False),
         Optional("fResetInstr", K::BooleanValue, False), Optional("fAutoDetectErrors", K::BooleanValue, True)}},
       [](Instr &i, A &a) {
         return Value(i.OpenInstrument(a.Get<std::string>(0), a.Get<Boolean>(1), a.Get<Boolean>(2), a.Get<Boolean>(3)));
       }},
      {{"CloseInstrument", 7, CallMethod}, [](Instr &i, A &) { return i.CloseInstrument(), Value(); }},
      {{"Connect", 8, CallMethod}, [](Instr &i, A &) { return Value(i.Connect()); }},
      {{"CheckErrors", 9, CallMethod, {Optional("fOverride", K::BooleanValue, False)}},
       [](Instr &i, A &a) { return Value(i.CheckErrors(a.Get<Boolean>(0))); }},
      {{"CheckWarnings", 10, CallMethod, {Optional("fOverride", K::BooleanValue, False)}},
       [](Instr &i, A &a) { return Value(i.CheckWarnings(a.Get<Boolean>(0))); }},
      {{"GetViInfo",
        11,
        CallMethod,
        {In("Index", K::IntegerValue), Record("viInfo", "viInfo"), InOut("strName", K::StringValue)}},
       [](Instr &i, A &a) {
         return Value(i.GetViInfo(a.Get<Integer>(0), RecordIn<viInfo>(a, 1), a.Get<std::string>(2)));
       }},
      {{"IsSingleChannel", 12, CallMethod}, [](Instr &i, A &) { return Value(i.IsSingleChannel()); }},
      {{"IsDualChannel", 13, CallMethod}, [](Instr &i, A &) { return Value(i.IsDualChannel()); }},
      {{"ChannelCount", 14, CallMethod}, ChannelCount},
      {{"GetInstrInfo", 15, CallMethod, {Record("InstrInfo", "udtInstrInfo")}},
       [](Instr &i, A &a) { return Value(i.GetInstrInfo(RecordIn<udtInstrInfo>(a, 0))); }},
      {{"SetMode", 16, CallMethod, {Record("ModeInfo", "udtModeInfo")}},
       [](Instr &i, A &a) { return Value(i.SetMode(RecordIn<udtModeInfo>(a, 0))); }},
      {{"GetMode", 17, CallMethod, {Record("ModeInfo", "udtModeInfo")}},
       [](Instr &i, A &a) { return Value(i.GetMode(RecordIn<udtModeInfo>(a, 0))); }},
      {{"SetTiming", 18, CallMethod, {Record("TimingInfo", "udtTimingInfo")}},
       [](Instr &i, A &a) { return Value(i.SetTiming(RecordIn<udtTimingInfo>(a, 0))); }},
      {{"GetTiming", 19, CallMethod, {Record("TimingInfo", "udtTimingInfo")}},
       [](Instr &i, A &a) { return Value(i.GetTiming(RecordIn<udtTimingInfo>(a, 0))); }},
      {{"Output",
        20,
        CallMethod,
        {In("intChan", K::IntegerValue), In("fState", K::BooleanValue),
         Optional("fIsComplement", K::BooleanValue, False)}},
       [](Instr &i, A &a) { return Value(i.Output(a.Get<Integer>(0), a.Get<Boolean>(1), a.Get<Boolean>(2))); }},
      {{"IsRestricted", 21, CallMethod, {In("eFunctionality", K::LongValue)}},
       [](Instr &i, A &a) { return Value(i.IsRestricted(a.Get<Long>(0))); }},
      {{"IsNotRestricted", 22, CallMethod, {In("eFunctionality", K::LongValue)}},
       [](Instr &i, A &a) { return Value(i.IsNotRestricted(a.Get<Long>(0))); }},
      {{"SetLevels", 23, CallMethod, {Record("LevelInfo", "udtLevelInfo")}},
       [](Instr &i, A &a) { return Value(i.SetLevels(RecordIn<udtLevelInfo>(a, 0))); }},
      {{"GetLevels", 24, CallMethod, {Record("LevelInfo", "udtLevelInfo")}},
       [](Instr &i, A &a) { return Value(i.GetLevels(RecordIn<udtLevelInfo>(a, 0))); }},
      {{"SetLimits", 25, CallMethod, {Record("Limits", "udtLimitsInfo")}},
       [](Instr &i, A &a) { return Value(i.SetLimits(RecordIn<udtLimitsInfo>(a, 0))); }},
      {{"GetLimits", 26, CallMethod, {Record("Limits", "udtLimitsInfo")}},
       [](Instr &i, A &a) { return Value(i.GetLimits(RecordIn<udtLimitsInfo>(a, 0))); }},
      {{"SetTriggerLevels", 27, CallMethod, {Record("TrgLevels", "udtTrgLevelsInfo")}},
       [](Instr &i, A &a) { return Value(i.SetTriggerLevels(RecordIn<udtTrgLevelsInfo>(a, 0))); }},
      {{"GetTriggerLevels", 28, CallMethod, {Record("TrgLevels", "udtTrgLevelsInfo")}},
       [](Instr &i, A &a) { return Value(i.GetTriggerLevels(RecordIn<udtTrgLevelsInfo>(a, 0))); }},
      {{"SetRz", 29, CallMethod, {InOut("fRz", K::BooleanArrayValue)}},
       [](Instr &i, A &a) { return Value(i.SetRz(a.Get<BooleanArray>(0))); }},
      {{"GetRz", 30, CallMethod, {InOut("fRz", K::BooleanArrayValue)}},
       [](Instr &i, A &a) { return Value(i.GetRz(a.Get<BooleanArray>(0))); }},
      {{"SetPatternArray",
        31,
        CallMethod,
        {In("eChan", K::LongValue), InOut("arr", K::ByteArrayValue), In("lngPatternLen", K::LongValue)}},
       [](Instr &i, A &a) { return Value(i.SetPatternArray(a.Get<Long>(0), a.Get<ByteArray>(1), a.Get<Long>(2))); }},
      {{"GetPatternArray",
        32,
        CallMethod,
        {In("eChan", K::LongValue), InOut("arr", K::ByteArrayValue), InOut("lngPatternLen", K::LongValue)}},
       [](Instr &i, A &a) { return Value(i.GetPatternArray(a.Get<Long>(0), a.Get<ByteArray>(1), a.Get<Long>(2))); }},
      {{"CalcPRBS",
        33,
        CallMethod,
        {In("lngStartAddr", K::LongValue), In("lngLastAddr", K::LongValue), In("lngBase", K::LongValue),
         InOut("arr", K::ByteArrayValue)}},
       [](Instr &i, A &a) {
         return Value(i.CalcPRBS(a.Get<Long>(0), a.Get<Long>(1), a.Get<Long>(2), a.Get<ByteArray>(3)));
       }},
      {{"WarningsEnabled", 34, CallPropertyGet}, [](Instr &i, A &) { return Value(i.GetWarningsEnabled()); }},
      {{"WarningsEnabled", 34, CallPropertyPut, {In("fEnable", K::BooleanValue)}},
       [](Instr &i, A &a) { return i.LetWarningsEnabled(a.Get<Boolean>(0)), Value(); }},
      {{"ErrorsEnabled", 35, CallPropertyGet}, [](Instr &i, A &) { return Value(i.GetErrorsEnabled()); }},
      {{"ErrorsEnabled", 35, CallPropertyPut, {In("fEnable", K::BooleanValue)}},
       [](Instr &i, A &a) { return i.LetErrorsEnabled(a.Get<Boolean>(0)), Value(); }},
      {{"InstrumentCommands",
        36,
        CallMethod,
        {In("eIC", K::LongValue), OptionalInOut("strT", K::StringValue, std::string()),
         Optional("intT", K::IntegerValue, static_cast<Integer>(0))}},
       InstrumentCommand},
      {{"PllRefSource",
        37,
        CallMethod,
        {InOut("dblFreq", K::DoubleValue), InOut("eSource", K::LongValue), In("fGet", K::BooleanValue)}},
       [](Instr &i, A &a) { return Value(i.PllRefSource(a.Get<Double>(0), a.Get<Long>(1), a.Get<Boolean>(2))); }},
      {{"PnpTimeout", 38, CallPropertyGet}, [](Instr &i, A &) { return Value(i.GetPnpTimeout()); }},
      {{"PnpTimeout", 38, CallPropertyPut, {In("lngTimeout", K::LongValue)}},
       [](Instr &i, A &a) { return i.LetPnpTimeout(a.Get<Long>(0)), Value(); }},
      {{"VerboseErrorMsg", 39, CallPropertyGet}, [](Instr &i, A &) { return Value(i.GetVerboseErrorMsg()); }},
      {{"VerboseErrorMsg", 39, CallPropertyPut, {In("fVerbose", K::BooleanValue)}},
       [](Instr &i, A &a) { return i.LetVerboseErrorMsg(a.Get<Boolean>(0)), Value(); }},
  };
  return arrOperations;
}

}  // namespace tarvik
