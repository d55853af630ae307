#include "hosts/cli/FolderSync.h"

#include <tarn/commands.h>

#include <algorithm>
#include <functional>
#include <set>

#include "components/values/ValuesXml.h"
#include "hosts/cli/Commands.h"
#include "hosts/core/FileTypes.h"
#include "hosts/core/FolderScan.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/ProjectTree.h"
#include "hosts/core/import/ImportedProject.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr const char* kSection = "General";  // applies in all configurations
constexpr const char* kFolder = "SyncFolder";
constexpr const char* kExclude = "SyncExclude";
constexpr const char* kMatch = "SyncMatch";

// A node and its place, as SelectNodeByPlace() takes it.
struct Located {
  const CXmlNode* node = nullptr;
  std::string place;
};

// Visits the shown nodes below a node, parents first.
void Visit(const Located& parent, const std::function<void(const Located&)>& onNode) {
  int index = 0;
  for (const CXmlNode* child : parent.node->GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    const Located located{child, parent.place + "/" + ToDecimal(index++)};
    onNode(located);
    Visit(located, onNode);
  }
}

Located FindChild(const Located& parent, const std::function<bool(const CXmlNode&)>& fits) {
  int index = 0;
  for (const CXmlNode* child : parent.node->GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    const std::string place = parent.place + "/" + ToDecimal(index++);
    if (fits(*child)) return {child, place};
  }
  return {};
}

Located FindGroup(const ProjectTree& tree, const std::string& application,
                  const std::vector<std::string>& labels) {
  if (tree.GetRoot() == nullptr) return {};
  Located found = FindChild({tree.GetRoot(), ""}, [&](const CXmlNode& node) {
    return GetAttribute(&node, "Path") == application;
  });
  for (const std::string& label : labels) {
    if (found.node == nullptr) return {};
    found = FindChild(found, [&](const CXmlNode& node) {
      return node.NameView() == "Group" && GetAttribute(&node, "Header") == label;
    });
  }
  return found;
}

std::string StoredValueOf(const CXmlNode& node, const char* property) {
  const CXmlNode* options = node.FindChild("Options");
  if (options == nullptr) return {};
  for (const CXmlNode* config : options->GetChildren()) {
    for (const CXmlNode* set : config->GetChildren()) {
      for (const CXmlNode* section : set->GetChildren()) {
        if (!EqualNoCase(GetAttribute(section, "Header"), kSection)) continue;
        for (const CXmlNode* each : section->GetChildren()) {
          if (EqualNoCase(GetAttribute(each, "Header"), property)) {
            return Unescape(GetAttribute(each, "Value"));
          }
        }
      }
    }
  }
  return {};
}

std::vector<std::string> Patterns(const std::string& list) {
  std::vector<std::string> patterns;
  for (const std::string_view each : Split(list, ';')) {
    if (!Trim(each).empty()) patterns.emplace_back(Trim(each));
  }
  return patterns;
}

}  // namespace

// Makes the group current, and creates what is missing of it.
bool FolderSync::SelectGroup(const std::string& application,
                             const std::vector<std::string>& labels) {
  InspectorDriver& inspector = context_.Session().Inspector();
  // Adding a file leaves the places of groups as they are.
  const bool isLast =
      selected_ && selected_->application == application && selected_->labels == labels;
  if (isLast) return inspector.SelectNodeByPlace(selected_->place) != 0;
  selected_.reset();
  const ProjectTree tree(inspector.GetTree());
  std::size_t known = labels.size();
  Located found;
  for (;; --known) {
    found = FindGroup(tree, application,
                      {labels.begin(), labels.begin() + static_cast<std::ptrdiff_t>(known)});
    if (found.node != nullptr || known == 0) break;
  }
  if (found.node == nullptr || inspector.SelectNodeByPlace(found.place) == 0) return false;
  if (known == labels.size()) selected_ = SelectedGroup{application, labels, found.place};
  for (; known < labels.size(); ++known) {
    context_.Session().Manager().Command(TARN_CMD_NEW_GROUP);
    if (!context_.RenameCurrentNode(labels[known])) return false;
  }
  return true;
}

// Stores the folder at the group or application, which is current.
void FolderSync::Store(const Follower& follower) {
  ProjectManagerDriver& manager = context_.Session().Manager();
  const std::string project = FolderOf(context_.Session().GetProjectPath());
  const char* set = follower.labels.empty() ? "Application" : "Group";
  manager.SavePropertyValue(set, kSection, kFolder, PathInOption(project, follower.folder.path));
  const std::pair<const char*, const std::vector<std::string>&> lists[] = {
      {kExclude, follower.folder.exclude}, {kMatch, follower.folder.match}};
  for (const auto& [property, patterns] : lists) {
    if (!patterns.empty()) {
      manager.SavePropertyValue(set, kSection, property, ListValue(patterns));
    }
  }
}

int FolderSync::AddFile(const Follower& follower, const std::string& path) {
  std::vector<std::string> labels = follower.labels;
  for (std::string& each : GroupsBelow(follower.folder.path, path)) {
    labels.push_back(std::move(each));
  }
  changes_.push_back((isDryRun_ ? "would add " : "added ") + context_.Show(path));
  if (isDryRun_) return kExitDone;
  if (!IsStorable(path) || !context_.WhyUnusable(path).empty()) {
    context_.Complain(context_.Show(path) + " can't be added because of its name.");
    return kExitUsage;
  }
  if (!SelectGroup(follower.application, labels) ||
      context_.Session().Manager().AddExistingItem(path) == 0) {
    context_.Complain(context_.Show(path) + " can't be added.");
    return kExitUsage;
  }
  return kExitDone;
}

int FolderSync::AddNew(const Follower& follower) {
  FileSystem& files = context_.Files();
  FileTypes types(files, context_.Session().GetFolders().ConfigFile(files));
  FolderScanOptions options{follower.folder.exclude, follower.folder.match,
                            [&types](const std::string& path) {
                              const std::string& type = types.Of(path);
                              return type != "Text" && !type.ends_with("Application");
                            }};
  const std::string build = JoinPath(FolderOf(context_.Session().GetProjectPath()), "build");
  const auto found = ScanFolder(files, follower.folder.path, options, {build});
  if (!found) {
    const Error& error = found.GetError();
    context_.Complain(context_.ShowFailure(error.place, "read", error.text) + ".");
    return kExitCannotOpen;
  }
  std::set<std::string> present;
  const ProjectTree tree(context_.Session().Inspector().GetTree());
  const Located application = FindGroup(tree, follower.application, {});
  if (application.node == nullptr) return kExitUsage;
  Visit(application, [&](const Located& each) { present.insert(GetAttribute(each.node, "Path")); });
  for (const std::string& path : *found) {
    if (present.contains(path)) continue;
    if (const int code = AddFile(follower, path); code != kExitDone) return code;
  }
  return kExitDone;
}

// Removes or reports the files below the folder that are gone. Groups for folders that are gone are
// removed once they are empty.
int FolderSync::Remove(const Follower& follower) {
  FileSystem& files = context_.Files();
  InspectorDriver& inspector = context_.Session().Inspector();
  const ProjectTree tree(inspector.GetTree());
  const Located group = FindGroup(tree, follower.application, follower.labels);
  if (group.node == nullptr) return kExitDone;
  const std::string inside = AddSeparator(follower.folder.path);
  std::vector<std::string> places;
  // Returns true if nothing is left of the node.
  const std::function<bool(const Located&)> prune = [&](const Located& node) {
    int index = 0;
    bool isEmpty = true;
    for (const CXmlNode* child : node.node->GetChildren()) {
      if (!ProjectTree::IsShown(*child)) continue;
      const Located located{child, node.place + "/" + ToDecimal(index++)};
      if (child->NameView() == "Group") {
        const bool isGone = prune(located) && StoredValueOf(*child, kFolder).empty();
        if (isGone) places.push_back(located.place);
        isEmpty = isEmpty && isGone;
        continue;
      }
      const std::string path = GetAttribute(child, "Path");
      const Result<bool> exists = files.CheckExists(path);
      const bool isGone = path.starts_with(inside) && exists && !*exists;
      isEmpty = isEmpty && isGone;
      if (!isGone) continue;
      if (!removes_) {
        gone_.push_back(context_.Show(path) +
                        " does not exist any more. Use --remove to remove it.");
        continue;
      }
      changes_.push_back((isDryRun_ ? "would remove " : "removed ") + context_.Show(path));
      places.push_back(located.place);
    }
    return isEmpty && index > 0;
  };
  prune(group);
  if (isDryRun_ || !removes_) return kExitDone;
  // Later places first, so that the others stay valid; children come before their groups.
  std::stable_sort(places.begin(), places.end(), [](const std::string& a, const std::string& b) {
    const auto left = Split(a, '/'), right = Split(b, '/');
    for (std::size_t i = 1; i < left.size() && i < right.size(); ++i) {
      const auto x = ParseDecimal(std::string(left[i]).c_str());
      const auto y = ParseDecimal(std::string(right[i]).c_str());
      if (x != y) return x > y;
    }
    return left.size() > right.size();
  });
  selected_.reset();
  for (const std::string& place : places) {
    if (inspector.SelectNodeByPlace(place) != 0) {
      context_.Session().Manager().Command(TARN_CMD_REMOVE_NODE);
    }
  }
  return kExitDone;
}

std::vector<FolderSync::Follower> FolderSync::FindFollowers(const std::string& application) {
  std::vector<Follower> followers;
  const ProjectTree tree(context_.Session().Inspector().GetTree());
  if (tree.GetRoot() == nullptr) return followers;
  const std::string project = FolderOf(context_.Session().GetProjectPath());
  for (const CXmlNode* node : tree.GetRoot()->GetChildren()) {
    if (!ProjectTree::IsShown(*node)) continue;
    const std::string path = GetAttribute(node, "Path");
    if (!application.empty() && path != application) continue;
    std::vector<std::string> labels;
    const std::function<void(const CXmlNode&)> search = [&](const CXmlNode& each) {
      const std::string folder = StoredValueOf(each, kFolder);
      if (!folder.empty()) {
        const std::string full =
            context_.Files().Canonical(IsRelativePath(folder) ? JoinPath(project, folder) : folder);
        followers.push_back({path,
                             labels,
                             {full, Patterns(StoredValueOf(each, kExclude)),
                              Patterns(StoredValueOf(each, kMatch))}});
      }
      for (const CXmlNode* child : each.GetChildren()) {
        if (child->NameView() != "Group") continue;
        labels.push_back(GetAttribute(child, "Header"));
        search(*child);
        labels.pop_back();
      }
    };
    search(*node);
  }
  return followers;
}

int FolderSync::Add(const std::string& application, const std::vector<std::string>& group,
                    const FollowedFolder& folder) {
  const Follower follower{application, group, folder};
  if (!SelectGroup(application, group)) {
    context_.Complain("The group can't be created.");
    return kExitUsage;
  }
  Store(follower);
  return AddNew(follower);
}

int FolderSync::Refresh(const std::string& application, bool removes, bool isDryRun) {
  isDryRun_ = isDryRun;
  removes_ = removes;
  for (const Follower& each : FindFollowers(application)) {
    hasFollowed_ = true;
    if (!context_.Files().IsFolder(each.folder.path)) {
      context_.Complain(context_.Show(each.folder.path) + " does not exist.");
      return kExitCannotOpen;
    }
    if (const int code = AddNew(each); code != kExitDone) return code;
    if (const int code = Remove(each); code != kExitDone) return code;
  }
  return kExitDone;
}

}  // namespace tarn::host
