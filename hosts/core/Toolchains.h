#pragma once

#include <string>
#include <vector>

#include "platform/process/Process.h"

namespace tarn::host {

// Programs that belong together, as tools of the definitions name them.
struct Toolchain {
  std::string name;
  std::string program;   // the compiler, or the first program of its first tool
  std::string path;      // of the program; empty if it was not found
  std::string variable;  // environment variable with the folder
  std::string folder;    // from the variable or the settings; empty: PATH is searched
  std::string hint;      // how to install it
  std::string version;   // first line that the program prints; empty if unknown
};

// Parses the list of tools of the tool component, and finds the programs. Sorted by name.
std::vector<Toolchain> FindToolchains(const std::string& tools);
// Returns the program of a toolchain that can't handle the special characters of a name; an empty
// string if there is none.
std::string FindProgramRefusing(const std::string& tools, const std::string& toolchain,
                                const std::string& name);
// Runs the program with --version. Does nothing if the path isn't absolute.
void FindVersion(ProcessLauncher& launcher, Toolchain& toolchain);

}  // namespace tarn::host
