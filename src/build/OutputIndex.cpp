#include "build/OutputIndex.h"

#include "platform/text/Text.h"

namespace tarn {

CXmlNode* OutputIndex::Find(std::string_view outputFile) const {
  const auto found = nodes.find(FoldCase(outputFile));
  return found == nodes.end() ? nullptr : found->second;
}

CXmlNode* OutputIndex::FindAmongSimilar(std::string_view outputFile) const {
  if (exactNodes.empty()) return nullptr;
  const auto exact = exactNodes.find(std::string(outputFile));
  return exact == exactNodes.end() ? nullptr : exact->second;
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
      shared.emplace_back(hiddenBy, &node);
    }
  }
  for (int i = 0; i < node.GetChildCount(); ++i) Add(*node.GetChild(i), start);
}

void OutputIndex::AddOutput(CXmlNode& node, const char* outputFile) {
  const auto [entry, isNew] = nodes.try_emplace(FoldCase(outputFile), &node);
  if (isNew) return;
  const std::string other = TextOf(entry->second->GetAttrValue("OutputFile"));
  if (other != outputFile) {
    exactNodes.try_emplace(other, entry->second);
    exactNodes[outputFile] = &node;
  } else if (*outputFile != '\0') {
    shared.emplace_back(entry->second, &node);
    if (!exactNodes.empty()) exactNodes[outputFile] = &node;
  }
  entry->second = &node;
}

std::string DescribeSharedOutput(const SharedOutput& shared) {
  return TextOf(shared.first->GetAttrValue("Path")) + " and " +
         TextOf(shared.second->GetAttrValue("Path")) + " have the same output file " +
         TextOf(shared.second->GetAttrValue("OutputFile")) +
         "; set Build.OutputFile of one of them to another name";
}

}  // namespace tarn
