#pragma once

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

namespace tarn::host {

// A node of the project's tree, to be found by its texts.
struct IndexedNode {
  QString type;  // the element's name
  QString label;
  QString path;       // below the project's folder without it; empty for groups
  QString above;      // labels of the groups above, for those without a path
  std::string place;  // for the server's selection

  bool operator==(const IndexedNode&) const = default;
};

// All nodes of a tree, as the inspector gives it, in its order. Paths below `folder`, which has a
// separator at its end, are shown without it.
std::vector<IndexedNode> IndexTree(const std::string& xml, const QString& folder);

// The numbers of the nodes whose label or path contains all words of the text, in any case; those
// whose label begins with the text come first.
std::vector<int> FindNodes(const std::vector<IndexedNode>& nodes, const QString& text);

}  // namespace tarn::host
