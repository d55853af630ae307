#include "hosts/desktop/ProjectWatch.h"

#include "hosts/frame/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/qt/QtText.h"
#include "platform/text/Hash.h"

namespace tarn::host {

ProjectWatch::ProjectWatch(FileSystem& fileSystem, QObject* parent)
    : QObject(parent), files(fileSystem), watch(this) {
  watch.onChanged = [this] { Look(); };
}

void ProjectWatch::Follow(const std::string& projectPath) {
  known.clear();
  QStringList paths;
  const auto note = [&](const std::string& path, const std::string& text) {
    known[path] = HashBytes(text);
    paths += ToQt(path);
  };
  const auto text = files.ReadWholeFile(projectPath);
  if (!projectPath.empty() && text) {
    note(projectPath, *text);
    // The applications have files of their own.
    const auto root = ParseXml(*text);
    for (const CXmlNode* child : root ? root->GetChildren() : std::vector<CXmlNode*>{}) {
      const std::string name = ToNativeSeparators(AttributeOf(child, "Extern"));
      if (name.empty()) continue;
      const std::string path =
          IsRelativePath(name) ? CanonicalPath(JoinPath(FolderOf(projectPath), name)) : name;
      if (const auto own = files.ReadWholeFile(path)) note(path, *own);
    }
  }
  watch.SetFiles(paths);
}

std::vector<FileText> ProjectWatch::GetChanged() const {
  std::vector<FileText> changed;
  for (const auto& [path, hash] : known) {
    const auto text = files.ReadWholeFile(path);
    if (text && HashBytes(*text) != hash) changed.push_back({path, *text});
  }
  return changed;
}

void ProjectWatch::Look() {
  if (!GetChanged().empty() && onChanged) onChanged();
}

}  // namespace tarn::host
