#include "build/OutputGuard.h"

#include <algorithm>
#include <optional>

#include "platform/files/ProjectFolder.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/ProjectModel.h"
#include "project/TreeSearch.h"

namespace tarn {

namespace {

constexpr const char* kIsSource = "is a source of the project";
constexpr const char* kIsDependency = "is what files of the project depend on";
constexpr const char* kIsProjectFile = "is a file of the project itself";
constexpr const char* kIsOutside =
    "is outside the project's folder, and no build of this project made it as it is";
constexpr const char* kIsUntrusted = "is outside the project's folder, which is not trusted";

}  // namespace

std::string OutputGuard::WhyKept(const CXmlNode& node, const std::string& path) {
  const std::optional<FileStatus> status = model_.GetFiles().Examine(path);
  // A tool would make the file that a link without a target names.
  if (!status && !model_.GetFiles().ExamineLink(path)) return {};
  const bool isRefused = model_.GetTrust().IsWithheld() && IsOutside(path);
  if (!isRefused && status && IsMade(node, path, *status)) return {};
  const char* reason = status ? FindReason(path, *status) : nullptr;
  if (reason == nullptr && isRefused) reason = kIsUntrusted;
  if (reason == nullptr && !model_.MayWriteOutside() && IsOutside(path)) reason = kIsOutside;
  return reason == nullptr ? std::string() : path + " is named as an output, but " + reason;
}

// Outputs are recorded with their versions, further products among the last inputs.
bool OutputGuard::IsMade(const CXmlNode& node, const std::string& path,
                         const FileStatus& status) const {
  BuildRecords& records = model_.GetBuildRecords();
  const BuildRecords::Bound* const bound = records.Find(node);
  if (bound == nullptr || bound->record == BuildRecordStore::kNone) return false;
  const BuildRecord& record = records.RecordOf(*bound);
  const BuildRecordStore& store = records.Store();
  const auto isThis = [&](BuildRecord::Number version) {
    return store.PathOf(version) == path && store.Version(version).IsCertainly(status);
  };
  if (isThis(record.output)) return true;
  for (std::size_t i = record.inputs.size() - record.programs; i < record.inputs.size(); ++i) {
    if (isThis(record.inputs[i])) return true;
  }
  return false;
}

bool OutputGuard::IsRecorded(std::string_view path) const {
  const BuildRecordStore& store = model_.GetBuildRecords().Store();
  return std::any_of(applications_.begin(), applications_.end(), [&](const std::string& each) {
    return store.Find(each, path) != BuildRecordStore::kNone;
  });
}

bool OutputGuard::IsOutside(const std::string& path) {
  const auto isIn = [this](const std::string& place) {
    return LeadsInto(model_.GetFiles(), FolderOf(model_.GetProjectPath()), place);
  };
  // A link is deleted itself, but a tool writes through it.
  if (model_.GetFiles().ExamineLink(path)) return !isIn(path);
  const auto [known, isNew] = outsideFolders_.try_emplace(FolderOf(path));
  if (isNew) known->second = !isIn(known->first);
  return known->second;
}

const char* OutputGuard::FindReason(const std::string& path, const FileStatus& status) {
  if (!isCollected_) {
    isCollected_ = true;
    const std::string folder = FolderOf(model_.GetProjectPath());
    Protect(model_.GetProjectPath().c_str(), folder, kIsProjectFile);
    for (const CXmlNode* each : model_.GetProjectRoot().GetChildren()) {
      if ((model_.types.FlagsOf(*each) & kTypeApplication) == 0) continue;
      applications_.push_back(TextOf(each->GetAttrValue("Path")));
    }
    Collect(model_.GetProjectRoot(), folder);
  }
  if (const auto found = paths_.find(path); found != paths_.end()) return found->second;
  const auto found = files_.find({status.device, status.inode});
  return found == files_.end() || status.inode == 0 ? nullptr : found->second;
}

void OutputGuard::Collect(const CXmlNode& node, const std::string& folder) {
  const std::uint32_t flags = model_.types.FlagsOf(node);
  const bool isFile = (flags & (kTypeProject | kTypeApplication)) != 0;
  Protect(node.GetAttrValue("Extern"), folder, kIsProjectFile);
  Protect(node.GetAttrValue("Path"), folder, isFile ? kIsProjectFile : kIsSource);
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (IsContentNode(child)) Collect(child, folder);
    if (child.NameView() != "Dependencies") continue;
    for (int j = 0; j < child.GetChildCount(); ++j) {
      const char* const file = child.GetChild(j)->GetAttrValue("Header");
      if (file != nullptr && !IsRecorded(file)) Protect(file, folder, kIsDependency);
    }
  }
}

void OutputGuard::Protect(const char* path, const std::string& folder, const char* reason) {
  if (path == nullptr || *path == '\0') return;
  std::string full = path;
  if (IsRelativePath(full)) model_.MakeAbsolutePath(path, full, folder.c_str());
  if (!paths_.try_emplace(full, reason).second) return;
  const std::optional<FileStatus> status = model_.GetFiles().Examine(full);
  if (status && status->inode != 0) files_.try_emplace({status->device, status->inode}, reason);
}

}  // namespace tarn
