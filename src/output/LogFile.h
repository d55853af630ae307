#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/files/FileSystem.h"

namespace tarn {

class CXmlNode;

// Keeps a log file up to date with a tree whose top element only gains children at its end.
//
// The file always has the contents that a full rewrite would produce. The cost of a save is
// proportional to what is new since the last one: the bytes from the closing tag on are
// overwritten, as long as the file on disk still has the size and modification time of the last
// save; otherwise the file is rewritten. A change by another process within the same second that
// keeps the size isn't detected.
class LogFileWriter {
 public:
  // `fileSystem` is borrowed and must outlive this object.
  explicit LogFileWriter(FileSystem& fileSystem) : disk_(fileSystem) {}

  // Writes `head` followed by the XML of `root` to the file. Since the last call with the same
  // head, `root` must be the same element with at most additional children. After an error, the
  // next call rewrites the file.
  Status Save(const std::string& path, const std::string& head, const CXmlNode& root);
  // Makes the next `Save()` rewrite the file.
  void Clear() { last_.reset(); }

 private:
  // State of the file after the last save.
  struct Written {
    std::string path;
    std::string head;
    int children = 0;
    std::uint64_t keep = 0;  // size without the closing tag, which stays when the tree grows
    FileStatus status;
  };

  // Appends to the file. Returns false and clears the state if the file must be rewritten.
  bool Continue(const std::string& path, const std::string& head, const CXmlNode& root);
  Status WriteWhole(const std::string& path, const std::string& head, const CXmlNode& root);

  FileSystem& disk_;
  std::optional<Written> last_;
};

}  // namespace tarn
