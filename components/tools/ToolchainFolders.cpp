#include "components/tools/ToolchainFolders.h"

#include <algorithm>

#include "components/tools/CommandHash.h"
#include "platform/paths/Paths.h"

namespace tarn::tools {

ToolchainFolders::ToolchainFolders(const ToolEnvironment& world, const ToolPlan& plan)
    : folders_{"/usr/include/", "/usr/local/include/", "/usr/lib/", "/usr/lib64/"} {
  for (const std::string& program : ProgramsOf(world, plan)) {
    AddInstallation(*world.files, program);
    AddInstallation(*world.files, world.files->ResolveLinks(program));
  }
}

// A compiler for the target "avr" is installed as bin/avr-gcc, lib/gcc, lib/avr and avr.
void ToolchainFolders::AddInstallation(FileSystem& files, const std::string& program) {
  const std::string prefix = FolderOf(FolderOf(program));
  if (prefix.empty() || !files.ExamineFolder(JoinPath(prefix, "lib/gcc"))) return;
  const std::string name = FileNameOf(program);
  const std::string target = name.substr(0, name.rfind('-'));
  for (const char* folder : {"lib/gcc", "lib64/gcc", "include"}) {
    folders_.push_back(AddSeparator(JoinPath(prefix, folder)));
  }
  if (target == name) return;
  folders_.push_back(AddSeparator(JoinPath(prefix, target)));
  folders_.push_back(AddSeparator(JoinPath(JoinPath(prefix, "lib"), target)));
}

bool ToolchainFolders::Has(const std::string& path) const {
  return std::any_of(folders_.begin(), folders_.end(),
                     [&path](const std::string& each) { return path.starts_with(each); });
}

}  // namespace tarn::tools
