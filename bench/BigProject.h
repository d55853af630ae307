#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarn::bench {

// Project of many small C files in groups, the same files as a ninja build, and a compiler for
// both: the calling program under a different name, which writes an output and a dependency file
// and exits.
struct BigProject {
  std::filesystem::path folder;
  std::vector<std::string> sources;  // relative to the folder

  std::filesystem::path GetProjectFile() const { return folder / "big.tprj"; }
};

// Creates the project in `folder` and sets the environment of this process and its child processes
// so that the compiler is found, and state and settings are stored inside the folder. Throws
// std::exception if a file can't be written.
BigProject MakeBigProject(const std::filesystem::path& folder, int files);

// Returns true if the program was started as the compiler; it has then done the compiler's work.
bool ActsAsCompiler(int argc, char** argv);

// Returns a folder for this process in the folder for temporary files. Doesn't create it.
std::filesystem::path BenchFolder(const char* name);

}  // namespace tarn::bench
