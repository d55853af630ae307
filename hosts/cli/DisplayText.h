#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

#include "hosts/cli/Console.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/Printable.h"

namespace tarn::host {

// The path as somebody in `folder` would write it: relative where it lies in or near the folder,
// else as it is.
std::string DisplayPath(const std::string& path, const std::string& folder);

// A message of a build as one line: place relative to `folder`, the word for its kind in colour.
ConsoleText DisplayEntry(const LogEntry& entry, const std::string& folder, const Console& console);

// "1:05" for a running clock.
std::string ClockText(std::chrono::milliseconds elapsed);
// "0.8 s" for a summary.
std::string DurationText(std::chrono::milliseconds elapsed);
// "1 warning", "2 warnings".
std::string CountText(int count, std::string_view noun);

// How many columns of a terminal the UTF-8 text takes, where each character takes one.
std::size_t ColumnsOf(std::string_view text);
// The text, made that many columns wide.
std::string Padded(std::string text, std::size_t columns);

}  // namespace tarn::host
