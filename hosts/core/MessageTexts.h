#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn::host {

// Rows of the message file that end the log of a build.
inline constexpr int kBuildSucceededRow = 11;
inline constexpr int kBuildFailedRow = 12;

// The text of a row of the installed message file; empty when the file has none.
std::string MessageTextOf(FileSystem& files, int row);

}  // namespace tarn::host
