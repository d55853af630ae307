#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// Rows of the message file that conclude the log of a build.
inline constexpr int kBuildSucceededRow = 11;
inline constexpr int kBuildFailedRow = 12;

// Returns the text of a row of the installed message file; an empty string if there is no such row.
std::string MessageTextOf(FileSystem& files, int row);

}  // namespace tarn::host
