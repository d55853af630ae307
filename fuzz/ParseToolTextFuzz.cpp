// The first line of the input is a template (none if it is empty), the second the folder of help
// pages, the rest a tool's output. Each line of the output must produce one message, which shows
// the whole line and has consistent fields.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "output/BuildOutput.h"
#include "patterns/Parser.h"
#include "support/MemoryFileSystem.h"
#include "xml/XmlNode.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string line(text.substr(0, end));
  text = end == text.npos ? std::string_view() : text.substr(end + 1);
  return line.c_str();
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  if (text.find("<Row") != text.npos) return lines;
  const tarn::CParser tokens(text, "\n");
  for (int i = 0; i < tokens.GetCount(); ++i) {
    std::string line = tokens.GetToken(i);
    for (char& c : line) {
      if (c == '\t' || c == '\r' || c == '\n') c = ' ';
    }
    line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

void CheckMessage(const tarn::CXmlNode& message, const std::string& line, bool hasHelp) {
  const auto value = [&](const char* name) -> std::string {
    const char* text = message.GetAttrValue(name);
    return text ? text : "absent";
  };
  Require(value("Description") == line && message.FindChild("header")->GetValue() == line);
  const std::string file = value("File");
  const std::string number = value("Line");
  const bool hasPlace = !file.empty() && !number.empty();
  Require(message.FindChild("link")->GetValue() ==
          (hasPlace ? "err://" + file + ":" + number : "lnk://"));
  const std::string icon = value("Icon");
  const tarn::CXmlNode* type = message.FindChild("type");
  const bool isPlain = type == nullptr;
  Require(message.GetChildCount() == (isPlain ? 2 : 3));
  Require(icon == (isPlain ? "absent" : type->GetValue() == "1" ? "2" : "1"));
  Require(value("ShowInReport") == (isPlain ? "absent" : "yes"));
  Require(isPlain == (value("Contain") == "absent") || line.find("absent") != line.npos);
  Require(isPlain || line.find(value("Contain")) != line.npos);
  Require(line.find(file) != line.npos && line.find(number) != line.npos);
  Require(value("Help") == "absent" || (hasHelp && !isPlain));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string lineTemplate = TakeLine(input);
  const std::string help = TakeLine(input);
  const std::string text(input.substr(0, input.find('\0')));

  tarn::testing::MemoryFileSystem disk;
  tarn::CBuildOutput hub(disk);
  hub.SetLogFile("/tmp/log.xml");
  hub.SetFlagBits(tarn::CBuildOutput::kSaveEachMessage);
  hub.ParseToolText(text.c_str(), lineTemplate.empty() ? nullptr : lineTemplate.c_str(),
                    help.empty() ? nullptr : help.c_str());
  const std::vector<std::string> lines = LinesOf(text);
  Require(hub.GetRoot().GetChildCount() == static_cast<int>(lines.size()));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    CheckMessage(*hub.GetRoot().GetChild(static_cast<int>(i)), lines[i], !help.empty());
  }
  return 0;
}
