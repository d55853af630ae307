#include "builder/SameFiles.h"

#include <algorithm>
#include <unordered_map>

#include "builder/OutputIndex.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "project/NodeTypes.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

using PathsByName = std::unordered_map<std::string, std::vector<std::string>>;

void CollectSources(const CXmlNode& parent, const CXmlNode& application, PathsByName& found) {
  for (const CXmlNode* child : parent.GetChildren()) {
    if (!IsContentNode(*child)) continue;
    const std::string path = OrEmpty(child->GetAttrValue("Path"));
    if (!path.empty() && IsBuilt(*child, application)) {
      found[FoldCase(FileNameOf(path))].push_back(path);
    }
    CollectSources(*child, application, found);
  }
}

}  // namespace

std::vector<std::pair<std::string, std::string>> FindSameFiles(FileSystem& files,
                                                               const CXmlNode& application) {
  PathsByName sources;
  CollectSources(application, application, sources);
  std::vector<std::pair<std::string, std::string>> found;
  for (const auto& [name, paths] : sources) {
    if (paths.size() < 2) continue;
    std::unordered_map<std::string, std::string> firstNames;  // by real path
    for (const std::string& path : paths) {
      const auto [first, isNew] = firstNames.try_emplace(RealName(files, path), path);
      if (!isNew && !EqualNoCase(first->second, path)) found.emplace_back(first->second, path);
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace tarn
