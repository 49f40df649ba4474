#include "Commands.h"

#include <algorithm>
#include <iostream>

#include "ProfileCheck.h"
#include "scpi/Answer.h"
#include "scpi/InstrumentsFile.h"
#include "scpi/LxiLibrary.h"
#include "scpi/ProfileChoice.h"
#include "support/Conversions.h"
#include "support/RunTimeError.h"

namespace tarvik::scpi {

namespace {

namespace fs = std::filesystem;

std::unique_ptr<Talk> TalkWith(const Arguments &arguments, const std::string &strAddress) {
  auto talk = std::make_unique<Talk>(MakeLine(Address::Read(strAddress)), strAddress);
  talk->SetTimeout(Milliseconds(arguments.intTimeout));
  return talk;
}

/// The user's file, which commands change.
fs::path UsersFile() {
  fs::path path = UserInstrumentsFile();
  if (path.empty()) throw RunTimeError(ErrPathNotFound, "there is no home folder to keep instruments in");
  return path;
}

/// The product's name in the identity; the address where the instrument does not tell it.
std::string ProductOf(const std::string &strIdentity, const std::string &strAddress) {
  const std::vector<std::string> arrFields = Split(strIdentity, ',');
  const std::string strProduct = arrFields.size() > 1 ? Trim(arrFields[1]) : "";
  return strProduct.empty() ? strAddress : strProduct;
}

/// The name, with a number behind it where another instrument has it.
std::string NewName(const std::string &strName, const std::vector<InstrumentEntry> &arrEntries) {
  std::string strNew = strName;
  for (int number = 2; std::ranges::find(arrEntries, strNew, &InstrumentEntry::strName) != arrEntries.end(); ++number)
    strNew = strName + " " + std::to_string(number);
  return strNew;
}

void Enter(const Arguments &arguments, const std::string &strAddress) {
  const fs::path path = UsersFile();
  std::vector<InstrumentEntry> arrEntries = ReadInstruments(path);
  InstrumentEntry entry{arguments.strName, Address::Read(strAddress).strText, arguments.strProfile, arguments.strLog};
  const ProfileFolders profiles = ProfileFolders::OfMachine();
  if (entry.strName.empty() || entry.strProfile.empty()) {
    const auto talk = TalkWith(arguments, strAddress);
    const std::string strIdentity = Unquoted(talk->Ask("*IDN?"));
    if (entry.strName.empty()) entry.strName = NewName(ProductOf(strIdentity, strAddress), arrEntries);
    if (entry.strProfile.empty()) entry.strProfile = ChooseProfile(profiles, *talk, strIdentity);
    std::cout << strIdentity << "\n";
  }
  if (std::ranges::find(arrEntries, entry.strName, &InstrumentEntry::strName) != arrEntries.end())
    throw RunTimeError(ErrInvalidPropertyValue, "there is an instrument \"" + entry.strName + "\" already");
  profiles.Read(entry.strProfile);
  arrEntries.push_back(entry);
  WriteInstruments(path, arrEntries);
  std::cout << entry.strName << "\t" << entry.strAddress << "\t" << entry.strProfile << "\n";
}

}  // namespace

int AddCommand(const Arguments &arguments) {
  Enter(arguments, arguments.strAddress);
  return eExitDone;
}

int ListCommand(const Arguments &) {
  for (const InstrumentEntry &entry : ReadAllInstruments(InstrumentsFiles()))
    std::cout << entry.strName << "\t" << entry.strAddress << "\t" << entry.strProfile << "\n";
  return eExitDone;
}

int RemoveCommand(const Arguments &arguments) {
  const fs::path path = UsersFile();
  std::vector<InstrumentEntry> arrEntries = ReadInstruments(path);
  const auto entry = std::ranges::find(arrEntries, arguments.strName, &InstrumentEntry::strName);
  if (entry == arrEntries.end()) {
    std::cerr << "tarvik-scpi: there is no instrument \"" << arguments.strName << "\" in " << path.string() << "\n";
    return eExitUnknown;
  }
  arrEntries.erase(entry);
  WriteInstruments(path, arrEntries);
  return eExitDone;
}

int DiscoverCommand(const Arguments &arguments) {
  const std::vector<InstrumentEntry> arrKnown = ReadAllInstruments(InstrumentsFiles());
  for (const FoundInstrument &found : DiscoverInstruments(arguments.intTimeout)) {
    const bool fKnown = std::ranges::find(arrKnown, found.strAddress, &InstrumentEntry::strAddress) != arrKnown.end();
    if (arguments.fAdd && !fKnown)
      Enter(arguments, found.strAddress);
    else
      std::cout << found.strAddress << "\t" << found.strIdentity << (fKnown ? "\t(entered)" : "") << "\n";
  }
  return eExitDone;
}

int CheckCommand(const Arguments &arguments) {
  const ProfileFolders folders = ProfileFolders::OfMachine();
  std::error_code error;
  const bool fFile = fs::is_regular_file(arguments.strProfile, error);
  const Profile profile = fFile ? folders.ReadFile(arguments.strProfile) : folders.Read(arguments.strProfile);
  if (arguments.strAddress.empty()) {
    PrintProfile(profile, std::cout);
    return eExitDone;
  }
  const auto talk = TalkWith(arguments, arguments.strAddress);
  return CheckProfile(profile, *talk, std::cout) ? eExitDone : eExitDiffers;
}

int ProfilesCommand(const Arguments &) {
  const ProfileFolders folders = ProfileFolders::OfMachine();
  for (const std::string &strName : folders.Names()) {
    try {
      std::cout << strName << "\t" << folders.Read(strName).strDescription << "\n";
    } catch (const RunTimeError &wrong) {
      std::cout << strName << "\t" << Replace(wrong.Description(), "\r\n", " ") << "\n";
    }
  }
  return eExitDone;
}

}  // namespace tarvik::scpi
