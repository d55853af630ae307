#include "project/DefinitionFolders.h"

#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn {

namespace {

void AddFiles(FileSystem& files, const std::string& folder, std::string_view ending,
              std::vector<std::string>& found) {
  const auto entries = files.ListFolder(folder);
  if (!entries) return;
  for (const FolderEntry& each : *entries) {
    const bool isOne = !each.isFolder && EndsWithNoCase(each.name, ending);
    if (isOne) found.push_back(JoinPath(folder, each.name));
  }
}

}  // namespace

void DefinitionFolders::Set(std::vector<std::string> always, std::string inProject) {
  always_ = std::move(always);
  inProject_ = std::move(inProject);
}

std::string DefinitionFolders::FolderOfProject() const {
  const bool hasNone =
      inProject_.empty() || state_.isDefaultProject != 0 || state_.projectFolder.empty();
  return hasNone ? std::string() : JoinPath(state_.projectFolder, inProject_);
}

bool DefinitionFolders::Apply() {
  std::vector<std::string> folders = always_;
  const std::string own = FolderOfProject();
  if (!own.empty() && !trust_.IsWithheld()) folders.push_back(own);
  if (folders == applied_) return false;
  applied_ = std::move(folders);
  std::string lines;
  for (const std::string& each : applied_) lines += each + "\n";
  const bool hasOptions = services_.propertyManager != nullptr &&
                          services_.propertyManager->SetDefinitionFolders(lines) != 0;
  const bool hasTools =
      services_.toolManager != nullptr && services_.toolManager->SetDefinitionFolders(lines) != 0;
  return hasOptions || hasTools;
}

std::vector<std::string> DefinitionFolders::FindIgnored() const {
  std::vector<std::string> found;
  const std::string own = FolderOfProject();
  if (own.empty() || !trust_.IsWithheld()) return found;
  AddFiles(services_.files, own, ".options", found);
  AddFiles(services_.files, own, ".tools", found);
  AddFiles(services_.files, JoinPath(own, "targets"), ".xml", found);
  return found;
}

}  // namespace tarn
