#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Abi.h"
#include "automation/Ref.h"
#include "support/Export.h"

namespace tarvik::automation {

/// Creates the root object; a null reference is a valid result. May throw RunTimeError.
using ClassMaker = std::function<Ref<IUnknown>()>;

/// Registers a class within this process, with priority over manifests. An empty maker removes the
/// registration.
TARVIK_AUTOMATION_EXPORT void RegisterClass(const std::string &strProgId, ClassMaker maker);

/// Creates an object by ProgID on the named server. Without an activator the library named by the manifest
/// "tarvik.remote.driver" creates it.
using RemoteActivator = std::function<Ref<IUnknown>(const std::string &strProgId, const std::string &strServer)>;
TARVIK_AUTOMATION_EXPORT void SetRemoteActivator(RemoteActivator activator);

/// Creates an object by ProgID. An empty server means this machine: first the classes registered in the
/// process, then the manifests "<progid>.driver" in ManifestFolders, in this order. The one line of a
/// manifest names the driver's shared library, relative to the manifest's folder. A missing or broken driver
/// raises a RunTimeError that says which files were tried and why each failed.
TARVIK_AUTOMATION_EXPORT Ref<IUnknown> CreateObject(const std::string &strProgId, const std::string &strServer);

/// The names of the drivers that are installed for a class beside the one without a name, in alphabetical order: NAME
/// for each manifest "<progid>/NAME.driver" in ManifestFolders.
TARVIK_AUTOMATION_EXPORT std::vector<std::string> DriversOf(const std::string &strProgId);

/// From now on this process creates objects of the class on this machine by the driver of this name, whatever is
/// registered; an empty name goes back to the driver without a name. Nothing is looked for before an object is
/// created: a name that no driver has is CreateObject's failure.
TARVIK_AUTOMATION_EXPORT void ChooseDriver(const std::string &strProgId, const std::string &strName);

/// What was chosen last; empty is the driver without a name.
TARVIK_AUTOMATION_EXPORT std::string ChosenDriver(const std::string &strProgId);

/// Whether a text can be a ProgID: up to 200 letters, digits, dots, underscores and hyphens, no dot in front. A ProgID
/// becomes a file name and may come from another machine; anything else could lead out of the manifests' folders.
TARVIK_AUTOMATION_EXPORT bool IsProgId(std::string_view strText);

/// Folders in which manifests are looked for: the user's data folder, the system's data folders, the data folder of
/// the prefix that this library is installed to, the folder of this library. All are absolute: nothing is searched for
/// relative to the current folder.
TARVIK_AUTOMATION_EXPORT std::vector<std::filesystem::path> ManifestFolders();

/// The folder into which a user's own manifests go; empty for a user without a home.
TARVIK_AUTOMATION_EXPORT std::filesystem::path UserManifestFolder();

/// The file of the library or program that contains this address: absolute, and by the name that it was loaded with.
/// Empty where the system cannot tell.
TARVIK_AUTOMATION_EXPORT std::filesystem::path FileAt(const void *pAddress);

/// The folder of that file behind all links; empty where there is none.
TARVIK_AUTOMATION_EXPORT std::filesystem::path FolderAt(const void *pAddress);

/// The class identifier that DllGetClassObject is asked with: a custom (version 8, RFC 9562) UUID made of
/// the ProgID in lower case by the 128-bit FNV-1a hash, so that a manifest needs to name the library only.
TARVIK_AUTOMATION_EXPORT Guid ClassIdOf(const std::string &strProgId);

}  // namespace tarvik::automation
