#pragma once

#include <QStringList>
#include <string>

namespace tarn::host {

// The projects that were open last, and what was open of each, in the desktop's settings. Nothing
// is kept here, so that two windows know of each other's.
class RecentProjects {
 public:
  // The last one first, ten at most.
  static QStringList List();
  static void Note(const std::string& path);
  // Forgets a project, or all, with what was open of it.
  static void Remove(const QString& path);
  static void Clear();

  // What stood in the editors when the project was closed, in the form of EditorTabs::Describe.
  static QStringList EditorsOf(const std::string& path);
  static void KeepEditors(const std::string& path, const QStringList& editors);

  // The folder to propose for a new project: where the last one was made, or at first a folder for
  // projects among the user's documents. It need not exist.
  static QString GetNewFolder();
  // A project has been made; `path` is its file.
  static void NoteNew(const std::string& path);
};

}  // namespace tarn::host
