#include "platform/files/RecordingFileSystem.h"

#include <algorithm>
#include <cstring>

#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"

namespace tarn {

namespace {

// What the disk is asked; stored as the first character of a recorded question.
enum Question : char {
  AskExists = 'e',
  AskFolder = 'd',
  AskNameOnDisk = 'n',
  AskSimilar = 'i',
  AskCanonical = 'c',
  AskResolved = 'r',
  AskStatus = 's',
  AskExactStatus = 'x',
  AskFolderStatus = 'f',
  AskLinkStatus = 'l',
  AskLinkTarget = 't',
  AskSpecial = 'p',
  AskProgram = 'g',
  AskReadable = 'a',
  AskWritable = 'w',
};

constexpr std::string_view kFormat = "answers 1";
constexpr char kBegin = 'B';  // with a hash of all that follows
constexpr char kLock = 'L';
constexpr std::size_t kHashSize = sizeof(std::uint64_t);
// Questions for a status are asked together, which is faster, but not all, since most records that
// are outdated differ early.
constexpr std::size_t kBatch = 512;

std::uint64_t HashOf(bool answer) {
  return answer ? 1 : 0;
}

std::uint64_t HashOf(const std::string& answer) {
  return HashBytes(answer);
}

std::uint64_t HashOf(const std::vector<std::string>& answer) {
  std::uint64_t hash = answer.size();
  for (const std::string& each : answer) hash = HashBytes(each, hash);
  return hash;
}

std::uint64_t HashOf(const std::optional<FileStatus>& status) {
  if (!status) return 0;
  const std::uint64_t fields[] = {static_cast<std::uint64_t>(status->modifiedSeconds),
                                  static_cast<std::uint64_t>(status->modifiedNanoseconds),
                                  static_cast<std::uint64_t>(status->changed),
                                  status->size,
                                  status->device,
                                  status->inode,
                                  status->otherSpelling ? 1U : 0U};
  return HashBytes({reinterpret_cast<const char*>(fields), sizeof fields}, 1);
}

std::uint64_t HashOf(const Error& failure) {
  return HashBytes(failure.text, static_cast<std::uint64_t>(failure.code) + 2);
}

std::uint64_t HashOf(const Result<bool>& answer) {
  return answer ? HashOf(*answer) : HashOf(answer.GetError());
}

std::uint64_t HashOf(const Status& answer) {
  return answer ? 0 : HashOf(answer.GetError());
}

std::uint64_t Ask(FileSystem& disk, char question, const std::string& path) {
  switch (question) {
    case AskExists:
      return HashOf(disk.CheckExists(path));
    case AskFolder:
      return HashOf(disk.IsFolder(path));
    case AskNameOnDisk:
      return HashOf(disk.NameOnDisk(path));
    case AskSimilar:
      return HashOf(disk.SimilarNames(path));
    case AskCanonical:
      return HashOf(disk.Canonical(path));
    case AskResolved:
      return HashOf(disk.ResolveLinks(path));
    case AskExactStatus:
      return HashOf(disk.ExamineExactly(path));
    case AskFolderStatus:
      return HashOf(disk.ExamineFolder(path));
    case AskLinkStatus:
      return HashOf(disk.ExamineLink(path));
    case AskLinkTarget:
      return HashOf(disk.ReadLink(path));
    case AskSpecial:
      return HashOf(disk.IsSpecial(path));
    case AskProgram:
      return HashOf(disk.IsProgram(path));
    case AskReadable:
      return HashOf(disk.CanRead(path));
    case AskWritable:
      return HashOf(disk.CheckWritable(path));
    default:
      return HashOf(disk.Examine(path));
  }
}

// Reads a record: its parts are a character, a hash and a path with a null byte.
class AnswerReader {
 public:
  struct Entry {
    char question = 0;
    std::uint64_t answer = 0;
    const char* path = nullptr;  // into the record
  };

  explicit AnswerReader(std::string_view text) : text_(text) {}

  // Returns false if the record is damaged, or of a different format.
  bool Begin() {
    Entry entry;
    return Next(entry) && entry.question == kBegin && entry.path == kFormat &&
           entry.answer == HashBytes(text_);
  }
  // Returns false at the end.
  bool Next(Entry& entry) {
    const std::size_t end =
        text_.size() > kHashSize ? text_.find('\0', 1 + kHashSize) : std::string_view::npos;
    if (end == std::string_view::npos) return false;
    entry.question = text_.front();
    std::memcpy(&entry.answer, text_.data() + 1, kHashSize);
    entry.path = text_.data() + 1 + kHashSize;
    text_.remove_prefix(end + 1);
    return true;
  }

 private:
  std::string_view text_;
};

// Collects questions for a status, which are asked together.
class StatusBatch {
 public:
  explicit StatusBatch(FileSystem& disk) : disk_(disk) {}

  // Returns false if an answer differs.
  bool Add(const AnswerReader::Entry& entry) {
    paths_.push_back(entry.path);
    answers_.push_back(entry.answer);
    return paths_.size() < kBatch || Flush();
  }
  bool Flush() {
    const auto found = disk_.ExamineMany(paths_, std::chrono::steady_clock::time_point::max());
    const bool isSame = std::equal(
        found.begin(), found.end(), answers_.begin(), answers_.end(),
        [](const auto& status, std::uint64_t answer) { return HashOf(status) == answer; });
    paths_.clear();
    answers_.clear();
    return isSame;
  }

 private:
  FileSystem& disk_;
  std::vector<const char*> paths_;
  std::vector<std::uint64_t> answers_;
};

void AppendEntry(std::string& text, char question, std::uint64_t answer, std::string_view path) {
  text += question;
  text.append(reinterpret_cast<const char*>(&answer), kHashSize);
  text += path;
  text += '\0';
}

}  // namespace

RecordingFileSystem::RecordingFileSystem(FileSystem& disk) : disk_(disk), start_(disk.Clock()) {
  if (start_ == 0) isComplete_ = false;
}

std::optional<std::string> RecordingFileSystem::GetAnswers() const {
  const std::lock_guard<std::mutex> hold(lock_);
  if (!isComplete_) return std::nullopt;
  std::string entries;
  for (const std::string& path : locked_) AppendEntry(entries, kLock, 0, path);
  for (const auto* const each : order_) {
    const auto& [key, answer] = *each;
    AppendEntry(entries, key.front(), answer, std::string_view(key).substr(1));
  }
  std::string text;
  AppendEntry(text, kBegin, HashBytes(entries), kFormat);
  return text + entries;
}

void RecordingFileSystem::Note(char question, const std::string& path, std::uint64_t answer) {
  if (!isComplete_) return;
  const std::lock_guard<std::mutex> hold(lock_);
  if (IsScratch(path)) return;
  if (path.find('\0') != std::string::npos) isComplete_ = false;
  std::string key(1, question);
  if (IsRelativePath(path)) {
    // A later process may have a different working folder.
    const std::string absolute = JoinPath(disk_.CurrentFolder(), path);
    answer = Ask(disk_, question, absolute);
    key += absolute;
  } else {
    key += path;
  }
  const auto [place, isNew] = answers_.try_emplace(std::move(key), answer);
  if (isNew) {
    order_.push_back(&*place);
  } else if (place->second != answer) {
    isComplete_ = false;
  }
}

void RecordingFileSystem::NoteStatus(char question, const std::string& path,
                                     const std::optional<FileStatus>& status) {
  Note(question, path, HashOf(status));
  if (!status || (status->changed != 0 && status->changed < start_) || !isComplete_) return;
  const std::lock_guard<std::mutex> hold(lock_);
  if (!IsScratch(path)) isComplete_ = false;
}

void RecordingFileSystem::NoteRead(char question, const std::string& path, const Error* failure) {
  if (!isComplete_) return;
  if (failure != nullptr && failure->code == ErrorCode::NotFound) {
    Note(AskExists, path, HashOf(disk_.CheckExists(path)));
  } else if (failure != nullptr) {
    isComplete_ = false;
  } else {
    NoteStatus(question, path,
               question == AskStatus ? disk_.Examine(path) : disk_.ExamineFolder(path));
  }
}

void RecordingFileSystem::NoteChange(const std::string& path) {
  if (!isComplete_) return;
  const std::lock_guard<std::mutex> hold(lock_);
  if (!IsScratch(path)) isComplete_ = false;
}

void RecordingFileSystem::NoteRemoval(const std::string& path) {
  if (!isComplete_) return;
  if (disk_.Exists(path)) {
    NoteChange(path);
  } else {
    Note(AskExists, path, HashOf(disk_.CheckExists(path)));
  }
}

bool RecordingFileSystem::IsScratch(const std::string& path) const {
  return std::any_of(scratch_.begin(), scratch_.end(),
                     [&path](const std::string& name) { return path.starts_with(name); });
}

Result<bool> RecordingFileSystem::CheckExists(const std::string& path) {
  Result<bool> answer = disk_.CheckExists(path);
  Note(AskExists, path, HashOf(answer));
  return answer;
}

bool RecordingFileSystem::IsFolder(const std::string& path) {
  const bool answer = disk_.IsFolder(path);
  Note(AskFolder, path, HashOf(answer));
  return answer;
}

std::string RecordingFileSystem::NameOnDisk(const std::string& path) {
  std::string answer = disk_.NameOnDisk(path);
  Note(AskNameOnDisk, path, HashOf(answer));
  return answer;
}

std::vector<std::string> RecordingFileSystem::SimilarNames(const std::string& path) {
  std::vector<std::string> answer = disk_.SimilarNames(path);
  Note(AskSimilar, path, HashOf(answer));
  return answer;
}

std::string RecordingFileSystem::Canonical(const std::string& path) {
  std::string answer = disk_.Canonical(path);
  // Without ".." the disk isn't asked.
  if (path.find("..") != std::string::npos) Note(AskCanonical, path, HashOf(answer));
  return answer;
}

std::string RecordingFileSystem::ResolveLinks(const std::string& path) {
  std::string answer = disk_.ResolveLinks(path);
  Note(AskResolved, path, HashOf(answer));
  return answer;
}

std::optional<FileStatus> RecordingFileSystem::Examine(const std::string& path) {
  const std::optional<FileStatus> answer = disk_.Examine(path);
  NoteStatus(AskStatus, path, answer);
  return answer;
}

std::optional<FileStatus> RecordingFileSystem::ExamineExactly(const std::string& path) {
  const std::optional<FileStatus> answer = disk_.ExamineExactly(path);
  NoteStatus(AskExactStatus, path, answer);
  return answer;
}

std::optional<FileStatus> RecordingFileSystem::ExamineFolder(const std::string& path) {
  const std::optional<FileStatus> answer = disk_.ExamineFolder(path);
  NoteStatus(AskFolderStatus, path, answer);
  return answer;
}

std::optional<FileStatus> RecordingFileSystem::ExamineLink(const std::string& path) {
  const std::optional<FileStatus> answer = disk_.ExamineLink(path);
  NoteStatus(AskLinkStatus, path, answer);
  return answer;
}

std::string RecordingFileSystem::ReadLink(const std::string& path) {
  std::string answer = disk_.ReadLink(path);
  Note(AskLinkTarget, path, HashOf(answer));
  return answer;
}

bool RecordingFileSystem::IsSpecial(const std::string& path) {
  const bool answer = disk_.IsSpecial(path);
  Note(AskSpecial, path, HashOf(answer));
  return answer;
}

bool RecordingFileSystem::IsProgram(const std::string& path) {
  const bool answer = disk_.IsProgram(path);
  Note(AskProgram, path, HashOf(answer));
  return answer;
}

std::vector<std::optional<FileStatus>> RecordingFileSystem::ExamineMany(
    std::span<const char* const> paths, std::chrono::steady_clock::time_point deadline) {
  std::vector<std::optional<FileStatus>> answers = disk_.ExamineMany(paths, deadline);
  for (std::size_t i = 0; i < answers.size() && isComplete_; ++i) {
    NoteStatus(AskStatus, paths[i], answers[i]);
  }
  return answers;
}

bool RecordingFileSystem::CanRead(const std::string& path) {
  const bool answer = disk_.CanRead(path);
  Note(AskReadable, path, HashOf(answer));
  return answer;
}

bool RecordingFileSystem::IsReadOnly(const std::string& path) {
  return !CheckWritable(path);
}

Status RecordingFileSystem::CheckWritable(const std::string& path) {
  const Status answer = disk_.CheckWritable(path);
  Note(AskWritable, path, HashOf(answer));
  return answer;
}

Result<std::string> RecordingFileSystem::ReadWholeFile(const std::string& path) {
  Result<std::string> text = disk_.ReadWholeFile(path);
  NoteRead(AskStatus, path, text ? nullptr : &text.GetError());
  return text;
}

Result<std::string> RecordingFileSystem::ReadFrom(const std::string& path, std::uint64_t offset) {
  Result<std::string> text = disk_.ReadFrom(path, offset);
  NoteRead(AskStatus, path, text ? nullptr : &text.GetError());
  return text;
}

Status RecordingFileSystem::WriteWholeFile(const std::string& path, std::string_view bytes) {
  NoteChange(path);
  return disk_.WriteWholeFile(path, bytes);
}

Status RecordingFileSystem::WriteOwnFile(const std::string& path, std::string_view bytes) {
  NoteChange(path);
  return disk_.WriteOwnFile(path, bytes);
}

Status RecordingFileSystem::WriteFiles(std::span<const FileBytes> list) {
  for (const FileBytes& each : list) NoteChange(each.path);
  return disk_.WriteFiles(list);
}

Status RecordingFileSystem::WriteTail(const std::string& path, std::uint64_t expectedSize,
                                      std::uint64_t offset, std::string_view bytes) {
  NoteChange(path);
  return disk_.WriteTail(path, expectedSize, offset, bytes);
}

Result<FileStatus> RecordingFileSystem::ContinueFile(const std::string& path,
                                                     const FileStatus& expected,
                                                     std::uint64_t offset, std::string_view bytes) {
  NoteChange(path);
  return disk_.ContinueFile(path, expected, offset, bytes);
}

Status RecordingFileSystem::WriteScratchFile(const std::string& path, std::string_view bytes) {
  NoteChange(path);
  return disk_.WriteScratchFile(path, bytes);
}

Status RecordingFileSystem::RemoveScratchFile(const std::string& path) {
  NoteRemoval(path);
  return disk_.RemoveScratchFile(path);
}

Status RecordingFileSystem::RemoveFile(const std::string& path) {
  NoteRemoval(path);
  return disk_.RemoveFile(path);
}

Status RecordingFileSystem::RemoveOwnFile(const std::string& path) {
  NoteRemoval(path);
  return disk_.RemoveOwnFile(path);
}

Status RecordingFileSystem::CopyFileTo(const std::string& from, const std::string& to) {
  NoteChange(to);
  return disk_.CopyFileTo(from, to);
}

Status RecordingFileSystem::CreateFolders(const std::string& path) {
  if (!IsFolder(path)) NoteChange(path);
  return disk_.CreateFolders(path);
}

Status RecordingFileSystem::CreateNamedFolders(const std::string& path) {
  if (!IsFolder(path)) NoteChange(path);
  return disk_.CreateNamedFolders(path);
}

Status RecordingFileSystem::SetModifiedTime(const std::string& path, std::int64_t seconds,
                                            std::int64_t nanoseconds) {
  NoteChange(path);
  return disk_.SetModifiedTime(path, seconds, nanoseconds);
}

Result<std::unique_ptr<FileLock>> RecordingFileSystem::TryLock(const std::string& path,
                                                               LockPurpose purpose) {
  Result<std::unique_ptr<FileLock>> lock = disk_.TryLock(path, purpose);
  if (!lock || purpose != LockPurpose::Build) isComplete_ = false;
  const std::lock_guard<std::mutex> hold(lock_);
  if (std::find(locked_.begin(), locked_.end(), path) == locked_.end()) locked_.push_back(path);
  return lock;
}

Result<std::vector<FolderEntry>> RecordingFileSystem::ListFolder(const std::string& path) {
  Result<std::vector<FolderEntry>> entries = disk_.ListFolder(path);
  NoteRead(AskFolderStatus, path, entries ? nullptr : &entries.GetError());
  return entries;
}

Result<std::string> RecordingFileSystem::ReserveName(const std::string& folder,
                                                     std::string_view prefix) {
  Result<std::string> name = disk_.ReserveName(folder, prefix);
  const std::lock_guard<std::mutex> hold(lock_);
  if (name) scratch_.push_back(*name);
  if (!name) isComplete_ = false;
  return name;
}

bool AreSameAnswers(FileSystem& disk, std::string_view answers) {
  AnswerReader reader(answers);
  if (!reader.Begin()) return false;
  std::vector<std::unique_ptr<FileLock>> held;
  StatusBatch batch(disk);
  AnswerReader::Entry entry;
  while (reader.Next(entry)) {
    bool isSame = true;
    if (entry.question == kLock) {
      if (!disk.Examine(entry.path)) return false;  // would be created
      Result<std::unique_ptr<FileLock>> lock = disk.TryLock(entry.path, LockPurpose::Build);
      if (!lock) return false;
      held.push_back(std::move(*lock));
    } else if (entry.question == AskStatus) {
      isSame = batch.Add(entry);
    } else {
      isSame = Ask(disk, entry.question, entry.path) == entry.answer;
    }
    if (!isSame) return false;
  }
  return batch.Flush();
}

}  // namespace tarn
