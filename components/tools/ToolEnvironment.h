#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/files/FileSystem.h"
#include "platform/process/Process.h"

namespace tarn::tools {

// The parts of the platform that this component uses; tests substitute their own. The pointers are
// borrowed and must outlive every user of the struct.
struct ToolEnvironment {
  ProcessLauncher* launcher = nullptr;
  FileSystem* files = nullptr;
  // Returns the full path of a program, or an empty string.
  std::function<std::string(std::string_view)> findProgram;
  // Returns an environment variable, or an empty string.
  std::function<std::string(const char*)> environment;
  // Returns the user's setting for the folder of a toolchain, or an empty string. May be empty.
  std::function<std::string(const std::string&)> toolchainSetting = {};

  static ToolEnvironment Native();
};

}  // namespace tarn::tools
