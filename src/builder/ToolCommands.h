#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "drivers/ToolManagerDriver.h"

namespace tarn {

class CXmlNode;

// Computes how each node's tool would be run now, as numbers for comparisons.
//
// The signature is cheap and covers everything that can affect the command lines: tool, files,
// option values, and the tool's definition and programs. The hash of the command lines themselves
// costs a call of the tool manager, and is only needed if the signature has changed. Main thread
// only.
class ToolCommands {
 public:
  // Returns the tool and files of a node; false if it has no tool.
  using InputSource =
      std::function<bool(const CXmlNode& node, std::string& tool, std::string& files)>;

  // `toolManager` refers to the owner's pointer, which may be set later or never.
  ToolCommands(CToolManagerDriver* const& toolManager, InputSource inputSource)
      : driver_(toolManager), inputOf_(std::move(inputSource)) {}

  std::uint64_t SignatureOf(std::string_view tool, std::string_view files,
                            std::string_view options);
  // Returns 0 if the node has no tool or no option values.
  std::uint64_t SignatureOf(const CXmlNode& node);
  // Returns 0 if the tool manager can't determine the command lines.
  std::uint64_t HashOf(const CXmlNode& node);

  // Changes whenever the signature of any node may have changed.
  std::uint64_t GetGeneration() const { return generation_; }
  // Called when option values or files of nodes changed.
  void Invalidate() { ++generation_; }
  // Reloads the definitions of the tools used so far from the tool manager: the definitions or
  // programs may have changed.
  void RefreshTools();

 private:
  const std::string& DefinitionOf(const std::string& tool);
  std::string QueryDefinition(const std::string& tool);

  CToolManagerDriver* const& driver_;
  InputSource inputOf_;
  std::map<std::string, std::string, std::less<>> definitions_;  // by tool
  std::string options_;  // of the last signature; keeps its memory for the next one
  std::uint64_t generation_ = 1;
};

// Parses the tool manager's hash of command lines, in hexadecimal digits. Returns 0 for anything
// else.
std::uint64_t ParseCommandHash(std::string_view text);

}  // namespace tarn
