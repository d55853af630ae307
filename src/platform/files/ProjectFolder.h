#pragma once

#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

// Returns whether `path`, and the folders needed for it, end up in `folder` or below it after
// following symbolic links. A dangling link counts as leading outside. Both paths are absolute;
// `path` need not exist.
bool LeadsInto(FileSystem& files, const std::string& folder, const std::string& path);

// The folder of a project, in which Tarn may write without the user's consent. Borrows the file
// system and queries it on each call, except for where the folder itself is, which is resolved when
// the object is created. Thread-safe.
class ProjectFolder {
 public:
  // `projectPath` is the absolute path of the project file.
  ProjectFolder(FileSystem& fileSystem, const std::string& projectPath);

  // Returns whether the absolute `path` ends up in the folder.
  bool Holds(const std::string& path) const;
  // Describes the link inside the folder through which `path` leaves it: "the link /p/build leads
  // to /x". Returns an empty string if there is none.
  std::string DescribeWayOut(const std::string& path) const;
  // Reason why `path` is not inside, as a clause that follows its name and "since": "it is outside
  // the folder of the project", or the one about the link. Returns an empty string if it is inside.
  std::string WhyOutside(const std::string& path) const;

 private:
  FileSystem& files_;
  std::string root_;
};

}  // namespace tarn
