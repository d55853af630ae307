#include "platform/modules/Modules.h"

#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace tarn {

namespace {

// Reads a little-endian number of `size` bytes.
std::uint64_t NumberAt(const std::array<char, 64>& header, std::size_t at, std::size_t size) {
  std::uint64_t number = 0;
  for (std::size_t i = size; i-- > 0;) {
    number = number << 8 | static_cast<unsigned char>(header[at + i]);
  }
  return number;
}

// Returns whether a library is truncated: the loader would map such a file anyway, and the first
// access after its end would kill the process. The section table is the last part of a 64-bit ELF
// file; other formats are left to the loader.
bool IsCut(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::array<char, 64> header{};
  if (!file.read(header.data(), header.size())) return false;
  const bool isElf64 = std::string_view(header.data(), 6) == "\177ELF\2\1";
  const std::uint64_t sections = NumberAt(header, 0x28, 8);
  if (!isElf64 || sections == 0) return false;
  file.seekg(0, std::ios::end);
  const std::uint64_t end = sections + NumberAt(header, 0x3a, 2) * NumberAt(header, 0x3c, 2);
  return end < sections || end > static_cast<std::uint64_t>(file.tellg());
}

}  // namespace

Result<void*> FindModuleEntry(const std::string& libraryPath, const char* name) {
  if (IsCut(libraryPath)) {
    return Error{ErrorCode::NotFound, libraryPath + ": the file is truncated", libraryPath};
  }
  // Reference-counted by the loader: an already loaded library is not loaded again.
  void* library = dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* entry = library == nullptr ? nullptr : dlsym(library, name);
  if (entry != nullptr) return entry;
  const char* reason = dlerror();
  return Error{ErrorCode::NotFound,
               reason != nullptr ? reason : libraryPath + " has no " + std::string(name),
               libraryPath};
}

std::string ModulePathOf(const void* address) {
  Dl_info info{};
  if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
  // The loader may have recorded a relative path or a link.
  char* resolved = realpath(info.dli_fname, nullptr);
  const std::string path = resolved != nullptr ? resolved : info.dli_fname;
  std::free(resolved);
  return path;
}

std::string ModuleFolder() {
  static const std::string folder = [] {
    const std::string path = ModulePathOf(reinterpret_cast<const void*>(&ModuleFolder));
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
  }();
  return folder;
}

std::string ModuleFileName(const std::string& name) {
  return "lib" + name + ".so";
}

}  // namespace tarn
