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

// Finds automation classes by ProgID or class id. Search order: factories registered by this
// process; libraries registered for a class by this process; the library lib<server>.so in the
// module folder, where <server> is the part of the ProgID before the dot; classes registered on
// this system. So an installation uses its own servers even if others are registered. Names are
// case-insensitive. A library is loaded once and never unloaded. Thread-safe.
class ClassRegistry {
 public:
  // `moduleFolderPath` is searched for libraries. `registered` is borrowed; if it is null, no class
  // is registered on the system.
  explicit ClassRegistry(std::string moduleFolderPath, const ClassStore* registered = nullptr);

  // Registers a class implemented in this process; replaces an earlier registration.
  void RegisterFactory(std::string_view classId, std::function<DispatchPtr()> factory);
  // Registers the library that implements a class; replaces an earlier registration.
  void RegisterLibrary(std::string_view classId, std::string libraryPath);
  // Like RegisterLibrary(), for both names of a class; also maps the ProgID to the class id.
  void RegisterServer(std::string_view progId, std::string_view classId,
                      const std::string& libraryPath);
  // Returns the class id of a ProgID that is known from RegisterServer() or from the registered
  // classes; returns any other name unchanged.
  std::string ClassIdOf(std::string_view name);

  // Creates an object. Returns null, with the reason in `*error` if given, if there is no such
  // class or it created none. Loads the library at the first use of its class.
  DispatchPtr CreateInstance(std::string_view classId, std::string* error = nullptr);

  // Returns the registry of the process. Its module folder is that of the platform library.
  static ClassRegistry& Native();

 private:
  std::function<DispatchPtr()> FindFactory(std::string_view classId);
  std::string LibraryOf(std::string_view classId);
  IClassFactory* LoadFactory(std::string_view classId, std::string& error);

  // Never held while foreign code runs.
  std::mutex lock_;
  std::string moduleFolder_;
  const ClassStore* registeredClasses_;
  std::map<std::string, std::function<DispatchPtr()>> factories_;
  std::map<std::string, std::string> libraries_;
  std::map<std::string, std::string> classIds_;  // by ProgID
};

}  // namespace tarn
