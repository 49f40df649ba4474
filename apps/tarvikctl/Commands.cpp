#include "Commands.h"

#include <filesystem>
#include <iostream>
#include <iterator>
#include <optional>

#include "CtlFailure.h"
#include "CtlSession.h"
#include "Output.h"
#include "PatternFile.h"
#include "settings/PatternText.h"
#include "settings/SettingText.h"
#include "settings/SetupFile.h"
#include "settings/SetupTransfer.h"
#include "support/Conversions.h"
#include "support/WholeFile.h"

namespace tarvik {

namespace {

constexpr const char *StandardStream = "-";

/// The host of the program and a session on it.
struct Connected {
  explicit Connected(const Arguments &arguments)
      : host(arguments.strServer), installed(SetHost(&host)), session(host) {}
  Connected(const Connected &) = delete;
  Connected &operator=(const Connected &) = delete;

  CtlHost host;
  Host *installed;
  CtlSession session;
};

struct Opened : Connected {
  explicit Opened(const Arguments &arguments) : Connected(arguments) { session.Open(arguments.strName); }
};

/// What the action hands back; a RunTimeError of it ends the command.
template <class Action>
auto WithFile(Action action) {
  try {
    return action();
  } catch (const RunTimeError &error) {
    throw CtlFailure{eExitFile, error.Description()};
  }
}

std::string StandardInput() {
  std::string strText(LargestSetupFile + 1, '\0');
  std::cin.read(strText.data(), static_cast<std::streamsize>(strText.size()));
  strText.resize(static_cast<std::size_t>(std::cin.gcount()));
  if (strText.size() > LargestSetupFile) throw CtlFailure{eExitFile, "standard input is too long"};
  return strText;
}

Setup SetupOfFile(const std::string &strFile) {
  return WithFile([&] { return strFile == StandardStream ? SetupFromText(StandardInput()) : LoadSetup(strFile); });
}

std::string TextOfFile(const std::string &strFile) {
  if (strFile == StandardStream) return StandardInput();
  return WithFile([&] {
    try {
      return ReadWholeFile(strFile, LargestSetupFile);
    } catch (const RunTimeError &error) {
      throw RunTimeError(error.Number(), "Cannot load " + strFile + ": " + error.Description());
    }
  });
}

[[noreturn]] void RefuseAll(CtlExit eExit, const std::vector<std::string> &arrReasons) {
  std::string strAll;
  for (const std::string &strReason : arrReasons) strAll += (strAll.empty() ? "" : "\n") + strReason;
  throw CtlFailure{eExit, strAll};
}

/// Finds the settings, before anything is connected.
std::vector<SettingPlace> Places(const std::vector<std::string> &arrKeys) {
  std::vector<SettingPlace> arrPlaces;
  std::vector<std::string> arrReasons;
  for (const std::string &strKey : arrKeys) {
    if (const auto place = FindSetting(strKey))
      arrPlaces.push_back(*place);
    else
      arrReasons.push_back("there is no setting \"" + strKey + "\"; tarvikctl keys lists all");
  }
  if (!arrReasons.empty()) RefuseAll(eExitUsage, arrReasons);
  return arrPlaces;
}

void RequireHad(const std::vector<SettingPlace> &arrPlaces, const Setup &setup) {
  std::vector<std::string> arrReasons;
  for (const SettingPlace &place : arrPlaces)
    if (!place.setting->IsHad(setup, place.lngChannel))
      arrReasons.push_back(place.Key() + ": the instrument does not have it");
  if (!arrReasons.empty()) RefuseAll(eExitRefused, arrReasons);
}

/// A change that was typed.
struct Change {
  SettingPlace place;
  std::string strText;
};

std::vector<Change> Changes(const std::vector<std::string> &arrArguments) {
  std::vector<std::string> arrKeys, arrTexts;
  for (const std::string &strArgument : arrArguments) {
    const std::size_t equals = strArgument.find('=');
    if (equals == std::string::npos) throw CtlFailure{eExitUsage, "\"" + strArgument + "\" is not KEY=VALUE"};
    arrKeys.push_back(strArgument.substr(0, equals));
    arrTexts.push_back(strArgument.substr(equals + 1));
  }
  const std::vector<SettingPlace> arrPlaces = Places(arrKeys);
  std::vector<Change> arrChanges;
  for (std::size_t i = 0; i < arrPlaces.size(); ++i) arrChanges.push_back({arrPlaces[i], arrTexts[i]});
  return arrChanges;
}

/// All changes in their order; all that is wrong with them is told at once. Ranges are those of the modes that result.
void Apply(const std::vector<Change> &arrChanges, Setup &setup) {
  std::vector<std::string> arrReasons;
  const auto refuse = [&](const SettingPlace &place, const std::string &strWhy) {
    if (!strWhy.empty()) arrReasons.push_back(place.Key() + ": " + strWhy);
  };
  for (const auto &[place, strText] : arrChanges) {
    try {
      WriteAsMeant(place, setup, ReadEntryText(*place.setting, setup, place.lngChannel, strText));
    } catch (const RunTimeError &error) {
      refuse(place, error.Description());
    }
  }
  for (const auto &[place, strText] : arrChanges)
    if (place.setting->IsInUse(setup, place.lngChannel))
      refuse(place, Objection(*place.setting, setup, place.lngChannel, place.setting->Read(setup, place.lngChannel)));
  if (!arrReasons.empty()) RefuseAll(eExitUsage, arrReasons);
}

/// Most settings that the modes do not use are not sent, and keep what they had.
void TellUnused(const std::vector<Change> &arrChanges, const Setup &before, const Setup &sent) {
  for (const auto &[place, strText] : arrChanges) {
    const auto valueIn = [&place = place](const Setup &setup) { return place.setting->Read(setup, place.lngChannel); };
    if (!place.setting->IsInUse(sent, place.lngChannel) && valueIn(before) != valueIn(sent))
      Complain(place.Key() + ": not used in these modes, so the instrument may not have taken it");
  }
}

Long RowOf(const std::string &strRow) {
  return strRow == "1" ? ePatternChan1 : strRow == "2" ? ePatternChan2 : ePatternStrobe;
}

PatternStream Prbs(CtlSession &session, Long lngBase, Long lngLength) {
  ByteArray arr(1, std::vector<Byte>(static_cast<std::size_t>((lngLength + 7) / 8)));
  if (!session.Instr().CalcPRBS(1, lngLength, lngBase, arr)) throw CtlFailure{eExitRefused, {}};
  PatternStream stream{lngLength, arr.Elements()};
  stream.arrBytes.resize(static_cast<std::size_t>((lngLength + 7) / 8));
  if (lngLength % 8 != 0)
    stream.arrBytes.back() = static_cast<Byte>(stream.arrBytes.back() & 0xFF << (8 - lngLength % 8));
  return stream;
}

void PutText(const std::string &strFile, const std::string &strText) {
  if (strFile.empty() || strFile == StandardStream) {
    std::cout << strText;
    return;
  }
  WithFile([&] {
    try {
      WriteWholeFile(strFile, strText);
    } catch (const RunTimeError &error) {
      throw RunTimeError(error.Number(), "Cannot save " + strFile + ": " + error.Description());
    }
  });
}

}  // namespace

int ListCommand(const Arguments &arguments) {
  Connected connected(arguments);
  std::cout << InstrumentsText(connected.session.Instruments(), arguments.fJson);
  return eExitDone;
}

int InfoCommand(const Arguments &arguments) {
  Opened opened(arguments);
  std::cout << IdentityText(opened.session.Identity(), arguments.fJson);
  return eExitDone;
}

int KeysCommand(const Arguments &arguments) {
  std::cout << KeysText(arguments.fJson);
  return eExitDone;
}

int SaveCommand(const Arguments &arguments) {
  Opened opened(arguments);
  const Setup setup = opened.session.Read();
  if (arguments.strFile == StandardStream)
    std::cout << SetupToText(setup);
  else
    WithFile([&] { SaveSetup(setup, arguments.strFile); });
  return eExitDone;
}

int LoadCommand(const Arguments &arguments) {
  const Setup file = SetupOfFile(arguments.strFile);
  Opened opened(arguments);
  const TakenOver taken = TakeOver(opened.session.Read(), file);
  std::vector<std::string> arrLeftOut;
  for (const SettingLeftOut &left : taken.arrLeftOut)
    arrLeftOut.push_back("left out: " + left.strKey + ": " + left.strReason);
  if (arguments.fStrict && !arrLeftOut.empty()) RefuseAll(eExitRefused, arrLeftOut);
  opened.session.Write(taken.setup);
  for (const std::string &strLine : arrLeftOut) Complain(strLine);
  for (const std::string &strKey : taken.arrKept) Complain("kept, since the file does not tell it: " + strKey);
  return eExitDone;
}

int DiffCommand(const Arguments &arguments) {
  std::optional<Connected> connected;
  const auto setupOf = [&](const std::string &strWhich) {
    std::error_code error;
    if (strWhich == StandardStream || std::filesystem::is_regular_file(strWhich, error)) return SetupOfFile(strWhich);
    if (strWhich.find('/') != std::string::npos) return SetupOfFile(strWhich);
    if (!connected) connected.emplace(arguments);
    try {
      connected->session.Open(strWhich);
    } catch (CtlFailure &failure) {
      if (failure.eExit == eExitUnknown) failure.strText += "; nor is there a file of this name";
      throw;
    }
    return connected->session.Read();
  };
  const Setup first = setupOf(arguments.strFirst), second = setupOf(arguments.strSecond);
  const auto arrDifferences = Differences(first, second, arguments.fExact ? 0 : DriverRounding);
  std::cout << DifferencesText(arrDifferences, arguments.fJson);
  return arrDifferences.empty() ? eExitDone : eExitDifferent;
}

int GetCommand(const Arguments &arguments) {
  std::vector<SettingPlace> arrPlaces = Places(arguments.arrSettings);
  Opened opened(arguments);
  const Setup setup = opened.session.Read();
  RequireHad(arrPlaces, setup);
  if (arrPlaces.empty())
    ForEachStored(setup, [&](const Setting &setting, Long lngChannel) { arrPlaces.push_back({&setting, lngChannel}); });
  std::cout << SettingsText(setup, arrPlaces, arguments.fJson);
  return eExitDone;
}

int SetCommand(const Arguments &arguments) {
  const std::vector<Change> arrChanges = Changes(arguments.arrSettings);
  Opened opened(arguments);
  const Setup before = opened.session.Read();
  std::vector<SettingPlace> arrPlaces;
  for (const Change &change : arrChanges) arrPlaces.push_back(change.place);
  RequireHad(arrPlaces, before);
  Setup setup = before;
  Apply(arrChanges, setup);
  opened.session.Write(setup);
  TellUnused(arrChanges, before, setup);
  return eExitDone;
}

int PatternCommand(const Arguments &arguments) {
  std::optional<PatternStream> stream;
  if (arguments.strAction == "set") stream = ReadPatternFile(TextOfFile(arguments.strFile));
  Opened opened(arguments);
  Setup setup = opened.session.Read();
  const Long eRow = RowOf(arguments.strRow);
  PatternStream &row = setup.Pattern[static_cast<std::size_t>(eRow - 1)];
  if (eRow == ePatternChan2 && setup.Instrument.lngNumChannels < 2)
    throw CtlFailure{eExitRefused, "the instrument has one channel"};
  if (arguments.strAction == "get") {
    PutText(arguments.strFile, PatternFileText(row, arguments.fDigits));
    return eExitDone;
  }
  row = stream ? *stream : Prbs(opened.session, arguments.intBase, arguments.intLength);
  opened.session.Write(setup);
  return eExitDone;
}

int ErrorsCommand(const Arguments &arguments) {
  Opened opened(arguments);
  CtlHost::Kept kept(opened.host);
  const bool fErrors = opened.session.Instr().CheckErrors(True);
  std::vector<std::string> arrLines;
  for (const std::string &strBox : kept.arrTexts)
    for (const std::string &strLine : Split(Replace(strBox, "\r\n", "\n"), '\n'))
      if (!strLine.empty() && strLine != "Instrument Errors(s):") arrLines.push_back(Trim(strLine));
  std::cout << LinesText(arrLines, arguments.fJson);
  return fErrors ? eExitDifferent : arrLines.empty() ? eExitDone : eExitRefused;
}

int ResetCommand(const Arguments &arguments) {
  Opened opened(arguments);
  return opened.session.Instr().InstrumentCommands(ICReset) ? eExitDone : eExitRefused;
}

int SelftestCommand(const Arguments &arguments) {
  Opened opened(arguments);
  std::string strText;
  if (!opened.session.Instr().InstrumentCommands(ICSelftest, &strText)) return eExitRefused;
  std::cout << LinesText({strText}, arguments.fJson);
  return eExitDone;
}

}  // namespace tarvik
