#pragma once

#include <sys/types.h>

#include <span>
#include <string>
#include <string_view>

#include "platform/Result.h"
#include "platform/files/WriteFiles.h"
#include "platform/files/posix/PosixError.h"

namespace tarn::posix {

// Durability of a file and treatment of a symbolic link in its place:
//   User     survives a system crash; written through a link, which the user may have intended
//   Own      survives a system crash; a link is refused, since the program has chosen the name and
//            another program may have created the link
//   Scratch  need not survive a crash; replaces a link
//
// Each durable write also removes temporary files that killed processes have left in the folder: a
// file `.tarn-` with 16 digits whose process is gone, or that has not changed for ten minutes. Own
// files, such as a log, are replaced often: only the first write of each in a process does so.
enum class FileKind { User, Own, Scratch };

// Atomically replaces or creates `target`: writes a temporary file next to it, fsyncs it (except
// for Scratch) and renames it over the target. Readers, and a crash at any point, see either the
// old or the new content. Preserves mode bits and, if permitted, the owner. Refuses a read-only
// file. On error nothing of the attempt remains.
Status ReplaceFile(const std::string& target, std::string_view bytes, FileKind kind);

// Like ReplaceFile() for several files of the user, all of them or none. Writes and flushes all
// temporary files first; each old file keeps a second hard link until the last rename, so that the
// rollback needs no disk space. `place` of an error is the file that failed.
Status ReplaceFiles(std::span<const FileBytes> list);

// Creates `target` atomically with these bytes and mode bits (subject to the umask). Fails with
// AlreadyExists if the name is taken.
Status CreateNewFile(const std::string& target, std::string_view bytes, mode_t mode);

// Creates an empty file with an unused name in `folder` and returns its name.
Result<std::string> CreateReserved(const std::string& folder, std::string_view prefix);

// Removes the user's files named `prefix`, the digits of CreateReserved, and an extension, if the
// process that created the name is gone.
void RemoveAbandonedNames(const std::string& folder, std::string_view prefix);

// Writes all bytes at `offset` (-1: at the current position). On error returns false with the
// reason in errno.
bool WriteAll(int file, std::string_view bytes, off_t offset = -1);

// Fails with ReadOnly if the mode has no write bit, or with the OS's reason if it denies write
// access. (The OS denies root nothing, so its check alone is not enough.) `place` is for the error.
Status CheckWritableName(const std::string& name, mode_t mode, const std::string& place);

}  // namespace tarn::posix
