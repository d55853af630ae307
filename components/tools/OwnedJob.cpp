#include "components/tools/OwnedJob.h"

#include <unordered_set>

#include "components/tools/FileList.h"
#include "platform/modules/Modules.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

bool IsArchive(const std::string& name) {
  const std::string extension = ExtensionOf(name);
  return EqualNoCase(extension, ".a") || EqualNoCase(extension, ".lib");
}

void AddFiles(ToolInvocation& job, const std::vector<std::string>& listed) {
  const std::unordered_set<std::string> names(listed.begin(), listed.end());
  std::unordered_set<std::string> seen;
  std::vector<std::string> spelled = SpelledPaths(job.disk, listed);
  for (std::size_t i = 0; i < listed.size(); ++i) {
    const std::string& file = listed[i];
    std::string name = std::move(spelled[i]);
    // A similar name that is also listed belongs to a different file, which does not exist yet.
    if (name != file && names.contains(name)) name = file;
    // An archive may be listed repeatedly on purpose: a linker searches it at each position.
    if (!seen.insert(name).second && !IsArchive(name)) {
      job.repeated.push_back(std::move(name));
      continue;
    }
    if (name != file) job.respelled.push_back(name);
    job.files.push_back(std::move(name));
  }
}

}  // namespace

OwnedJob::OwnedJob(const ToolEnvironment& world, const std::string& configFolder, const char* files,
                   const char* options)
    : values(OptionValues::FromText(OrEmpty(options))) {
  values.Put("", "Install", "ConfigFolder", ReplaceAll(configFolder, "$", "$$"));
  values.Put("", "Install", "ProgramFolder", ReplaceAll(ModuleFolder() + kSeparator, "$", "$$"));
  job.values = &values;
  job.disk = world.files;
  job.baseFolder = BaseFolderOf(values, world.files->CurrentFolder(), job.disk);
  job.environmentLauncher = world.environment("TARN_LAUNCHER");
  std::vector<std::string> listed = SplitFileList(OrEmpty(files));
  for (std::string& file : listed) file = AbsolutePath(job.disk, job.baseFolder, file);
  AddFiles(job, listed);
}

}  // namespace tarn::tools
