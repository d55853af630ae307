#include "build/OutputGuard.h"

#include <algorithm>
#include <optional>

#include "platform/files/Destination.h"
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

const BuildRecord* OutputGuard::FindRecord(const CXmlNode& node) const {
  BuildRecords& records = model_.GetBuildRecords();
  const BuildRecords::Bound* const bound = records.Find(node);
  const bool isKnown = bound != nullptr && bound->record != BuildRecordStore::kNone;
  return isKnown ? &records.RecordOf(*bound) : nullptr;
}

// Outputs are recorded with their versions, further products among the last inputs.
template <class Test>
bool OutputGuard::IsMade(const CXmlNode& node, const std::string& path, const Test& test) const {
  const BuildRecord* const record = FindRecord(node);
  if (record == nullptr) return false;
  const BuildRecordStore& store = model_.GetBuildRecords().Store();
  const auto isThis = [&](BuildRecord::Number version) {
    return store.PathOf(version) == path && test(store.Version(version));
  };
  const auto products = record->inputs.end() - static_cast<std::ptrdiff_t>(record->programs);
  return isThis(record->output) || std::any_of(products, record->inputs.end(), isThis) ||
         std::any_of(record->byProducts.begin(), record->byProducts.end(), isThis);
}

bool OutputGuard::IsMade(const CXmlNode& node, const std::string& path,
                         const FileStatus& status) const {
  return IsMade(node, path,
                [&](const FileVersion& version) { return version.IsCertainly(status); });
}

std::vector<std::string> OutputGuard::FindByProducts(const CXmlNode& node) {
  std::vector<std::string> paths;
  const BuildRecord* const record = FindRecord(node);
  if (record == nullptr) return paths;
  const BuildRecordStore& store = model_.GetBuildRecords().Store();
  for (const BuildRecord::Number each : record->byProducts) {
    std::string path(store.PathOf(each));
    const std::optional<FileStatus> status = model_.GetFiles().ExamineExactly(path);
    // WhyKept asks for more outside the project's folder.
    const bool isLeft = status && IsSameVersion(store.Version(each).status, *status) &&
                        !model_.GetFiles().ExamineLink(path);
    const char* const reason = isLeft ? FindReason(path, *status) : nullptr;
    const bool isOwn = reason == nullptr || reason == kIsDependency;
    if (isLeft && isOwn) paths.push_back(std::move(path));
  }
  return paths;
}

// A cache that shares its files with builds also changes their times.
Status OutputGuard::Remove(const CXmlNode& node, const std::string& path) {
  FileSystem& files = model_.GetFiles();
  const std::optional<FileStatus> status = files.Examine(path);
  const bool isMade = status && IsMade(node, path, [&](const FileVersion& version) {
                        const FileStatus& made = version.status;
                        return made.device == status->device && made.inode == status->inode &&
                               made.size == status->size;
                      });
  return isMade ? files.RemoveOwnFile(path) : files.RemoveFile(path);
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
