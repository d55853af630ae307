#pragma once

#include <functional>
#include <string>

#include "platform/files/FileSystem.h"
#include "platform/settings/IniFile.h"

namespace tarn {

// A settings store: a file in the INI form that is read whole and replaced in one step.

// Empty for a file that is missing or can't be read.
IniFile ReadIniStore(FileSystem& files, const std::string& path);

// Changes the file, which is made with its folder when it is missing; one that is there and can't
// be read is left alone, and so is one that `edit` leaves as it was or gives false for.
Status EditIniStore(FileSystem& files, const std::string& path,
                    const std::function<bool(IniFile& store)>& edit);

}  // namespace tarn
