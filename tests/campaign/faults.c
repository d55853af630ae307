/* Preloaded into a program, makes one of its file system calls fail, or kills it there.
 *
 * A call has a number if it is made by the program FAULT_PROGRAM (name of the executable) and
 * concerns something below the folder FAULT_BELOW. All threads count together, children by
 * themselves. Variables of the environment:
 *
 *   FAULT_LOG   file that gets a line "NUMBER CALL KIND PATH" for each of these calls; the kind is
 *               "alters" if the call can run out of space, "waits" if a signal can interrupt it,
 *               "both", or "-"
 *   FAULT_AT    number of the call that fails, from 1
 *   FAULT       an error number; 0 kills the process before the call
 *   FAULT_LASTS if set, every later call that can run out of space fails as well
 *   FAULT_ON    path; each call for it, or for something below it, fails instead of a numbered one
 */

#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

enum { ALTERS = 1, WAITS = 2 };

static atomic_int calls;
static int wanted, number, lasts, isMeant, logFile = -1;
static char below[4096];
static const char* on;

/* System calls, because the functions of the library are those below. */
static long read_link(const char* path, char* target, size_t size) {
  return syscall(SYS_readlinkat, AT_FDCWD, path, target, size);
}

__attribute__((constructor)) static void begin(void) {
  char program[4096];
  const long length = read_link("/proc/self/exe", program, sizeof program - 1);
  const char* meant = getenv("FAULT_PROGRAM");
  const char* folder = getenv("FAULT_BELOW");
  const char* log = getenv("FAULT_LOG");
  if (length < 0 || meant == NULL || folder == NULL) return;
  program[length] = '\0';
  const char* name = strrchr(program, '/');
  if (name == NULL || strcmp(name + 1, meant) != 0) return;
  snprintf(below, sizeof below, "%s", folder);
  wanted = atoi(getenv("FAULT_AT") == NULL ? "0" : getenv("FAULT_AT"));
  number = atoi(getenv("FAULT") == NULL ? "0" : getenv("FAULT"));
  lasts = getenv("FAULT_LASTS") != NULL;
  on = getenv("FAULT_ON");
  if (log != NULL)
    logFile =
        (int)syscall(SYS_openat, AT_FDCWD, log, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  isMeant = 1;
}

static int is_on(const char* path) {
  const size_t length = on == NULL ? 0 : strlen(on);
  return length > 0 && strncmp(path, on, length) == 0 &&
         (path[length] == '\0' || path[length] == '/');
}

/* Returns 1, with errno set, if the call must fail. */
static int fails(const char* call, int kind, const char* path) {
  char full[8192];
  if (!isMeant || path == NULL) return 0;
  const int saved = errno;
  if (path[0] != '/') {
    char folder[4096];
    if (syscall(SYS_getcwd, folder, sizeof folder) < 0) folder[0] = '\0';
    snprintf(full, sizeof full, "%s/%s", folder, path);
    path = full;
  }
  if (strncmp(path, below, strlen(below)) != 0) return 0;
  const int at = ++calls;
  if (logFile >= 0) {
    static const char* const kinds[] = {"-", "alters", "waits", "both"};
    char line[9000];
    const int length = snprintf(line, sizeof line, "%d %s %s %s\n", at, call, kinds[kind], path);
    syscall(SYS_write, logFile, line, (size_t)length);
  }
  errno = saved;
  /* A name that is there is taken over without any room. */
  const int isLater = lasts && wanted != 0 && at > wanted && (kind & ALTERS) != 0 &&
                      strncmp(call, "rename", 6) != 0;
  if (at != wanted && !isLater && !is_on(path)) return 0;
  if (number == 0) kill(getpid(), SIGKILL);
  errno = number;
  return 1;
}

/* Like fails(), for an open file or folder; pipes and devices don't count. */
static int fails_at(const char* call, int kind, int file) {
  char link[64], path[4096];
  if (!isMeant) return 0;
  const int saved = errno;
  snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  const long length = read_link(link, path, sizeof path - 1);
  errno = saved;
  if (length <= 0 || path[0] != '/') return 0;
  path[length] = '\0';
  return fails(call, kind, path);
}

#define REAL(type, name, ...)       \
  static type (*real)(__VA_ARGS__); \
  if (real == NULL) *(void**)&real = dlsym(RTLD_NEXT, #name)

#define BY_PATH(type, failure, name, kind, parameters, arguments, path) \
  type name parameters {                                                \
    static type(*real) parameters;                                      \
    if (real == NULL) *(void**)&real = dlsym(RTLD_NEXT, #name);         \
    if (fails(#name, kind, path)) return failure;                       \
    return real arguments;                                              \
  }
#define BY_FILE(type, failure, name, kind, parameters, arguments, file) \
  type name parameters {                                                \
    static type(*real) parameters;                                      \
    if (real == NULL) *(void**)&real = dlsym(RTLD_NEXT, #name);         \
    if (fails_at(#name, kind, file)) return failure;                    \
    return real arguments;                                              \
  }

static int kind_of_open(int flags) {
  return (flags & O_CREAT) != 0 ? ALTERS | WAITS : WAITS;
}

#define OPEN(name)                                          \
  int name(const char* path, int flags, ...) {              \
    REAL(int, name, const char*, int, ...);                 \
    va_list list;                                           \
    va_start(list, flags);                                  \
    const unsigned mode = va_arg(list, unsigned);           \
    va_end(list);                                           \
    if (fails(#name, kind_of_open(flags), path)) return -1; \
    return real(path, flags, mode);                         \
  }
#define OPEN_AT(name)                                       \
  int name(int folder, const char* path, int flags, ...) {  \
    REAL(int, name, int, const char*, int, ...);            \
    va_list list;                                           \
    va_start(list, flags);                                  \
    const unsigned mode = va_arg(list, unsigned);           \
    va_end(list);                                           \
    if (fails(#name, kind_of_open(flags), path)) return -1; \
    return real(folder, path, flags, mode);                 \
  }
#define CONTROL(name)                                                                           \
  int name(int file, int command, ...) {                                                        \
    REAL(int, name, int, int, ...);                                                             \
    va_list list;                                                                               \
    va_start(list, command);                                                                    \
    void* argument = va_arg(list, void*);                                                       \
    va_end(list);                                                                               \
    if (command != F_GETFD && command != F_SETFD && command != F_GETFL && command != F_SETFL && \
        fails_at(#name, WAITS, file))                                                           \
      return -1;                                                                                \
    return real(file, command, argument);                                                       \
  }

OPEN(open)
OPEN(open64)
OPEN_AT(openat)
OPEN_AT(openat64)
CONTROL(fcntl)
CONTROL(fcntl64)

BY_PATH(FILE*, NULL, fopen, ALTERS | WAITS, (const char* path, const char* mode), (path, mode),
        path)
BY_PATH(FILE*, NULL, fopen64, ALTERS | WAITS, (const char* path, const char* mode), (path, mode),
        path)
BY_PATH(DIR*, NULL, opendir, WAITS, (const char* path), (path), path)
BY_PATH(int, -1, stat, 0, (const char* path, struct stat* info), (path, info), path)
BY_PATH(int, -1, lstat, 0, (const char* path, struct stat* info), (path, info), path)
BY_PATH(int, -1, stat64, 0, (const char* path, struct stat64* info), (path, info), path)
BY_PATH(int, -1, lstat64, 0, (const char* path, struct stat64* info), (path, info), path)
BY_PATH(int, -1, fstatat, 0, (int folder, const char* path, struct stat* info, int flags),
        (folder, path, info, flags), path)
BY_PATH(int, -1, fstatat64, 0, (int folder, const char* path, struct stat64* info, int flags),
        (folder, path, info, flags), path)
BY_PATH(int, -1, access, 0, (const char* path, int mode), (path, mode), path)
BY_PATH(int, -1, faccessat, 0, (int folder, const char* path, int mode, int flags),
        (folder, path, mode, flags), path)
BY_PATH(ssize_t, -1, readlink, 0, (const char* path, char* target, size_t size),
        (path, target, size), path)
BY_PATH(char*, NULL, realpath, 0, (const char* path, char* target), (path, target), path)
BY_PATH(int, -1, rename, ALTERS, (const char* from, const char* path), (from, path), path)
BY_PATH(int, -1, renameat, ALTERS, (int first, const char* from, int second, const char* path),
        (first, from, second, path), path)
BY_PATH(int, -1, link, ALTERS, (const char* from, const char* path), (from, path), path)
BY_PATH(int, -1, symlink, ALTERS, (const char* from, const char* path), (from, path), path)
BY_PATH(int, -1, mkdir, ALTERS, (const char* path, mode_t mode), (path, mode), path)
BY_PATH(int, -1, unlink, 0, (const char* path), (path), path)
BY_PATH(int, -1, rmdir, 0, (const char* path), (path), path)
BY_PATH(int, -1, chdir, 0, (const char* path), (path), path)
BY_PATH(int, -1, chmod, 0, (const char* path, mode_t mode), (path, mode), path)
BY_PATH(int, -1, utimensat, 0,
        (int folder, const char* path, const struct timespec times[2], int flags),
        (folder, path, times, flags), path)

BY_FILE(ssize_t, -1, read, WAITS, (int file, void* bytes, size_t size), (file, bytes, size), file)
BY_FILE(ssize_t, -1, pread, WAITS, (int file, void* bytes, size_t size, off_t at),
        (file, bytes, size, at), file)
BY_FILE(ssize_t, -1, pread64, WAITS, (int file, void* bytes, size_t size, off64_t at),
        (file, bytes, size, at), file)
BY_FILE(ssize_t, -1, write, ALTERS | WAITS, (int file, const void* bytes, size_t size),
        (file, bytes, size), file)
BY_FILE(ssize_t, -1, pwrite, ALTERS | WAITS, (int file, const void* bytes, size_t size, off_t at),
        (file, bytes, size, at), file)
BY_FILE(ssize_t, -1, pwrite64, ALTERS | WAITS,
        (int file, const void* bytes, size_t size, off64_t at), (file, bytes, size, at), file)
BY_FILE(int, -1, fsync, ALTERS | WAITS, (int file), (file), file)
BY_FILE(int, -1, fdatasync, ALTERS | WAITS, (int file), (file), file)
BY_FILE(int, -1, ftruncate, ALTERS | WAITS, (int file, off_t size), (file, size), file)
BY_FILE(int, -1, ftruncate64, ALTERS | WAITS, (int file, off64_t size), (file, size), file)
BY_FILE(int, -1, fstat, 0, (int file, struct stat* info), (file, info), file)
BY_FILE(int, -1, fstat64, 0, (int file, struct stat64* info), (file, info), file)
BY_FILE(int, -1, fchmod, WAITS, (int file, mode_t mode), (file, mode), file)
BY_FILE(int, -1, fchown, WAITS, (int file, uid_t user, gid_t group), (file, user, group), file)
BY_FILE(struct dirent*, NULL, readdir, 0, (DIR * folder), (folder), dirfd(folder))
BY_FILE(struct dirent64*, NULL, readdir64, 0, (DIR * folder), (folder), dirfd(folder))

/* The file is closed in any case, as on Linux. */
int close(int file) {
  REAL(int, close, int);
  const int isFailed = fails_at("close", ALTERS | WAITS, file);
  const int reason = errno;
  const int result = real(file);
  if (!isFailed) return result;
  errno = reason;
  return -1;
}
