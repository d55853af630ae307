#include "builder/ToolCommands.h"

#include <charconv>

#include "platform/text/Hash.h"
#include "project/TreeSearch.h"
#include "xml/XmlNode.h"

namespace tarn {

std::uint64_t ToolCommands::SignatureOf(std::string_view tool, std::string_view files,
                                        std::string_view options) {
  const std::uint64_t definition = HashBytes(DefinitionOf(std::string(tool)), HashBytes(tool));
  return HashBytes(options, HashBytes(files, definition));
}

std::uint64_t ToolCommands::SignatureOf(const CXmlNode& node) {
  std::string tool;
  std::string files;
  const CXmlNode* values = FindStoredValues(node);
  if (values == nullptr || !inputOf_(node, tool, files)) return 0;
  options_.clear();
  values->AppendValue(options_);
  return SignatureOf(tool, files, options_);
}

std::uint64_t ToolCommands::HashOf(const CXmlNode& node) {
  std::string tool;
  std::string files;
  const CXmlNode* values = FindStoredValues(node);
  if (driver_ == nullptr || values == nullptr || !inputOf_(node, tool, files)) return 0;
  return ParseCommandHash(driver_->GetCommandHash(tool, files, values->GetValue()));
}

void ToolCommands::RefreshTools() {
  for (auto& [tool, known] : definitions_) {
    std::string now = QueryDefinition(tool);
    if (now == known) continue;
    known = std::move(now);
    ++generation_;
  }
}

const std::string& ToolCommands::DefinitionOf(const std::string& tool) {
  const auto [place, isNew] = definitions_.try_emplace(tool);
  if (isNew) place->second = QueryDefinition(tool);
  return place->second;
}

std::string ToolCommands::QueryDefinition(const std::string& tool) {
  return driver_ == nullptr ? std::string() : driver_->GetToolFingerprint(tool);
}

std::uint64_t ParseCommandHash(std::string_view text) {
  std::uint64_t hash = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), hash, 16);
  return error == std::errc() && end == text.data() + text.size() ? hash : 0;
}

}  // namespace tarn
