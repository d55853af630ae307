#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

#include "hosts/cli/Console.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/Printable.h"

namespace tarn::host {

// Returns the path as a user in `folder` would write it: relative if it is in or near the folder,
// else unchanged.
std::string DisplayPath(const std::string& path, const std::string& folder);

// Formats a message of a build as one line, with the path relative to `folder` and the severity in
// colour.
ConsoleText DisplayEntry(const LogEntry& entry, const std::string& folder, const Console& console);

// Formats a running clock: "1:05".
std::string ClockText(std::chrono::milliseconds elapsed);
// Formats a duration for a summary: "0.8 s".
std::string DurationText(std::chrono::milliseconds elapsed);
// Formats the time that a tool has been running: "3.1s".
std::string SecondsText(std::chrono::milliseconds elapsed);
// "1 warning", "2 warnings".
std::string CountText(int count, std::string_view noun);

// Returns the width of a UTF-8 text on a terminal, assuming one column per character.
std::size_t ColumnsOf(std::string_view text);
// Returns the text padded with spaces to this width.
std::string Padded(std::string text, std::size_t columns);

}  // namespace tarn::host
