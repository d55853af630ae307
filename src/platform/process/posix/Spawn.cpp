#include "platform/process/posix/Spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/modules/Modules.h"
#include "platform/process/posix/GuardChannel.h"

extern char** environ;

namespace tarn {

namespace {

std::string FindIn(std::string_view folders, std::string_view name) {
  while (!folders.empty()) {
    const auto colon = folders.find(':');
    const std::string_view folder = folders.substr(0, colon);
    folders = colon == std::string_view::npos ? std::string_view() : folders.substr(colon + 1);
    if (folder.empty()) continue;
    std::string path = std::string(folder) + "/" + std::string(name);
    if (FileSystem::Native().IsProgram(path)) return path;
  }
  return {};
}

std::string FindProgramIn(const char* folders, std::string_view name) {
  if (name.empty()) return {};
  if (name.find('/') == std::string_view::npos) {
    return FindIn(folders != nullptr ? folders : "/usr/local/bin:/usr/bin:/bin", name);
  }
  std::string path(name);
  return FileSystem::Native().IsProgram(path) ? path : std::string();
}

// Makes the path absolute, so that it does not depend on the child's working folder.
std::string FromHere(const std::string& path) {
  if (path.empty() || path.front() == '/') return path;
  char* current = getcwd(nullptr, 0);
  if (current == nullptr) return path;
  std::string whole = std::string(current) + "/" + path;
  free(current);
  return whole;
}

std::string ProgramOf(const ProcessRequest& request) {
  const char* folders = getenv("PATH");
  for (const auto& [name, value] : request.environment) {
    if (name == "PATH") folders = value.c_str();
  }
  return FromHere(FindProgramIn(folders, request.program));
}

// Returns the folders of PATH where FindProgram() searches, for a child with a different working
// folder.
std::string FoldersForChild(std::string_view folders) {
  std::string absolute;
  while (!folders.empty()) {
    const auto colon = folders.find(':');
    const std::string_view folder = folders.substr(0, colon);
    folders = colon == std::string_view::npos ? std::string_view() : folders.substr(colon + 1);
    if (folder.empty()) continue;
    absolute += (absolute.empty() ? "" : ":") + FromHere(std::string(folder));
  }
  return absolute;
}

// Strings in the form that the OS expects: an array of pointers, terminated by null.
class TextList {
 public:
  void Add(std::string text) { texts_.push_back(std::move(text)); }
  std::vector<char*> Pointers() {
    std::vector<char*> pointers;
    pointers.reserve(texts_.size() + 1);
    for (std::string& text : texts_) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
  }

 private:
  std::vector<std::string> texts_;
};

bool IsReplaced(std::string_view entry, const ProcessRequest& request) {
  const std::string_view name = entry.substr(0, entry.find('='));
  for (const auto& replaced : request.environment) {
    if (replaced.first == name) return true;
  }
  return false;
}

// Programs that the child starts in its turn are to be the ones that FindProgram() finds.
std::string EntryForChild(std::string entry) {
  constexpr std::string_view kPath = "PATH=";
  if (!entry.starts_with(kPath)) return entry;
  // An empty PATH would mean the working folder, one without an existing folder has no programs.
  const std::string folders = FoldersForChild(std::string_view(entry).substr(kPath.size()));
  return std::string(kPath) + (folders.empty() ? "/nonexistent" : folders);
}

TextList EnvironmentOf(const ProcessRequest& request) {
  TextList list;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    if (!IsReplaced(*entry, request)) list.Add(EntryForChild(*entry));
  }
  for (const auto& [name, value] : request.environment) list.Add(name + "=" + value);
  return list;
}

// Actions and attributes for posix_spawn: what the child does before it executes the program.
class SpawnPlan {
 public:
  SpawnPlan(const ProcessRequest& request, int outputStream, int errorStream, int channel) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
    // The folder first: the descriptors are the parent's and do not depend on it.
    if (!request.folder.empty()) {
      Check(posix_spawn_file_actions_addchdir_np(&actions_, request.folder.c_str()));
    }
    Check(posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    Check(posix_spawn_file_actions_adddup2(&actions_, outputStream, STDOUT_FILENO));
    Check(posix_spawn_file_actions_adddup2(&actions_, errorStream, STDERR_FILENO));
    // The same number twice: clears the flag that closes it.
    for (const int each : request.passed) {
      Check(posix_spawn_file_actions_adddup2(&actions_, each, each));
    }
    // Last, since one of the other descriptors may have this number.
    Check(posix_spawn_file_actions_adddup2(&actions_, channel, guard::kChannel));
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    Check(posix_spawnattr_setsigmask(&attributes_, &none));
    Check(posix_spawnattr_setsigdefault(&attributes_, &all));
    Check(posix_spawnattr_setpgroup(&attributes_, 0));
    Check(posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }

  // Returns 0 or an errno value.
  int Start(pid_t& pid, const std::string& program, TextList& arguments, TextList& environment) {
    if (failure_ != 0) return failure_;
    return posix_spawn(&pid, program.c_str(), &actions_, &attributes_, arguments.Pointers().data(),
                       environment.Pointers().data());
  }

 private:
  void Check(int result) {
    if (failure_ == 0) failure_ = result;
  }

  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
  int failure_ = 0;
};

// Returns the errno value that prevents entering the folder, or 0.
int CheckFolder(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return errno;
  return S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
}

// Receives the guard's report on the start of the tool: 0 or an errno value. Returns -1 if the
// guard ended without a report.
int ReadStart(int channel) {
  int failure = -1;
  ssize_t count = -1;
  do {
    count = recv(channel, &failure, sizeof failure, MSG_WAITALL);
  } while (count < 0 && errno == EINTR);
  return count == sizeof failure ? failure : -1;
}

void WaitFor(pid_t pid) {
  while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
  }
}

Error GuardError(const std::string& guard, const char* reason) {
  return {ErrorCode::Io, guard + ": " + reason, guard};
}

}  // namespace

Result<pid_t> SpawnGuarded(const ProcessRequest& request, int outputStream, int errorStream,
                           Descriptor guardEnd, int ownEnd) {
  const std::string program = ProgramOf(request);
  if (program.empty()) return Error{ErrorCode::NotFound, "no such program", request.program};
  if (const int reason = request.folder.empty() ? 0 : CheckFolder(request.folder); reason != 0) {
    // Not NotFound, which would mean that the program does not exist.
    return Error{ErrorCode::Io, request.folder + ": " + std::strerror(reason), request.folder};
  }
  const std::string guard = FromHere(ModuleFolder() + "/" + guard::kProgram);
  if (access(guard.c_str(), X_OK) != 0) return GuardError(guard, std::strerror(errno));
  TextList arguments;
  arguments.Add(guard::kProgram);
  if (request.mayOutlive) arguments.Add(guard::kOutlive);
  arguments.Add(program);
  arguments.Add(request.program);
  for (const std::string& argument : request.arguments) arguments.Add(argument);
  TextList environment = EnvironmentOf(request);
  pid_t pid = -1;
  SpawnPlan plan(request, outputStream, errorStream, guardEnd.Get());
  int failure = plan.Start(pid, guard, arguments, environment);
  if (failure == 0) {
    guardEnd.Close();
    failure = ReadStart(ownEnd);
    if (failure == 0) return pid;
    WaitFor(pid);
    if (failure < 0) return GuardError(guard, "it ended unexpectedly");
  }
  // The OS reports a script with a missing interpreter like a missing program.
  const ErrorCode code =
      failure == ENOENT || failure == ENOTDIR ? ErrorCode::NotFound : ErrorCode::Io;
  return Error{code, std::strerror(failure), program};
}

std::string FindProgram(std::string_view name) {
  return FindProgramIn(getenv("PATH"), name);
}

}  // namespace tarn
