#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "components/tools/ToolDefinition.h"

namespace tarn::tools {

struct DefinitionFile {
  std::string name;
  std::string text;
};

using NamedMessageRules = std::map<std::string, std::shared_ptr<const MessageRules>, std::less<>>;

// What reading definition files came to.
struct ReadDefinitions {
  std::vector<std::unique_ptr<ToolDefinition>> tools;
  NamedMessageRules messages;       // of two lists with one name the later
  std::vector<std::string> errors;  // "file: tool: what is wrong", mostly
  std::string lostFile;  // the first error that lost a whole file; empty if there is none
};

// Reads all files; a tool may name messages of any of them. A tool or a list of messages in which
// anything is wrong is left out, so that no half-understood command line ever runs; the others
// count.
ReadDefinitions ReadDefinitionFiles(const std::vector<DefinitionFile>& files);

}  // namespace tarn::tools
