#include "project/DerivedData.h"

#include "platform/text/Text.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

void DerivedData::MakeAttributeRelative(CXmlNode& node, const char* name) {
  const char* path = node.GetAttrValue(name);
  if (path == nullptr || *path == '\0') return;
  const std::string base = paths_.PathBaseOf(node);
  std::string relative;
  if (paths_.MakeRelativePath(path, relative, base.empty() ? nullptr : base.c_str())) {
    node.SetAttrValue(name, relative);
  }
}

void DerivedData::StripForSave(CXmlNode& node, bool dropDependencies) {
  StripSubtree(node, dropDependencies);
  state_.MarkUnpublished();
}

void DerivedData::StripSubtree(CXmlNode& node, bool dropDependencies) {
  // Children first: their paths are relative to a path that must still be absolute.
  for (int i = node.GetChildCount() - 1; i >= 0; --i) {
    CXmlNode* child = node.GetChild(i);
    const std::string_view name = child->NameView();
    if (name == "PropState" || name == "#CDATA" || name == "Info" ||
        (dropDependencies && name == "Dependencies")) {
      state_.InvalidatePointersInto(*child);
      node.RemoveChild(child);
    } else {
      StripSubtree(*child, dropDependencies);
    }
  }
  for (const char* name : {"TranslateTool", "ListingFile", "Exclude", "LinkExclude", "DBIFile",
                           "Info", "Desc", "LastBuilt", "highlight"}) {
    if (CXmlAttr* attribute = node.GetAttr(name)) node.RemoveAttr(attribute);
  }
  MakeAttributeRelative(node, "Path");
  MakeAttributeRelative(node, "OutputFile");
  if ((types_.FlagsOf(node) & kTypeExtern) == 0) return;
  std::string relative;
  if (paths_.MakeRelativePath(OrEmpty(node.GetAttrValue("Extern")), relative, nullptr)) {
    node.SetAttrValue("Extern", relative);
  }
}

// The active application's path may be queried at any time, even before it is published again.
void DerivedData::MakeActivePathAbsolute() {
  if (state_.activeApplication == nullptr) return;
  std::string path;
  if (paths_.MakeAbsolutePath(OrEmpty(state_.activeApplication->GetAttrValue("Path")), path,
                              nullptr)) {
    state_.activeApplication->SetAttrValue("Path", path);
  }
}

void DerivedData::ResetNodeCache(CXmlNode& node, bool ownOnly) {
  if (!ownOnly) {
    StripForSave(node, false);
    MakeActivePathAbsolute();
    return;
  }
  if (CXmlNode* stored = FindStoredValues(node)) node.RemoveChild(stored);
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode* child = node.GetChild(i);
    if (IsContentNode(*child)) ResetNodeCache(*child, true);
  }
  state_.MarkUnpublished();
}

}  // namespace tarn
