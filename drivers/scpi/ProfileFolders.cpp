#include "scpi/ProfileFolders.h"

#include <algorithm>
#include <set>

#include "automation/Activation.h"
#include "scpi/ProfileReader.h"
#include "support/RunTimeError.h"
#include "support/WholeFile.h"

namespace tarvik::scpi {

namespace fs = std::filesystem;

namespace {

constexpr const char *Ending = ".json";

/// A name becomes a file name; it must not lead out of the folders.
bool IsName(const std::string &strName) {
  return !strName.empty() && strName.size() <= 100 && strName.front() != '.' &&
         strName.find('/') == std::string::npos && strName.find('\0') == std::string::npos;
}

}  // namespace

ProfileFolders ProfileFolders::OfMachine() {
  std::vector<fs::path> arrFolders;
  for (const fs::path &folder : automation::ManifestFolders()) {
    // Manifests stand in "drivers" of a data folder, or beside the libraries.
    const fs::path data = folder.filename() == "drivers" ? folder.parent_path() : folder;
    arrFolders.push_back(data / "scpi-profiles");
  }
  return ProfileFolders(std::move(arrFolders));
}

std::vector<std::string> ProfileFolders::Names() const {
  std::set<std::string> names;
  for (const fs::path &folder : m_arrFolders) {
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, error))
      if (entry.path().extension() == Ending) names.insert(entry.path().stem().string());
  }
  return {names.begin(), names.end()};
}

Profile ProfileFolders::Read(const std::string &strName) const { return Read(strName, {}); }
Profile ProfileFolders::ReadFile(const fs::path &path) const { return ReadFile(path, {}); }

Profile ProfileFolders::Read(const std::string &strName, std::vector<std::string> arrWithin) const {
  if (!IsName(strName)) throw RunTimeError(ErrPathNotFound, "\"" + strName + "\" is no name of a profile");
  for (const fs::path &folder : m_arrFolders) {
    std::error_code error;
    if (const fs::path path = folder / (strName + Ending); fs::exists(path, error))
      return ReadFile(path, std::move(arrWithin));
  }
  throw RunTimeError(ErrFileNotFound, "there is no profile \"" + strName + "\"");
}

Profile ProfileFolders::ReadFile(const fs::path &path, std::vector<std::string> arrWithin) const {
  const std::string strName = path.stem().string();
  if (std::ranges::find(arrWithin, strName) != arrWithin.end())
    throw RunTimeError(ErrInvalidFileFormat, "the profile \"" + strName + "\" extends itself");
  arrWithin.push_back(strName);
  try {
    const JsonNode root = ReadJson(ReadWholeFile(path, LargestJsonFile));
    return ProfileReader(root, [&](const std::string &strBase) { return Read(strBase, arrWithin); }).Read(strName);
  } catch (const RunTimeError &error) {
    throw RunTimeError(error.Number(), path.string() + ":\r\n" + error.Description());
  }
}

}  // namespace tarvik::scpi
