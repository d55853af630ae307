#include "hosts/desktop/ProjectWatch.h"

#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "widgets/qt/QtText.h"
#include "xml/XmlNode.h"

namespace tarn::host {

ProjectWatch::ProjectWatch(FileSystem& fileSystem, QObject* parent)
    : QObject(parent), files_(fileSystem), watch_(this) {
  watch_.onChanged = [this] { Poll(); };
}

void ProjectWatch::Follow(const std::string& projectPath) {
  known_.clear();
  const auto text = files_.ReadWholeFile(projectPath);
  if (!projectPath.empty() && text) {
    known_[projectPath] = HashBytes(*text);
    // Applications are stored in separate files.
    const auto root = ParseXml(*text);
    for (const CXmlNode* child : root ? root->GetChildren() : std::vector<CXmlNode*>{}) {
      const std::string name = ToNativeSeparators(GetAttribute(child, "Extern"));
      if (name.empty()) continue;
      Note(IsRelativePath(name) ? files_.Canonical(JoinPath(FolderOf(projectPath), name)) : name);
    }
  }
  Watch();
}

void ProjectWatch::Expect(const std::vector<FileText>& versions) {
  for (const FileText& each : versions) known_[each.path] = HashBytes(each.text);
  Watch();
  Poll();
}

void ProjectWatch::Include(const std::vector<FileText>& projectFiles) {
  for (const FileText& each : projectFiles) {
    if (!known_.contains(each.path)) Note(each.path);
  }
  Watch();
}

void ProjectWatch::Note(const std::string& path) {
  if (const auto text = files_.ReadWholeFile(path)) known_[path] = HashBytes(*text);
}

void ProjectWatch::Watch() {
  QStringList paths;
  for (const auto& [path, hash] : known_) paths += ToQt(path);
  watch_.SetFiles(paths);
}

std::vector<FileText> ProjectWatch::GetPresent() const {
  std::vector<FileText> present;
  for (const auto& [path, hash] : known_) {
    auto text = files_.ReadWholeFile(path);
    if (text) present.push_back({path, std::move(*text)});
  }
  return present;
}

std::vector<FileText> ProjectWatch::GetChanged() const {
  std::vector<FileText> changed = GetPresent();
  std::erase_if(changed, [this](const FileText& each) {
    return HashBytes(each.text) == known_.at(each.path);
  });
  return changed;
}

void ProjectWatch::Poll() {
  if (!GetChanged().empty() && onChanged) onChanged();
}

}  // namespace tarn::host
