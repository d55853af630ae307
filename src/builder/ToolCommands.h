#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "drivers/ToolManagerDriver.h"
#include "xml/XmlNode.h"

namespace tarn {

// How the tool of each node would be run now, as numbers to compare.
//
// The signature is cheap and changes with everything that can change the command lines: tool,
// files, option values, and the definition and programs of the tool. The hash of the command lines
// themselves costs a call of the tool manager, and is asked for only after the signature changed.
// On the main thread.
class ToolCommands {
 public:
  // What a node hands to its tool; false if it has none.
  using InputSource =
      std::function<bool(const CXmlNode& node, std::string& tool, std::string& files)>;

  // `toolManager` is where the owner keeps its driver, which may come later, or never.
  ToolCommands(CToolManagerDriver* const& toolManager, InputSource inputSource)
      : driver_(toolManager), inputOf_(std::move(inputSource)) {}

  std::uint64_t SignatureOf(std::string_view tool, std::string_view files,
                            std::string_view options);
  // 0 if the node has no tool or no option values.
  std::uint64_t SignatureOf(const CXmlNode& node);
  // 0 if the tool manager does not tell.
  std::uint64_t HashOf(const CXmlNode& node);

  // Changes whenever the signature of some node may have changed.
  std::uint64_t GetGeneration() const { return generation_; }
  // The option values or files of nodes changed.
  void Invalidate() { ++generation_; }
  // Asks the tool manager again for the tools that were asked for: their definitions or programs
  // may have changed.
  void RefreshTools();

 private:
  const std::string& DefinitionOf(const std::string& tool);
  std::string AskDefinition(const std::string& tool);

  CToolManagerDriver* const& driver_;
  InputSource inputOf_;
  std::map<std::string, std::string, std::less<>> definitions_;  // by tool, as the manager tells it
  std::uint64_t generation_ = 1;
};

// A hash of command lines as the tool manager writes it, in hexadecimal digits; 0 for anything
// else.
std::uint64_t ParseCommandHash(std::string_view text);

}  // namespace tarn
