#include "automation/ApplicationSearch.h"

#include "platform/text/Text.h"

namespace tarn {

CXmlNode* FindApplication(CProjectModel& model, const std::string& key) {
  CXmlNode* found = nullptr;
  ForEachApplication(model, [&](CXmlNode& application) {
    std::string path;
    model.MakeAbsolutePath(TextOf(application.GetAttrValue("Path")), path, nullptr);
    const bool isMeant =
        EqualNoCase(TextOf(application.GetAttrValue("Header")), key) || path == key;
    if (found == nullptr && isMeant) found = &application;
  });
  return found;
}

}  // namespace tarn
