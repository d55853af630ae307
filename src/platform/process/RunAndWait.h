#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/process/Process.h"

namespace tarn {

// Splits a command line at spaces outside double quotes. The quotes are removed; a backslash before
// a quote makes it a literal character.
std::vector<std::string> SplitCommandLine(std::string_view commandLine);

// Runs a program without a window and waits on the calling thread for at most `seconds`. Returns
// its exit code, -1 on timeout (the program keeps running), or 0 if it could not be started.
// `written` receives the output of both streams up to that time, in order of arrival.
std::int32_t RunAndWait(ProcessLauncher& launcher, const std::string& commandLine, int seconds,
                        std::string& written);

}  // namespace tarn
