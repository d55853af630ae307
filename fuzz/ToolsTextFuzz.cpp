#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "components/tools/MessageFile.h"
#include "components/tools/MessageScanner.h"
#include "components/tools/ToolText.h"
#include "xml/XmlNode.h"

// Any output of a tool becomes a message file that the system's reader takes in whole.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarn;
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
  lines.Add({reinterpret_cast<const char*>(data), size}, take);
  lines.Finish(take);
  CXmlNode root;
  CXmlParseInfo info;
  if (root.Load(tools::MessageFileText(messages), info) == nullptr) std::abort();
  if (root.GetChildCount() != static_cast<int>(messages.size())) std::abort();
  for (const CXmlNode* message : root.GetChildren()) {
    if (message->FindChild("link") == nullptr || message->GetAttr("Line") == nullptr) std::abort();
  }
  return 0;
}
