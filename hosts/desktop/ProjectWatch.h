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

// Notices when somebody else writes the files of the open project, which the server itself does
// only while it closes one.
class ProjectWatch : public QObject {
 public:
  ProjectWatch(FileSystem& fileSystem, QObject* parent);

  // The project has just been opened; an empty path for none. Also to take what is on the disk for
  // known.
  void Follow(const std::string& projectPath);
  // The project was opened with these versions of its files: others on the disk count as changed.
  void Expect(const std::vector<FileText>& versions);
  // These belong to the project by now; those among them that are on the disk are followed, too.
  void Include(const std::vector<FileText>& projectFiles);
  // Looks now; for the time when the window comes to the front.
  void Look();
  // The files that are others than those that were opened, as they are now; without those that
  // are gone.
  std::vector<FileText> GetChanged() const;
  // All files as they are now, in the same way.
  std::vector<FileText> GetPresent() const;

  std::function<void()> onChanged;

 private:
  void Note(const std::string& path);
  void Watch();

  FileSystem& files;
  FileWatch watch;
  std::map<std::string, std::uint64_t> known;  // path -> hash of the bytes
};

}  // namespace tarn::host
