#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "build/BuildRecordStore.h"
#include "platform/files/FileSystem.h"
#include "xml/XmlNode.h"

namespace tarn {

class CProjectModel;

// A file that a run of a tool writes.
struct NamedOutput {
  std::string path;       // absolute
  std::string option;     // that names it: "Linker.MapFile"; empty if unknown
  bool isCertain = true;  // false: the tool may only read it
};

// The files that a run writes, from what the tool manager's GetAccess returns of it.
std::vector<NamedOutput> FindWritten(const std::string& access);

// Keeps a build from deleting or overwriting what is no product, since a project can name any file
// as an output: what the project itself is made of, files that this program stores itself, and
// files outside the project's folder that it did not make. For one walk over one state of the tree.
// Borrows the model; on its thread.
class OutputGuard {
 public:
  explicit OutputGuard(CProjectModel& projectModel) : model_(projectModel) {}

  // Returns why the file that the node names as an output has to stay as it is, as a row of the
  // log; empty if it may go: if there is none, if a recorded run made just this version of it, or
  // if it is in the project's folder and nothing needs it. The model's consent to write outside
  // counts, and nothing outside may go if the project is not trusted.
  std::string WhyKept(const CXmlNode& node, const NamedOutput& output);
  // The same only for files of the project itself and of this program, which need not be there yet.
  std::string WhyOwn(const NamedOutput& output);
  // Paths of what the node's last run left besides the files that it names, such as a map or a rule
  // file: as far as they are just as the run left them, and nothing of the project itself.
  std::vector<std::string> FindByProducts(const CXmlNode& node);
  // Removes a file that WhyKept lets go. One that the node's last run made goes also if it is
  // read-only: compilers and their launchers may leave it so.
  Status Remove(const CXmlNode& node, const std::string& path);

 private:
  struct Place {
    bool isOutside = false;  // the project's folder
    bool isState = false;    // in the folder of what hosts store
  };

  using Identity = std::pair<std::uint64_t, std::uint64_t>;  // device and inode

  const BuildRecord* FindRecord(const CXmlNode& node) const;
  // A recorded run on the node made the file of this path, and `test` holds for its version.
  template <class Test>
  bool IsMade(const CXmlNode& node, const std::string& path, const Test& test) const;
  bool IsMade(const CXmlNode& node, const std::string& path, const FileStatus& status) const;
  // Some run made a file of this name.
  bool IsRecorded(std::string_view path) const;
  Place PlaceOf(const std::string& path);
  const char* FindOwnReason(const std::string& path);
  void Collect(const CXmlNode& node, const std::string& folder);
  void Protect(const char* path, const std::string& folder, const char* reason);
  const char* FindReason(const std::string& path, const FileStatus& status);

  CProjectModel& model_;
  bool isCollected_ = false;
  std::vector<std::string> applications_;  // their paths
  // Why a file is protected, by its path and by what the disk says it is. Filled when it is needed.
  std::unordered_map<std::string, const char*> paths_;
  std::map<Identity, const char*> files_;
  std::unordered_map<std::string, Place> folders_;
};

}  // namespace tarn
