#include "platform/automation/ClassStore.h"

#include <initializer_list>
#include <utility>

#include "platform/paths/Paths.h"

namespace tarn {

namespace {

constexpr std::string_view kClasses = "Software\\Classes\\";

using Values = std::initializer_list<std::pair<const char*, std::string>>;
using Registries = std::vector<IniFile>;

std::string KeyOf(std::initializer_list<std::string_view> parts) {
  std::string key(kClasses);
  for (const std::string_view part : parts) key.append(part);
  return key;
}

std::string ClassKey(std::string_view classId) {
  return KeyOf({"CLSID\\", classId});
}

std::string TypeLibraryKey(const ServerIdentity& server) {
  return KeyOf({"TypeLib\\", server.typeLibraryId, "\\", server.version});
}

std::string InterfaceKey(const ServerIdentity& server) {
  return KeyOf({"Interface\\", server.interfaceId});
}

bool WriteValues(IniFile& store, const std::string& key, Values values) {
  for (const auto& [name, value] : values) {
    if (!store.Write(key, name, IniFile::Quoted(value))) return false;
  }
  return true;
}

std::optional<std::string> ReadFirst(const Registries& registries, const std::string& key,
                                     const char* name) {
  for (const IniFile& each : registries) {
    if (auto value = each.Read(key, name)) return value;
  }
  return std::nullopt;
}

std::optional<std::string> ClassIdIn(const Registries& registries, std::string_view name) {
  if (name.starts_with('{')) return std::string(name);
  return ReadFirst(registries, KeyOf({name}), "CLSID");
}

std::optional<std::string> LibraryIn(const Registries& registries, std::string_view name) {
  const auto classId = ClassIdIn(registries, name);
  if (!classId) return std::nullopt;
  auto path = ReadFirst(registries, ClassKey(*classId), "InprocServer");
  return path && !IsRelativePath(*path) ? path : std::nullopt;
}

}  // namespace

ClassStore::ClassStore(FileSystem& fileSystem, SettingsFolders settingsFolders)
    : files_(fileSystem), folders_(std::move(settingsFolders)) {}

std::string ClassStore::GetPath() const {
  return RegistryFileIn(scope_ == ClassScope::User ? folders_.user : folders_.machine);
}

bool ClassStore::Edit(const std::function<bool(IniFile& store)>& edit) {
  const Status done = EditIniStore(files_, GetPath(), edit);
  lastFailure_ = done.GetError();
  return static_cast<bool>(done);
}

bool ClassStore::AddTypeLibrary(const ServerIdentity& server, const std::string& libraryPath) {
  return Edit([&](IniFile& store) {
    return !IsRelativePath(libraryPath) &&
           WriteValues(store, TypeLibraryKey(server),
                       {{"@", server.typeLibraryName}, {"Library", libraryPath}}) &&
           WriteValues(store, InterfaceKey(server),
                       {{"@", server.interfaceName},
                        {"TypeLib", server.typeLibraryId},
                        {"Version", server.version}});
  });
}

bool ClassStore::AddServerClass(const ServerIdentity& server, const std::string& libraryPath) {
  return Edit([&](IniFile& store) {
    return !IsRelativePath(libraryPath) &&
           WriteValues(store, KeyOf({server.progId}),
                       {{"@", server.className}, {"CLSID", server.classId}}) &&
           WriteValues(store, ClassKey(server.classId),
                       {{"@", server.className},
                        {"ProgID", server.progId},
                        {"TypeLib", server.typeLibraryId},
                        {"InprocServer", libraryPath},
                        {"ThreadingModel", "Apartment"}});
  });
}

bool ClassStore::RemoveTypeLibrary(const ServerIdentity& server) {
  return Edit([&](IniFile& store) {
    store.RemoveSection(TypeLibraryKey(server));
    store.RemoveSection(InterfaceKey(server));
    return true;
  });
}

bool ClassStore::RemoveServerClass(const ServerIdentity& server) {
  return Edit([&](IniFile& store) {
    store.RemoveSection(KeyOf({server.progId}));
    store.RemoveSection(ClassKey(server.classId));
    return true;
  });
}

std::vector<IniFile> ClassStore::ReadRegistries() const {
  return {ReadIniStore(files_, RegistryFileIn(folders_.user)),
          ReadIniStore(files_, RegistryFileIn(folders_.machine))};
}

std::optional<std::string> ClassStore::FindClassId(std::string_view name) const {
  return ClassIdIn(ReadRegistries(), name);
}

std::optional<std::string> ClassStore::FindLibrary(std::string_view name) const {
  return LibraryIn(ReadRegistries(), name);
}

std::optional<std::string> ClassStore::FindLibraryInScope(std::string_view name) const {
  return LibraryIn({ReadIniStore(files_, GetPath())}, name);
}

ClassStore& ClassStore::Native() {
  // Never destroyed: objects that outlive main may still create others.
  static auto* const store =
      new ClassStore(FileSystem::Native(), SettingsFolders::FromEnvironment());
  return *store;
}

}  // namespace tarn
