#include "project/ProjectPaths.h"

#include "platform/files/RelativeName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

std::int32_t ProjectPaths::MakeAbsolutePath(const std::string& path, std::string& result,
                                            const char* baseFolder) const {
  if (path.empty()) return 0;
  const std::string base = baseFolder == nullptr ? state_.projectFolder : baseFolder;
  result = IsRelativePath(path) ? files_.Canonical(JoinPath(base, path)) : ToNativeSeparators(path);
  return 1;
}

std::int32_t ProjectPaths::MakeRelativePath(const std::string& path, std::string& result,
                                            const char* baseFolder) const {
  if (path.empty()) return 0;
  const std::string base = baseFolder == nullptr ? state_.projectFolder : baseFolder;
  std::string relative = IsRelativePath(path) ? path : RelativeNameOnDisk(files_, base, path);
  result = relative.empty() ? path : std::move(relative);
  return 1;
}

CXmlNode* ProjectPaths::FindPathOwner(const CXmlNode& node) const {
  for (CXmlNode* owner = node.GetParent(); owner != nullptr; owner = owner->GetParent()) {
    if ((types_.FlagsOf(*owner) & (kTypeApplication | kTypeProject)) != 0) return owner;
  }
  return nullptr;
}

std::string ProjectPaths::PathBaseOf(const CXmlNode& node) const {
  return FolderOfOwner(FindPathOwner(node));
}

std::string ProjectPaths::PathBaseBelow(const CXmlNode& parent) const {
  const bool ownsPaths = (types_.FlagsOf(parent) & (kTypeApplication | kTypeProject)) != 0;
  return FolderOfOwner(ownsPaths ? &parent : FindPathOwner(parent));
}

std::string ProjectPaths::FolderOfOwner(const CXmlNode* owner) const {
  const char* path = owner == nullptr ? nullptr : owner->GetAttrValue("Path");
  if (path == nullptr) return {};
  // An application that was never published still has its path as stored in the file.
  std::string absolute;
  MakeAbsolutePath(path, absolute, nullptr);
  return FolderOf(absolute);
}

void ProjectPaths::FindEnclosingApplication(CXmlNode* node, CXmlNode*& found) const {
  for (; node != nullptr; node = node->GetParent()) {
    if ((types_.FlagsOf(*node) & kTypeApplication) != 0) {
      found = node;
      return;
    }
  }
}

std::string ProjectPaths::GlobalsFileOf(const CXmlNode& application) const {
  const char* path = application.GetAttrValue("Path");
  if (path == nullptr || *path == '\0') return {};
  const char* config = application.GetAttrValue("Config");
  return WithoutExtension(path) + "-Globals." + (config == nullptr ? kStandardConfig : config) +
         ".xml";
}

void ProjectPaths::MakePathsAbsolute(CXmlNode& node, const std::string& base) const {
  for (const char* name : {"Path", "Extern"}) {
    std::string full;
    const char* path = node.GetAttrValue(name);
    if (path == nullptr || !MakeAbsolutePath(path, full, base.empty() ? nullptr : base.c_str())) {
      continue;
    }
    node.SetAttrValue(name, full);
  }
  const bool ownsPaths = (types_.FlagsOf(node) & (kTypeApplication | kTypeProject)) != 0;
  const char* path = node.GetAttrValue("Path");
  const std::string below = ownsPaths && path != nullptr ? FolderOf(path) : base;
  for (int i = 0; i < node.GetChildCount(); ++i) {
    if (IsContentNode(*node.GetChild(i))) MakePathsAbsolute(*node.GetChild(i), below);
  }
}

std::string ProjectPaths::FullProjectPath(const std::string& path) const {
  return files_.Canonical(IsRelativePath(path) ? JoinPath(files_.CurrentFolder(), path)
                                               : ToNativeSeparators(path));
}

bool ProjectPaths::IsOpenAs(const std::string& path) const {
  if (!state_.isOpen || path.empty()) return false;
  return EqualNoCase(path, state_.openedBy) ||
         EqualNoCase(FullProjectPath(path), state_.projectPath);
}

}  // namespace tarn
