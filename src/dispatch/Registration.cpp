#include "dispatch/Registration.h"

#include <filesystem>
#include <fstream>

#include "automation/Activation.h"
#include "automation/ErrorInfo.h"

namespace tarvik {

namespace fs = std::filesystem;
using namespace automation;

namespace {

/// Empty for a user without a home.
fs::path Manifest() {
  const fs::path folder = UserManifestFolder();
  return folder.empty() ? folder : folder / (std::string(InstrProgId) + ".driver");
}

Status FailWithoutHome() { return Fail(StatusAccessDenied, "There is no home folder to register in"); }

}  // namespace

Status RegisterLibrary() {
  // As it was loaded: a name with fewer version numbers survives an update.
  const fs::path library = FileAt(reinterpret_cast<const void *>(&RegisterLibrary)), manifest = Manifest();
  if (library.empty()) return Fail(StatusUnexpected, "The library cannot tell its own file");
  if (manifest.empty()) return FailWithoutHome();
  std::error_code error;
  fs::create_directories(manifest.parent_path(), error);
  std::ofstream file(manifest, std::ios::trunc);
  file << library.string() << '\n';
  file.close();
  return file ? StatusOk : Fail(StatusAccessDenied, "Cannot write " + manifest.string());
}

Status UnregisterLibrary() {
  const fs::path manifest = Manifest();
  if (manifest.empty()) return FailWithoutHome();
  std::error_code error;
  fs::remove(manifest, error);
  return error ? Fail(StatusAccessDenied, "Cannot remove " + manifest.string()) : StatusOk;
}

}  // namespace tarvik
