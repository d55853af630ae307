#pragma once

#include <cstdint>
#include <string>

#include "output/BuildOutput.h"
#include "platform/files/FileSystem.h"

namespace tarn {

// What a path must allow, as bits; kMustExist wins over kMustBeWritable.
enum FileAccessFlag : std::uint32_t {
  kMustExist = 1,
  kMustBeWritable = 2,
  kCreateFolder = 16,  // with kMustBeWritable: the folder is made when missing
};

enum class FileAccessStatus : std::int32_t {
  Ok = 1,
  Missing = 2,
  FolderMissing = 3,
  ReadOnly = 5,  // with kMustBeWritable alone also for a file that is not there
  CannotCreateFolder = 6,
  Unreadable = 7,  // there, but can't be read
  Unwritable = 8,  // whether it or its folder can be written is unknown
};

struct FileAccess {
  FileAccessStatus status = FileAccessStatus::Ok;
  Error reason;  // of the system, with the path that it concerns
};

// `path` is absolute; an empty folder counts as the current one.
FileAccess GetFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags);

// Like CheckFileAccess, for what was found before.
std::int32_t ReportFileAccess(const FileAccess& access, CBuildOutput& output,
                              const std::string& shown);

// Writes the status to the log, where `shown` stands for the path, and makes log file and report
// current. Result 1 when the path passed.
std::int32_t CheckFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags,
                             CBuildOutput& output, const std::string& shown);
inline std::int32_t CheckFileAccess(FileSystem& files, const std::string& path, std::uint32_t flags,
                                    CBuildOutput& output) {
  return CheckFileAccess(files, path, flags, output, path);
}

// Writes a file of the project that is new, or that the user has agreed to replace. What is new is
// not written through a symbolic link.
Status WriteProjectFile(FileSystem& files, const std::string& path, std::string_view text);

}  // namespace tarn
