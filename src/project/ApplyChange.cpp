// Applying a change of project files to the open project: undo and redo.
//
// A change is given by the file contents before and after it. It is applied by a three-way merge of
// each file: the base is `before`, the two sides are the current project and `after`. The project
// is then reloaded from the merged contents instead of its files, which stay untouched until a
// save.

#include "project/ProjectLifecycle.h"

#include <algorithm>
#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileSaver.h"
#include "project/MovedText.h"
#include "project/TreeMerge.h"
#include "project/TreeText.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

const std::string* Find(const std::vector<FileText>& texts, const std::string& path) {
  const auto found = std::find_if(texts.begin(), texts.end(),
                                  [&path](const FileText& each) { return each.path == path; });
  return found == texts.end() ? nullptr : &found->text;
}

// If the active application that a project names does not exist, opening the project activates a
// different one. This is not a change by the user, so the base is given the name found.
void AdoptActive(CXmlNode& base, const CXmlNode& now) {
  const char* const active = base.GetAttrValue("ActiveApp");
  const char* const found = now.GetAttrValue("ActiveApp");
  if (active == nullptr || found == nullptr) return;
  for (const CXmlNode* child : base.GetChildren()) {
    if (EqualNoCase(OrEmpty(child->GetAttrValue("Header")), active)) return;
  }
  base.SetAttrValue("ActiveApp", found);
}

// Returns the merge of both changes of `base`. Adds to `problems` if that is impossible.
std::string MergeTexts(const std::string& path, const std::string& base, const std::string& theirs,
                       const std::string& ours, std::vector<std::string>& problems) {
  if (theirs == base || theirs == ours) return ours;
  if (ours == base) return theirs;
  CXmlNode trees[3];
  if (!ReadWholeTree(base, trees[0]) || !ReadWholeTree(theirs, trees[1]) ||
      !ReadWholeTree(ours, trees[2])) {
    problems.push_back(path + " has changed since, and can't be compared");
    return theirs;
  }
  AdoptActive(trees[0], trees[1]);
  const MergedTree merged = MergeTrees(trees[0], trees[1], trees[2]);
  for (const TreeConflict& each : merged.conflicts) {
    const std::string place = each.place.empty() ? "the root" : each.place;
    std::string line = path + ": " + place + " has changed since";
    if (problems.empty() || problems.back() != line) problems.push_back(std::move(line));
  }
  return WriteTree(*merged.root, theirs);
}

// Keys of a node and its ancestors that identify it, outermost first.
using Trail = std::vector<std::string>;

// Uses the file name without its folder, because publishing a node changes how its path is written.
std::string MarkOf(const CXmlNode& node) {
  return node.GetName() + '\n' + OrEmpty(node.GetAttrValue("Header")) + '\n' +
         FileNameOf(OrEmpty(node.GetAttrValue("Path")));
}

Trail TrailOf(const CXmlNode* node) {
  Trail trail;
  for (; node != nullptr && node->GetParent() != nullptr; node = node->GetParent()) {
    trail.insert(trail.begin(), MarkOf(*node));
  }
  return trail;
}

// Returns the node at the end of the trail, or the root if there is none. Creates nothing.
CXmlNode& Follow(const Trail& trail, CXmlNode& root) {
  CXmlNode* node = &root;
  for (const std::string& mark : trail) {
    const std::vector<CXmlNode*> children = node->GetChildren();
    const auto next = std::find_if(children.begin(), children.end(),
                                   [&mark](const CXmlNode* each) { return MarkOf(*each) == mark; });
    if (next == children.end()) return root;
    node = *next;
  }
  return *node;
}

}  // namespace

std::vector<std::string> ProjectLifecycle::ApplyChange(const std::vector<FileText>& before,
                                                       const std::vector<FileText>& after) {
  if (!state_.isOpen || state_.IsDefaultProject()) return {"no project is open"};
  if (state_.isClosing || !services_.build.CanStartOperation())
    return {"the project can't be changed now"};
  if (protection_.IsDamageHeld()) return {"the project was read only in part"};
  ReplacedFiles present{{}, guard_};
  for (const FileText& each : saver_.RenderFiles()) present.texts[each.path] = each.text;
  ReplacedFiles changed = present;
  const std::vector<std::string> problems = MergeChange(before, after, changed);
  if (!problems.empty() || changed.texts == present.texts) return problems;
  const std::string path = state_.projectPath;
  const Trail trail = TrailOf(state_.GetCurrentNode());
  const std::int32_t noted =
      std::exchange(state_.modified, 0);  // keeps the close from writing the files
  if (!CloseProject()) {
    state_.modified |= noted;
    return {"the host keeps the project open"};
  }
  if (Reload(path, changed)) {
    publisher_.SetCurrentNode(&Follow(trail, *state_.projectRoot));
    return {};
  }
  // These unsaved changes exist nowhere else.
  const bool isBack = !state_.isOpen && Reload(path, present);
  return {isBack ? "the project can't be read after the change" : "another project was opened"};
}

// If another program has moved an application since the change, as its label shows, adapts both
// versions of its file to the new location.
void ProjectLifecycle::FollowMove(FileText& text, std::vector<FileText>& bases,
                                  const ReplacedFiles& present) const {
  const auto base = std::ranges::find(bases, text.path, &FileText::path);
  if (base == bases.end() || present.Find(text.path) != nullptr || files_.Exists(text.path)) return;
  CXmlNode root;
  if (!ReadWholeTree(base->text, root)) return;
  const std::string* place = nullptr;
  for (const auto& [path, content] : present.texts) {
    CXmlNode other;
    const bool isSame =
        Find(bases, path) == nullptr && ReadWholeTree(content, other) &&
        other.GetName() == root.GetName() &&
        EqualNoCase(OrEmpty(other.GetAttrValue("Header")), OrEmpty(root.GetAttrValue("Header")));
    if (isSame && place != nullptr) return;  // it could be either
    if (isSame) place = &path;
  }
  if (place == nullptr) return;
  const std::string from = FolderOf(text.path);
  const std::string to = FolderOf(*place);
  base->text = MoveText(files_, base->text, from, to);
  text.text = MoveText(files_, text.text, from, to);
  base->path = text.path = *place;
}

// Merges the changed files into `result`, which holds the contents of the current project.
std::vector<std::string> ProjectLifecycle::MergeChange(const std::vector<FileText>& before,
                                                       const std::vector<FileText>& after,
                                                       ReplacedFiles& result) {
  std::vector<std::string> problems;
  std::vector<FileText> bases = before;
  for (FileText each : after) {
    FollowMove(each, bases, result);
    const std::string* const base = Find(bases, each.path);
    const bool isPresent = result.Find(each.path) != nullptr;
    std::string& text = result.texts[each.path];
    if (isPresent) {
      // A file created by the change already exists.
      if (base != nullptr) text = MergeTexts(each.path, *base, text, each.text, problems);
    } else if (base != nullptr) {
      problems.push_back(each.path + " is no longer part of the project");
      continue;
    } else {
      const Result<std::string> disk = files_.ReadWholeFile(each.path);
      const std::string* const last = guard_.LastContentOf(each.path);
      const std::string& known = last == nullptr ? each.text : *last;
      text = disk ? MergeTexts(each.path, known, *disk, each.text, problems) : each.text;
      if (disk) result.former.RecordRead(each.path, *disk, false);
    }
    CXmlNode tree;
    if (!ReadWholeTree(text, tree)) problems.push_back(each.path + " is damaged");
  }
  return problems;
}

void ProjectLifecycle::StageFiles(const std::vector<FileText>& texts,
                                  const std::vector<FileText>& bases) {
  staged_ = std::make_unique<ReplacedFiles>(ReplacedFiles{{}, BackupGuard(files_)});
  for (const FileText& each : texts) staged_->texts[each.path] = each.text;
  for (const FileText& each : bases) {
    CXmlNode tree;
    staged_->former.RecordRead(each.path, each.text, !ReadWholeTree(each.text, tree));
  }
}

// Opens the project that was just closed. Returns true if it is open afterwards.
bool ProjectLifecycle::Reload(const std::string& path, const ReplacedFiles& texts) {
  staged_ = std::make_unique<ReplacedFiles>(texts);
  const std::int32_t opened = OpenProject(path.c_str(), 0);
  if (opened && HoldsWhatIsSaved()) {
    state_.DropChanges();
  } else if (opened) {
    state_.MarkModified();
  }
  return opened != 0;
}

// Returns true if a save would write exactly what the files contained when last read or written.
bool ProjectLifecycle::HoldsWhatIsSaved() {
  return std::ranges::all_of(saver_.RenderFiles(), [this](const FileText& each) {
    const std::string* const known = guard_.ContentOf(each.path);
    return known != nullptr && HoldSameTree(each.text, *known);
  });
}

}  // namespace tarn
