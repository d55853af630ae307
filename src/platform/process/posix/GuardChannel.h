#pragma once

namespace tarn::guard {

// File name of the guard (see ToolGuard.cpp), which is in the folder of the platform library.
constexpr const char* kProgram = "tarn-guard";

// First argument if the program may keep running after this process ends.
constexpr const char* kOutlive = "--outlive";

// Descriptor of its socket.
constexpr int kChannel = 3;

// One-byte orders that are sent to it.
enum Order : char {
  kOrderEnd = 'e',   // ask the tool to terminate
  kOrderKill = 'k',  // kill all that is left of it
};

}  // namespace tarn::guard
