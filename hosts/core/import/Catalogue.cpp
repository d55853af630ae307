#include "hosts/core/import/Catalogue.h"

#include <memory>
#include <vector>

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

// The targets of the installed descriptions. Borrows nothing.
class Catalogue {
 public:
  Catalogue(FileSystem& files, const std::string& folder) {
    const auto entries = files.ListFolder(folder);
    if (!entries) return;
    for (const FolderEntry& each : *entries) {
      if (each.isFolder || !EqualNoCase(ExtensionOf(each.name), ".xml")) continue;
      const auto text = ReadForImport(files, JoinPath(folder, each.name));
      auto root = text ? ParseXml(*text) : nullptr;
      if (root == nullptr) continue;
      Add(*root);
      trees_.push_back(std::move(root));
    }
  }

  const std::vector<const CXmlNode*>& GetTargets() const { return targets_; }

  // Returns nullptr if no target has this name.
  const CXmlNode* Find(const std::string& name) const {
    const CXmlNode* found = nullptr;
    const CXmlNode* similar = nullptr;  // "Arduino Uno" for "uno"
    for (const CXmlNode* each : targets_) {
      const NameFit fit = FitTargetName(*each, name);
      if (fit == NameFit::Same) found = each;
      if (fit == NameFit::Similar) similar = each;
    }
    return found == nullptr ? similar : found;
  }

 private:
  void Add(const CXmlNode& node) {
    for (const CXmlNode* child : node.GetChildren()) {
      if (child->NameView() == "Targets") Add(*child);
      if (child->NameView() == "Target") targets_.push_back(child);
    }
  }

  std::vector<std::unique_ptr<CXmlNode>> trees_;
  std::vector<const CXmlNode*> targets_;
};

}  // namespace

ImportedOptions FindTargetOptions(FileSystem& files, const std::string& folder,
                                  const std::string& name) {
  const Catalogue catalogue(files, folder);
  const CXmlNode* found = catalogue.Find(name);
  if (found == nullptr) return {};
  for (const CXmlNode* child : found->GetChildren()) {
    if (child->GetType() == XmlCData) return OptionsOfScript(child->GetValue());
  }
  return {};
}

std::string DescribeUnknownTarget(FileSystem& files, const std::string& folder,
                                  const std::string& name) {
  const Catalogue catalogue(files, folder);
  std::string text = name + " is not in the catalogue";
  std::string near;
  for (const std::string& each : FindNearTargets(catalogue.GetTargets(), name)) {
    near += (near.empty() ? "\"" : ", \"") + each + '"';
  }
  if (!near.empty()) text += ", whose nearest targets are " + near;
  return text + "; see `tarn targets`, and set Target.Toolchain and Target.Device";
}

}  // namespace tarn::host
