#include "xml/XmlParseInfo.h"

#include <utility>

namespace tarn {

constinit const CXmlDisplayOptions g_xmlDisplayOptions;
CXmlParseInfo g_xmlParseInfo;

void CXmlParseInfo::RecordError(const char* position, int code, std::string text) {
  if (errorOccurred.exchange(true)) return;
  errorPosition = position;
  errorCode = code;
  errorText = std::move(text);
}

}  // namespace tarn
