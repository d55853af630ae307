#include "project/MovedText.h"

#include "platform/files/RelativeName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/NodeTypes.h"
#include "project/TreeText.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

// Adapts relative paths of existing files to a different folder, so that they refer to the same
// files.
void MovePaths(FileSystem& files, CXmlNode& node, const std::string& from, const std::string& to) {
  for (CXmlNode* child : node.GetChildren()) {
    if (!IsContentNode(*child)) continue;
    const std::string path = OrEmpty(child->GetAttrValue("Path"));
    const std::string absolute = files.Canonical(JoinPath(from, path));
    if (!path.empty() && IsRelativePath(path) && files.Exists(absolute)) {
      const std::string relative = RelativeNameOnDisk(files, to, absolute);
      child->SetAttrValue("Path", relative.empty() ? absolute : relative);
    }
    MovePaths(files, *child, from, to);
  }
}

}  // namespace

std::string MoveText(FileSystem& files, const std::string& text, const std::string& from,
                     const std::string& to) {
  CXmlNode root;
  if (from == to || !ReadWholeTree(text, root)) return text;
  const std::string path = OrEmpty(root.GetAttrValue("Path"));
  // Its paths are not relative to its location.
  if (!path.empty() && path != OrEmpty(root.GetAttrValue("Extern"))) return text;
  MovePaths(files, root, from, to);
  return WriteTree(root, text);
}

}  // namespace tarn
