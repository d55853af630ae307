#include "builder/SameFiles.h"

#include <algorithm>
#include <unordered_map>

#include "builder/OutputIndex.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"
#include "project/NodeTypes.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

struct Source {
  std::uint64_t name;  // hash of the file name, ignoring case
  const char* path;    // of the node
};

void CollectSources(const CXmlNode& parent, const CXmlNode& application,
                    std::vector<Source>& found) {
  for (const CXmlNode* child : parent.GetChildren()) {
    if (!IsContentNode(*child)) continue;
    const char* const path = child->GetAttrValue("Path");
    const bool isSource = path != nullptr && *path != '\0' && IsBuilt(*child, application);
    if (isSource) found.push_back({HashBytes(FoldCase(FileNameOf(path))), path});
    CollectSources(*child, application, found);
  }
}

}  // namespace

std::vector<std::pair<std::string, std::string>> FindSameFiles(FileSystem& files,
                                                               const CXmlNode& application) {
  std::vector<Source> sources;
  CollectSources(application, application, sources);
  std::stable_sort(sources.begin(), sources.end(),
                   [](const Source& a, const Source& b) { return a.name < b.name; });
  std::vector<std::pair<std::string, std::string>> found;
  for (std::size_t i = 0, end = 0; i < sources.size(); i = end) {
    while (end < sources.size() && sources[end].name == sources[i].name) ++end;
    if (end - i < 2) continue;
    std::unordered_map<std::string, std::string> firstNames;  // by real path
    for (std::size_t k = i; k < end; ++k) {
      const std::string path = sources[k].path;
      const auto [first, isNew] = firstNames.try_emplace(RealName(files, path), path);
      if (!isNew && !EqualNoCase(first->second, path)) found.emplace_back(first->second, path);
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace tarn
