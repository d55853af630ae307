#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/settings/IniStore.h"
#include "platform/settings/Settings.h"

namespace tarn {

// What a server tells of itself when it is registered. Identifiers have their braces.
struct ServerIdentity {
  const char* progId;
  const char* classId;
  const char* className;
  const char* typeLibraryId;
  const char* typeLibraryName;
  const char* version;  // of the type library
  const char* interfaceId;
  const char* interfaceName;
};

// For whom a class is registered.
enum class ClassScope { User, Machine };

// The classes that are registered on this machine, in the registries of the user and of the
// machine; the user's own entries count first. Below "Software\Classes" a section is
//
//   a ProgID              CLSID=, the class id
//   CLSID\<class id>      InprocServer=, the absolute path of the library; ProgID=, TypeLib=,
//                         ThreadingModel=
//   TypeLib\<id>\<version>, Interface\<id>   what the library describes itself by
//
// and the value "@" is the entry's name. Programs that know this form find a server without any
// library of ours. Nothing is cached. Looking up may be done from any thread; all else belongs to
// one.
class ClassStore {
 public:
  ClassStore(FileSystem& fileSystem, SettingsFolders settingsFolders);

  // Where the next changes go; the user's until told otherwise.
  void SetScope(ClassScope where) { scope = where; }
  ClassScope GetScope() const { return scope; }
  // The file that holds the registrations of the scope.
  std::string GetPath() const;

  // Each writes all its entries in one step or none. Doing it again changes nothing, and removing
  // what isn't there is success.
  bool AddTypeLibrary(const ServerIdentity& server, const std::string& libraryPath);
  bool AddServerClass(const ServerIdentity& server, const std::string& libraryPath);
  bool RemoveTypeLibrary(const ServerIdentity& server);
  bool RemoveServerClass(const ServerIdentity& server);
  // Why the last of these calls failed.
  const Error& LastFailure() const { return lastFailure; }

  // The class id behind a ProgID; a class id is its own.
  std::optional<std::string> FindClassId(std::string_view name) const;
  // The library of a class, by ProgID or class id. A path that isn't absolute counts as none: what
  // it means would depend on the folder that a project happens to lie in.
  std::optional<std::string> FindLibrary(std::string_view name) const;
  // The same in the scope alone.
  std::optional<std::string> FindLibraryInScope(std::string_view name) const;

  // The registries of this machine and user.
  static ClassStore& Native();

 private:
  // In the order in which they are asked.
  std::vector<IniFile> ReadRegistries() const;
  bool Edit(const std::function<bool(IniFile& store)>& edit);

  FileSystem& files;
  SettingsFolders folders;
  ClassScope scope = ClassScope::User;
  Error lastFailure;
};

}  // namespace tarn
