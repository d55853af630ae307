#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/tools/ToolDefinition.h"

namespace tarn {
class CXmlNode;
}

namespace tarn::tools {

// What reading definition files came to.
struct ReadDefinitions {
  std::vector<std::unique_ptr<ToolDefinition>> tools;
  std::vector<std::string> errors;  // "file: tool: what is wrong"
};

// Adds the tools of one definition file's text. A tool in which anything is wrong is left out, so
// that no half-understood command line ever runs; the others count.
void ReadDefinitionFile(const std::string& text, const std::string& fileName,
                        ReadDefinitions& into);

}  // namespace tarn::tools
