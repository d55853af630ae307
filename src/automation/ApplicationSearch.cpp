#include "automation/ApplicationSearch.h"

#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

CXmlNode* FindApplication(CProjectModel& model, const std::string& key) {
  std::vector<CXmlNode*> byPath, byLabel, byLetters;
  ForEachApplication(model, [&](CXmlNode& application) {
    const std::string label = OrEmpty(application.GetAttrValue("Header"));
    std::string path;
    model.Paths().MakeAbsolutePath(OrEmpty(application.GetAttrValue("Path")), path, nullptr);
    if (path == key) byPath.push_back(&application);
    if (label == key) byLabel.push_back(&application);
    if (EqualNoCase(label, key)) byLetters.push_back(&application);
  });
  for (const std::vector<CXmlNode*>& found : {byPath, byLabel, byLetters}) {
    if (!found.empty()) return found.size() == 1 ? found.front() : nullptr;
  }
  return nullptr;
}

}  // namespace tarn
