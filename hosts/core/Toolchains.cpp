#include "hosts/core/Toolchains.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

std::string FirstProgramOf(const CXmlNode& tool) {
  return GetAttribute(tool.FindChild("Program"), "Header");
}

// The compiler is the tool for C.
bool IsForC(const CXmlNode& tool) {
  for (const CXmlNode* each : tool.GetChildren()) {
    if (each->NameView() == "Extension" && GetAttribute(each, "Header") == ".c") return true;
  }
  return false;
}

}  // namespace

std::vector<Toolchain> FindToolchains(const std::string& tools) {
  std::map<std::string, Toolchain> found;
  const auto list = ParseXml(tools);
  if (list == nullptr) return {};
  for (const CXmlNode* tool : list->GetChildren()) {
    const CXmlNode* element = tool->FindChild("Toolchain");
    const std::string program = FirstProgramOf(*tool);
    if (element == nullptr || program.empty()) continue;
    const std::string name = GetAttribute(element, "Header");
    const auto [entry, isNew] = found.try_emplace(name);
    if (!isNew && !IsForC(*tool)) continue;
    entry->second = {name,
                     FileNameOf(program),
                     FindProgram(program),
                     GetAttribute(element, "Variable"),
                     GetAttribute(element, "Folder"),
                     GetAttribute(element, "Hint"),
                     {}};
  }
  std::vector<Toolchain> toolchains;
  for (auto& [name, each] : found) toolchains.push_back(std::move(each));
  return toolchains;
}

std::string FindProgramRefusing(const std::string& tools, const std::string& toolchain,
                                const std::string& name) {
  constexpr std::string_view kSpecial = " \t'\"$`;&|<>(){}[]*?!#~";
  const auto list = ParseXml(tools);
  if (list == nullptr || name.find_first_of(kSpecial) == name.npos) return {};
  for (const CXmlNode* tool : list->GetChildren()) {
    const CXmlNode* const element = tool->FindChild("Toolchain");
    if (element == nullptr || GetAttribute(element, "Plain") != "Yes") continue;
    // Toolchains of several families may have the same programs.
    if (!GetAttribute(tool, "Header").starts_with(toolchain + '.')) continue;
    return FirstProgramOf(*tool);
  }
  return {};
}

void FindVersion(ProcessLauncher& launcher, Toolchain& toolchain) {
  constexpr std::size_t kMostRead = 4096;
  if (toolchain.path.empty() || IsRelativePath(toolchain.path)) return;
  auto started = launcher.Start({toolchain.path, {"--version"}, {{"LC_ALL", "C.UTF-8"}}});
  if (!started) return;
  std::string output;
  const ProcessExit ended = (*started)->WaitWithOutput([&output](std::string_view text, bool) {
    if (output.size() < kMostRead) output += text;
  });
  const std::vector<std::string> lines = SplitLines(output);
  if (ended.code == 0 && !lines.empty()) toolchain.version = lines.front();
}

}  // namespace tarn::host
