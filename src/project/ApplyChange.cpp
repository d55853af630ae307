// Changes of a project's files that are made to the open project: undo and redo.
//
// A change is what the files held before and after it. To make it is a three-way merge, file by
// file: the base is `before`, one side is the project now, the other one is `after`. The project is
// then read again, from the merged texts in place of its files, which only a save writes.

#include <algorithm>
#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileSaver.h"
#include "project/ProjectModel.h"
#include "project/TreeText.h"

namespace tarn {

namespace {

const std::string* Find(const std::vector<FileText>& texts, const std::string& path) {
  const auto found = std::find_if(texts.begin(), texts.end(),
                                  [&path](const FileText& each) { return each.path == path; });
  return found == texts.end() ? nullptr : &found->text;
}

// Opening a project makes another application active if it has not the one that it names. That is
// no change of the user's: the base gets the name that was found for it.
void AdoptActive(CXmlNode& base, const CXmlNode& now) {
  const char* const active = base.GetAttrValue("ActiveApp");
  const char* const found = now.GetAttrValue("ActiveApp");
  if (active == nullptr || found == nullptr) return;
  for (const CXmlNode* child : base.GetChildren()) {
    if (EqualNoCase(TextOf(child->GetAttrValue("Header")), active)) return;
  }
  base.SetAttrValue("ActiveApp", found);
}

// Returns the text with both changes of `base`; adds to `problems` why there is none.
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

// What tells the node from its siblings, from the outermost level inwards.
using Trail = std::vector<std::string>;

// The folders of a path are not written in the same way before and after its node is published.
std::string MarkOf(const CXmlNode& node) {
  return node.GetName() + '\n' + TextOf(node.GetAttrValue("Header")) + '\n' +
         FileNameOf(TextOf(node.GetAttrValue("Path")));
}

Trail TrailOf(const CXmlNode* node) {
  Trail trail;
  for (; node != nullptr && node->GetParent() != nullptr; node = node->GetParent()) {
    trail.insert(trail.begin(), MarkOf(*node));
  }
  return trail;
}

// The node that the trail leads to, or the root: what is asked of it changes nothing else.
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

std::vector<std::string> CProjectModel::ApplyChange(const std::vector<FileText>& before,
                                                    const std::vector<FileText>& after) {
  if (!isOpen || IsDefaultProject()) return {"no project is open"};
  if (isClosing || !CanStartOperation()) return {"the project can't be changed now"};
  if (IsDamageHeld()) return {"the project was read only in part"};
  ReplacedFiles present{{}, guard};
  for (const FileText& each : MakeFileTexts()) present.texts[each.path] = each.text;
  ReplacedFiles changed = present;
  const std::vector<std::string> problems = MergeChange(before, after, changed);
  if (!problems.empty() || changed.texts == present.texts) return problems;
  const std::string path = projectPath;
  const Trail trail = TrailOf(GetCurrentNode());
  const std::int32_t noted = std::exchange(modified, 0);  // or the close would write the files
  if (!CloseProject()) {
    modified |= noted;
    return {"the host keeps the project open"};
  }
  if (Reload(path, changed)) {
    SetCurrentNode(&Follow(trail, *projectRoot));
    return {};
  }
  // What was not saved is nowhere else.
  const bool isBack = !isOpen && Reload(path, present);
  return {isBack ? "the project can't be read after the change" : "another project was opened"};
}

// Puts the texts of the changed files into `result`, which has those of the project now.
std::vector<std::string> CProjectModel::MergeChange(const std::vector<FileText>& before,
                                                    const std::vector<FileText>& after,
                                                    ReplacedFiles& result) {
  std::vector<std::string> problems;
  for (const FileText& each : after) {
    const std::string* const base = Find(before, each.path);
    const bool isPresent = result.Find(each.path) != nullptr;
    std::string& text = result.texts[each.path];
    if (isPresent) {
      // A file that came with the change is there already.
      if (base != nullptr) text = MergeTexts(each.path, *base, text, each.text, problems);
    } else if (base != nullptr) {
      problems.push_back(each.path + " is no part of the project any more");
      continue;
    } else {
      const Result<std::string> disk = files.ReadWholeFile(each.path);
      const std::string* const last = guard.LastTextOf(each.path);
      const std::string& known = last == nullptr ? each.text : *last;
      text = disk ? MergeTexts(each.path, known, *disk, each.text, problems) : each.text;
      if (disk) result.former.NoteRead(each.path, *disk, false);
    }
    CXmlNode tree;
    if (!ReadWholeTree(text, tree)) problems.push_back(each.path + " can't be read");
  }
  return problems;
}

std::vector<FileText> CProjectModel::GetBaseTexts() const {
  std::vector<FileText> texts;
  for (const auto& [path, text] : guard.GetKnown()) texts.push_back({path, text});
  return texts;
}

void CProjectModel::StageFiles(const std::vector<FileText>& texts,
                               const std::vector<FileText>& bases) {
  staged = std::make_unique<ReplacedFiles>(ReplacedFiles{{}, FileGuard(files)});
  for (const FileText& each : texts) staged->texts[each.path] = each.text;
  for (const FileText& each : bases) {
    CXmlNode tree;
    staged->former.NoteRead(each.path, each.text, !ReadWholeTree(each.text, tree));
  }
}

// Opens the project that was closed just now. Returns whether it is open.
bool CProjectModel::Reload(const std::string& path, const ReplacedFiles& texts) {
  staged = std::make_unique<ReplacedFiles>(texts);
  const std::int32_t opened = OpenProject(path.c_str(), 0);
  if (opened && HoldsWhatIsSaved()) {
    DropChanges();
  } else if (opened) {
    NoteModified();
  }
  return opened != 0;
}

// Returns whether the files have been read or written last with just what a save would write.
bool CProjectModel::HoldsWhatIsSaved() {
  return std::ranges::all_of(MakeFileTexts(), [this](const FileText& each) {
    const std::string* const known = guard.TextOf(each.path);
    return known != nullptr && HoldSameTree(each.text, *known);
  });
}

}  // namespace tarn
