#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarn::host {

class CommandContext;

// A folder that a group or an application follows.
struct FollowedFolder {
  std::string path;  // absolute
  std::vector<std::string> exclude, match;
};

// Keeps groups of the open project like folders on disk.
class FolderSync {
 public:
  explicit FolderSync(CommandContext& commandContext) : context_(commandContext) {}

  // Adds the files of a folder to the application with this path: to the group with these labels,
  // which is created; to the application itself if there are none. The group or application
  // remembers the folder. Returns 0, or an exit code after printing the error.
  int Add(const std::string& application, const std::vector<std::string>& group,
          const FollowedFolder& folder);

  // Adds new files to all groups and applications that follow a folder, and removes or reports
  // those that are gone. A dry run only reports. Returns 0, or an exit code after printing the
  // error.
  int Refresh(const std::string& application, bool removes, bool isDryRun);

  // Lines that report what was done, or would be.
  const std::vector<std::string>& GetChanges() const { return changes_; }
  // Lines about files that are gone but still in the project.
  const std::vector<std::string>& GetGone() const { return gone_; }
  // True if a group follows a folder.
  bool HasFollowed() const { return hasFollowed_; }

 private:
  struct Follower {
    std::string application;          // path
    std::vector<std::string> labels;  // of the groups, outermost first
    FollowedFolder folder;
  };

  int AddNew(const Follower& follower);
  int AddFile(const Follower& follower, const std::string& path);
  bool SelectGroup(const std::string& application, const std::vector<std::string>& labels);
  int Remove(const Follower& follower);
  std::vector<Follower> FindFollowers(const std::string& application);
  void Store(const Follower& follower);

  // The group that was selected last, if it existed.
  struct SelectedGroup {
    std::string application;
    std::vector<std::string> labels;
    std::string place;
  };

  CommandContext& context_;
  std::optional<SelectedGroup> selected_;
  bool isDryRun_ = false;
  bool removes_ = false;
  bool hasFollowed_ = false;
  std::vector<std::string> changes_;
  std::vector<std::string> gone_;
};

}  // namespace tarn::host
