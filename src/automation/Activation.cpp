#include "automation/Activation.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <set>

#include "automation/ErrorInfo.h"
#include "automation/PlatformActivation.h"
#include "support/Conversions.h"
#include "support/RunTimeError.h"
#include "support/UserFolders.h"

namespace tarvik::automation {

namespace fs = std::filesystem;

namespace {

/// The manifest that names the library for servers.
constexpr const char *RemoteManifest = "tarvik.remote";
constexpr const char *FolderName = "tarvikvi/drivers";

using CreateRemoteObject = Status(TARVIK_CALL *)(const char *strProgId, const char *strServer, void **ppObject);
using GetClassObject = Status(TARVIK_CALL *)(const Guid &rclsid, const Guid &riid, void **ppv);

/// The manifest folder of the install prefix, derived from the library's own path because the prefix may have been
/// moved. Empty if the library is not in an installed tree.
fs::path ManifestFolderOfPrefix(const fs::path &own) {
  const fs::path libraries = fs::path(TARVIK_LIBRARY_FOLDER).lexically_normal();
  const auto parts = std::distance(libraries.begin(), libraries.end());
  fs::path prefix = own;
  for (auto i = parts; i > 0; --i) prefix = prefix.parent_path();
  return !own.empty() && prefix / libraries == own ? prefix / TARVIK_DATA_FOLDER / FolderName : fs::path();
}

[[noreturn]] void RaiseCannotCreate(const std::string &strProgId, const std::string &strReason) {
  throw RunTimeError(ErrCannotCreateObject, "Cannot create " + strProgId + ": " + strReason);
}

/// What others can write would run with the rights of this user.
void RefuseWritableByOthers(const fs::path &file, const std::string &strProgId) {
  struct stat status {
  }, folder{};
  if (stat(file.c_str(), &status) != 0 || stat(file.parent_path().c_str(), &folder) != 0) return;
  const auto refuse = [&](const fs::path &path) {
    RaiseCannotCreate(strProgId,
                      "others can write " + path.string() + "; chmod o-w \"" + path.string() + "\" mends it");
  };
  if ((status.st_mode & S_IWOTH) != 0) refuse(file);
  // In a folder like that of temporary files others can add, but not replace.
  if ((folder.st_mode & S_IWOTH) != 0 && (folder.st_mode & S_ISVTX) == 0) refuse(file.parent_path());
}

/// The library named in the manifest's one line.
fs::path LibraryOf(const fs::path &manifest, const std::string &strProgId) {
  RefuseWritableByOthers(manifest, strProgId);
  std::ifstream file(manifest);
  std::string strLine;
  if (!file || !std::getline(file, strLine))
    RaiseCannotCreate(strProgId, manifest.string() + " is empty or cannot be read");
  if (!strLine.empty() && strLine.back() == '\r') strLine.pop_back();
  strLine = Trim(strLine);
  if (strLine.empty()) RaiseCannotCreate(strProgId, manifest.string() + " names no library");
  fs::path library = manifest.parent_path() / strLine;  // an absolute name stands for itself
  RefuseWritableByOthers(library, strProgId);
  return library;
}

Ref<IUnknown> CreateFromLibrary(const fs::path &manifest, const std::string &strProgId) {
  const fs::path library = LibraryOf(manifest, strProgId);
  const auto refuse = [&](const std::string &strReason) {
    RaiseCannotCreate(strProgId, library.string() + " (named by " + manifest.string() + ") " + strReason);
  };

  // Never unloaded: objects and state of a driver outlive every session.
  void *handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle) refuse(std::string("cannot be loaded: ") + dlerror());
  const auto getClassObject = reinterpret_cast<GetClassObject>(dlsym(handle, "DllGetClassObject"));
  if (!getClassObject) refuse("is no driver: it does not export DllGetClassObject");

  const auto check = [&](Status status, const char *strStep) {
    if (!Failed(status)) return;
    throw RunTimeError(status, "Cannot create " + strProgId + ": " + library.string() + " " + strStep + ": " +
                                   TakeDescription(status));
  };
  Ref<IClassFactory> factory;
  ForgetErrorInfo();
  check(getClassObject(ClassIdOf(strProgId), IidClassFactory, reinterpret_cast<void **>(factory.Out())),
        "gives no class factory");
  if (!factory) refuse("gives no class factory");
  Ref<IUnknown> object;
  ForgetErrorInfo();
  check(factory->CreateInstance(nullptr, IidUnknown, reinterpret_cast<void **>(object.Out())), "makes no object");
  return object;
}

std::string Joined(const std::vector<std::string> &arrTexts) {
  std::string strAll;
  for (const std::string &strText : arrTexts) strAll += (strAll.empty() ? "" : ", ") + strText;
  return strAll;
}

/// The manifest of this name; if there is none, strTried lists the files.
fs::path FindManifest(const std::string &strName, std::string &strTried) {
  for (const fs::path &folder : ManifestFolders()) {
    fs::path manifest = folder / (strName + ".driver");
    std::error_code error;
    if (fs::exists(manifest, error)) return manifest;
    strTried += (strTried.empty() ? "" : ", ") + manifest.string();
  }
  return {};
}

/// An empty driver name is the driver without one.
Ref<IUnknown> CreateFromManifest(const std::string &strProgId, const std::string &strDriver) {
  if (!IsProgId(strProgId)) throw RunTimeError(ErrCannotCreateObject, "Cannot create an object: the name is no ProgID");
  if (!strDriver.empty() && !IsProgId(strDriver))
    RaiseCannotCreate(strProgId, "\"" + strDriver + "\" cannot be the name of a driver");
  std::string strTried;
  const fs::path manifest = FindManifest(strDriver.empty() ? strProgId : strProgId + "/" + strDriver, strTried);
  if (!manifest.empty()) return CreateFromLibrary(manifest, strProgId);
  const std::string strOthers = Joined(DriversOf(strProgId));
  RaiseCannotCreate(strProgId, "no driver manifest found; tried " + strTried +
                                   (strOthers.empty() ? "" : "; drivers to choose from: " + strOthers));
}

/// The remote library is found like a driver, so that a machine without it can still use local drivers.
Ref<IUnknown> CreateThroughRemoteLibrary(const std::string &strProgId, const std::string &strServer) {
  std::string strTried;
  const fs::path manifest = FindManifest(RemoteManifest, strTried);
  if (manifest.empty())
    RaiseCannotCreate(strProgId, "nothing is installed to reach the server \"" + strServer + "\"; tried " + strTried);
  const fs::path library = LibraryOf(manifest, strProgId);
  void *handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  const auto create =
      handle ? reinterpret_cast<CreateRemoteObject>(dlsym(handle, "TarvikCreateRemoteObject")) : nullptr;
  if (!create) {
    const char *strWhy = dlerror();
    RaiseCannotCreate(strProgId, library.string() + " (named by " + manifest.string() + ") cannot reach the server \"" +
                                     strServer + "\": " + (strWhy ? strWhy : "it is not made for that"));
  }
  Ref<IUnknown> object;
  ForgetErrorInfo();
  Check(create(strProgId.c_str(), strServer.c_str(), reinterpret_cast<void **>(object.Out())));
  return object;
}

}  // namespace

Ref<IUnknown> CreateHere(const std::string &strProgId, const std::string &strDriver) {
  return CreateFromManifest(strProgId, strDriver);
}

Ref<IUnknown> CreateOnServer(const std::string &strProgId, const std::string &strServer) {
  return CreateThroughRemoteLibrary(strProgId, strServer);
}

std::vector<std::string> DriversOf(const std::string &strProgId) {
  if (!IsProgId(strProgId)) return {};
  std::set<std::string> names;
  for (const fs::path &folder : ManifestFolders()) {
    // A folder that is not there or cannot be read has none.
    std::error_code error;
    for (fs::directory_iterator entry(folder / strProgId, error), end; !error && entry != end; entry.increment(error))
      if (entry->path().extension() == ".driver" && IsProgId(entry->path().stem().string()))
        names.insert(entry->path().stem().string());
  }
  return {names.begin(), names.end()};
}

fs::path UserManifestFolder() {
  const fs::path folder = UserDataFolder();
  return folder.empty() ? folder : folder / FolderName;
}

std::vector<fs::path> ManifestFolders() {
  std::vector<fs::path> arrFolders;
  const auto append = [&](const fs::path &folder) {
    if (!folder.empty() && std::ranges::find(arrFolders, folder) == arrFolders.end()) arrFolders.push_back(folder);
  };
  append(UserManifestFolder());
  for (const fs::path &folder : SystemDataFolders()) append(folder / FolderName);
  const fs::path own = FolderAt(reinterpret_cast<const void *>(&ClassIdOf));
  append(ManifestFolderOfPrefix(own));
  append(own);
  return arrFolders;
}

fs::path FileAt(const void *pAddress) {
  Dl_info info{};
  if (!dladdr(pAddress, &info) || !info.dli_fname) return {};
  std::error_code error;
  return fs::absolute(info.dli_fname, error).lexically_normal();
}

fs::path FolderAt(const void *pAddress) {
  std::error_code error;
  const fs::path path = fs::canonical(FileAt(pAddress), error);
  return error ? fs::path() : path.parent_path();
}

}  // namespace tarvik::automation
