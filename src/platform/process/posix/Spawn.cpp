#include "platform/process/posix/Spawn.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/modules/Modules.h"
#include "platform/process/posix/GuardChannel.h"
#include "platform/process/posix/GuardServer.h"

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

// Strings as they are sent to the guard: each terminated by a null.
class TextList {
 public:
  void Add(std::string_view text) {
    bytes_.append(text).push_back('\0');
    ++count_;
  }
  std::uint32_t GetCount() const { return count_; }
  const std::string& GetBytes() const { return bytes_; }

 private:
  std::string bytes_;
  std::uint32_t count_ = 0;
};

void AddEnvironment(const ProcessRequest& request, TextList& list) {
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    if (!IsReplaced(*entry, request)) list.Add(EntryForChild(*entry));
  }
  for (const auto& [name, value] : request.environment) list.Add(name + "=" + value);
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

// Sends everything, blocking if necessary. An error means that the receiver is gone; ReadStart()
// then returns the reason.
void SendAll(int channel, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = send(channel, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

Error GuardError(const std::string& guard, const char* reason) {
  return {ErrorCode::Io, guard + ": " + reason, guard};
}

}  // namespace

Status SpawnGuarded(const ProcessRequest& request, int outputStream, int errorStream,
                    Descriptor guardEnd, int ownEnd) {
  const std::string program = ProgramOf(request);
  if (program.empty()) return Error{ErrorCode::NotFound, "no such program", request.program};
  const char* const place = request.folder.empty() ? "." : request.folder.c_str();
  const Descriptor folder = AboveStandard(open(place, O_PATH | O_DIRECTORY | O_CLOEXEC));
  // Not NotFound, which would mean that the program does not exist.
  if (!folder) return Error{ErrorCode::Io, std::string(place) + ": " + std::strerror(errno), place};
  const std::string guard = FromHere(ModuleFolder() + "/" + guard::kProgram);

  TextList texts;
  texts.Add(program);
  texts.Add(request.program);
  for (const std::string& argument : request.arguments) texts.Add(argument);
  guard::Request packet;
  packet.argumentCount = texts.GetCount() - 1;
  AddEnvironment(request, texts);
  packet.variableCount = texts.GetCount() - 1 - packet.argumentCount;
  packet.textSize = static_cast<std::uint32_t>(texts.GetBytes().size());
  packet.mayOutlive = request.mayOutlive;
  packet.keepsInputOpen = request.keepsInputOpen;
  std::vector<int> sent = {guardEnd.Get(), outputStream, errorStream, folder.Get()};
  for (const int each : request.passed) {
    if (packet.passedCount == guard::kMostPassed) return GuardError(guard, std::strerror(E2BIG));
    packet.passed[packet.passedCount++] = each;
    sent.push_back(each);
  }

  if (const int failure = GuardServer::Get().Request(guard, packet, sent); failure != 0) {
    return GuardError(guard, std::strerror(failure));
  }
  guardEnd.Close();
  SendAll(ownEnd, texts.GetBytes());
  const int failure = ReadStart(ownEnd);
  if (failure == 0) return {};
  if (failure < 0) return GuardError(guard, "it ended unexpectedly");
  // The OS reports a script with a missing interpreter like a missing program.
  const ErrorCode code =
      failure == ENOENT || failure == ENOTDIR ? ErrorCode::NotFound : ErrorCode::Io;
  return Error{code, std::strerror(failure), program};
}

std::string FindProgram(std::string_view name) {
  return FindProgramIn(getenv("PATH"), name);
}

}  // namespace tarn
