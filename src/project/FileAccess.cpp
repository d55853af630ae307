#include "project/FileAccess.h"

#include <utility>

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"

namespace tarn {

namespace {

FileAccess MakeAccess(FileAccessStatus status, Error reason) {
  return {status, std::move(reason)};
}

// A file exists if it can be read, even if the OS refuses to stat it.
FileAccess CheckThere(FileSystem& files, const std::string& path) {
  if (files.Exists(path)) return {};
  const Result<std::string> text = files.ReadWholeFile(path);
  if (text) return {};
  const bool isMissing =
      text.GetError().code == ErrorCode::NotFound && !files.ExamineLink(path).has_value();
  return MakeAccess(isMissing ? FileAccessStatus::Missing : FileAccessStatus::Unreadable,
                    text.GetError());
}

FileAccess CheckWritable(FileSystem& files, const std::string& path, std::uint32_t flags) {
  std::string folder = FolderOf(path);
  if (folder.empty()) folder = files.CurrentFolder();
  if (!files.Exists(folder)) {
    if ((flags & kCreateFolder) == 0) return MakeAccess(FileAccessStatus::FolderMissing, {});
    if (Status made = files.CreateFolders(folder); !made) {
      return MakeAccess(FileAccessStatus::CannotCreateFolder, made.GetError());
    }
  }
  Status refused = files.CheckWritable(folder);
  if (refused && (flags & kCreateFolder) == 0) refused = files.CheckWritable(path);
  if (refused) return {};
  const ErrorCode code = refused.GetError().code;
  const bool isReadOnly = code == ErrorCode::ReadOnly || code == ErrorCode::NotFound;
  return MakeAccess(isReadOnly ? FileAccessStatus::ReadOnly : FileAccessStatus::Unwritable,
                    refused.GetError());
}

int RowOf(FileAccessStatus status) {
  switch (status) {
    case FileAccessStatus::Missing:
      return kRowFileMissing;
    case FileAccessStatus::FolderMissing:
      return kRowFolderMissing;
    case FileAccessStatus::ReadOnly:
      return kRowReadOnly;
    case FileAccessStatus::CannotCreateFolder:
      return kRowCannotCreateFolder;
    case FileAccessStatus::Unreadable:
      return kRowCannotRead;
    case FileAccessStatus::Unwritable:
      return kRowCannotSave;
    case FileAccessStatus::Ok:
      break;
  }
  return -1;
}

}  // namespace

FileAccess GetFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags) {
  if ((flags & kMustExist) != 0) return CheckThere(files, path);
  if ((flags & kMustBeWritable) != 0) return CheckWritable(files, path, flags);
  return {};
}

std::int32_t ReportFileAccess(const FileAccess& access, CBuildOutput& output,
                              const std::string& shown) {
  // The other messages include the reason.
  const bool hasReason = access.status == FileAccessStatus::CannotCreateFolder ||
                         access.status == FileAccessStatus::Unreadable ||
                         access.status == FileAccessStatus::Unwritable;
  const int row = RowOf(access.status);
  if (row >= 0) output.WriteMessage(row, {shown}, hasReason ? access.reason.text : std::string());
  output.SaveLog();
  output.UpdateReport();
  return access.status == FileAccessStatus::Ok ? 1 : 0;
}

std::int32_t CheckFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags,
                             CBuildOutput& output, const std::string& shown) {
  return ReportFileAccess(GetFileAccess(files, path, flags), output, shown);
}

Status WriteProjectFile(FileSystem& files, const std::string& path, std::string_view text) {
  const Result<bool> exists = files.CheckExists(path);
  if (!exists) return exists.GetError();
  return *exists ? files.WriteWholeFile(path, text) : files.WriteOwnFile(path, text);
}

}  // namespace tarn
