#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/automation/ClassStore.h"
#include "platform/automation/Dispatch.h"

namespace tarn {

// Finds automation classes by ProgID or class id. Looked at in this order: factories that this
// process registered; libraries that were named for a class; the library lib<server>.so in the
// module folder, where <server> is the ProgID's part in front of the dot; the classes registered on
// this machine. So an installation works with its own servers, whichever are registered. Names
// compare without regard to case. A library is loaded once and never unloaded. May be used from any
// thread.
class ClassRegistry {
 public:
  // A registry that looks for libraries in `moduleFolder` and among the `registered` classes, which
  // are borrowed; null: there are none.
  explicit ClassRegistry(std::string moduleFolderPath, const ClassStore* registered = nullptr);

  // Registers a class of this process, replacing an earlier one.
  void RegisterFactory(std::string_view classId, std::function<DispatchPtr()> factory);
  // The class lives in this library from now on.
  void RegisterLibrary(std::string_view classId, std::string libraryPath);
  // The same for both names of a class.
  void RegisterServer(std::string_view progId, std::string_view classId,
                      const std::string& libraryPath);
  // The class id behind a ProgID of RegisterServer or of the registered classes; any other name is
  // taken as it is.
  std::string ClassIdOf(std::string_view name);

  // A new object; null, with the reason in `error` when given, if there is none.
  DispatchPtr CreateInstance(std::string_view classId, std::string* error = nullptr);

  // The registry of the process, whose module folder is that of the platform library.
  static ClassRegistry& Native();

 private:
  std::function<DispatchPtr()> FindFactory(std::string_view classId);
  std::string LibraryOf(std::string_view classId);
  IClassFactory* LoadFactory(std::string_view classId, std::string& error);

  // Never held while foreign code runs.
  std::mutex lock;
  std::string moduleFolder;
  const ClassStore* registeredClasses;
  std::map<std::string, std::function<DispatchPtr()>> factories;
  std::map<std::string, std::string> libraries;
  std::map<std::string, std::string> classIds;  // by ProgID
};

}  // namespace tarn
