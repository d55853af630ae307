#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/automation/Dispatch.h"

namespace tarn {

// Finds automation classes by ProgID or class id. Looked at in this order: factories that this
// process registered; libraries that were named for a class; the library lib<server>.so in the
// module folder, where <server> is the ProgID's part in front of the dot. Names compare without
// regard to case. A library is loaded once and never unloaded. May be used from any thread.
class ClassRegistry {
 public:
  // A registry that looks for libraries in `moduleFolder`.
  explicit ClassRegistry(std::string moduleFolderPath);

  // Registers a class of this process, replacing an earlier one.
  void RegisterFactory(std::string_view classId, std::function<DispatchPtr()> factory);
  // The class lives in this library from now on.
  void RegisterLibrary(std::string_view classId, std::string libraryPath);

  // A new object; null, with the reason in `error` when given, if there is none.
  DispatchPtr CreateInstance(std::string_view classId, std::string* error = nullptr);

  // The registry of the process, whose module folder is that of the platform library.
  static ClassRegistry& Native();

 private:
  using GetClassObject = std::int32_t (*)(const char* classId, IClassFactory** factory);

  std::function<DispatchPtr()> FindFactory(std::string_view classId);
  std::string LibraryOf(std::string_view classId);
  GetClassObject Load(const std::string& libraryPath, std::string& error);
  IClassFactory* LoadFactory(std::string_view classId, std::string& error);

  // Never held while foreign code runs.
  std::mutex lock;
  std::string moduleFolder;
  std::map<std::string, std::function<DispatchPtr()>> factories;
  std::map<std::string, std::string> libraries;
  std::map<std::string, GetClassObject> loaded;
};

// The folder that holds the platform library, where the other libraries of the system lie too.
std::string ModuleFolder();

// What a component library exports:
//   extern "C" std::int32_t DllGetClassObject(const char* classId, IClassFactory** factory);
// 0 and a factory that lives as long as the library, or another number when it has no such class.

}  // namespace tarn
