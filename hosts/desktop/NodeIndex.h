#pragma once

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

namespace tarn::host {

// A node of the project's tree, as searched by its texts.
struct IndexedNode {
  QString type;  // element name
  QString label;
  QString path;           // relative to the project's folder if below it; empty for groups
  QString above;          // labels of the enclosing groups, for nodes without a path
  QString keywords = {};  // searched, but not shown
  std::string place;      // argument for the server's selection

  bool operator==(const IndexedNode&) const = default;
};

// Returns all nodes of a tree as received from the inspector, in its order. Paths below `folder`
// (with a trailing separator) are shown relative to it.
std::vector<IndexedNode> IndexTree(const std::string& xml, const QString& folder);

// Returns the indices of the nodes whose label, path or keywords contain all words of the
// text, ignoring case; those whose label is the text come first, then those whose label begins with
// it. Linear scan.
std::vector<int> FindNodes(const std::vector<IndexedNode>& nodes, const QString& text);

}  // namespace tarn::host
