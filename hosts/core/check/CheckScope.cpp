#include "hosts/core/check/CheckScope.h"

#include <algorithm>
#include <iterator>

#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

// Returns "Section.Property" for a macro such as "$(Linker.MapFile)"; an empty string for any other
// macro.
std::string OptionOfMacro(const std::string& macro) {
  const bool isPlain = macro.starts_with("$(") && macro.ends_with(")");
  OptionKey key;
  if (!isPlain || !ParseOptionKey(macro.substr(2, macro.size() - 3), key)) return {};
  return FoldCase(key.section + "." + key.name);
}

// Explains that names differing from the path only in letter case exist; their common prefix with
// the path is left out.
std::string DescribeSimilar(const std::string& path, const std::vector<std::string>& similar) {
  std::size_t common = path.size();
  for (const std::string& each : similar) {
    const auto end = std::mismatch(path.begin(), path.end(), each.begin(), each.end()).first;
    common = std::min(common, static_cast<std::size_t>(end - path.begin()));
  }
  const std::size_t start = path.substr(0, common).rfind(kSeparator) + 1;
  std::string text;
  for (const std::string& each : similar) {
    text += (text.empty() ? "" : " or ") + each.substr(std::min(start, each.size()));
  }
  return text.empty() ? text : "could be " + text;
}

}  // namespace

std::string LabelOf(const CXmlNode& node) {
  const std::string label = GetAttribute(&node, "Header");
  return label.empty() ? FileNameOf(GetAttribute(&node, "Path")) : label;
}

std::string ConfigurationOf(const CheckedNode& node) {
  const std::string name = GetAttribute(node.application, "Config");
  return name.empty() ? kStandardConfiguration : name;
}

CheckScope::CheckScope(BuildSession& buildSession, FileSystem& fileSystem)
    : session(buildSession),
      files(fileSystem),
      options(session.Options().ListProperties("")),
      tree_(ParseXml(session.Inspector().GetTree())) {
  ReadTools();
  ReadTypes();
  AddNodes();
}

void CheckScope::ReadTools() {
  const auto list = ParseXml(session.Tools().ListTools());
  if (list == nullptr) return;
  for (const CXmlNode* element : list->GetChildren()) {
    KnownTool& tool = tools[FoldCase(GetAttribute(element, "Header"))];
    for (const CXmlNode* each : element->GetChildren()) {
      const std::string name = GetAttribute(each, "Header");
      if (each->NameView() == "Makes") madeByTools.insert(OptionOfMacro(name));
      const bool isNeeded = !EqualNoCase(GetAttribute(each, "Optional"), "Yes");
      if (each->NameView() == "Program" && isNeeded) tool.programs.push_back(name);
    }
  }
}

void CheckScope::ReadTypes() {
  const auto text = files.ReadWholeFile(session.GetFolders().ConfigFile(files));
  const auto root = text ? ParseXml(*text) : nullptr;
  const CXmlNode* list = root == nullptr ? nullptr : root->FindChild("Types");
  if (list == nullptr) return;
  for (const CXmlNode* each : list->GetChildren()) {
    if (each->GetType() != XmlElement) continue;
    const std::string name = FoldCase(each->NameView());
    types.insert(name);
    const bool isFile = EqualNoCase(GetAttribute(each, "Path"), "Yes") &&
                        EqualNoCase(GetAttribute(each, "IsLeaf"), "Yes");
    if (isFile) fileTypes.insert(name);
  }
}

bool CheckScope::NeedsFile(const CXmlNode& node) const {
  return fileTypes.contains(FoldCase(node.NameView()));
}

void CheckScope::AddNodes() {
  if (tree_ == nullptr) return;
  CheckedNode project;
  project.node = tree_.get();
  project.file = project.listedIn = session.GetProjectPath();
  project.elements = ElementsOf(project.file);
  CheckedNode outside = project;
  std::size_t after = 0;
  Locate(project, outside, after);
  // Depth-first traversal with an explicit stack, because trees may be deep.
  std::vector<CheckedNode> pending = {std::move(project)};
  while (!pending.empty()) {
    const CheckedNode node = std::move(pending.back());
    pending.pop_back();
    AddNode(node);
    std::vector<CheckedNode> children = ChildrenOf(node);
    std::move(children.rbegin(), children.rend(), std::back_inserter(pending));
  }
}

std::vector<CheckedNode> CheckScope::ChildrenOf(const CheckedNode& parent) {
  std::vector<CheckedNode> children;
  std::size_t after = 0;
  for (const CXmlNode* child : parent.node->GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    CheckedNode node = parent;
    node.node = child;
    node.place += (parent.place.empty() ? "" : "/") + std::to_string(children.size());
    node.listedIn = parent.file;
    node.element = 0;
    node.line = 0;
    node.writtenPath.clear();
    Locate(node, parent, after);
    if (parent.node == tree_.get()) {
      node.application = child;
      EnterFile(node);
    }
    children.push_back(std::move(node));
  }
  return children;
}

void CheckScope::Locate(CheckedNode& node, const CheckedNode& parent, std::size_t& after) {
  if (parent.elements == nullptr) return;
  const std::size_t found = parent.elements->FindChild(parent.element, node.node->NameView(),
                                                       GetAttribute(node.node, "Header"), after);
  if (found == 0) return;
  node.element = found;
  node.line = (*parent.elements)[found].line;
  node.writtenPath = (*parent.elements)[found].path;
}

// The contents of an application are in a separate file.
void CheckScope::EnterFile(CheckedNode& application) {
  if (GetAttribute(application.node, "Extern").empty()) return;
  application.file = AbsolutePath(application, GetAttribute(application.node, "Extern"));
  application.elements = ElementsOf(application.file);
  application.element = 0;
  if (application.elements == nullptr) return;
  const std::vector<std::size_t>& roots = (*application.elements)[0].children;
  if (!roots.empty()) application.element = roots.front();
}

void CheckScope::AddNode(const CheckedNode& node) {
  const std::size_t number = nodes.size();
  nodes.push_back(node);
  const std::string output = GetAttribute(node.node, "OutputFile");
  if (!output.empty() && !GetAttribute(node.node, "TranslateTool").empty()) {
    outputs.try_emplace(AbsolutePath(node, output), number);
    outputs.try_emplace(AbsolutePath(node, WithoutStamp(output)), number);
  }
}

const FileElements* CheckScope::ElementsOf(const std::string& path) {
  auto [known, isNew] = elementsByFile_.try_emplace(path);
  if (isNew) {
    const auto text = files.ReadWholeFile(path);
    if (text) known->second = std::make_unique<FileElements>(*text);
  }
  return known->second.get();
}

Finding& CheckScope::Add(FindingKind kind) {
  Finding& finding = findings.emplace_back();
  finding.kind = kind;
  return finding;
}

Finding& CheckScope::Add(FindingKind kind, const CheckedNode& node) {
  Finding& finding = Add(kind);
  finding.file = node.listedIn;
  finding.line = node.line;
  if (node.application != nullptr) {
    finding.application = LabelOf(*node.application);
    finding.applicationPath = GetAttribute(node.application, "Path");
  }
  finding.node = LabelOf(*node.node);
  finding.place = node.place;
  finding.hasPlace = true;
  return finding;
}

std::string CheckScope::AbsolutePath(const CheckedNode& node, const std::string& path) const {
  return AbsoluteIn(node.application == node.node ? nullptr : node.application, path);
}

std::string CheckScope::OptionPath(const CheckedNode& node, const std::string& path) const {
  return AbsoluteIn(node.application, path);
}

std::string CheckScope::AbsoluteIn(const CXmlNode* application, const std::string& path) const {
  const std::string native = ToNativeSeparators(path);
  if (!IsRelativePath(native)) return files.Canonical(native);
  std::string folder = FolderOf(session.GetProjectPath());
  if (application != nullptr) {
    const std::string own = ToNativeSeparators(GetAttribute(application, "Path"));
    folder = FolderOf(IsRelativePath(own) ? JoinPath(folder, own) : own);
  }
  return files.Canonical(JoinPath(folder, native));
}

void CheckScope::CheckPath(const CheckedNode& node, const NamedPath& named) {
  const auto add = [&](FindingKind kind, const std::string& subject) -> Finding& {
    Finding& finding = Add(kind, node);
    finding.subject = subject;
    finding.option = named.option;
    return finding;
  };
  if (HasDrive(named.text) && !files.Exists(named.text)) {
    add(FindingKind::UnreachableDrive, named.text);
    return;
  }
  if (!named.isResolved && !IsRelativePath(named.text)) add(FindingKind::AbsolutePath, named.text);
  const bool isOwn = named.option.empty();
  const std::string path = isOwn ? AbsolutePath(node, named.text) : OptionPath(node, named.text);
  const Result<bool> exists = files.CheckExists(path);
  if (!exists) {
    add(FindingKind::UnreadableFile, path).detail = exists.GetError().text;
    return;
  }
  if (!*exists) {
    if (!IsFoundElsewhere(node, path)) {
      add(named.ifMissing, path).detail = DescribeSimilar(path, files.SimilarNames(path));
    }
    return;
  }
  const std::string onDisk = files.NameOnDisk(path);
  if (onDisk != path && EqualNoCase(onDisk, path)) {
    add(FindingKind::LetterCase, path).detail = onDisk;
  }
  if (named.wanted == NamedPath::Wanted::Folder) {
    if (!files.IsFolder(path)) add(FindingKind::NotAFolder, path);
  } else if (named.wanted == NamedPath::Wanted::File) {
    if (!files.Examine(path)) {
      add(FindingKind::NotAFile, path);
    } else if (!files.CanRead(path)) {
      const Result<std::string> text = files.ReadWholeFile(path);
      add(FindingKind::UnreadableFile, path).detail = text ? "" : text.GetError().text;
    }
  }
}

// Returns true if the file is the output of a different node, or is found in one of the additional
// source folders.
bool CheckScope::IsFoundElsewhere(const CheckedNode& node, const std::string& path) {
  if (outputs.contains(path)) return true;
  if (node.application == nullptr) return false;
  const std::string folders = ValuesOf(node).Get("", "Directories", "AddSrcPaths");
  for (const std::string_view each : Split(folders, ';')) {
    if (Trim(each).empty()) continue;
    const std::string folder = OptionPath(node, std::string(Trim(each)));
    const Result<bool> exists = files.CheckExists(JoinPath(folder, FileNameOf(path)));
    if (exists && *exists) return true;
  }
  return false;
}

const OptionValues& CheckScope::ValuesOf(const CheckedNode& node) {
  std::string output = GetAttribute(node.node, "OutputFile");
  if (output.empty() || GetAttribute(node.node, "TranslateTool").empty()) {
    output = GetAttribute(node.application, "OutputFile");
  }
  const std::string application = GetAttribute(node.application, "Path");
  auto [known, isNew] = valuesByOutput_.try_emplace(application + "\n" + output);
  if (isNew) {
    const auto input = ParseXml(session.Inspector().GetToolInput(application, output));
    const CXmlNode* values = input == nullptr ? nullptr : input->FindChild("#CDATA");
    if (values != nullptr) known->second = OptionValues::FromText(values->GetValue());
  }
  return known->second;
}

}  // namespace tarn::host
