// Adding existing files and applications to the tree.

#include "project/ItemAdder.h"

#include <vector>

#include "output/MessageTable.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/FileAccess.h"
#include "project/TreeSearch.h"
#include "widgets/Dialogs.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr const char* kSourceList = "DebugSrcFiles";

bool HasControlBytes(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < 0x20) return true;
  }
  return false;
}

// Appends the type's first extension to `path` unless it has one of them already. Returns false if
// `path` is unchanged.
bool AppendExtension(const CXmlNode& type, std::string& path) {
  const std::string extensions = OrEmpty(type.GetAttrValue("Extension"));
  const std::string own = ExtensionOf(path);
  std::string first;
  for (const std::string_view each : Split(extensions, ';')) {
    if (each.empty()) continue;
    const std::string extension = "." + std::string(each);
    if (EqualNoCase(extension, own)) return false;
    if (first.empty()) first = extension;
  }
  path += first;
  return !first.empty();
}

// Converts "c;h" to "*.c;*.h".
std::string PatternsOf(std::string_view extensions) {
  std::string patterns;
  for (const std::string_view each : Split(extensions, ';')) {
    if (each.empty()) continue;
    if (!patterns.empty()) patterns += ';';
    patterns.append("*.").append(each);
  }
  return patterns;
}

// Returns true if a child refers to this file under any spelling of its name.
bool HoldsFile(FileSystem& files, const CXmlNode& parent, const std::string& path) {
  for (int i = 0; i < parent.GetChildCount(); ++i) {
    const char* own = parent.GetChild(i)->GetAttrValue("Path");
    if (own != nullptr && IsSameName(files, own, path)) return true;
  }
  return false;
}

// Returns true if the tool of a node makes the file, which then need not exist.
bool IsMade(FileSystem& files, const CXmlNode& parent, const std::string& path) {
  for (int i = 0; i < parent.GetChildCount(); ++i) {
    const CXmlNode& child = *parent.GetChild(i);
    const std::string output = WithoutStamp(OrEmpty(child.GetAttrValue("OutputFile")));
    const bool isSame = !output.empty() && IsSameName(files, output, path);
    if (isSame || IsMade(files, child, path)) return true;
  }
  return false;
}

std::string FilterOf(int row, const std::string& patterns) {
  return FormatMessageText("%s (%s)|%s|",
                           std::vector<std::string>{GetMessageText(row), patterns, patterns});
}

}  // namespace

std::int32_t ItemAdder::AddExistingItem(const char* itempath, const char* itemtype) {
  if (!services_.build.CanStartOperation()) return 0;
  if (EqualNoCase(OrEmpty(itemtype), kSourceList)) return ReplaceSourceList(OrEmpty(itempath));
  return AddItem(OrEmpty(itempath), itemtype, false);
}

// `isJustMade`: the application file was written for this call and must be used unchanged.
std::int32_t ItemAdder::AddItem(const std::string& itempath, const char* itemtype,
                                bool isJustMade) {
  // Without a project, no file would contain the item.
  if (!state_.isOpen) return 0;
  if (HasControlBytes(itempath)) {
    services_.output->WriteMessage(kRowCannotRead, {itempath}, "its name has control characters");
    return 0;
  }
  if (state_.isDefaultProject != 0 && state_.activeApplication != nullptr) {
    const TreeUpdate update(views_);
    state_.RemoveContentChildren(*state_.activeApplication);
  }
  CXmlNode* target = LoadAddTarget();
  if (target == nullptr) return 0;
  if (itempath.empty()) {
    BrowseAndAddFiles();
    return 1;
  }
  if (HoldsFile(files_, *target, itempath)) return 1;
  const CXmlNode* type = TypeOfItem(itempath, itemtype);
  if (type == nullptr) return 0;

  auto node = CXmlNode::CreateNode(type->NameView());
  const bool isApplication = (types_.FlagsOf(*node) & kTypeApplication) != 0;
  const std::string base = isApplication ? state_.projectFolder : paths_.PathBaseBelow(*target);
  std::string path;
  paths_.MakeAbsolutePath(itempath, path, base.empty() ? nullptr : base.c_str());
  if (isApplication && !isJustMade && AppendExtension(*type, path)) {
    const std::uint64_t epoch = state_.treeGeneration;
    publisher_.SetCurrentNode(state_.projectRoot.get());
    if (state_.treeGeneration != epoch) return 0;
    target = state_.projectRoot.get();
    if (!CheckFileAccess(files_, path, kMustExist, *services_.output)) {
      return AddNewItem(path.c_str(), itemtype);
    }
  }
  if (HoldsFile(files_, *target, path) || (isApplication && HoldsApplicationOf(path))) return 1;
  const std::uint64_t epoch = state_.treeGeneration;
  FillItem(*node, path);
  if (state_.treeGeneration != epoch) return 0;
  return PlaceItem(*target, std::move(node));
}

// Returns the node that new items are added to, or nullptr if there is none or a handler removed
// the tree. Loads its options, because they determine what it may contain.
CXmlNode* ItemAdder::LoadAddTarget() {
  CXmlNode* target = state_.GetCurrentNode();
  while (target != nullptr) {
    const std::uint64_t epoch = state_.treeGeneration;
    publisher_.LoadNodeOptions(target, false);
    if (state_.treeGeneration != epoch) return nullptr;
    if ((types_.FlagsOf(*target) & kTypeIsLeaf) == 0) return target;
    target = target->GetParent();
  }
  return nullptr;
}

const CXmlNode* ItemAdder::TypeOfItem(const std::string& path, const char* itemtype) {
  CXmlNode* named = nullptr;
  FindChildNode(itemtype, nullptr, &types_.GetRoot(), named);
  if (named != nullptr) return named;
  const CXmlNode* byExtension = extensions_.Find(path);
  return byExtension != nullptr ? byExtension : types_.GetRoot().GetChild(0);
}

// Applications are compared by file identity, however their paths are written.
bool ItemAdder::HoldsApplicationOf(const std::string& path) const {
  const std::string wanted = files_.Canonical(path);
  for (int i = 0; i < state_.projectRoot->GetChildCount(); ++i) {
    const CXmlNode& child = *state_.projectRoot->GetChild(i);
    std::string full;
    if ((types_.FlagsOf(child) & kTypeApplication) != 0 &&
        paths_.MakeAbsolutePath(OrEmpty(child.GetAttrValue("Path")), full, nullptr) &&
        IsSameName(files_, files_.Canonical(full), wanted)) {
      return true;
    }
  }
  return false;
}

void ItemAdder::FillItem(CXmlNode& node, const std::string& path) {
  const std::string title = SplitPath(path).title;
  WriteItemPaths(node, path);
  if ((types_.FlagsOf(node) & kTypeApplication) != 0) {
    // An existing file that can't be read must not be overwritten with an empty node.
    if (!loader_.LoadTreeFile(node, path) && files_.Exists(path)) guard_.Protect(path);
    node.SetAttrValue("Header", title);
    WriteItemPaths(node, path);
    return;
  }
  const Result<bool> exists = files_.CheckExists(path);
  Status made = exists ? Status() : exists.GetError();
  if (exists && !*exists) {
    const bool isMade = IsMade(files_, *state_.projectRoot, path);
    if (!isMade) made = files_.WriteOwnFile(path, "");
  }
  if (!made && (!exists || files_.ExamineLink(path))) {
    services_.output->WriteMessage(kRowCannotSave, {path}, made.GetError().text);
  } else if (!made) {
    CheckFileAccess(files_, path, kMustBeWritable, *services_.output);
  }
  const bool isProject = (types_.FlagsOf(node) & kTypeProject) != 0;
  node.SetAttrValue("Header", isProject ? title : FileNameOf(path));
}

void ItemAdder::WriteItemPaths(CXmlNode& node, const std::string& path) const {
  const std::uint32_t flags = types_.FlagsOf(node);
  if ((flags & kTypeExtern) != 0) node.SetAttrValue("Extern", path);
  if ((flags & kTypePath) != 0) node.SetAttrValue("Path", path);
}

std::int32_t ItemAdder::PlaceItem(CXmlNode& target, std::unique_ptr<CXmlNode> node) {
  const std::uint64_t opened = state_.projectGeneration;
  state_.MarkModified();
  CXmlNode* const added = editor_.AttachNode(target, std::move(node), TreeEditor::Opens::Yes);
  if (added != nullptr) {
    const std::uint64_t epoch = state_.treeGeneration;
    if ((types_.FlagsOf(*added) & kTypeApplication) != 0) publisher_.SetActiveApplication(added);
    publisher_.SetCurrentNode(added);
    if (state_.treeGeneration == epoch) publisher_.LoadNodeOptions(added, true);
  }
  if (state_.projectGeneration != opened) return 0;
  publisher_.RunAutoDebugStep();
  return 1;
}

// The files that a debugger found become the content of an application that cannot be built.
std::int32_t ItemAdder::ReplaceSourceList(const std::string& lines) {
  if (lines.empty() || state_.activeApplication == nullptr) return 0;
  const std::uint32_t flags = types_.FlagsOf(*state_.activeApplication);
  if ((flags & (kTypeDebug | kTypeAutoDebug | kTypeBuild)) != kTypeDebug) return 0;
  const TreeUpdate update(views_);
  state_.RemoveContentChildren(*state_.activeApplication);
  const std::vector<std::string_view> list = Split(lines, '\n');
  for (auto path = list.rbegin(); path != list.rend(); ++path) {
    std::string_view line = *path;
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty()) continue;
    auto node = CXmlNode::CreateNode("NodeText");
    node->AddAttr("Path", line);
    node->AddAttr("Header", line);
    node->AddAttr("Marker", "-1");
    node->AddAttr("OutputFile", "");
    node->AddAttr("sate", "2");
    state_.activeApplication->AppendChild(std::move(node));
  }
  state_.MarkTreeChanged();
  state_.MarkStructureChanged();
  return 1;
}

std::int32_t ItemAdder::BrowseAndAddFiles() {
  if (!services_.build.CanStartOperation()) return 0;
  const CXmlNode* holder = state_.GetCurrentNode();
  if (holder == nullptr) return 0;
  if ((types_.FlagsOf(*holder) & kTypeProject) == 0) holder = state_.activeApplication;

  std::string filePatterns;
  std::string applicationPatterns;
  for (int i = 0; i < types_.GetRoot().GetChildCount(); ++i) {
    const CXmlNode& type = *types_.GetRoot().GetChild(i);
    const std::uint32_t flags = types_.FlagsOf(type);
    if ((flags & kTypeProject) != 0 || !types_.CanContain(holder, &type)) continue;
    std::string endings =
        services_.propertyManager->GetPropertyValue("Target", "Internal", type.GetName() + "-Ext");
    if (endings.empty()) endings = OrEmpty(type.GetAttrValue("Extension"));
    const std::string patterns = PatternsOf(endings);
    std::string& list = (flags & kTypeApplication) != 0 ? applicationPatterns : filePatterns;
    if (patterns.empty() || list.find(patterns) != std::string::npos) continue;
    if (!list.empty()) list += ';';
    list += patterns;
  }

  FileQuestion question;
  if (!filePatterns.empty() || applicationPatterns.empty()) {
    question.filter += FilterOf(kRowFilterFiles, filePatterns);
  }
  if (!applicationPatterns.empty()) {
    question.filter += FilterOf(kRowFilterApplications, applicationPatterns);
  }
  question.folder = state_.lastBrowseFolder;
  question.multiple = true;
  const std::vector<std::string> chosen = ChooseFiles(services_.mainframeHandle, question);
  if (chosen.empty()) return 0;

  const TreeUpdate update(views_);
  std::int32_t result = 1;
  for (const std::string& path : chosen) result &= AddExistingItem(path.c_str(), nullptr);
  state_.lastBrowseFolder = chosen.size() > 1 ? FolderOf(chosen.front()) : chosen.front();
  return result;
}

}  // namespace tarn
