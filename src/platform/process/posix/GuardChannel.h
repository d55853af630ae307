#pragma once

namespace tarn::guard {

// File name of the guard (see ToolGuard.cpp), which is in the folder of the platform library.
constexpr const char* kProgram = "tarn-guard";

// Descriptor of its socket.
constexpr int kChannel = 3;

}  // namespace tarn::guard
