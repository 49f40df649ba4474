#include "settings/SetupFile.h"

#include <map>

#include "settings/JsonTree.h"
#include "settings/PatternText.h"
#include "settings/Setting.h"
#include "settings/SetupFormat.h"
#include "settings/SetupReader.h"
#include "support/RunTimeError.h"
#include "support/WholeFile.h"

namespace tarvik {

namespace {

/// The members of an object, each on its line.
std::string Members(const std::map<std::string, std::string> &members, const std::string &strIndent) {
  std::string strText = "{\n";
  for (const auto &[strKey, strValue] : members) {
    strText.append(strIndent).append("  ").append(JsonText(strKey)).append(": ").append(strValue);
    strText += strKey == members.rbegin()->first ? "\n" : ",\n";
  }
  return strText + strIndent + "}";
}

std::string StreamText(const PatternStream &stream) {
  const std::vector<std::string> arrLines = PatternLines(stream);
  // A short pattern stays on the line of its key.
  const std::string strBreak = arrLines.size() > 1 ? "\n      " : "";
  std::string strText = "{\"length\": " + std::to_string(stream.lngLength) + ", \"words\": [";
  for (std::size_t i = 0; i < arrLines.size(); ++i) strText += (i == 0 ? "" : ",") + strBreak + JsonText(arrLines[i]);
  return strText + (arrLines.size() > 1 ? "\n    ]}" : "]}");
}

std::string ValueText(const Setting &setting, const SettingValue &value) {
  switch (setting.eKind) {
    case SettingKind::Switch: return std::get<Boolean>(value) ? "true" : "false";
    case SettingKind::Count: return std::to_string(std::get<Long>(value));
    case SettingKind::Choice: {
      // A driver may have values without a word.
      const std::string_view strWord = setting.WordOf(std::get<Long>(value));
      return strWord.empty() ? std::to_string(std::get<Long>(value)) : JsonText(std::string(strWord));
    }
    case SettingKind::Quantity: return JsonNumber(std::get<Double>(value));
    case SettingKind::Stream: return StreamText(std::get<PatternStream>(value));
  }
  return {};
}

std::string IdentityText(const Setup &setup) {
  std::map<std::string, std::string> members;
  for (const SetupIdentityRow &row : SetupIdentityRows) members[row.strKey] = JsonText(setup.Instrument.*row.field);
  members["channels"] = std::to_string(setup.Instrument.lngNumChannels);
  std::string strLacks;
  for (const SettingWord &lack : SetupLackWords)
    if ((setup.lngLacks & lack.lngValue) != 0)
      strLacks += (strLacks.empty() ? "" : ", ") + JsonText(std::string(lack.strWord));
  members["lacks"] = "[" + strLacks + "]";
  return Members(members, "  ");
}

/// The same failure, with what was to be done.
[[noreturn]] void RaiseWith(const std::string &strWhat, const std::filesystem::path &path, const RunTimeError &error) {
  const bool fOfContent = error.Number() == ErrInvalidFileFormat;
  throw RunTimeError(error.Number(),
                     strWhat + " " + path.string() + (fOfContent ? ":\r\n" : ": ") + error.Description());
}

}  // namespace

std::string SettingJson(const Setting &setting, const Setup &setup, Long lngChannel) {
  return ValueText(setting, setting.Read(setup, lngChannel));
}

std::string SetupToText(const Setup &setup) {
  std::map<std::string, std::string> settings;
  ForEachStored(setup, [&](const Setting &setting, Long lngChannel) {
    settings[setting.Key(lngChannel)] = SettingJson(setting, setup, lngChannel);
  });
  return Members({{"format", JsonText(SetupFormatName)},
                  {"instrument", IdentityText(setup)},
                  {"settings", Members(settings, "  ")},
                  {"version", std::to_string(SetupFileVersion)}},
                 "") +
         "\n";
}

Setup SetupFromText(const std::string &strText) { return SetupReader(ReadJson(strText)).Read(); }

void SaveSetup(const Setup &setup, const std::filesystem::path &path) {
  FileCalls calls;
  SaveSetup(setup, path, calls);
}

void SaveSetup(const Setup &setup, const std::filesystem::path &path, FileCalls &calls) {
  try {
    WriteWholeFile(path, SetupToText(setup), calls);
  } catch (const RunTimeError &error) {
    RaiseWith("Cannot save", path, error);
  }
}

Setup LoadSetup(const std::filesystem::path &path) {
  try {
    return SetupFromText(ReadWholeFile(path, LargestSetupFile));
  } catch (const RunTimeError &error) {
    RaiseWith("Cannot load", path, error);
  }
}

}  // namespace tarvik
