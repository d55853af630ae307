#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/files/FileSystem.h"
#include "xml/XmlNode.h"

namespace tarn {

// Keeps a log file current with a tree whose top element only gains children at its end.
//
// The file is always what a full rewrite would give. Saving costs what is new since the last save:
// the bytes from the closing tag on are overwritten, for as long as the file on disk still has the
// size and the time that it was left with; in every other case it is written whole. A change by
// others within the same second that keeps the size goes unseen.
class LogFileWriter {
 public:
  // `fileSystem` is borrowed for the writer's life.
  explicit LogFileWriter(FileSystem& fileSystem) : disk(fileSystem) {}

  // Makes the file `head` followed by the text of `root`. Since the last call with the same head,
  // `root` must be the same element with at most more children. After a failure the next call
  // writes the file whole.
  Status Save(const std::string& path, const std::string& head, const CXmlNode& root);
  // The next Save writes the file whole.
  void Forget() { last.reset(); }

 private:
  // The file as it was left.
  struct Written {
    std::string path;
    std::string head;
    int children = 0;
    std::uint64_t keep = 0;  // bytes that a longer tree leaves as they are
    FileStatus status;
  };

  // False when the file must be written whole; nothing is remembered then.
  bool Continue(const std::string& path, const std::string& head, const CXmlNode& root);
  Status WriteWhole(const std::string& path, const std::string& head, const CXmlNode& root);

  FileSystem& disk;
  std::optional<Written> last;
};

}  // namespace tarn
