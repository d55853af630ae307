#pragma once

#include <cstdint>
#include <string>

#include "output/BuildOutput.h"
#include "platform/files/FileSystem.h"

namespace tarn {

// Requirements on a path, as bits. kMustExist takes precedence over kMustBeWritable.
enum FileAccessFlag : std::uint32_t {
  kMustExist = 1,
  kMustBeWritable = 2,
  kCreateFolder = 16,  // with kMustBeWritable: creates a missing folder
};

// Outcome of a check.
enum class FileAccessStatus : std::int32_t {
  Ok = 1,
  Missing = 2,
  FolderMissing = 3,
  ReadOnly = 5,  // for kMustBeWritable alone, also if the file does not exist
  CannotCreateFolder = 6,
  Unreadable = 7,  // exists but can't be read
  Unwritable = 8,  // can't determine if the file or its folder is writable
};

// Result of GetFileAccess.
struct FileAccess {
  FileAccessStatus status = FileAccessStatus::Ok;
  Error reason;  // reported by the OS, with the path concerned
};

// Checks `path`, which must be absolute, against `flags` (FileAccessFlag). An empty folder part
// means the current folder. Creates the folder if kCreateFolder is set; never creates the file.
FileAccess GetFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags);

// Reports the result of an earlier GetFileAccess in the same way as CheckFileAccess.
std::int32_t ReportFileAccess(const FileAccess& access, CBuildOutput& output,
                              const std::string& shown);

// Checks `path` and writes a failure to the log, with `shown` in place of the path; then flushes
// the log file and updates the report. Returns 1 if the path meets the requirements, else 0.
std::int32_t CheckFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags,
                             CBuildOutput& output, const std::string& shown);
inline std::int32_t CheckFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags,
                                    CBuildOutput& output) {
  return CheckFileAccess(files, path, flags, output, path);
}

// Writes a project file that is new or that the user has agreed to replace. A new file is never
// written through a symbolic link.
Status WriteProjectFile(FileSystem& files, const std::string& path, std::string_view text);

}  // namespace tarn
