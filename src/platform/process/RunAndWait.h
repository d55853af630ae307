#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/process/Process.h"

namespace tarn {

// A command line taken apart at the blanks that stand outside double quotes; the quotes go, and a
// backslash in front of one makes it a character of the argument.
std::vector<std::string> SplitCommandLine(std::string_view commandLine);

// Runs a program that has no window, on the calling thread, for at most `seconds`. Gives its exit
// code; -1 when the time was up, and then it goes on by itself; 0 when it could not be started.
// What it wrote by the end of the time goes into `written`, both streams as they came.
std::int32_t RunAndWait(ProcessLauncher& launcher, const std::string& commandLine, int seconds,
                        std::string& written);

}  // namespace tarn
