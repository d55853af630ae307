#include "hosts/core/check/NodeCheck.h"

#include <algorithm>

#include "hosts/core/LogEntry.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/process/Process.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

bool IsBuilt(const CXmlNode& node) {
  return GetAttribute(&node, "Exclude") != "Yes" && !GetAttribute(&node, "TranslateTool").empty();
}

}  // namespace

void NodeCheck::Check(std::size_t number) {
  const CheckedNode& node = scope_.nodes[number];
  CheckType(node);
  if (number != 0) CheckFile(node);  // the project itself is open
  if (node.node == node.application) CheckLabel(node, number);
  if (IsBuilt(*node.node)) CheckOutput(node, number);
}

void NodeCheck::CheckType(const CheckedNode& node) {
  const std::string type = node.node->GetName();
  if (scope_.types.empty() || scope_.types.contains(FoldCase(type))) return;
  // The parser takes a conflict marker for the start of an element, and reports it as damage.
  if (type.starts_with('<')) return;
  Finding& finding = scope_.Add(FindingKind::UnknownType, node);
  finding.subject = type;
  finding.detail = finding.node.empty() ? "it" : finding.node;
}

void NodeCheck::CheckLabel(const CheckedNode& node, std::size_t number) {
  const auto [first, isNew] = labels_.try_emplace(FoldCase(LabelOf(*node.node)), number);
  if (isNew) return;
  Finding& finding = scope_.Add(FindingKind::DuplicateLabel, node);
  finding.subject = GetAttribute(scope_.nodes[first->second].node, "Path");
  finding.detail = GetAttribute(node.node, "Path");
}

void NodeCheck::CheckCycle() {
  const std::string cycle = scope_.session.FindGaps({}).cycle;
  if (cycle.empty()) return;
  const auto first = std::find_if(scope_.nodes.begin(), scope_.nodes.end(), [&](const auto& each) {
    return each.node == each.application && cycle.starts_with(LabelOf(*each.node) + " -> ");
  });
  const bool isFound = first != scope_.nodes.end();
  Finding& finding = isFound ? scope_.Add(FindingKind::ApplicationCycle, *first)
                             : scope_.Add(FindingKind::ApplicationCycle);
  finding.subject = cycle;
}

void NodeCheck::CheckFile(const CheckedNode& node) {
  const std::string resolved = GetAttribute(node.node, "Path");
  if (resolved.empty()) {
    if (scope_.NeedsFile(*node.node)) {
      const std::string label = LabelOf(*node.node);
      scope_.Add(FindingKind::MissingPath, node).subject =
          label.empty() ? "<" + node.node->GetName() + ">" : label;
    }
    return;
  }
  const std::string path = scope_.AbsolutePath(node, resolved);
  NamedPath named;
  named.text = node.writtenPath.empty() ? resolved : node.writtenPath;
  named.isResolved = node.writtenPath.empty();
  if (IsBuilt(*node.node)) named.wanted = NamedPath::Wanted::File;
  scope_.CheckPath(node, named);
  const std::string key =
      GetAttribute(node.application, "Path") + "\n" + RealName(scope_.files, path);
  if (node.application == node.node) return;
  const auto [first, isNew] = listed_.try_emplace(key, path);
  if (isNew) return;
  // Different paths to the same file can only result from a link to a folder.
  const bool isSameName = EqualNoCase(first->second, path);
  Finding& finding =
      scope_.Add(isSameName ? FindingKind::DuplicateFile : FindingKind::SameFile, node);
  finding.subject = isSameName ? path : first->second;
  if (!isSameName) finding.detail = path;
}

void NodeCheck::CheckOutput(const CheckedNode& node, std::size_t number) {
  const std::string path = scope_.AbsolutePath(node, GetAttribute(node.node, "OutputFile"));
  const auto first = scope_.outputs.find(path);
  if (first != scope_.outputs.end() && first->second != number) {
    AddDuplicateOutput(node, scope_.nodes[first->second], path);
  }
  const std::string tool = GetAttribute(node.node, "TranslateTool");
  CheckCommand(node, tool);
  if (!seenTools_.insert(FoldCase(tool)).second) return;
  const auto known = scope_.tools.find(FoldCase(tool));
  if (known == scope_.tools.end()) {
    // A tool may also be given as the path of a program.
    if (FindProgram(tool).empty()) scope_.Add(FindingKind::UnknownTool, node).subject = tool;
    return;
  }
  for (const std::string& program : known->second.programs) needed_[program].push_back(tool);
}

// Checks one node per tool and application: a missing option usually affects all of them.
void NodeCheck::CheckCommand(const CheckedNode& node, const std::string& tool) {
  const std::string application = GetAttribute(node.application, "Header");
  if (!seenCommands_.insert(application + "\n" + FoldCase(tool)).second) return;
  std::string problem =
      scope_.session.FindCommandProblem(application, GetAttribute(node.node, "OutputFile"));
  if (problem.empty() || !seenCommands_.insert(application + "\n" + problem).second) return;
  Finding& finding = scope_.Add(FindingKind::InvalidValue, node);
  finding.subject = application;
  finding.detail = std::move(problem);
}

// A file that is listed twice has already been reported as such.
void NodeCheck::AddDuplicateOutput(const CheckedNode& node, const CheckedNode& first,
                                   const std::string& output) {
  const auto fileOf = [this](const CheckedNode& each) {
    const std::string path = GetAttribute(each.node, "Path");
    return path.empty() ? path : scope_.AbsolutePath(each, path);
  };
  const std::string file = fileOf(first);
  const bool isSameFile = RealName(scope_.files, fileOf(node)) == RealName(scope_.files, file);
  if (node.application == first.application && isSameFile) return;
  Finding& finding = scope_.Add(FindingKind::DuplicateOutput, node);
  finding.subject = output;
  finding.detail = file.empty() ? LabelOf(*first.node) : file;
}

void NodeCheck::Finish() {
  CheckCycle();
  for (const auto& [program, tools] : needed_) {
    if (!FindProgram(program).empty()) continue;
    Finding& finding = scope_.Add(FindingKind::MissingProgram);
    finding.subject = program;
    for (const std::string& tool : tools) {
      finding.detail += (finding.detail.empty() ? "" : ", ") + tool;
    }
  }
}

}  // namespace tarn::host
