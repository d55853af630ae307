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

// Names and identifiers that a server is registered under. Identifiers include their braces.
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

// Registry that a class is registered in: the user's or the system-wide one.
enum class ClassScope { User, Machine };

// The classes registered on this system, in the user's registry and in the system-wide one; the
// user's entries take precedence. The sections below "Software\Classes" are
//
//   a ProgID              CLSID=, the class id
//   CLSID\<class id>      InprocServer=, the absolute path of the library; ProgID=, TypeLib=,
//                         ThreadingModel=
//   TypeLib\<id>\<version>, Interface\<id>   description of the type library and the interface
//
// and the value "@" is the entry's display name. A program that can read this format finds a server
// without linking any library of Tarn. Nothing is cached: each lookup reads both files. Lookups are
// thread-safe; all other functions must stay on one thread.
class ClassStore {
 public:
  ClassStore(FileSystem& fileSystem, SettingsFolders settingsFolders);

  // Selects the registry that Add... and Remove... change; initially the user's.
  void SetScope(ClassScope where) { scope_ = where; }
  ClassScope GetScope() const { return scope_; }
  // Path of the file that stores the registrations of the scope.
  std::string GetPath() const;

  // Each writes all of its entries atomically, or none. Repeating a call changes nothing, and
  // removing missing entries succeeds. Returns false on error; see LastFailure().
  bool AddTypeLibrary(const ServerIdentity& server, const std::string& libraryPath);
  bool AddServerClass(const ServerIdentity& server, const std::string& libraryPath);
  bool RemoveTypeLibrary(const ServerIdentity& server);
  bool RemoveServerClass(const ServerIdentity& server);
  // Error of the last Add... or Remove... call.
  const Error& LastFailure() const { return lastFailure_; }

  // Returns the class id of a ProgID, or a class id unchanged. Returns nullopt if the ProgID is not
  // registered.
  std::optional<std::string> FindClassId(std::string_view name) const;
  // Returns the library of a class named by ProgID or class id. A relative path is treated as
  // missing, because its meaning would depend on the location of the project.
  std::optional<std::string> FindLibrary(std::string_view name) const;
  // Like FindLibrary(), but searches only the current scope.
  std::optional<std::string> FindLibraryInScope(std::string_view name) const;

  // Returns the registries of this system and user.
  static ClassStore& Native();

 private:
  // The registries in order of precedence.
  std::vector<IniFile> ReadRegistries() const;
  bool Edit(const std::function<bool(IniFile& store)>& edit);

  FileSystem& files_;
  SettingsFolders folders_;
  ClassScope scope_ = ClassScope::User;
  Error lastFailure_;
};

}  // namespace tarn
