#pragma once

#include <QStringList>
#include <string>

namespace tarn::host {

// Recent projects and their open files, in the desktop settings. Nothing is cached, so that several
// windows share the list.
class RecentProjects {
 public:
  // Most recent first, at most ten. Omits those that don't exist at the moment.
  static QStringList List();
  static void Note(const std::string& path);
  // Remove one project or all, including their open files.
  static void Remove(const QString& path);
  static void Clear();

  // Files in the editors when the project was closed, in the format of EditorTabs::Describe.
  static QStringList EditorsOf(const std::string& path);
  static void KeepEditors(const std::string& path, const QStringList& editors);

  // Returns the default folder for a new project: that of the last created one, initially a folder
  // for projects below the user's documents. It need not exist.
  static QString GetNewFolder();
  // Records that a project was created; `path` is its file.
  static void RecordNew(const std::string& path);
};

}  // namespace tarn::host
