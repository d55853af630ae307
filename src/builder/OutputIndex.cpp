#include "builder/OutputIndex.h"

#include "builder/Staleness.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

CXmlNode* OutputIndex::Find(std::string_view outputFile) const {
  const auto found = nodes_.find(FoldCase(outputFile));
  return found == nodes_.end() ? nullptr : found->second;
}

CXmlNode* OutputIndex::FindAmongSimilar(std::string_view outputFile) const {
  if (exactNodes_.empty()) return nullptr;
  const auto exact = exactNodes_.find(std::string(outputFile));
  return exact == exactNodes_.end() ? nullptr : exact->second;
}

void OutputIndex::Add(CXmlNode& node, CXmlNode& start) {
  if (const char* outputFile = node.GetAttrValue("OutputFile")) {
    CXmlNode* hiddenBy = nullptr;
    for (CXmlNode* above = &node; hiddenBy == nullptr && above != &start;) {
      above = above->GetParent();
      const char* value = above->GetAttrValue("OutputFile");
      if (value != nullptr && EqualNoCase(value, outputFile)) hiddenBy = above;
    }
    if (hiddenBy == nullptr) {
      AddOutput(node, outputFile);
    } else if (*outputFile != '\0') {
      shared_.emplace_back(hiddenBy, &node);
    }
  }
  for (int i = 0; i < node.GetChildCount(); ++i) Add(*node.GetChild(i), start);
}

void OutputIndex::AddOutput(CXmlNode& node, const char* outputFile) {
  const auto [entry, isNew] = nodes_.try_emplace(FoldCase(outputFile), &node);
  if (isNew) return;
  const std::string other = OrEmpty(entry->second->GetAttrValue("OutputFile"));
  if (other != outputFile) {
    exactNodes_.try_emplace(other, entry->second);
    exactNodes_[outputFile] = &node;
  } else if (*outputFile != '\0') {
    shared_.emplace_back(entry->second, &node);
    if (!exactNodes_.empty()) exactNodes_[outputFile] = &node;
  }
  entry->second = &node;
}

bool IsBuilt(const CXmlNode& node, const CXmlNode& application) {
  const char* tool = node.GetAttrValue("TranslateTool");
  if (tool == nullptr || *tool == '\0') return false;
  for (const CXmlNode* level = &node; level != nullptr; level = level->GetParent()) {
    if (IsExactlyYes(*level, "Exclude")) return false;
    if (level == &application) return true;
  }
  return true;
}

namespace {

struct OutputOwner {
  const CXmlNode* node = nullptr;
  const CXmlNode* application = nullptr;
};

void FindOutputsOfSeveral(const CXmlNode& node, const CXmlNode& application,
                          std::unordered_map<std::string_view, OutputOwner>& owners,
                          const OnSharedOutput& onShared) {
  const char* const output = node.GetAttrValue("OutputFile");
  if (output != nullptr && *output != '\0' && IsBuilt(node, application)) {
    const OutputOwner& owner =
        owners.try_emplace(output, OutputOwner{&node, &application}).first->second;
    if (owner.application != &application) {
      const bool isSameSource =
          OrEmpty(node.GetAttrValue("Path")) == OrEmpty(owner.node->GetAttrValue("Path"));
      onShared(*owner.application, application, {owner.node, &node, isSameSource});
    }
  }
  for (int i = 0; i < node.GetChildCount(); ++i) {
    const CXmlNode& child = *node.GetChild(i);
    if (IsContentNode(child)) FindOutputsOfSeveral(child, application, owners, onShared);
  }
}

}  // namespace

void FindOutputsOfSeveral(const std::vector<CXmlNode*>& applications,
                          const OnSharedOutput& onShared) {
  std::unordered_map<std::string_view, OutputOwner> owners;
  for (const CXmlNode* each : applications) {
    FindOutputsOfSeveral(*each, *each, owners, onShared);
  }
}

std::string DescribeSharedOutput(const SharedOutput& shared) {
  return OrEmpty(shared.first->GetAttrValue("Path")) + " and " +
         OrEmpty(shared.second->GetAttrValue("Path")) + " have the same output file " +
         OrEmpty(shared.second->GetAttrValue("OutputFile")) +
         "; set Build.OutputFile of one of them to a different name";
}

}  // namespace tarn
