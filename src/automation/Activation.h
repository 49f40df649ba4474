#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Abi.h"
#include "automation/Export.h"
#include "automation/Ref.h"

namespace tarvik::automation {

/// Makes one root object; an empty reference is an allowed answer. May raise RunTimeError.
using ClassMaker = std::function<Ref<IUnknown>()>;

/// Registers a class within this process; it goes before any manifest. An empty maker takes the
/// registration back.
TARVIK_AUTOMATION_EXPORT void RegisterClass(const std::string &strProgId, ClassMaker maker);

/// Makes an object by ProgID on the named server. How servers are reached is the activator's affair; without one it
/// is the library named by the manifest "tarvik.remote.driver" that makes the object.
using RemoteActivator = std::function<Ref<IUnknown>(const std::string &strProgId, const std::string &strServer)>;
TARVIK_AUTOMATION_EXPORT void SetRemoteActivator(RemoteActivator activator);

/// Creates an object by ProgID. An empty server means this machine: first the classes registered in the
/// process, then the manifests "<progid>.driver" in ManifestFolders, in this order. The one line of a
/// manifest names the driver's shared library, relative to the manifest's folder. A missing or broken driver
/// raises a RunTimeError that says which files were tried and why each failed.
TARVIK_AUTOMATION_EXPORT Ref<IUnknown> CreateObject(const std::string &strProgId, const std::string &strServer);

/// Whether a text can be a ProgID: up to 200 letters, digits, dots, underscores and hyphens, no dot in front. A ProgID
/// becomes a file name and may come from another machine; anything else could lead out of the manifests' folders.
TARVIK_AUTOMATION_EXPORT bool IsProgId(std::string_view strText);

/// Folders in which manifests are looked for: the user's data folder, the system's data folders, the data folder of
/// the prefix that this library is installed to, the folder of this library. All are whole paths: nothing is looked for
/// relative to the current folder.
TARVIK_AUTOMATION_EXPORT std::vector<std::filesystem::path> ManifestFolders();

/// The folder into which a user's own manifests go; empty for a user without a home.
TARVIK_AUTOMATION_EXPORT std::filesystem::path UserManifestFolder();

/// The class identifier that DllGetClassObject is asked with: a custom (version 8, RFC 9562) UUID made of
/// the ProgID in lower case by the 128-bit FNV-1a hash, so that a manifest needs to name the library only.
TARVIK_AUTOMATION_EXPORT Guid ClassIdOf(const std::string &strProgId);

}  // namespace tarvik::automation
