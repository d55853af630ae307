#include "automation/NodeSearch.h"

#include <algorithm>

#include "automation/ApplicationSearch.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

template <class OnNode>
void ForEachContentNode(CXmlNode& node, const OnNode& onNode) {
  onNode(node);
  for (int i = 0; i < node.GetChildCount(); ++i) {
    CXmlNode& child = *node.GetChild(i);
    if (IsContentNode(child)) ForEachContentNode(child, onNode);
  }
}

std::vector<CXmlNode*> FindByLabel(CXmlNode& start, std::string_view label) {
  std::vector<CXmlNode*> found;
  ForEachContentNode(start, [&](CXmlNode& node) {
    const char* own = node.GetAttrValue("Header");
    if (own != nullptr && EqualNoCase(own, label)) found.push_back(&node);
  });
  return found;
}

// Calls `onFile(node, full path)` for each node whose file has the file name of `path`. The name is
// compared first because that is cheap and excludes nearly all nodes.
template <class OnFile>
void ForEachOfName(const CProjectModel& model, CXmlNode& start, const std::string& path,
                   const OnFile& onFile) {
  const std::string name = FileNameOf(path);
  ForEachContentNode(start, [&](CXmlNode& node) {
    const char* own = node.GetAttrValue("Path");
    if (own == nullptr || *own == '\0' || !EndsWithNoCase(own, name)) return;
    const std::string base = model.Paths().PathBaseOf(node);
    std::string full;
    model.Paths().MakeAbsolutePath(own, full, base.empty() ? nullptr : base.c_str());
    onFile(node, full);
  });
}

}  // namespace

std::vector<CXmlNode*> NodeSearch::FindByPath(CXmlNode& start, const std::string& path,
                                              bool exactly) const {
  std::vector<CXmlNode*> found;
  ForEachOfName(model_, start, path, [&](CXmlNode& node, const std::string& full) {
    const bool isMeant = exactly ? full == path : IsSameName(model_.GetFiles(), full, path);
    if (isMeant) found.push_back(&node);
  });
  return found;
}

std::vector<CXmlNode*> NodeSearch::FindByFile(CXmlNode& start, const std::string& path) const {
  const std::string real = RealName(model_.GetFiles(), path);
  std::vector<CXmlNode*> found;
  ForEachOfName(model_, start, path, [&](CXmlNode& node, const std::string& full) {
    if (RealName(model_.GetFiles(), full) == real) found.push_back(&node);
  });
  return found;
}

std::vector<CXmlNode*> NodeSearch::FindPlain(CXmlNode& start, const std::string& key) const {
  std::vector<CXmlNode*> found;
  std::string path;
  for (const bool exactly : {true, false}) {
    for (const std::string& folder : folders_) {
      model_.Paths().MakeAbsolutePath(key, path, folder.c_str());
      if (found.empty()) found = FindByPath(start, path, exactly);
    }
  }
  for (const std::string& folder : folders_) {
    model_.Paths().MakeAbsolutePath(key, path, folder.c_str());
    if (found.empty()) found = FindByFile(start, path);
  }
  return found.empty() ? FindByLabel(start, key) : found;
}

// If `start` and its descendants match, `start` itself is dropped: a project often has the same
// label as one of its applications, and an application the same as a file.
std::vector<CXmlNode*> NodeSearch::Find(CXmlNode& start, const std::string& key) const {
  std::vector<CXmlNode*> found = FindPlain(start, key);
  if (found.size() > 1) std::erase(found, &start);
  for (std::size_t slash = key.find('/'); found.empty() && slash != std::string::npos;
       slash = key.find('/', slash + 1)) {
    if (slash == 0) continue;
    std::vector<CXmlNode*> parents = FindByLabel(start, std::string_view(key).substr(0, slash));
    if (parents.size() > 1) std::erase(parents, &start);
    for (CXmlNode* parent : parents) {
      for (CXmlNode* node : Find(*parent, key.substr(slash + 1))) {
        const bool isNew = std::find(found.begin(), found.end(), node) == found.end();
        if (node != parent && isNew) found.push_back(node);
      }
    }
  }
  return found;
}

std::vector<CXmlNode*> NodeSearch::FindNumbered(CXmlNode& start, const std::string& key) const {
  std::vector<CXmlNode*> found = Find(start, key);
  const std::size_t mark = key.rfind('#');
  if (!found.empty() || mark == std::string::npos || mark == 0) return found;
  const std::string digits = key.substr(mark + 1);
  const bool isNumber = !digits.empty() && digits.size() < 10 &&
                        digits.find_first_not_of("0123456789") == std::string::npos;
  if (!isNumber) return {};
  found = Find(start, key.substr(0, mark));
  const auto number = static_cast<std::size_t>(ParseDecimal(digits.c_str()));
  if (number == 0 || number > found.size()) return {};
  return {found[number - 1]};
}

}  // namespace tarn
