// File format: the index is a line "tarn-journal VERSION HASH" followed by a list of fields, which
// the hash is computed of. A field is its length in bytes, a space, its name and a line feed, then
// the bytes; a text is a field that contains fields.

#include "hosts/desktop/Journal.h"

#include <charconv>
#include <filesystem>
#include <system_error>

#include "platform/files/FileTexts.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr const char* kIndex = "index";
constexpr const char* kLock = "lock";
constexpr std::string_view kTextPrefix = "text-";
constexpr std::string_view kTitle = "tarn-journal ";
constexpr std::string_view kVersion = "1";
constexpr int kMostJournals = 100;

using Fields = std::vector<FileText>;

std::string ValueOf(const Fields& fields, std::string_view name) {
  for (const FileText& each : fields) {
    if (each.path == name) return each.text;
  }
  return {};
}

template <typename Number>
Number ToNumber(std::string_view text) {
  Number number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::string HashText(std::string_view bytes) {
  return std::to_string(HashBytes(bytes));
}

// Sets `reason` unless the result is Good.
JournalReading::State CheckHead(std::string_view head, std::string_view body, std::string& reason) {
  using State = JournalReading::State;
  reason = "missing journal header";
  if (!head.starts_with(kTitle)) return State::Damaged;
  head.remove_prefix(kTitle.size());
  const std::size_t space = head.find(' ');
  if (space == head.npos) return State::Damaged;
  if (head.substr(0, space) != kVersion) return State::OtherVersion;
  reason = "checksum mismatch";
  return head.substr(space + 1) == HashText(body) ? State::Good : State::Damaged;
}

// No-op on file systems without permissions.
void MakePrivate(const std::string& path) {
  using std::filesystem::perms;
  std::error_code ignored;
  const bool isFolder = std::filesystem::is_directory(path, ignored);
  const perms mode = isFolder ? perms::owner_all : perms::owner_read | perms::owner_write;
  std::filesystem::permissions(path, mode, ignored);
}

}  // namespace

Journal::Journal(FileSystem& files, std::string folder, std::unique_ptr<FileLock> lock)
    : files_(files), folder_(std::move(folder)), lock_(std::move(lock)) {}

Result<std::unique_ptr<Journal>> Journal::Take(FileSystem& files, const std::string& folder) {
  if (const Status made = files.CreateFolders(folder); !made) return made.GetError();
  MakePrivate(folder);
  auto lock = files.TryLock(JoinPath(folder, kLock), LockPurpose::Edit);
  if (!lock) return lock.GetError();
  MakePrivate(JoinPath(folder, kLock));
  return std::unique_ptr<Journal>(new Journal(files, folder, std::move(*lock)));
}

bool Journal::IsEmpty() const {
  return !files_.Exists(JoinPath(folder_, kIndex));
}

JournalReading Journal::Read() const {
  JournalReading reading;
  reading.file = JoinPath(folder_, kIndex);
  const Result<std::string> index = files_.ReadWholeFile(reading.file);
  if (!index) {
    if (!IsEmpty()) reading.state = JournalReading::State::Damaged;
    reading.reason = index.GetError().text;
    return reading;
  }
  const std::size_t end = std::min(index->find('\n'), index->size());
  const std::string body = index->substr(std::min(end + 1, index->size()));
  reading.state = CheckHead(std::string_view(*index).substr(0, end), body, reading.reason);
  if (reading.state != JournalReading::State::Good) return reading;
  const auto fields = SplitFileTexts(body);
  if (!fields) reading.state = JournalReading::State::Damaged;
  for (const auto& [name, value] : fields.value_or(Fields())) ReadField(name, value, reading);
  return reading;
}

void Journal::ReadField(const std::string& name, const std::string& value,
                        JournalReading& reading) const {
  JournalContent& content = reading.content;
  if (name == "time") {
    content.seconds = ToNumber<std::int64_t>(value);
  } else if (name == "project") {
    content.project = value;
  } else if (name == "tab") {
    content.tabs.push_back(value);
  } else if (name == "bases") {
    content.projectBases = Fetch(value);
  } else if (name == "changes") {
    content.projectTexts = Fetch(value);
    if (content.projectTexts == nullptr) reading.lost.push_back(content.project);
  } else if (name == "text") {
    const Fields fields = SplitFileTexts(value).value_or(Fields());
    const UnsavedText text = {ValueOf(fields, "path"), Fetch(ValueOf(fields, "content")),
                              ToNumber<std::uint64_t>(ValueOf(fields, "base")),
                              ValueOf(fields, "utf8") == "1", ValueOf(fields, "mark") == "1"};
    if (text.text == nullptr) {
      reading.lost.push_back(text.path);
    } else {
      content.texts.push_back(text);
    }
  }
}

// Returns nullptr unless the file has the recorded size and hash. The name from the index is
// validated.
std::shared_ptr<const std::string> Journal::Fetch(const std::string& reference) const {
  const std::size_t space = reference.find(' ');
  const std::string name = reference.substr(0, space);
  if (space == std::string::npos || !name.starts_with(kTextPrefix) || FileNameOf(name) != name) {
    return nullptr;
  }
  Result<std::string> bytes = files_.ReadWholeFile(JoinPath(folder_, name));
  if (!bytes || HashText(*bytes) != reference.substr(space + 1)) return nullptr;
  return std::make_shared<const std::string>(std::move(*bytes));
}

Status Journal::Store(const std::shared_ptr<const std::string>& text, StoredTexts& now) {
  if (const auto found = stored_.find(text.get()); found != stored_.end()) {
    now.insert(*found);
    return {};
  }
  // The file is created with permissions for its owner only, which a replacement preserves.
  const Result<std::string> name = files_.ReserveName(folder_, kTextPrefix);
  if (!name) return name.GetError();
  if (Status written = files_.WriteOwnFile(*name, *text); !written) return written;
  now[text.get()] = {text, FileNameOf(*name) + " " + HashText(*text)};
  return {};
}

Status Journal::Write(const JournalContent& content) {
  StoredTexts now;
  Fields fields = {{"time", std::to_string(content.seconds)}, {"project", content.project}};
  for (const auto& [name, text] :
       {std::pair("changes", content.projectTexts), std::pair("bases", content.projectBases)}) {
    if (text == nullptr) continue;
    if (Status stored = Store(text, now); !stored) return stored;
    fields.push_back({name, now.at(text.get()).reference});
  }
  for (const UnsavedText& each : content.texts) {
    if (Status stored = Store(each.text, now); !stored) return stored;
    fields.push_back({"text", JoinFileTexts(Fields{{"path", each.path},
                                                   {"content", now.at(each.text.get()).reference},
                                                   {"base", std::to_string(each.base)},
                                                   {"utf8", each.isUtf8 ? "1" : "0"},
                                                   {"mark", each.hasMark ? "1" : "0"}})});
  }
  for (const std::string& each : content.tabs) fields.push_back({"tab", each});
  if (Status written = WriteIndex(JoinFileTexts(fields)); !written) return written;
  stored_ = std::move(now);
  std::set<std::string> names = {kIndex};
  for (const auto& [text, each] : stored_) {
    names.insert(each.reference.substr(0, each.reference.find(' ')));
  }
  RemoveAllBut(names);
  return {};
}

Status Journal::WriteIndex(const std::string& fields) {
  const std::string path = JoinPath(folder_, kIndex);
  std::string index(kTitle);
  index.append(kVersion).append(" ").append(HashText(fields)).append("\n").append(fields);
  if (Status written = files_.WriteOwnFile(path, index); !written) return written;
  MakePrivate(path);
  return {};
}

Status Journal::Clear() {
  stored_.clear();
  // Without the index the other files are ignored.
  if (!IsEmpty()) {
    if (Status removed = files_.RemoveFile(JoinPath(folder_, kIndex)); !removed) return removed;
  }
  RemoveAllBut({});
  return {};
}

// Also removes partial files left by a killed process.
void Journal::RemoveAllBut(const std::set<std::string>& names) {
  const auto entries = files_.ListFolder(folder_);
  if (!entries) return;
  for (const FolderEntry& each : *entries) {
    if (each.isFolder || each.name == kLock || names.contains(each.name)) continue;
    static_cast<void>(files_.RemoveFile(JoinPath(folder_, each.name)));
  }
}

TakenJournals TakeJournals(FileSystem& files, const std::string& root) {
  TakenJournals taken;
  for (int number = 1; number <= kMostJournals; ++number) {
    const std::string folder = JoinPath(root, std::to_string(number));
    if (taken.own != nullptr && !files.IsFolder(folder)) break;
    auto journal = Journal::Take(files, folder);
    if (!journal) {
      taken.problem = journal.GetError();
      if (taken.problem.place.empty()) taken.problem.place = folder;
      if (journal.GetError().code != ErrorCode::Busy) break;
    } else if (!(*journal)->IsEmpty()) {
      taken.left.push_back(std::move(*journal));
    } else if (taken.own == nullptr && (*journal)->Clear()) {
      taken.own = std::move(*journal);
    }
  }
  if (taken.own == nullptr && taken.problem.code == ErrorCode::None) {
    taken.problem = {ErrorCode::Io, "too many journals", root};
  }
  return taken;
}

}  // namespace tarn::host
