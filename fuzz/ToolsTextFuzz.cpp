// Any output of a tool becomes a message file that the system's reader takes in whole, and texts
// that come back as they were through the log, also through the copy of it for other readers.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "components/tools/MessageFile.h"
#include "components/tools/MessageScanner.h"
#include "components/tools/ToolText.h"
#include "xml/StrictText.h"
#include "xml/XmlNode.h"

namespace {

using namespace tarn;

void Require(bool holds) {
  if (!holds) std::abort();
}

tools::ToolMessages MessagesOf(std::string_view output) {
  tools::MessageRecogniser gcc;
  gcc.Add(*tools::FindScanner("gcc"));
  gcc.Add(*tools::FindScanner("gnu-ld"));
  tools::MessageRecogniser sdcc;
  sdcc.Add(*tools::FindScanner("sdcc"));
  tools::ToolMessages messages;
  const auto take = [&](std::string_view line) {
    const std::string clean = tools::CleanLine(line);
    messages.push_back(gcc.Recognise(clean, "/w"));
    messages.push_back(sdcc.Recognise(clean, "/w"));
  };
  tools::LineAssembler lines;
  lines.Add(output, take);
  lines.Finish(take);
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
    Require(EncodeStrict(DecodeStrict(text)) == text);
    const std::string& said = messages[static_cast<std::size_t>(i)].text;
    Require(DecodeStrict(text) ==
            (said.ends_with('\\') && text.ends_with(' ') ? said + " " : said));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tools::ToolMessages messages = MessagesOf({reinterpret_cast<const char*>(data), size});
  const std::string file = tools::MessageFileText(messages);
  CheckTexts(file, messages);
  const std::string strict = MakeFileStrict(file);
  CheckTexts(strict, messages);
  Require(MakeFileStrict(strict) == strict);
  return 0;
}
