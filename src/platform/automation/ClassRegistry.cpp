#include "platform/automation/ClassRegistry.h"

#include <dlfcn.h>

#include <cstdlib>
#include <exception>
#include <utility>

#include "platform/text/Text.h"

namespace tarn {

ClassRegistry::ClassRegistry(std::string moduleFolderPath)
    : moduleFolder(std::move(moduleFolderPath)) {}

void ClassRegistry::RegisterFactory(std::string_view classId,
                                    std::function<DispatchPtr()> factory) {
  const std::lock_guard guard(lock);
  factories[FoldCase(classId)].swap(factory);
}

void ClassRegistry::RegisterLibrary(std::string_view classId, std::string libraryPath) {
  const std::lock_guard guard(lock);
  libraries[FoldCase(classId)] = std::move(libraryPath);
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
  static auto* const registry = new ClassRegistry(ModuleFolder());
  return *registry;
}

std::function<DispatchPtr()> ClassRegistry::FindFactory(std::string_view classId) {
  const std::lock_guard guard(lock);
  const auto found = factories.find(FoldCase(classId));
  return found == factories.end() ? nullptr : found->second;
}

std::string ClassRegistry::LibraryOf(std::string_view classId) {
  const std::lock_guard guard(lock);
  const auto named = libraries.find(FoldCase(classId));
  if (named != libraries.end()) return named->second;
  const std::string_view server = classId.substr(0, classId.find('.'));
  // Only a plain name may choose a file of the module folder.
  if (server.empty() || server.size() == classId.size()) return {};
  if (server.find('/') != std::string_view::npos) return {};
  return moduleFolder + "/lib" + std::string(server) + ".so";
}

ClassRegistry::GetClassObject ClassRegistry::Load(const std::string& libraryPath,
                                                  std::string& error) {
  {
    const std::lock_guard guard(lock);
    const auto found = loaded.find(libraryPath);
    if (found != loaded.end()) return found->second;
  }
  // Without the lock, since a library may register classes while it is loaded.
  void* library = dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* entry = library == nullptr ? nullptr : dlsym(library, "DllGetClassObject");
  if (entry == nullptr) {
    const char* text = dlerror();
    error = text != nullptr ? text : libraryPath + " has no DllGetClassObject";
    return nullptr;
  }
  const auto function = reinterpret_cast<GetClassObject>(entry);
  const std::lock_guard guard(lock);
  loaded.emplace(libraryPath, function);
  return function;
}

IClassFactory* ClassRegistry::LoadFactory(std::string_view classId, std::string& error) {
  const std::string libraryPath = LibraryOf(classId);
  if (libraryPath.empty()) {
    error = "no such class";
    return nullptr;
  }
  const GetClassObject getClassObject = Load(libraryPath, error);
  if (getClassObject == nullptr) return nullptr;
  IClassFactory* factory = nullptr;
  const std::int32_t code = getClassObject(std::string(classId).c_str(), &factory);
  if (code == 0 && factory != nullptr) return factory;
  error = libraryPath + " has no such class";
  return nullptr;
}

std::string ModuleFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&ModuleFolder), &info) == 0) return {};
  // The loader may know the library by a relative name or through a link.
  char* resolved = realpath(info.dli_fname, nullptr);
  const std::string path = resolved != nullptr ? resolved : info.dli_fname;
  std::free(resolved);
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

}  // namespace tarn
