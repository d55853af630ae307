#pragma once

#include <functional>
#include <string>

#include "platform/files/FileSystem.h"
#include "platform/settings/IniFile.h"

namespace tarn {

// A settings store: an INI file that is read completely and replaced atomically.

// Returns an empty one if the file is missing or cannot be read.
IniFile ReadIniStore(FileSystem& files, const std::string& path);

// Edits the file, which is created with its folder if missing. Leaves the file alone if it exists
// but cannot be read, if `edit` returns false, or if `edit` changes nothing.
Status EditIniStore(FileSystem& files, const std::string& path,
                    const std::function<bool(IniFile& store)>& edit);

}  // namespace tarn
