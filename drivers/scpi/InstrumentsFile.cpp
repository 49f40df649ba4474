#include "scpi/InstrumentsFile.h"

#include <algorithm>

#include "common/Failure.h"
#include "scpi/Address.h"
#include "settings/JsonReader.h"
#include "support/RunTimeError.h"
#include "support/UserFolders.h"
#include "support/WholeFile.h"

namespace tarvik::scpi {

namespace fs = std::filesystem;

namespace {

constexpr const char *FormatName = "tarvikvi-scpi-instruments";
constexpr Long FormatVersion = 1;

struct EntryField {
  const char *strKey;
  std::string InstrumentEntry::*field;
  bool fWanted;
};
constexpr EntryField Fields[] = {{"name", &InstrumentEntry::strName, true},
                                 {"address", &InstrumentEntry::strAddress, true},
                                 {"profile", &InstrumentEntry::strProfile, true},
                                 {"log", &InstrumentEntry::strLog, false}};

class InstrumentsReader : private JsonReader {
 public:
  explicit InstrumentsReader(const JsonNode &root) : m_root(root) {}

  std::vector<InstrumentEntry> Read() {
    const Members file = Open(m_root, "file");
    CheckFormat(file, FormatName, FormatVersion);
    if (const JsonNode *pList = Wanted(file, "instruments", "", 1)) {
      if (!pList->Is<JsonNode::List>()) RefuseKind(*pList, "instruments", "a list");
      for (const JsonNode &part : pList->arrParts) ReadEntry(part);
    }
    RefuseOthers(file, {"format", "instruments", "version"}, "");
    Finish();
    return std::move(m_arrEntries);
  }

 private:
  void ReadEntry(const JsonNode &node) {
    const Members members = Open(node, "instruments");
    const std::string strWhere = "instruments[" + std::to_string(m_arrEntries.size() + 1) + "].";
    InstrumentEntry entry;
    std::set<std::string> known;
    for (const EntryField &field : Fields) {
      known.insert(field.strKey);
      const auto found = members.find(field.strKey);
      if (found != members.end())
        entry.*field.field = Text(*found->second, strWhere + field.strKey).value_or("");
      else if (field.fWanted)
        Wanted(members, field.strKey, strWhere, node.lngLine);
    }
    RefuseOthers(members, known, strWhere);
    CheckEntry(entry, node, strWhere);
    m_arrEntries.push_back(std::move(entry));
  }

  void CheckEntry(const InstrumentEntry &entry, const JsonNode &node, const std::string &strWhere) {
    if (std::ranges::find(m_arrEntries, entry.strName, &InstrumentEntry::strName) != m_arrEntries.end())
      Refuse(node.lngLine, strWhere + "name", "\"" + entry.strName + "\" is another instrument's name");
    if (entry.strAddress.empty()) return;
    try {
      Address::Read(entry.strAddress);
    } catch (const driver::Failure &failure) {
      Refuse(node.lngLine, strWhere + "address", failure.what());
    }
  }

  const JsonNode &m_root;
  std::vector<InstrumentEntry> m_arrEntries;
};

}  // namespace

std::vector<InstrumentEntry> ReadInstruments(const fs::path &path) {
  std::error_code error;
  if (path.empty() || !fs::exists(path, error)) return {};
  try {
    const JsonNode root = ReadJson(ReadWholeFile(path, LargestJsonFile));
    return InstrumentsReader(root).Read();
  } catch (const RunTimeError &failure) {
    throw RunTimeError(failure.Number(), path.string() + ":\r\n" + failure.Description());
  }
}

void WriteInstruments(const fs::path &path, const std::vector<InstrumentEntry> &arrEntries) {
  std::string strText = std::string("{\n  \"format\": ") + JsonText(FormatName) +
                        ",\n  \"version\": " + std::to_string(FormatVersion) + ",\n  \"instruments\": [";
  const char *strBefore = "\n";
  for (const InstrumentEntry &entry : arrEntries) {
    strText += strBefore;
    const char *strFieldBefore = "    {";
    for (const EntryField &field : Fields) {
      const std::string &strValue = entry.*field.field;
      if (strValue.empty() && !field.fWanted) continue;
      strText += strFieldBefore + JsonText(field.strKey) + ": " + JsonText(strValue);
      strFieldBefore = ", ";
    }
    strText += "}";
    strBefore = ",\n";
  }
  strText += arrEntries.empty() ? "]\n}\n" : "\n  ]\n}\n";
  try {
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    WriteWholeFile(path, strText);
  } catch (const RunTimeError &failure) {
    throw RunTimeError(failure.Number(), path.string() + ": " + failure.Description());
  }
}

fs::path UserInstrumentsFile() {
  const fs::path folder = UserConfigFolder();
  return folder.empty() ? folder : folder / "tarvikvi" / "scpi-instruments.json";
}

std::vector<fs::path> InstrumentsFiles() {
  std::vector<fs::path> arrFiles;
  if (const fs::path user = UserInstrumentsFile(); !user.empty()) arrFiles.push_back(user);
  for (const fs::path &folder : SystemConfigFolders())
    arrFiles.push_back(folder / "tarvikvi" / "scpi-instruments.json");
  return arrFiles;
}

std::vector<InstrumentEntry> ReadAllInstruments(const std::vector<fs::path> &arrFiles) {
  std::vector<InstrumentEntry> arrAll;
  for (const fs::path &path : arrFiles)
    for (InstrumentEntry &entry : ReadInstruments(path))
      if (std::ranges::find(arrAll, entry.strName, &InstrumentEntry::strName) == arrAll.end())
        arrAll.push_back(std::move(entry));
  return arrAll;
}

}  // namespace tarvik::scpi
