#include "hosts/core/TrustedFolders.h"

#include <algorithm>

#include "platform/files/Locks.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr const char* kFileName = "trusted";

}  // namespace

TrustedFolders::TrustedFolders(FileSystem& fileSystem, const std::string& stateFolder)
    : files_(fileSystem), path_(JoinPath(stateFolder, kFileName)) {}

Result<std::vector<std::string>> TrustedFolders::Read() const {
  const auto text = files_.ReadWholeFile(path_);
  const bool isMissing = !text && text.GetError().code == ErrorCode::NotFound;
  if (!text && !isMissing) return Error{text.GetError().code, text.GetError().text, path_};
  std::vector<std::string> list;
  if (isMissing) return list;
  for (const std::string_view line : Split(*text, '\n')) {
    if (!IsRelativePath(std::string(line))) list.emplace_back(line);
  }
  return list;
}

std::string TrustedFolders::Find(const std::string& folder) const {
  const auto list = Read();
  if (!list) return {};
  const std::string wanted = AddSeparator(files_.ResolveLinks(folder));
  const auto found = std::find_if(list->begin(), list->end(), [&](const std::string& each) {
    return wanted.starts_with(AddSeparator(each));
  });
  return found == list->end() ? std::string() : *found;
}

// Taken by each process that modifies the list, for the duration of the change.
Result<std::unique_ptr<FileLock>> TrustedFolders::Lock() const {
  if (Status made = files_.CreateFolders(FolderOf(path_)); !made) return made.GetError();
  return WaitForLock(files_, path_ + ".lock", LockPurpose::Edit, std::chrono::seconds(5));
}

Status TrustedFolders::Add(const std::string& folder) {
  const auto lock = Lock();
  if (!lock) return lock.GetError();
  auto list = Read();
  if (!list) return list.GetError();
  const std::string real = files_.ResolveLinks(folder);
  if (real.find_first_of("\r\n") != real.npos) {
    return Error{ErrorCode::InvalidName, "its name contains a line feed", real};
  }
  if (std::find(list->begin(), list->end(), real) != list->end()) return {};
  list->push_back(real);
  return Write(*list);
}

Status TrustedFolders::Remove(const std::string& folder) {
  const auto lock = Lock();
  if (!lock) return lock.GetError();
  auto list = Read();
  if (!list) return list.GetError();
  const std::string real = files_.ResolveLinks(folder);
  if (std::erase(*list, real) + std::erase(*list, folder) == 0) {
    return Error{ErrorCode::NotFound, "it is not in the list", real};
  }
  return Write(*list);
}

Status TrustedFolders::Write(const std::vector<std::string>& list) {
  std::string text;
  for (const std::string& each : list) text += each + "\n";
  return files_.WriteOwnFile(path_, text);
}

}  // namespace tarn::host
