#include "hosts/desktop/ProjectWatch.h"

#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "widgets/qt/QtText.h"
#include "xml/XmlNode.h"

namespace tarn::host {

ProjectWatch::ProjectWatch(FileSystem& fileSystem, QObject* parent)
    : QObject(parent), files(fileSystem), watch(this) {
  watch.onChanged = [this] { Look(); };
}

void ProjectWatch::Follow(const std::string& projectPath) {
  known.clear();
  const auto text = files.ReadWholeFile(projectPath);
  if (!projectPath.empty() && text) {
    known[projectPath] = HashBytes(*text);
    // Applications are stored in separate files.
    const auto root = ParseXml(*text);
    for (const CXmlNode* child : root ? root->GetChildren() : std::vector<CXmlNode*>{}) {
      const std::string name = ToNativeSeparators(AttributeOf(child, "Extern"));
      if (name.empty()) continue;
      Note(IsRelativePath(name) ? files.Canonical(JoinPath(FolderOf(projectPath), name)) : name);
    }
  }
  Watch();
}

void ProjectWatch::Expect(const std::vector<FileText>& versions) {
  for (const FileText& each : versions) known[each.path] = HashBytes(each.text);
  Watch();
  Look();
}

void ProjectWatch::Include(const std::vector<FileText>& projectFiles) {
  for (const FileText& each : projectFiles) {
    if (!known.contains(each.path)) Note(each.path);
  }
  Watch();
}

void ProjectWatch::Note(const std::string& path) {
  if (const auto text = files.ReadWholeFile(path)) known[path] = HashBytes(*text);
}

void ProjectWatch::Watch() {
  QStringList paths;
  for (const auto& [path, hash] : known) paths += ToQt(path);
  watch.SetFiles(paths);
}

std::vector<FileText> ProjectWatch::GetPresent() const {
  std::vector<FileText> present;
  for (const auto& [path, hash] : known) {
    auto text = files.ReadWholeFile(path);
    if (text) present.push_back({path, std::move(*text)});
  }
  return present;
}

std::vector<FileText> ProjectWatch::GetChanged() const {
  std::vector<FileText> changed = GetPresent();
  std::erase_if(changed, [this](const FileText& each) {
    return HashBytes(each.text) == known.at(each.path);
  });
  return changed;
}

void ProjectWatch::Look() {
  if (!GetChanged().empty() && onChanged) onChanged();
}

}  // namespace tarn::host
