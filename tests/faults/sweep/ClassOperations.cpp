#include "ClassOperations.h"

namespace tarvik::test {

namespace {

using Instr = clsInstrInterface;
using Reference = ReferenceInstrument;

std::string Word(bool fValue) { return fValue ? "True" : "False"; }

template <class Result>
ClassOperation Plain(const char *strName, Result (Instr::*operation)(Boolean), bool (Reference::*expected)(bool),
                     bool fArgument) {
  return {std::string(strName) + (fArgument ? " true" : " false"),
          [=](Instr &instr) { return Word((instr.*operation)(Boolean(fArgument))); },
          [=](Reference &reference) { return Word((reference.*expected)(fArgument)); }};
}

template <class Record>
ClassOperation Group(const char *strName, Boolean (Instr::*operation)(Record &), bool (Reference::*expected)()) {
  return {strName,
          [=](Instr &instr) {
            std::remove_const_t<Record> record{};
            return Word((instr.*operation)(record));
          },
          [=](Reference &reference) { return Word((reference.*expected)()); }};
}

ClassOperation Mode(const std::string &strName, Long lngTrigger, Long lngPulse, const std::string &strSetter) {
  return {"SetMode " + strName,
          [=](Instr &instr) {
            udtModeInfo info;
            info.TriggerMode = lngTrigger;
            info.PulseMode = lngPulse;
            return Word(instr.SetMode(info));
          },
          [=](Reference &reference) { return Word(reference.SetMode(lngTrigger, lngPulse, strSetter)); }};
}

ClassOperation Command(const char *strName, int intCommand) {
  return {std::string("InstrumentCommands ") + strName,
          [=](Instr &instr) {
            std::string strText = "as before";
            const bool fDone = instr.InstrumentCommands(static_cast<InstrCommands>(intCommand), &strText);
            return Word(fDone) + " " + strText;
          },
          [=](Reference &reference) {
            std::string strText = "as before";
            const bool fDone = reference.InstrumentCommands(intCommand, strText);
            return Word(fDone) + " " + strText;
          }};
}

/// Without driver traffic: what it answers is told by the state.
ClassOperation Silent(const char *strName, const std::function<std::string(Instr &)> &run,
                      const std::function<std::string(Reference &)> &expected) {
  return {strName, run, expected};
}

void AddSessions(std::vector<ClassOperation> &arr) {
  for (const bool f : {false, true}) {
    arr.push_back(Plain("TransactionStart", &Instr::TransactionStart, &Reference::TransactionStart, f));
    arr.push_back(Plain("TransactionFinish", &Instr::TransactionFinish, &Reference::TransactionFinish, f));
    arr.push_back(Plain("CheckErrors", &Instr::CheckErrors, &Reference::CheckErrors, f));
    arr.push_back(Plain("CheckWarnings", &Instr::CheckWarnings, &Reference::CheckWarnings, f));
    arr.push_back(Silent(
        f ? "IsOnline silent" : "IsOnline", [=](Instr &instr) { return Word(instr.IsOnline(Boolean(f))); },
        [=](Reference &reference) { return Word(reference.IsOnline(f)); }));
    arr.push_back({f ? "LetVerboseErrorMsg true" : "LetVerboseErrorMsg false",
                   [=](Instr &instr) {
                     instr.LetVerboseErrorMsg(Boolean(f));
                     return "";
                   },
                   [=](Reference &reference) {
                     reference.LetVerboseErrorMsg(f);
                     return "";
                   }});
    arr.push_back({f ? "LetErrorsEnabled true" : "LetErrorsEnabled false",
                   [=](Instr &instr) -> std::string {
                     try {
                       instr.LetErrorsEnabled(Boolean(f));
                       return Word(instr.GetErrorsEnabled());
                     } catch (const RunTimeError &error) {
                       return Word(instr.GetErrorsEnabled()) + " " + error.Description();
                     }
                   },
                   [=](Reference &reference) {
                     try {
                       reference.LetErrorsEnabled(f);
                       return Word(reference.fErrorsEnabled);
                     } catch (const ReferenceDriver::Failure &failure) {
                       return Word(reference.fErrorsEnabled) + " " + failure.strText;
                     }
                   }});
    arr.push_back(Silent(
        f ? "LetWarningsEnabled true" : "LetWarningsEnabled false",
        [=](Instr &instr) {
          instr.LetWarningsEnabled(Boolean(f));
          return Word(instr.GetWarningsEnabled());
        },
        [=](Reference &reference) { return Word(reference.fWarningsEnabled = f); }));
  }
  const auto call = [](const char *strName, auto operation, auto expected) {
    return ClassOperation{strName, [=](Instr &instr) { return Word((instr.*operation)()); },
                          [=](Reference &reference) { return Word((reference.*expected)()); }};
  };
  arr.push_back(call("Connect", &Instr::Connect, &Reference::Connect));
  arr.push_back(call("ConnectAgain", &Instr::ConnectAgain, &Reference::ConnectAgain));
  arr.push_back(call("GetVerboseErrorMsg", &Instr::GetVerboseErrorMsg, &Reference::GetVerboseErrorMsg));
  arr.push_back({"OpenInstrument", [](Instr &instr) { return Word(instr.OpenInstrument("Alpha")); },
                 [](Reference &reference) { return Word(reference.OpenInstrument()); }});
  arr.push_back({"CloseInstrument",
                 [](Instr &instr) {
                   instr.CloseInstrument();
                   return "";
                 },
                 [](Reference &reference) {
                   reference.CloseInstrument();
                   return "";
                 }});
  arr.push_back({"TransactionCancel",
                 [](Instr &instr) {
                   instr.TransactionCancel();
                   return "";
                 },
                 [](Reference &reference) {
                   reference.TransactionCancel();
                   return "";
                 }});
}

void AddQuestions(std::vector<ClassOperation> &arr) {
  arr.push_back(Silent(
      "IsConnected", [](Instr &instr) { return Word(instr.IsConnected()); },
      [](Reference &reference) { return Word(reference.fConnected); }));
  arr.push_back(Silent(
      "ChannelCount", [](Instr &instr) { return std::to_string(instr.ChannelCount().value_or(-1)); },
      [](Reference &reference) { return std::to_string(reference.fOnline ? reference.lngChannels : -1); }));
  arr.push_back(Silent(
      "IsSingleChannel", [](Instr &instr) { return Word(instr.IsSingleChannel()); },
      [](Reference &reference) { return Word(reference.fOnline && reference.lngChannels == 1); }));
  arr.push_back(Silent(
      "IsDualChannel", [](Instr &instr) { return Word(instr.IsDualChannel()); },
      [](Reference &reference) { return Word(reference.fOnline && reference.lngChannels == 2); }));
  arr.push_back(Silent(
      "IsRestricted", [](Instr &instr) { return Word(instr.IsRestricted(eLacksComplement)); },
      [](Reference &reference) { return Word(reference.IsRestricted(512)); }));
  arr.push_back(Silent(
      "IsNotRestricted", [](Instr &instr) { return Word(instr.IsNotRestricted(eLacksAnyVxi)); },
      [](Reference &reference) { return Word(!reference.IsRestricted(7168)); }));
  for (const int intIndex : {0, 1, 2})
    arr.push_back({"GetViInfo " + std::to_string(intIndex),
                   [=](Instr &instr) {
                     viInfo record;
                     std::string strName = "as before";
                     return Word(instr.GetViInfo(static_cast<Integer>(intIndex), record, strName)) + " " + strName;
                   },
                   [=](Reference &reference) {
                     std::string strName = "as before";
                     const bool fFound = reference.GetViInfo(intIndex, strName);
                     return Word(fFound) + " " + strName;
                   }});
  arr.push_back({"GetInstrInfo",
                 [](Instr &instr) {
                   udtInstrInfo info;
                   const bool fDone = instr.GetInstrInfo(info);
                   return Word(fDone) + " " + info.strProductId;
                 },
                 [](Reference &reference) {
                   std::string strProductId;
                   const bool fDone = reference.GetInstrInfo(strProductId);
                   return Word(fDone) + " " + strProductId;
                 }});
  arr.push_back({"GetPnpTimeout", [](Instr &instr) { return std::to_string(instr.GetPnpTimeout()); },
                 [](Reference &reference) { return std::to_string(reference.GetPnpTimeout()); }});
  arr.push_back({"LetPnpTimeout",
                 [](Instr &instr) {
                   instr.LetPnpTimeout(5000);
                   return "";
                 },
                 [](Reference &reference) {
                   reference.LetPnpTimeout();
                   return "";
                 }});
}

void AddModes(std::vector<ClassOperation> &arr) {
  arr.push_back(Mode("continuous pulses", 0, 0, "SetContinuousPulses"));
  arr.push_back(Mode("continuous burst", 0, 1, "SetContinuousBurst"));
  arr.push_back(Mode("continuous pattern", 0, 2, "SetContinuousPattern"));
  arr.push_back(Mode("triggered pulses", 1, 0, "SetTriggeredPulses"));
  arr.push_back(Mode("triggered burst", 1, 1, "SetTriggeredBurst"));
  arr.push_back(Mode("triggered pattern", 1, 2, "SetTriggeredPattern"));
  arr.push_back(Mode("gated pulses", 2, 0, "SetGatedPulses"));
  arr.push_back(Mode("gated burst", 2, 1, "SetGatedBurst"));
  arr.push_back(Mode("gated pattern", 2, 2, "SetGatedPattern"));
  arr.push_back(Mode("ext width", 3, 0, ""));
  arr.push_back(Mode("illegal trigger", 7, 0, ""));
  arr.push_back(Mode("illegal pulses", 0, 9, ""));
  arr.push_back(Group("GetMode", &Instr::GetMode, &Reference::GetMode));
  ClassOperation patternOnPll = Group("GetMode pattern on PLL", &Instr::GetMode, &Reference::GetMode);
  patternOnPll.prepare = [](InstrumentSettings &settings, ReferenceDriver &driver) {
    driver.lngPulseMode = settings.lngPulseMode = 2;
    driver.lngArmingSource = settings.lngArmingSource = 1;
  };
  arr.push_back(patternOnPll);
}

void AddGroups(std::vector<ClassOperation> &arr) {
  for (const bool fDouble : {false, true})
    arr.push_back({fDouble ? "SetTiming double pulses" : "SetTiming",
                   [=](Instr &instr) {
                     udtTimingInfo info;
                     info.fDoublePulse = {Boolean(fDouble), Boolean(fDouble)};
                     return Word(instr.SetTiming(info));
                   },
                   [=](Reference &reference) { return Word(reference.SetTiming(fDouble)); }});
  arr.push_back(Group("GetTiming", &Instr::GetTiming, &Reference::GetTiming));
  for (const bool fComplement : {false, true})
    arr.push_back({fComplement ? "Output complement" : "Output",
                   [=](Instr &instr) { return Word(instr.Output(1, True, Boolean(fComplement))); },
                   [=](Reference &reference) { return Word(reference.Output(fComplement)); }});
  arr.push_back(Group("SetLevels", &Instr::SetLevels, &Reference::SetLevels));
  arr.push_back(Group("GetLevels", &Instr::GetLevels, &Reference::GetLevels));
  arr.push_back(Group("SetLimits", &Instr::SetLimits, &Reference::SetLimits));
  arr.push_back(Group("GetLimits", &Instr::GetLimits, &Reference::GetLimits));
  arr.push_back(Group("SetTriggerLevels", &Instr::SetTriggerLevels, &Reference::SetTriggerLevels));
  arr.push_back(Group("GetTriggerLevels", &Instr::GetTriggerLevels, &Reference::GetTriggerLevels));
  for (const bool fGet : {false, true})
    arr.push_back({fGet ? "PllRefSource get" : "PllRefSource set",
                   [=](Instr &instr) {
                     Double dblFreq = 1e6;
                     Long eSource = 1;
                     return Word(instr.PllRefSource(dblFreq, eSource, Boolean(fGet)));
                   },
                   [=](Reference &reference) { return Word(reference.PllRefSource(fGet)); }});
}

void AddPatterns(std::vector<ClassOperation> &arr) {
  arr.push_back({"SetRz",
                 [](Instr &instr) {
                   return Word(instr.SetRz(BooleanArray(1, {True, False})));
                 },
                 [](Reference &reference) { return Word(reference.SetRz()); }});
  arr.push_back({"GetRz",
                 [](Instr &instr) {
                   BooleanArray fRz(1, {False, False});
                   return Word(instr.GetRz(fRz));
                 },
                 [](Reference &reference) { return Word(reference.GetRz()); }});
  arr.push_back({"SetPatternArray",
                 [](Instr &instr) {
                   ByteArray arrBytes(1, {1, 2});
                   return Word(instr.SetPatternArray(1, arrBytes, 16));
                 },
                 [](Reference &reference) {
                   return Word(reference.Pattern("SetPatternArray", "IPatternMemory.SetPattern", true));
                 }});
  arr.push_back({"GetPatternArray",
                 [](Instr &instr) {
                   ByteArray arrBytes(1, {0});
                   Long lngLength = 0;
                   return Word(instr.GetPatternArray(2, arrBytes, lngLength));
                 },
                 [](Reference &reference) {
                   return Word(reference.Pattern("GetPatternArray", "IPatternMemory.GetPattern", false));
                 }});
  arr.push_back(
      {"CalcPRBS",
       [](Instr &instr) {
         ByteArray arrBytes(1, {0, 0});
         return Word(instr.CalcPRBS(0, 15, 4, arrBytes));
       },
       [](Reference &reference) { return Word(reference.Pattern("CalcPRBS", "IPatternMemory.CalcPrbs", false)); }});
}

std::vector<ClassOperation> AllOperations() {
  std::vector<ClassOperation> arr;
  AddSessions(arr);
  AddQuestions(arr);
  AddModes(arr);
  AddGroups(arr);
  AddPatterns(arr);
  arr.push_back(Command("reset", 0));
  arr.push_back(Command("self test", 1));
  arr.push_back(Command("calibrate", 2));
  arr.push_back(Command("refresh", 3));
  arr.push_back(Command("options", 4));
  arr.push_back(Command("5", 5));
  return arr;
}

}  // namespace

const std::vector<ClassOperation> &ClassOperations() {
  static const std::vector<ClassOperation> arr = AllOperations();
  return arr;
}

bool ClassSettings::Send(clsInstrInterface &instr) const {
  const bool fAll = instr.TransactionStart(True) && instr.SetMode(mode) && instr.SetTiming(timing) &&
                    instr.SetLevels(levels) && instr.SetLimits(limits) && instr.SetTriggerLevels(trigger);
  return instr.TransactionFinish(True) && fAll;
}

bool ClassSettings::Read(clsInstrInterface &instr) {
  return instr.GetMode(mode) && instr.GetTiming(timing) && instr.GetLevels(levels) && instr.GetLimits(limits) &&
         instr.GetTriggerLevels(trigger);
}

}  // namespace tarvik::test
