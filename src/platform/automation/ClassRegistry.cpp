#include "platform/automation/ClassRegistry.h"

#include <exception>
#include <utility>

#include "platform/automation/ServerLibrary.h"
#include "platform/files/FileSystem.h"
#include "platform/modules/Modules.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

ClassRegistry::ClassRegistry(std::string moduleFolderPath, const ClassStore* registered)
    : moduleFolder_(std::move(moduleFolderPath)), registeredClasses_(registered) {}

void ClassRegistry::RegisterFactory(std::string_view classId,
                                    std::function<DispatchPtr()> factory) {
  const std::lock_guard guard(lock_);
  factories_[FoldCase(classId)].swap(factory);
}

void ClassRegistry::RegisterLibrary(std::string_view classId, std::string libraryPath) {
  const std::lock_guard guard(lock_);
  libraries_[FoldCase(classId)] = std::move(libraryPath);
}

void ClassRegistry::RegisterServer(std::string_view progId, std::string_view classId,
                                   const std::string& libraryPath) {
  RegisterLibrary(progId, libraryPath);
  RegisterLibrary(classId, libraryPath);
  const std::lock_guard guard(lock_);
  classIds_[FoldCase(progId)] = classId;
}

std::string ClassRegistry::ClassIdOf(std::string_view name) {
  {
    const std::lock_guard guard(lock_);
    const auto known = classIds_.find(FoldCase(name));
    if (known != classIds_.end()) return known->second;
  }
  const auto registered =
      registeredClasses_ == nullptr ? std::nullopt : registeredClasses_->FindClassId(name);
  return registered ? *registered : std::string(name);
}

DispatchPtr ClassRegistry::CreateInstance(std::string_view classId, std::string* error) {
  std::string reason = "the class made no object";
  DispatchPtr made;
  try {
    if (const auto factory = FindFactory(classId)) {
      made = factory();
    } else if (IClassFactory* loadedFactory = LoadFactory(classId, reason)) {
      made = loadedFactory->CreateInstance();
    }
  } catch (const std::exception& failure) {
    reason = failure.what();
  }
  if (!made && error != nullptr) *error = std::string(classId) + ": " + reason;
  return made;
}

ClassRegistry& ClassRegistry::Native() {
  // Never destroyed: objects that outlive main may still create others.
  static auto* const registry = new ClassRegistry(ModuleFolder(), &ClassStore::Native());
  return *registry;
}

std::function<DispatchPtr()> ClassRegistry::FindFactory(std::string_view classId) {
  const std::lock_guard guard(lock_);
  const auto found = factories_.find(FoldCase(classId));
  return found == factories_.end() ? nullptr : found->second;
}

std::string ClassRegistry::LibraryOf(std::string_view classId) {
  {
    const std::lock_guard guard(lock_);
    const auto named = libraries_.find(FoldCase(classId));
    if (named != libraries_.end()) return named->second;
  }
  const std::string_view server = classId.substr(0, classId.find('.'));
  // Only a plain name may select a file of the module folder.
  const bool isPlain = !server.empty() && server.size() != classId.size() &&
                       server.find_first_of("/\\") == std::string_view::npos;
  std::string beside =
      isPlain ? moduleFolder_ + kSeparator + ModuleFileName(std::string(server)) : "";
  if (isPlain && FileSystem::Native().Exists(beside)) return beside;
  const auto registered =
      registeredClasses_ == nullptr ? std::nullopt : registeredClasses_->FindLibrary(classId);
  return registered ? *registered : beside;
}

IClassFactory* ClassRegistry::LoadFactory(std::string_view classId, std::string& error) {
  const std::string libraryPath = LibraryOf(classId);
  if (libraryPath.empty()) {
    error = "no such class";
    return nullptr;
  }
  // The loader asks the disk itself; a recording disk has to know the version, too.
  static_cast<void>(FileSystem::Native().Examine(libraryPath));
  const Result<GetClassObjectEntry*> entry = FindClassObjectEntry(libraryPath);
  if (!entry) {
    error = entry.GetError().text;
    return nullptr;
  }
  IClassFactory* factory = nullptr;
  const std::int32_t code = (*entry)(std::string(classId).c_str(), &factory);
  if (code == 0 && factory != nullptr) return factory;
  error = libraryPath + " has no such class";
  return nullptr;
}

}  // namespace tarn
