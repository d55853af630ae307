#include "project/ProjectViews.h"

#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

std::string ProjectViews::GetSymbolInfo(const char* symbolName) const {
  CXmlNode* found = nullptr;
  FindChildNode(symbolName, "Header", globals ? globals->GetSymbols() : nullptr, found);
  return found == nullptr ? std::string() : found->ToString(g_xmlDisplayOptions);
}

}  // namespace tarn
