#include "platform/automation/ServerLibrary.h"

#include <dlfcn.h>

#include <cstdlib>

namespace tarn {

Result<void*> FindServerEntry(const std::string& libraryPath, const char* name) {
  // The loader counts: a library that is there already isn't loaded once more.
  void* library = dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* entry = library == nullptr ? nullptr : dlsym(library, name);
  if (entry != nullptr) return entry;
  const char* reason = dlerror();
  return Error{ErrorCode::NotFound,
               reason != nullptr ? reason : libraryPath + " has no " + std::string(name),
               libraryPath};
}

Result<std::int32_t> CallServerEntry(const std::string& libraryPath, const char* name) {
  const Result<void*> entry = FindServerEntry(libraryPath, name);
  if (!entry) return entry.GetError();
  return reinterpret_cast<PlainServerEntry*>(*entry)();
}

std::string LibraryPathOf(const void* address) {
  Dl_info info{};
  if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
  // The loader may know the library by a relative name or through a link.
  char* resolved = realpath(info.dli_fname, nullptr);
  const std::string path = resolved != nullptr ? resolved : info.dli_fname;
  std::free(resolved);
  return path;
}

std::string ModuleFolder() {
  const std::string path = LibraryPathOf(reinterpret_cast<const void*>(&ModuleFolder));
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

}  // namespace tarn
