#include "hosts/core/SharedProducts.h"

#include <map>

#include "components/values/OptionValues.h"
#include "hosts/core/BuildInputs.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

using Macros = std::vector<std::string>;

// Returns for each tool the macros of the options that name its products, such as
// $(Linker.MapFile).
std::map<std::string, Macros> ListMacros(ToolManagerDriver& tools) {
  std::map<std::string, Macros> macros;
  const auto list = ParseXml(tools.ListTools());
  if (list == nullptr) return macros;
  for (const CXmlNode* tool : list->GetChildren()) {
    for (const CXmlNode* each : tool->GetChildren()) {
      if (each->NameView() != "Makes") continue;
      macros[FoldCase(GetAttribute(tool, "Header"))].push_back(GetAttribute(each, "Header"));
    }
  }
  return macros;
}

// Returns false for an application that is excluded from the build.
bool IsBuilt(const std::string& buildInputs, const ApplicationEntry& application) {
  for (const ApplicationInputs& each : ParseBuildInputs(buildInputs)) {
    if (each.application != application.path) continue;
    return !each.outputs.empty() && each.outputs.back() == application.output;
  }
  return false;
}

}  // namespace

std::vector<std::string> FindSharedProducts(InspectorDriver& inspector, ToolManagerDriver& tools,
                                            FileSystem& files, const std::string& application) {
  struct Maker {
    std::string application, label;
  };
  std::vector<std::string> lines;
  const auto all = ListApplications(inspector);
  if (all.size() < 2) return lines;
  const auto macros = ListMacros(tools);
  const std::string buildInputs = inspector.GetBuildInputs();
  std::map<std::string, Maker> makers;  // by path
  for (const ApplicationEntry& each : all) {
    if (!IsBuilt(buildInputs, each)) continue;
    const auto input = ParseXml(inspector.GetToolInput(each.path, each.output));
    const CXmlNode* const text = input == nullptr ? nullptr : input->FindChild("#CDATA");
    const auto made = macros.find(FoldCase(GetAttribute(input.get(), "Tool")));
    if (text == nullptr || made == macros.end()) continue;
    const OptionValues values = OptionValues::FromText(text->GetValue());
    for (const std::string& macro : made->second) {
      const std::string value(Trim(values.Resolve(macro)));
      if (value.empty()) continue;
      const std::string path =
          files.Canonical(IsRelativePath(value) ? JoinPath(FolderOf(each.path), value) : value);
      const auto [maker, isNew] = makers.try_emplace(path, Maker{each.path, each.label});
      const bool isWanted = application.empty() || application == each.path ||
                            application == maker->second.application;
      if (isNew || maker->second.application == each.path || !isWanted) continue;
      lines.push_back(maker->second.label + " and " + each.label + " both produce " + path +
                      "; set " + macro.substr(2, macro.size() - 3) +
                      " of one of them to a different name");
    }
  }
  return lines;
}

}  // namespace tarn::host
