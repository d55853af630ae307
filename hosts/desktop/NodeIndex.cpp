#include "hosts/desktop/NodeIndex.h"

#include <algorithm>

#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

void AddNode(std::vector<IndexedNode>& nodes, const CXmlNode& node, const std::string& place,
             const QString& above, const QString& folder) {
  IndexedNode own;
  const std::string path = GetAttribute(&node, "Path");
  own.type = ToQt(node.NameView());
  own.label = ToQt(GetAttribute(&node, "Header"));
  if (own.label.isEmpty()) own.label = ToQt(FileNameOf(path));
  own.path = ToQt(path);
  if (own.path.startsWith(folder)) own.path.remove(0, folder.size());
  own.above = above;
  own.place = place;
  const QString below = place.empty()     ? QString()
                        : above.isEmpty() ? own.label
                                          : above + " / " + own.label;
  nodes.push_back(std::move(own));
  int number = 0;
  for (const CXmlNode* const child : node.GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    const std::string numberText = std::to_string(number++);
    AddNode(nodes, *child, place.empty() ? numberText : place + '/' + numberText, below, folder);
  }
}

}  // namespace

std::vector<IndexedNode> IndexTree(const std::string& xml, const QString& folder) {
  std::vector<IndexedNode> nodes;
  const ProjectTree tree(xml);
  if (tree.GetRoot() != nullptr) AddNode(nodes, *tree.GetRoot(), {}, {}, folder);
  return nodes;
}

std::vector<int> FindNodes(const std::vector<IndexedNode>& nodes, const QString& text) {
  const QStringList words = text.split(' ', Qt::SkipEmptyParts);
  std::vector<int> exact;
  std::vector<int> first;
  std::vector<int> others;
  if (words.isEmpty()) return exact;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const IndexedNode& node = nodes[i];
    const bool isFound = std::all_of(words.begin(), words.end(), [&](const QString& word) {
      return node.label.contains(word, Qt::CaseInsensitive) ||
             node.path.contains(word, Qt::CaseInsensitive) ||
             node.keywords.contains(word, Qt::CaseInsensitive);
    });
    if (!isFound) continue;
    const bool isBegin = node.label.startsWith(words.front(), Qt::CaseInsensitive);
    const bool isExact = node.label.compare(text.trimmed(), Qt::CaseInsensitive) == 0;
    (isExact ? exact : isBegin ? first : others).push_back(static_cast<int>(i));
  }
  exact.insert(exact.end(), first.begin(), first.end());
  exact.insert(exact.end(), others.begin(), others.end());
  return exact;
}

}  // namespace tarn::host
