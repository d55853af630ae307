#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "builder/BuildRecordStore.h"
#include "platform/files/FileSystem.h"

namespace tarn {

class BuildRecords;
class CProjectModel;
class CXmlNode;

// A file that a tool run writes.
struct NamedOutput {
  std::string path;    // absolute, spelled as on disk
  std::string option;  // the option that names it, such as "Linker.MapFile"; empty if unknown
  std::string argument = {};  // the argument that names it, if any
  bool isCertain = true;      // false: the tool may only read it
};

// Returns the files that a run writes, parsed from the reply of the tool manager's GetAccess.
std::vector<NamedOutput> FindWritten(const std::string& access);
// Returns the paths of another kind: "read" for those that its arguments may name as files to read,
// "search" for the folders that are searched for headers.
std::vector<std::string> FindAccessed(const std::string& access, std::string_view wanted);

// Prevents a build from deleting or overwriting files that are not build products, because a
// project may name any file as an output. Protects the files the project consists of, files that
// Tarn itself stores, and those that no build made: outside the project's folder all of them,
// inside those that don't look like products, because before the first build it is unknown what a
// source includes. Valid for one walk over an unchanged tree. Borrows the model; main thread only.
class OutputGuard {
 public:
  OutputGuard(CProjectModel& projectModel, BuildRecords& buildRecords)
      : model_(projectModel), records_(buildRecords) {}

  // Returns a log line saying why the output file named by the node must not be touched. Returns an
  // empty string if it may be: if it does not exist, if a recorded run made exactly this version,
  // or if it is in the project's folder, nothing needs it, and it looks like a product.
  // Respects the model's consent to write outside the folder; if the project is not trusted,
  // nothing outside may be touched.
  std::string WhyKept(const CXmlNode& node, const NamedOutput& output);
  // Same, but only for files of the project itself and of Tarn, which need not exist yet.
  std::string WhyOwn(const NamedOutput& output);
  // Returns the paths of the other files that the node's last run produced, such as a map or a
  // dependency file, if they are unchanged since the run and not part of the project itself.
  std::vector<std::string> FindByProducts(const CXmlNode& node);
  // The files of a source that was removed from its application.
  struct Removed {
    std::size_t record = BuildRecordStore::kNone;
    std::vector<std::string> files;  // that still are as the run has made them
  };
  // Returns the records of runs on sources that the application no longer has, in whatever
  // configuration they were made.
  std::vector<Removed> FindRemoved(const CXmlNode& application);
  // Removes a file that WhyKept does not protect. Removes it even if it is read-only, provided that
  // the node's last run made it: compilers and their wrappers may create such files.
  Status Remove(const CXmlNode& node, const std::string& path);

 private:
  struct Location {
    bool isOutside = false;  // of the project's folder
    bool isState = false;    // in a folder for per-user state or settings of hosts
    bool isControl = false;  // in a folder of a version control system
  };

  using Identity = std::pair<std::uint64_t, std::uint64_t>;  // device and inode

  bool IsUnchangedProduct(BuildRecord::Number version);
  const BuildRecord* FindRecord(const CXmlNode& node) const;
  // Returns true if a recorded run on the node made the file at this path and `test` accepts its
  // version.
  template <class Test>
  bool IsMade(const CXmlNode& node, const std::string& path, const Test& test) const;
  bool IsMade(const CXmlNode& node, const std::string& path, const FileStatus& status) const;
  // Returns true if any recorded run made a file of this name.
  bool IsRecorded(std::string_view path) const;
  // `isLink`: the path is that of a symbolic link.
  Location LocationOf(const std::string& path, bool isLink);
  std::string WhyOwn(const NamedOutput& output, bool isLink);
  const char* FindOwnReason(const std::string& path, bool isLink);
  bool IsLink(const std::string& path) const;
  // Fills in the reasons for the files of a subtree; linear in its size.
  void Collect(const CXmlNode& node, const std::string& folder);
  void Protect(const char* path, const std::string& folder, const char* reason);
  const char* FindReason(const std::string& path, const FileStatus& status);
  // Returns why an existing file without a record is the user's rather than a product, or nullptr.
  // By-products, which neither an option nor an argument names, always are products: some compilers
  // write assembler files next to the object.
  const char* FindUnmadeReason(const CXmlNode& node, const NamedOutput& output) const;
  // Returns true if the extension is a usual one for what the option names: an object, library or
  // program for the output, also an image for that of an application, and a listing, map or
  // dependency file for anything else. An application also writes files without an extension, but
  // only as its output to a subfolder if a text is in its place: that may be the user's script.
  // Generators and commands write files of any kind, which are products in a subfolder of "build".
  bool LooksLikeProduct(const CXmlNode& node, const NamedOutput& output) const;
  // Returns true if a generator makes the file that is protected as a source or dependency.
  bool IsGenerated(const CXmlNode& node, const std::string& path, const char* reason) const;
  bool IsInBuildFolder(const std::string& path) const;
  bool HasRecord(const CXmlNode& node, const std::string& path) const;

  CProjectModel& model_;
  BuildRecords& records_;
  bool isCollected_ = false;
  std::vector<std::string> applications_;  // paths of all applications
  // Reasons for protecting files, by path. Filled on first use.
  std::unordered_map<std::string, const char*> paths_;
  std::map<Identity, std::string> files_;  // their paths, by identity on disk
  std::unordered_map<std::string, Location> folders_;
};

}  // namespace tarn
