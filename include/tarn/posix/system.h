// What tarn/load.h needs from the operating system. A port supplies a header with the same
// functions.

#ifndef TARN_POSIX_SYSTEM_H
#define TARN_POSIX_SYSTEM_H

#include <dlfcn.h>
#include <pwd.h>
#include <stdlib.h>
#include <sys/types.h>
#include <unistd.h>

#ifdef __cplusplus
extern "C" {
#endif

// Start and end of the file name of a library.
#define TARN_LIBRARY_PREFIX "lib"
#define TARN_LIBRARY_SUFFIX ".so"

// Loads a library. Returns NULL on failure; TarnLibraryFailure() has the reason.
static inline void* TarnOpenLibrary(const char* path) {
  return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}

// Returns the address of a function of a library, or NULL like TarnOpenLibrary().
static inline void* TarnFindFunction(void* library, const char* name) {
  return dlsym(library, name);
}

// Returns the reason of the last failure on this thread, or NULL.
static inline const char* TarnLibraryFailure(void) {
  return dlerror();
}

static inline int TarnIsAbsolutePath(const char* path) {
  return *path == '/';
}

// Returns the folder of the system-wide settings.
static inline const char* TarnMachineFolder(void) {
  return "/etc/tarn";
}

// Returns the folder that contains the folders of the user's settings, and in `*rest` the path from
// there to the settings of Tarn. Returns NULL if the user has none.
static inline const char* TarnUserFolder(const char** rest) {
  const char* config = getenv("XDG_CONFIG_HOME");
  const char* home = getenv("HOME");
  const struct passwd* user = NULL;
  *rest = "/tarn";
  if (config != NULL && TarnIsAbsolutePath(config)) return config;
  *rest = "/.config/tarn";
  if (home == NULL || !TarnIsAbsolutePath(home)) user = getpwuid(geteuid());
  return user != NULL ? user->pw_dir : home;
}

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TARN_POSIX_SYSTEM_H
