#pragma once

#include <sys/types.h>

#include <span>
#include <string>
#include <string_view>

#include "platform/Result.h"
#include "platform/files/WriteFiles.h"
#include "platform/files/posix/PosixError.h"

namespace tarn::posix {

// User: written through a symbolic link, since the user may have made it on purpose, and survives a
// crash of the machine. Own: survives it as well, but a link is refused, since its name is the
// program's choice and another program may have put the link there. Scratch: need not survive, and
// replaces a link.
//
// Each write that survives also removes what writes of killed processes have left in its folder: a
// file `.tarn-` with 16 digits whose process is gone, or that has stayed as it is for ten minutes.
enum class FileKind { User, Own, Scratch };

// Puts `bytes` in place of the file `target`, or creates it, in one step: the bytes go into a new
// file beside it, are flushed to the disk, and the new file takes the name over. Whoever looks, and
// whatever is killed or pulled in between, sees the old file or the new one. Mode bits and, where
// allowed, the owner are kept. Refuses a read-only file. After a failure nothing of the attempt is
// left.
Status ReplaceFile(const std::string& target, std::string_view bytes, FileKind kind);

// Like ReplaceFile for several files of the user, all of them or none. No name is taken over before
// all bytes are on the disk, and what had a name is kept by another one until the last is taken
// over, so that going back needs no room. `place` of an error is the file that failed.
Status ReplaceFiles(std::span<const FileBytes> list);

// Creates `target` with these bytes and mode bits (before the process's mask) in one step.
// AlreadyExists when anything of that name stands there.
Status CreateNewFile(const std::string& target, std::string_view bytes, mode_t mode);

// An empty file of a new name in `folder`, and that name.
Result<std::string> CreateReserved(const std::string& folder, std::string_view prefix);

// All bytes from `offset` on (-1: at the current place); false with the reason in errno.
bool WriteAll(int file, std::string_view bytes, off_t offset = -1);

// No write bit in the mode, or the machine refuses. (The machine refuses its administrator
// nothing, so asking it alone is not enough.)
bool IsReadOnlyName(const std::string& name, mode_t mode);

}  // namespace tarn::posix
