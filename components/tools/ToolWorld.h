#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/files/FileSystem.h"
#include "platform/process/Process.h"

namespace tarn::tools {

// What the tools of this component touch of the machine; tests put their own in its place.
// Borrowed parts outlive whoever holds this.
struct ToolWorld {
  ProcessLauncher* launcher = nullptr;
  FileSystem* files = nullptr;
  // The full path of a program, or empty.
  std::function<std::string(std::string_view)> findProgram;
  // A variable of the environment, or empty.
  std::function<std::string(const char*)> environment;

  static ToolWorld Native();
};

}  // namespace tarn::tools
