#include "reports/SymbolFile.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/text/Text.h"

namespace tarn {

namespace {

// Remembers what it has seen.
class DoubleFilter {
 public:
  bool IsDouble(const CXmlNode& symbol) {
    std::string key;
    for (const char* name : {"Header", "DeclFile", "DeclLine"}) {
      const char* value = symbol.GetAttrValue(name);
      if (value == nullptr) return false;
      key += value;
      key += '\n';
    }
    return !seen.insert(FoldCase(key)).second;
  }

 private:
  std::unordered_set<std::string> seen;
};

}  // namespace

std::unique_ptr<CXmlNode> ReadSymbols(const std::string& text) {
  auto root = std::make_unique<CXmlNode>();
  CXmlParseInfo info;
  root->Load(text, info);
  // The last first, as children come out of a node at no cost.
  std::vector<std::unique_ptr<CXmlNode>> symbols;
  for (int i = root->GetChildCount() - 1; i >= 0; --i) {
    symbols.push_back(root->DetachChild(root->GetChild(i)));
  }
  const bool keepsAll = root->GetAttr("dwarf") != nullptr;
  DoubleFilter filter;
  for (auto symbol = symbols.rbegin(); symbol != symbols.rend(); ++symbol) {
    if ((*symbol)->GetType() != XmlElement || EqualNoCase((*symbol)->NameView(), "Def")) continue;
    if (!keepsAll && filter.IsDouble(**symbol)) continue;
    for (int i = (*symbol)->GetChildCount() - 1; i >= 0; --i) {
      (*symbol)->RemoveChild((*symbol)->GetChild(i));
    }
    root->AppendChild(std::move(*symbol));
  }
  return root;
}

}  // namespace tarn
