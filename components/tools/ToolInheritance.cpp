#include "components/tools/ToolInheritance.h"

#include <algorithm>
#include <array>

#include "components/tools/FileList.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// Attributes that control the merge; the result has none of them.
constexpr std::array<std::string_view, 4> kMergeAttributes{"Id", "After", "Before", "Remove"};
constexpr std::array<std::string_view, 3> kToolAttributes{"Base", "Abstract", "Prefix"};

template <class Names, class Name>
bool Contains(const Names& names, const Name& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

void ReplaceAll(std::string& text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

std::string NameOf(const CXmlNode& tool) {
  return OrEmpty(tool.GetAttrValue("Name"));
}

// Applies layers, one after the other, to an element.
class LayerMerger {
 public:
  // The first error is appended to `error`.
  explicit LayerMerger(std::string& error) : error_(error) {}

  void Merge(CXmlNode& into, const CXmlNode& layer) {
    for (const CXmlAttr& each : layer.Attributes()) {
      std::string value(each.ValueView());
      ReplaceAll(value, "$(Base)", OrEmpty(into.GetAttrValue(each.NameView())));
      into.SetAttrValue(each.NameView(), value);
    }
    Children children{into, into.GetChildren()};
    for (const CXmlNode* child : layer.GetChildren()) {
      if (child->GetType() == XmlElement) MergeChild(children, *child);
    }
  }

 private:
  using Nodes = std::vector<CXmlNode*>;

  // The children of an element to which a layer is being applied.
  struct Children {
    CXmlNode& parent;
    Nodes inherited;                 // those that earlier layers have added
    const CXmlNode* next = nullptr;  // an element without a position is inserted before it

    const CXmlNode* After(const CXmlNode& child) const {
      const Nodes all = parent.GetChildren();
      const auto found = std::find(all.begin(), all.end(), &child);
      return found == all.end() || found + 1 == all.end() ? nullptr : *(found + 1);
    }
  };

  void Fail(const CXmlNode& node, const std::string& reason) {
    if (error_.empty()) error_ = node.GetName() + ": " + reason;
  }

  // Returns the attribute that identifies elements of this name; nullptr if there is only one.
  static const char* KeyOf(std::string_view element) {
    if (element == "Env") return "Name";
    if (element == "Sum") return "Label";
    const bool isSingle = element == "Size" || element == "Globals" || element == "Helpers";
    return isSingle ? nullptr : "Id";
  }

  static Nodes FindInherited(const Children& children, const CXmlNode& child) {
    const char* key = KeyOf(child.NameView());
    const std::string wanted = key == nullptr ? "" : OrEmpty(child.GetAttrValue(key));
    Nodes same;
    if (key != nullptr && wanted.empty()) return same;
    for (CXmlNode* each : children.inherited) {
      if (each->NameView() != child.NameView()) continue;
      if (key == nullptr || OrEmpty(each->GetAttrValue(key)) == wanted) same.push_back(each);
    }
    return same;
  }

  // Sets the position that `After` or `Before` names. Returns false if there is neither.
  bool FindPosition(Children& children, const CXmlNode& child) {
    for (const char* attribute : {"After", "Before"}) {
      const char* id = child.GetAttrValue(attribute);
      if (id == nullptr) continue;
      Nodes found;
      for (CXmlNode* each : children.parent.GetChildren()) {
        if (OrEmpty(each->GetAttrValue("Id")) == id) found.push_back(each);
      }
      if (found.empty()) {
        Fail(child, "no element has the Id " + std::string(id));
      } else {
        children.next = *attribute == 'A' ? children.After(*found.back()) : found.front();
      }
      return true;
    }
    return false;
  }

  void MergeChild(Children& children, const CXmlNode& child) {
    const Nodes same = FindInherited(children, child);
    if (child.NameView() == "Place" && OrEmpty(child.GetAttrValue("Id")).empty()) {
      Fail(child, "needs an Id");
    }
    const std::string remove = OrEmpty(child.GetAttrValue("Remove"));
    if (EqualNoCase(remove, "Yes")) {
      if (same.empty()) Fail(child, "nothing to remove");
      for (const CXmlNode* each : same) Remove(children, each);
    } else if (!remove.empty() && !EqualNoCase(remove, "No")) {
      Fail(child, "Remove can't be " + remove);
    } else if (same.size() > 1) {
      Fail(child, "several elements have the Id " + OrEmpty(child.GetAttrValue("Id")));
    } else if (same.empty()) {
      Add(children, child);
    } else {
      Change(children, *same.front(), child);
    }
  }

  static void Remove(Children& children, const CXmlNode* old) {
    children.next = children.After(*old);
    std::erase(children.inherited, old);
    children.parent.RemoveChild(old);
  }

  void Change(Children& children, CXmlNode& old, const CXmlNode& child) {
    Merge(old, child);
    if (FindPosition(children, child) && children.next != &old) {
      children.parent.InsertChildBefore(children.parent.DetachChild(&old), children.next);
    }
    // The order matters only among elements with an Id.
    if (child.GetAttr("Id") != nullptr) children.next = children.After(old);
  }

  void Add(Children& children, const CXmlNode& child) {
    FindPosition(children, child);
    auto copy = CXmlNode::CreateNode(child.NameView());
    Merge(*copy, child);
    children.parent.InsertChildBefore(std::move(copy),
                                      IsLine(child) ? FirstLine(children) : children.next);
  }

  static bool IsLine(const CXmlNode& node) { return node.NameView() == "Line"; }

  // The first line that matches decides, so the lines of a later layer come first.
  static const CXmlNode* FirstLine(const Children& children) {
    const auto isLine = [](const CXmlNode* each) { return IsLine(*each); };
    const auto found = std::find_if(children.inherited.begin(), children.inherited.end(), isLine);
    return found == children.inherited.end() ? nullptr : *found;
  }

  std::string& error_;
};

// Removes what only the merge needs, and inserts the prefix of the programs.
void Finish(CXmlNode& node, const std::string& prefix) {
  std::vector<const CXmlAttr*> unneeded;
  for (CXmlAttr& each : node.Attributes()) {
    if (Contains(kMergeAttributes, each.NameView())) {
      unneeded.push_back(&each);
    } else if (each.ValueView().find("$(Prefix)") != std::string_view::npos) {
      std::string value(each.ValueView());
      ReplaceAll(value, "$(Prefix)", prefix);
      each.SetValue(value);
    }
  }
  for (const CXmlAttr* each : unneeded) node.RemoveAttr(each);
  for (const CXmlNode* child : node.GetChildren()) {
    if (child->NameView() == "Place") node.RemoveChild(child);
  }
  for (CXmlNode* child : node.GetChildren()) Finish(*child, prefix);
}

}  // namespace

void ToolInheritance::Add(const CXmlNode& tool) {
  byName_[FoldCase(NameOf(tool))].push_back(&tool);
}

const CXmlNode* ToolInheritance::FindBase(const CXmlNode& tool, std::string_view name) const {
  const auto found = byName_.find(FoldCase(name));
  if (found == byName_.end()) return nullptr;
  const Layers& all = found->second;
  const auto own = std::find(all.begin(), all.end(), &tool);
  if (own == all.end()) return all.back();
  return own == all.begin() ? nullptr : *(own - 1);
}

void ToolInheritance::Collect(const CXmlNode& tool, Layers& path, Layers& layers,
                              std::string& error) const {
  if (!error.empty() || Contains(layers, &tool)) return;
  const bool isCycle = Contains(path, &tool);
  path.push_back(&tool);
  if (isCycle || path.size() > kMaxDepth) {
    error = isCycle ? "Base refers to itself: " : "too many levels of Base: ";
    for (std::size_t i = 0; i < path.size(); ++i)
      error += (i == 0 ? "" : " -> ") + NameOf(*path[i]);
    return;
  }
  for (const std::string& name : SplitWords(OrEmpty(tool.GetAttrValue("Base")))) {
    const CXmlNode* base = FindBase(tool, name);
    if (base != nullptr) {
      Collect(*base, path, layers, error);
    } else if (error.empty()) {
      error = "no other tool is named " + name + ", which is a Base of " + NameOf(tool);
    }
  }
  path.pop_back();
  layers.push_back(&tool);
}

std::unique_ptr<CXmlNode> ToolInheritance::Resolve(const CXmlNode& tool, std::string& error) const {
  Layers path, layers;
  Collect(tool, path, layers, error);
  if (!error.empty()) return nullptr;
  auto merged = CXmlNode::CreateNode("Tool");
  LayerMerger merger(error);
  for (const CXmlNode* layer : layers) merger.Merge(*merged, *layer);
  if (!error.empty()) return nullptr;
  Finish(*merged, OrEmpty(merged->GetAttrValue("Prefix")));
  for (const std::string_view name : kToolAttributes) {
    if (const CXmlAttr* each = merged->GetAttr(name)) merged->RemoveAttr(each);
  }
  return merged;
}

bool HasYes(const CXmlNode& node, const char* attribute) {
  return EqualNoCase(OrEmpty(node.GetAttrValue(attribute)), "Yes");
}

}  // namespace tarn::tools
