#include "hosts/core/import/Catalogue.h"

#include <algorithm>
#include <functional>

#include "hosts/core/LogEntry.h"
#include "hosts/core/TargetName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

ImportedOptions OptionsOfScript(const std::string& script) {
  ImportedOptions options;
  constexpr std::string_view kCall = "tarn.SavePropertyValue(";
  for (const std::string& line : SplitLines(script)) {
    if (!line.starts_with(kCall) || !line.ends_with(")")) continue;
    const std::string arguments = line.substr(kCall.size(), line.size() - kCall.size() - 1);
    std::vector<std::string> words;
    bool isPlain = true;
    for (std::size_t at = 0; at < arguments.size();) {
      const std::size_t open = arguments.find('"', at);
      const std::size_t close = open == std::string::npos ? open : arguments.find('"', open + 1);
      if (close == std::string::npos) break;
      words.push_back(arguments.substr(open + 1, close - open - 1));
      isPlain = isPlain && words.back().find('\\') == std::string::npos;
      at = close + 1;
    }
    if (words.size() == 4 && isPlain)
      options[words[0] + "." + words[1] + "." + words[2]] = words[3];
  }
  return options;
}

}  // namespace

ImportedOptions FindTargetOptions(FileSystem& files, const std::string& folder,
                                  const std::string& name) {
  const CXmlNode* found = nullptr;
  const CXmlNode* similar = nullptr;  // "Arduino Uno" for "uno"
  const std::function<void(const CXmlNode&)> search = [&](const CXmlNode& node) {
    for (const CXmlNode* child : node.GetChildren()) {
      if (child->NameView() == "Targets") search(*child);
      if (child->NameView() != "Target") continue;
      const NameFit fit = FitTargetName(*child, name);
      if (fit == NameFit::Same) found = child;
      if (fit == NameFit::Similar) similar = child;
    }
  };
  std::vector<std::unique_ptr<CXmlNode>> trees;
  const auto entries = files.ListFolder(folder);
  if (!entries) return {};
  for (const FolderEntry& each : *entries) {
    if (each.isFolder || !EqualNoCase(ExtensionOf(each.name), ".xml")) continue;
    const auto text = ReadForImport(files, JoinPath(folder, each.name));
    if (auto root = text ? ParseXml(*text) : nullptr) trees.push_back(std::move(root));
  }
  for (const auto& root : trees) search(*root);
  if (found == nullptr) found = similar;
  if (found == nullptr) return {};
  for (const CXmlNode* child : found->GetChildren()) {
    if (child->GetType() == XmlCData) return OptionsOfScript(child->GetValue());
  }
  return {};
}

}  // namespace tarn::host
