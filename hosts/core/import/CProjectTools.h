#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "hosts/core/import/CompilerCommand.h"

namespace tarn {
class CXmlNode;
}

namespace tarn::host {

// The options of the tools of one configuration or file of a .cproject, as far as they are known.
struct ToolSettings {
  std::vector<std::string> defines, includes, libraries, libraryPaths, scripts, standards;
  std::string optimize, debug, warnings, device, systemCalls;
  std::map<std::string, std::string> target;         // options of Application.Target
  std::string isaBase, isaFloat, abiBase, abiFloat;  // of RISC-V
  std::set<char> isaParts;
  std::vector<FurtherArgument> further, asmFurther, linkFurther;
};

// What reading them requires.
struct ToolContext {
  std::string compiler;  // decides what flags mean
  std::string folder;    // that the configuration builds in
  // Replaces variables. Nothing, after a remark, if one is unknown.
  std::function<std::optional<std::string>(const std::string& value)> resolve;
  std::function<void(const std::string& text)> remark;
};

// Adds the options of an element, and of the tools in it, to `settings`. The others are reported.
void ReadTools(const CXmlNode& owner, const ToolContext& context, ToolSettings& settings);

// Returns the toolchain of an element <toolChain>; empty if it isn't known.
std::string ToolchainOfNode(const CXmlNode& chain);

// Returns the attribute without entities and outer spaces.
std::string PlainAttribute(const CXmlNode& node, const char* name);

void ForEachChild(const CXmlNode& node, std::string_view name,
                  const std::function<void(const CXmlNode&)>& onNode);

}  // namespace tarn::host
