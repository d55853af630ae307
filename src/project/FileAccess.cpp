#include "project/FileAccess.h"

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"

namespace tarn {

namespace {

FileAccessStatus CheckWritable(FileSystem& files, const std::string& path, std::uint32_t flags) {
  std::string folder = FolderOf(path);
  if (folder.empty()) folder = files.CurrentFolder();
  if (!files.Exists(folder)) {
    if ((flags & kCreateFolder) == 0) return FileAccessStatus::FolderMissing;
    if (!files.CreateFolders(folder)) return FileAccessStatus::CannotCreateFolder;
  }
  if (files.IsReadOnly(folder)) return FileAccessStatus::ReadOnly;
  const bool looksAtFile = (flags & kCreateFolder) == 0;
  return looksAtFile && files.IsReadOnly(path) ? FileAccessStatus::ReadOnly : FileAccessStatus::Ok;
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
    case FileAccessStatus::Ok:
      break;
  }
  return -1;
}

}  // namespace

FileAccessStatus GetFileAccessStatus(FileSystem& files, const std::string& path,
                                     std::uint32_t flags) {
  if ((flags & kMustExist) != 0) {
    return files.Exists(path) ? FileAccessStatus::Ok : FileAccessStatus::Missing;
  }
  if ((flags & kMustBeWritable) != 0) return CheckWritable(files, path, flags);
  return FileAccessStatus::Ok;
}

std::int32_t CheckFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags,
                             CBuildOutput& output, const std::string& shown) {
  const FileAccessStatus status = GetFileAccessStatus(files, path, flags);
  const int row = RowOf(status);
  if (row >= 0) output.WriteMessage(row, {shown});
  output.SaveLog();
  output.UpdateReport();
  return status == FileAccessStatus::Ok ? 1 : 0;
}

}  // namespace tarn
