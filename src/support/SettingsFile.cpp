#include "support/SettingsFile.h"

#include <algorithm>
#include <array>
#include <fstream>

#include "support/Conversions.h"
#include "support/RunTimeError.h"
#include "support/SettingsText.h"
#include "support/Uninterrupted.h"
#include "support/UserFolders.h"
#include "support/WholeFile.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace tarvik {

namespace fs = std::filesystem;

/// A line of the file, with section, key and value if it is a setting.
struct SettingsFile::Line {
  std::string strText;
  std::string strSection;
  std::string strKey{};
  std::string strValue{};

  bool Is(const std::string &strWantedSection, const std::string &strWantedKey) const {
    return !strKey.empty() && strSection == strWantedSection && strKey == strWantedKey;
  }
};

namespace {

[[noreturn]] void RaiseUnreadable(const fs::path &path, const std::string &strWhy) {
  throw RunTimeError(ErrPathFileAccess, "Cannot read the settings file " + path.string() + ": " + strWhy);
}

[[noreturn]] void RaiseUnwritable(const fs::path &path) {
  throw RunTimeError(ErrPathFileAccess, "Cannot write the settings file " + path.string());
}

#ifdef _WIN32

class Locked {
 public:
  explicit Locked(const fs::path &) {}
};

#else

/// Lock against lost updates: without it, a process that saves concurrently would overwrite a setting just stored.
class Locked {
 public:
  explicit Locked(const fs::path &folder)
      : m_folder(Uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); })) {
    if (m_folder >= 0) Uninterrupted([&] { return ::flock(m_folder, LOCK_EX); });
  }
  Locked(const Locked &) = delete;
  Locked &operator=(const Locked &) = delete;
  ~Locked() {
    if (m_folder >= 0) ::close(m_folder);
  }

 private:
  int m_folder;
};

#endif

bool IsBlankOrComment(const std::string &strText) {
  const std::string strTrimmed = Trim(strText);
  return strTrimmed.empty() || strTrimmed.front() == ';' || strTrimmed.front() == '#';
}

bool HasControlCharacters(const std::string &strText) {
  return std::ranges::any_of(strText, [](unsigned char ch) { return ch < 0x20 && ch != '\t'; });
}

}  // namespace

SettingsFile SettingsFile::Of(const std::string &strApplication) {
  const fs::path folder = UserConfigFolder();
  return SettingsFile(folder.empty() ? folder : folder / strApplication / (strApplication + ".conf"));
}

std::string SettingsFile::Content() const {
  std::error_code error;
  const fs::file_status status = m_path.empty() ? fs::file_status(fs::file_type::not_found) : fs::status(m_path, error);
  if (status.type() == fs::file_type::not_found) return {};
  if (fs::is_directory(status)) RaiseUnreadable(m_path, "it is a folder");
  std::ifstream file(m_path, std::ios::binary);
  std::string strContent;
  // By read, which keeps a failure of the system in the stream's state; an iterator would let it out as an exception.
  for (std::array<char, 4096> arrPart{}; file.read(arrPart.data(), arrPart.size()) || file.gcount() > 0;)
    strContent.append(arrPart.data(), static_cast<std::size_t>(file.gcount()));
  if (!file.is_open() || file.bad()) RaiseUnreadable(m_path, "no access");
  return strContent;
}

SettingsFile::Line SettingsFile::Understood(const std::string &strText, std::string &strSection,
                                            std::size_t number) const {
  const auto refuse = [&] { RaiseUnreadable(m_path, "line " + std::to_string(number) + " is no setting"); };
  if (HasControlCharacters(strText)) refuse();
  if (IsBlankOrComment(strText)) return {strText, strSection};
  const std::string strTrimmed = Trim(strText);
  if (strTrimmed.front() == '[') {
    if (strTrimmed.back() != ']') refuse();
    strSection = UnescapedName(strTrimmed.substr(1, strTrimmed.size() - 2));
    return {strText, strSection};
  }
  const std::size_t pos = strText.find('=');
  if (pos == std::string::npos || Trim(strText.substr(0, pos)).empty()) refuse();
  const auto strValue = UnescapedValue(strText.substr(pos + 1));
  if (!strValue) refuse();
  return {strText, strSection, UnescapedName(Trim(strText.substr(0, pos))), *strValue};
}

std::vector<SettingsFile::Line> SettingsFile::Read() const {
  std::vector<Line> arrLines;
  std::string strSection;
  for (std::string strText : Split(Content(), '\n')) {
    if (!strText.empty() && strText.back() == '\r') strText.pop_back();
    arrLines.push_back(Understood(strText, strSection, arrLines.size() + 1));
  }
  // Nothing follows the last line break.
  if (arrLines.back().strText.empty()) arrLines.pop_back();
  return arrLines;
}

std::optional<std::string> SettingsFile::Value(const std::string &strSection, const std::string &strKey) const {
  const std::vector<Line> arrLines = Read();
  const auto found =
      std::find_if(arrLines.rbegin(), arrLines.rend(), [&](const Line &line) { return line.Is(strSection, strKey); });
  if (found == arrLines.rend()) return std::nullopt;
  return found->strValue;
}

void SettingsFile::Save(const std::string &strSection, const std::string &strKey, const std::string &strValue) const {
  if (m_path.empty())
    throw RunTimeError(ErrPathNotFound, "Cannot write the settings: there is no folder for the user's configuration");
  std::error_code error;
  fs::create_directories(m_path.parent_path(), error);
  const Locked lock(m_path.parent_path());

  std::vector<Line> arrLines = Read();
  const Line now{EscapedName(strKey) + "=" + EscapedValue(strValue), strSection, strKey, strValue};
  const auto isIt = [&](const Line &line) { return line.Is(strSection, strKey); };
  const auto inSection = [&](const Line &line) { return line.strSection == strSection && !Trim(line.strText).empty(); };
  if (const auto same = std::find_if(arrLines.rbegin(), arrLines.rend(), isIt); same != arrLines.rend()) {
    *same = now;
  } else if (const auto last = std::find_if(arrLines.rbegin(), arrLines.rend(), inSection); last != arrLines.rend()) {
    arrLines.insert(last.base(), now);
  } else {
    if (!arrLines.empty()) arrLines.push_back({"", arrLines.back().strSection});
    arrLines.push_back({"[" + EscapedName(strSection) + "]", strSection});
    arrLines.push_back(now);
  }
  Write(arrLines);
}

void SettingsFile::Write(const std::vector<Line> &arrLines) const {
  std::string strContent;
  for (const Line &line : arrLines) strContent += line.strText + '\n';
  try {
    WriteWholeFile(m_path, strContent);
  } catch (const RunTimeError &) {
    RaiseUnwritable(m_path);
  }
}

}  // namespace tarvik
