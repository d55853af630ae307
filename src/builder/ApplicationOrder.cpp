#include "builder/ApplicationOrder.h"

#include <algorithm>

#include "builder/OutputGuard.h"
#include "builder/Staleness.h"
#include "drivers/ToolManagerDriver.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Files are looked up ignoring case, so their names are compared the same way.
std::string NameToCompare(std::string_view path) {
  return path.empty() ? std::string() : FoldCase(CanonicalPath(path));
}

// Calls `onFile(path)` for the source and output of every node below the application that is built.
template <class OnFile>
void ForEachFile(const NodeTypes& types, const CXmlNode& parent, OnFile&& onFile) {
  for (int i = 0; i < parent.GetChildCount(); ++i) {
    const CXmlNode& child = *parent.GetChild(i);
    const bool isBuilt = (types.FlagsOf(child) & (kTypeBuild | kTypeInBuild)) != 0;
    if (!IsContentNode(child) || !isBuilt || IsExactlyYes(child, "Exclude")) continue;
    for (const char* name : {"Path", "OutputFile"}) {
      const char* path = child.GetAttrValue(name);
      if (path != nullptr && *path != '\0') onFile(path);
    }
    ForEachFile(types, child, onFile);
  }
}

}  // namespace

ApplicationOrder::ApplicationOrder(const NodeTypes& nodeTypes, CToolManagerDriver* toolManager,
                                   CXmlNode& project)
    : types_(nodeTypes), tools_(toolManager) {
  for (int i = 0; i < project.GetChildCount(); ++i) {
    CXmlNode& child = *project.GetChild(i);
    if ((types_.FlagsOf(child) & kTypeApplication) == 0) continue;
    Entry& entry = entries_.emplace_back();
    entry.node = &child;
    entry.output = NameToCompare(OrEmpty(child.GetAttrValue("OutputFile")));
  }
  if (entries_.size() > 1) {
    for (Entry& each : entries_) FindProducts(each);
    for (Entry& each : entries_) FindUses(each);
  }
  std::vector<const CXmlNode*> chain;
  for (Entry& each : entries_) Visit(each, chain);
}

// A tool that gets no files has none to examine, and still reports what it would write.
void ApplicationOrder::FindProducts(Entry& entry) const {
  const CXmlNode* values = FindStoredValues(*entry.node);
  const char* tool = entry.node->GetAttrValue("TranslateTool");
  if (tools_ == nullptr || values == nullptr || tool == nullptr || *tool == '\0') return;
  for (const NamedOutput& each : FindWritten(tools_->GetRunFiles(tool, "", values->ValueText()))) {
    if (each.isCertain) entry.products.push_back(each.path);
  }
}

void ApplicationOrder::FindUses(Entry& entry) {
  if ((types_.FlagsOf(*entry.node) & kTypeBuild) == 0 || IsExactlyYes(*entry.node, "Exclude")) {
    return;
  }
  struct Candidate {
    std::string path;      // canonical
    std::string fileName;  // last component of it
    CXmlNode* node;
  };
  std::vector<Candidate> candidates;
  std::string outputs;
  const auto add = [&](const Entry& maker, const std::string& path) {
    const std::string name = NameToCompare(path);
    if (name.empty() || (&maker != &entry && name == entry.output)) return;
    candidates.push_back({name, FileNameOf(name), maker.node});
    if (&maker != &entry) outputs.append(outputs.empty() ? "\"" : ",\"").append(path).append("\"");
  };
  for (const Entry& each : entries_) {
    add(each, OrEmpty(each.node->GetAttrValue("OutputFile")));
    if (&each == &entry || each.output == entry.output) continue;
    for (const std::string& path : each.products) add(each, path);
  }
  if (outputs.empty()) return;
  const auto take = [&](std::string_view path) {
    for (const Candidate& each : candidates) {
      // A quick test first: nearly all files have a different name.
      if (EndsWithNoCase(path, each.fileName) && NameToCompare(path) == each.path) {
        AddUse(entry, each.node);
      }
    }
  };
  ForEachFile(types_, *entry.node, take);
  const CXmlNode* values = FindStoredValues(*entry.node);
  const char* tool = entry.node->GetAttrValue("TranslateTool");
  if (tools_ == nullptr || values == nullptr || tool == nullptr || *tool == '\0') return;
  const std::string used = tools_->GetUsedFiles(tool, "", values->ValueText(), outputs);
  const std::vector<std::string_view> pieces = Split(used, '"');
  for (std::size_t i = 1; i < pieces.size(); i += 2) take(pieces[i]);
}

void ApplicationOrder::AddUse(Entry& entry, CXmlNode* used) {
  const auto& uses = entry.uses;
  if (std::find(uses.begin(), uses.end(), used) == uses.end()) entry.uses.push_back(used);
}

void ApplicationOrder::Visit(Entry& entry, std::vector<const CXmlNode*>& chain) {
  if (entry.state != State::New) return;
  entry.state = State::InProgress;
  chain.push_back(entry.node);
  for (const Entry& each : entries_) {
    const bool isUsed =
        std::find(entry.uses.begin(), entry.uses.end(), each.node) != entry.uses.end();
    if (!isUsed) continue;
    if (each.state == State::InProgress) ReportCycle(chain, *each.node);
    Visit(*Find(*each.node), chain);
  }
  chain.pop_back();
  entry.state = State::Done;
  order_.push_back(entry.node);
}

void ApplicationOrder::ReportCycle(const std::vector<const CXmlNode*>& chain,
                                   const CXmlNode& again) {
  if (!cycle_.empty()) return;
  for (auto each = std::find(chain.begin(), chain.end(), &again); each != chain.end(); ++each) {
    cycle_ += OrEmpty((*each)->GetAttrValue("Header")) + " -> ";
  }
  cycle_ += OrEmpty(again.GetAttrValue("Header"));
}

std::string ApplicationOrder::GetProblem() const {
  return cycle_.empty() ? cycle_
                        : "Applications that use each other's outputs can't be built: " + cycle_;
}

ApplicationOrder::Entry* ApplicationOrder::Find(const CXmlNode& node) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&node](const Entry& each) { return each.node == &node; });
  return found == entries_.end() ? nullptr : &*found;
}

const ApplicationOrder::Entry* ApplicationOrder::Find(const CXmlNode& node) const {
  return const_cast<ApplicationOrder*>(this)->Find(node);
}

const std::vector<CXmlNode*>& ApplicationOrder::GetDirectlyUsed(const CXmlNode& application) const {
  static const std::vector<CXmlNode*> kNone;
  const Entry* entry = Find(application);
  return entry == nullptr ? kNone : entry->uses;
}

std::vector<CXmlNode*> ApplicationOrder::GetUsed(const CXmlNode& application) const {
  std::vector<const CXmlNode*> open{&application};
  std::vector<const CXmlNode*> found;
  while (!open.empty()) {
    const CXmlNode* next = open.back();
    open.pop_back();
    for (const CXmlNode* each : GetDirectlyUsed(*next)) {
      if (std::find(found.begin(), found.end(), each) != found.end()) continue;
      found.push_back(each);
      open.push_back(each);
    }
  }
  std::vector<CXmlNode*> used;
  for (CXmlNode* each : order_) {
    const bool isUsed = std::find(found.begin(), found.end(), each) != found.end();
    if (isUsed && each != &application) used.push_back(each);
  }
  return used;
}

}  // namespace tarn
