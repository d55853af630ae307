#include "automation/ApplicationSearch.h"

#include "platform/text/Text.h"

namespace tarn {

bool IsSamePath(const std::string& a, const std::string& b, bool exactly) {
  return exactly ? a == b : EqualNoCase(a, b);
}

CXmlNode* FindApplication(CProjectModel& model, const std::string& key) {
  CXmlNode* found = nullptr;
  ForEachApplication(model, [&](CXmlNode& application) {
    std::string path;
    model.MakeAbsolutePath(TextOf(application.GetAttrValue("Path")), path, nullptr);
    const bool isMeant =
        EqualNoCase(TextOf(application.GetAttrValue("Header")), key) || IsSamePath(path, key, true);
    if (found == nullptr && isMeant) found = &application;
  });
  return found;
}

}  // namespace tarn
