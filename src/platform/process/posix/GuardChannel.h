#pragma once

namespace tarn::guard {

// File name of the guard (see ToolGuard.cpp), which is in the folder of the platform library.
constexpr const char* kProgram = "tarn-guard";

// First argument if the program may go on after this process.
constexpr const char* kOutlive = "--outlive";

// Descriptor of its socket.
constexpr int kChannel = 3;

// Bytes that are sent to it.
enum Order : char {
  kOrderEnd = 'e',   // the tool is asked to end
  kOrderKill = 'k',  // all that is left of it is killed
};

}  // namespace tarn::guard
