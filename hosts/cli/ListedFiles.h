#pragma once

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace tarn::host {

class CommandContext;

// Knows which files the open project lists, so that many files are added without a look at the
// whole tree for each.
class ListedFiles {
 public:
  // Borrows the context, which must outlive this object.
  explicit ListedFiles(CommandContext& commandContext) : context_(commandContext) {}

  // Adds a file. Returns true if the project already lists one of this name, in whatever letter
  // case.
  bool Add(const std::string& path);

  // Returns the labels of the groups and applications that contain the file, for an application
  // that lists it more than once; empty if there is none.
  std::vector<std::string> FindRepeated(const std::string& path) const;

  // To be called after the tree was changed by other means.
  void Forget() { paths_.reset(); }

 private:
  CommandContext& context_;
  std::optional<std::unordered_set<std::string>> paths_;  // in lower case; nullopt until needed
};

}  // namespace tarn::host
