// Finds and loads one of Tarn's libraries: either the library that a class is registered with, or
// the one at a given path. Header-only. Requires only the C library (plus -ldl where that is
// separate); tarn/posix/system.h has what depends on the system. A loaded library is never
// unloaded.
//
//   const TarnAutomation* tarn = TarnLoad(TARN_PROJECT_MANAGER, reason, sizeof reason);
//
// The entry points are TarnLoad, TarnLoadFrom and TarnFindLibrary; the other functions are their
// parts.

#ifndef TARN_LOAD_H
#define TARN_LOAD_H

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <tarn/automation.h>
#include <tarn/posix/system.h>

#ifdef __cplusplus
extern "C" {
#endif

// Sizes of a buffer that holds a path, and of one that holds a line containing a path.
#define TARN_PATH_SIZE 4096
#define TARN_LINE_SIZE (TARN_PATH_SIZE + 128)

// Concatenates three strings into `text`. Returns 0 if the result was truncated to fit.
static inline int TarnJoin(char* text, size_t size, const char* first, const char* second,
                           const char* third) {
  const char* parts[3];
  size_t used = 0;
  int isWhole = size > 0;
  int i = 0;
  parts[0] = first;
  parts[1] = second;
  parts[2] = third;
  for (; i < 3; ++i) {
    const char* next = parts[i];
    for (; isWhole && *next != '\0'; ++next) {
      if (used + 1 < size) {
        text[used++] = *next;
      } else {
        isWhole = 0;
      }
    }
  }
  if (size > 0) text[used] = '\0';
  return isWhole;
}

// Loads the library at `path`, which may be any of Tarn's, and returns its operations. Returns
// NULL, with an error message in `reason`, if it cannot be loaded or is too old for this header.
static inline const TarnAutomation* TarnLoadFrom(const char* path, char* reason,
                                                 size_t reasonSize) {
  TarnGetAutomationFunction get = NULL;
  const TarnAutomation* operations = NULL;
  void* library = TarnOpenLibrary(path);
  // ISO C has no conversion from an object pointer to a function pointer.
  if (library != NULL) *(void**)&get = TarnFindFunction(library, "TarnGetAutomation");
  if (get == NULL) {
    const char* text = TarnLibraryFailure();
    TarnJoin(reason, reasonSize, text != NULL ? text : "no library of Tarn", "", "");
    return NULL;
  }
  operations = get(TARN_AUTOMATION_VERSION);
  if (operations == NULL) {
    TarnJoin(reason, reasonSize, path, " is of another version than this program", "");
  }
  return operations;
}

// --- Where classes are registered ---

// Strips whitespace in place and returns the start of the remaining string.
static inline char* TarnTrim(char* text) {
  size_t length = 0;
  while (*text != '\0' && strchr(" \t\r\n\v\f", *text) != NULL) ++text;
  length = strlen(text);
  while (length > 0 && strchr(" \t\r\n\v\f", text[length - 1]) != NULL) --length;
  text[length] = '\0';
  return text;
}

// Returns 1 if the strings are equal, ignoring the case of ASCII letters.
static inline int TarnIsSameName(const char* a, const char* b) {
  for (;; ++a, ++b) {
    const char left = (char)(*a >= 'A' && *a <= 'Z' ? *a + ('a' - 'A') : *a);
    const char right = (char)(*b >= 'A' && *b <= 'Z' ? *b + ('a' - 'A') : *b);
    if (left != right) return 0;
    if (left == '\0') return 1;
  }
}

// Reads a value from an INI file; the first definition wins. Returns 0 if the value is missing or
// does not fit.
static inline int TarnReadValue(const char* file, const char* section, const char* name,
                                char* value, size_t size) {
  char line[TARN_LINE_SIZE];
  int isInside = 0;
  int isFound = 0;
  FILE* text = fopen(file, "r");
  if (text == NULL) return 0;
  while (!isFound && fgets(line, sizeof line, text) != NULL) {
    char* start = TarnTrim(line);
    char* end = strchr(start, *start == '[' ? ']' : '=');
    if (end == NULL || *start == ';') continue;
    *end = '\0';
    if (*start == '[') {
      isInside = TarnIsSameName(TarnTrim(start + 1), section);
    } else if (isInside && TarnIsSameName(TarnTrim(start), name)) {
      isFound = TarnJoin(value, size, TarnTrim(end + 1), "", "");
    }
  }
  fclose(text);
  return isFound;
}

// Path of the user's (0) or the system-wide (1) registry file; an empty string if there is no home
// directory.
static inline void TarnRegistryFile(int ofMachine, char* file, size_t size) {
  const char* root = getenv("TARN_SETTINGS");
  if (root != NULL && *root != '\0') {
    TarnJoin(file, size, root, ofMachine ? "/machine" : "/user", "/registry.ini");
  } else if (ofMachine) {
    TarnJoin(file, size, TarnMachineFolder(), "/registry.ini", "");
  } else {
    const char* rest = NULL;
    const char* folder = TarnUserFolder(&rest);
    *file = '\0';
    if (folder != NULL) TarnJoin(file, size, folder, rest, "/registry.ini");
  }
}

// Reads a value of a registered class; the user's registry takes precedence.
static inline int TarnReadClass(const char* prefix, const char* key, const char* name, char* value,
                                size_t size) {
  char section[TARN_LINE_SIZE];
  char file[TARN_PATH_SIZE];
  int ofMachine = 0;
  if (!TarnJoin(section, sizeof section, "Software\\Classes\\", prefix, key)) return 0;
  for (; ofMachine <= 1; ++ofMachine) {
    TarnRegistryFile(ofMachine, file, sizeof file);
    if (TarnReadValue(file, section, name, value, size)) return 1;
  }
  return 0;
}

// Finds the library of a registered class, named by ProgID or class id. Returns 0 if there is none
// or its path is not absolute.
static inline int TarnFindLibrary(const char* classId, char* path, size_t size) {
  char id[256];
  if (*classId == '{') {
    if (!TarnJoin(id, sizeof id, classId, "", "")) return 0;
  } else if (!TarnReadClass("", classId, "CLSID", id, sizeof id)) {
    return 0;
  }
  return TarnReadClass("CLSID\\", id, "InprocServer", path, size) && TarnIsAbsolutePath(path);
}

// Loads the library that a class, named by ProgID or class id, is registered with. If the class is
// not registered, falls back to the system's loader with the library name derived from the part of
// the ProgID before the dot. Returns NULL, with an error message in `reason`, if neither works.
static inline const TarnAutomation* TarnLoad(const char* classId, char* reason, size_t reasonSize) {
  char path[TARN_PATH_SIZE];
  char server[256];
  if (TarnFindLibrary(classId, path, sizeof path)) {
    return TarnLoadFrom(path, reason, reasonSize);
  }
  if (TarnJoin(server, sizeof server, classId, "", "")) {
    server[strcspn(server, "./")] = '\0';
    TarnJoin(path, sizeof path, TARN_LIBRARY_PREFIX, server, TARN_LIBRARY_SUFFIX);
    if (TarnOpenLibrary(path) != NULL) return TarnLoadFrom(path, reason, reasonSize);
  }
  TarnJoin(reason, reasonSize, classId, " isn't registered; `tarn register` does it", "");
  return NULL;
}

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TARN_LOAD_H
