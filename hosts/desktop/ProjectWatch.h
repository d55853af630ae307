#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "hosts/desktop/FileWatch.h"
#include "platform/files/FileSystem.h"
#include "platform/files/FileTexts.h"

namespace tarn::host {

// Detects when another program writes the files of the open project, which the server itself checks
// only when it closes a project.
class ProjectWatch : public QObject {
 public:
  ProjectWatch(FileSystem& fileSystem, QObject* parent);

  // Call this after a project was opened (an empty path means none), or to accept the current files
  // on disk.
  void Follow(const std::string& projectPath);
  // Call this if the project was opened with these versions of its files: different content on disk
  // counts as changed.
  void Expect(const std::vector<FileText>& versions);
  // Adds files that now belong to the project; those that exist on disk are watched, too.
  void Include(const std::vector<FileText>& projectFiles);
  // Checks immediately; call this when the window is activated.
  void Poll();
  // Returns the current content of the files that differ from the opened versions, except for
  // deleted files.
  std::vector<FileText> GetChanged() const;
  // Returns the current content of all files, except for deleted files.
  std::vector<FileText> GetPresent() const;

  std::function<void()> onChanged;

 private:
  void Note(const std::string& path);
  void Watch();

  FileSystem& files_;
  FileWatch watch_;
  std::map<std::string, std::uint64_t> known_;  // path -> hash of the content
};

}  // namespace tarn::host
