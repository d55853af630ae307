#include "reports/SymbolFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/text/Hash.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr const char* kKeyNames[] = {"Header", "DeclFile", "DeclLine"};

// Detects duplicates by a hash set of pointers to the symbols seen so far, which must stay alive.
class DoubleFilter {
 public:
  explicit DoubleFilter(std::size_t count) { seen_.reserve(count); }

  bool IsDouble(const CXmlNode& symbol) {
    key_.clear();
    for (const char* name : kKeyNames) {
      const char* value = symbol.GetAttrValue(name);
      if (value == nullptr) return false;
      key_ += value;
      key_ += '\n';
    }
    return !seen_.insert({HashBytes(FoldCase(key_)), &symbol}).second;
  }

 private:
  struct Seen {
    std::uint64_t hash;
    const CXmlNode* symbol;
    bool operator==(const Seen& other) const {
      return hash == other.hash &&
             std::all_of(std::begin(kKeyNames), std::end(kKeyNames), [&](const char* name) {
               return EqualNoCase(symbol->GetAttrValue(name), other.symbol->GetAttrValue(name));
             });
    }
  };
  struct HashOfSeen {
    std::size_t operator()(const Seen& each) const noexcept { return each.hash; }
  };

  std::string key_;  // key of the current symbol
  std::unordered_set<Seen, HashOfSeen> seen_;
};

}  // namespace

std::unique_ptr<CXmlNode> ReadSymbols(const std::string& text) {
  auto root = std::make_unique<CXmlNode>();
  CXmlParseInfo info;
  root->Load(text, info);
  // Detach from the last to the first, which is constant time per child.
  std::vector<std::unique_ptr<CXmlNode>> symbols;
  for (int i = root->GetChildCount() - 1; i >= 0; --i) {
    symbols.push_back(root->DetachChild(root->GetChild(i)));
  }
  const bool keepsAll = root->GetAttr("dwarf") != nullptr;
  DoubleFilter filter(keepsAll ? 0 : symbols.size());
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
