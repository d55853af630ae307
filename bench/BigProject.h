#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tarn::bench {

// A project of many small C files in groups with the same files for ninja beside it, and a compiler
// for it: the calling program by another name, which writes an output and a rule file and ends.
struct BigProject {
  std::filesystem::path folder;
  std::vector<std::string> sources;  // below the folder

  std::filesystem::path GetProjectFile() const { return folder / "big.tprj"; }
};

// Makes the project in `folder` and points the environment of this process and of those that it
// starts at it: the compiler is found, state and settings stay inside. Throws std::exception when
// something can't be written.
BigProject MakeBigProject(const std::filesystem::path& folder, int files);

// True when the program was started as the compiler; it has done the work of one then.
bool ActsAsCompiler(int argc, char** argv);

// A folder for this process below that of temporary files; not made.
std::filesystem::path BenchFolder(const char* name);

}  // namespace tarn::bench
