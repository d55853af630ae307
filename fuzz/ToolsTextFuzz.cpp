// Any tool output must become a message file that CXmlNode reads completely, and strings that pass
// through the log unchanged, also through its copy for other readers.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "components/tools/MessageFile.h"
#include "components/tools/MessageReader.h"
#include "components/tools/ToolDefinitionReader.h"
#include "components/tools/ToolText.h"
#include "xml/XmlEscape.h"
#include "xml/XmlNode.h"

namespace {

using namespace tarn;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Returns the built-in rule lists in two orders.
std::vector<tools::MessageRuleLists> ReadRuleLists() {
  std::ifstream file(TARN_MESSAGES);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const tools::ReadDefinitions read = tools::ReadDefinitionFiles({{"messages", text}});
  Require(read.errors.empty() && !read.messages.empty());
  tools::MessageRuleLists lists;
  for (const auto& [name, rules] : read.messages) lists.push_back(rules);
  return {lists, {lists.rbegin(), lists.rend()}};
}

tools::ToolMessages MessagesOf(std::string_view output) {
  tools::ToolMessages messages;
  static const std::vector<tools::MessageRuleLists> orders = ReadRuleLists();
  for (const tools::MessageRuleLists& lists : orders) {
    tools::MessageReader reader(lists, "/w");
    const auto take = [&](std::string_view line) {
      messages.push_back(reader.Read(tools::CleanLine(line)));
    };
    tools::LineAssembler lines;
    lines.Add(output, take);
    lines.Finish(take);
  }
  return messages;
}

void CheckTexts(const std::string& file, const tools::ToolMessages& messages) {
  CXmlNode root;
  CXmlParseInfo info;
  Require(root.Load(file, info) != nullptr);
  Require(root.GetChildCount() == static_cast<int>(messages.size()));
  for (int i = 0; i < root.GetChildCount(); ++i) {
    const CXmlNode& message = *root.GetChild(i);
    Require(message.FindChild("link") != nullptr && message.GetAttr("Line") != nullptr);
    const std::string text = message.GetAttrValue("Description");
    Require(text.find_first_of("<>|") == std::string::npos);
    Require(EscapeXml(UnescapeXml(text)) == text);
    const std::string& said = messages[static_cast<std::size_t>(i)].text;
    Require(UnescapeXml(text) == (said.ends_with('\\') && text.ends_with(' ') ? said + " " : said));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tools::ToolMessages messages = MessagesOf({reinterpret_cast<const char*>(data), size});
  const std::string file = tools::MessageFileText(messages);
  CheckTexts(file, messages);
  const std::string strict = ToConformingXml(file);
  CheckTexts(strict, messages);
  Require(ToConformingXml(strict) == strict);
  return 0;
}
