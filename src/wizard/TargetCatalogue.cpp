#include "wizard/TargetCatalogue.h"

#include <algorithm>
#include <utility>

#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr const char* kPackagesKey = "Software\\Corvane\\Tarn7\\Targets";
constexpr const char* kRootName = "Targets";
constexpr const char* kHeader = "Header";
constexpr const char* kProblem = "Problem";

bool IsHidden(const CXmlNode& node) {
  return EqualNoCase(OrEmpty(node.GetAttrValue("Hidden")), "Yes");
}

// Applies the presentation attributes: removes hidden children and replaces labels by nicknames.
void ApplyPresentation(CXmlNode& root) {
  for (CXmlNode* child : root.GetChildren()) {
    if (IsHidden(*child)) {
      root.RemoveChild(child);
      continue;
    }
    const std::string nickname = OrEmpty(child->GetAttrValue("Nickname"));
    if (!nickname.empty()) child->SetAttrValue(kHeader, nickname);
  }
}

std::string WithLineBreaks(const char* text) {
  return ReplaceAll(text, "\\n", "\n");
}

std::string CleanLink(const char* text) {
  const std::string link = ReplaceAll(text, "\n", "");
  const auto start = std::find_if_not(link.begin(), link.end(), IsSpace);
  return std::string(start, link.end());
}

}  // namespace

TargetCatalogue::TargetCatalogue(FileSystem& fileSystem, const Settings& settingsStores,
                                 std::string installedFolder,
                                 const std::vector<std::string>* further)
    : files_(fileSystem),
      settings_(settingsStores),
      folder_(std::move(installedFolder)),
      further_(further) {}

std::optional<TargetPackage> TargetCatalogue::ReadPackage(const std::string& key) const {
  const auto read = [&](const char* name) { return settings_.ReadRegistry(key, name); };
  if (EqualNoCase(read("Hidden").value_or(""), "Yes")) return std::nullopt;
  const std::optional<std::string> name = read("Name");
  TargetPackage package;
  package.label = read("NickName").value_or(name.value_or(""));
  package.path = read("XmlPath").value_or(name.value_or(""));
  if (package.path.empty()) package.path = package.label;
  return package;
}

std::vector<TargetPackage> TargetCatalogue::FindIn(const std::string& folder) const {
  std::vector<TargetPackage> packages;
  const auto entries = files_.ListFolder(folder);
  if (!entries) return packages;
  for (const FolderEntry& each : *entries) {
    if (each.isFolder || !EqualNoCase(ExtensionOf(each.name), ".xml")) continue;
    packages.push_back({SplitPath(each.name).title, JoinPath(folder, each.name)});
  }
  return packages;
}

std::vector<TargetPackage> TargetCatalogue::FindPackages() const {
  std::vector<TargetPackage> packages = FindRegistered();
  if (further_ == nullptr) return packages;
  for (const std::string& folder : *further_) {
    for (TargetPackage& package : FindIn(JoinPath(folder, "targets"))) {
      const std::string name = FileNameOf(package.path);
      std::erase_if(packages, [&](const TargetPackage& each) {
        return EqualNoCase(FileNameOf(each.path), name);
      });
      packages.push_back(std::move(package));
    }
  }
  return packages;
}

std::vector<TargetPackage> TargetCatalogue::FindRegistered() const {
  const std::vector<std::string> keys = settings_.RegistrySubkeys(kPackagesKey);
  if (keys.empty()) return FindIn(folder_);
  std::vector<TargetPackage> packages;
  for (const std::string& key : keys) {
    if (auto package = ReadPackage(std::string(kPackagesKey) + "\\" + key)) {
      packages.push_back(std::move(*package));
    }
  }
  return packages;
}

std::unique_ptr<CXmlNode> TargetCatalogue::Read() const {
  auto catalogue = CXmlNode::CreateNode(kRootName);
  catalogue->AddAttr(kHeader, kRootName);
  for (const TargetPackage& package : FindPackages()) {
    const Result<std::string> text = files_.ReadWholeFile(package.path);
    // A package that was removed is skipped; one that can't be read is reported as a problem.
    if (!text && text.GetError().code == ErrorCode::NotFound) continue;
    CXmlNode root;
    const std::string fault = text ? LoadWhole(root, *text, XmlTexts::InElements, package.path)
                                   : package.path + ": " + text.GetError().text;
    if (!fault.empty() && catalogue->GetAttr(kProblem) == nullptr) {
      catalogue->AddAttr(kProblem, fault);
    }
    if (!text) continue;
    ApplyPresentation(root);
    // Appended after the file's own label, if any, which then takes precedence.
    root.AddAttr(kHeader, package.label);
    catalogue->AppendCopy(root);
  }
  return catalogue;
}

TargetDescription DescribeTarget(const CXmlNode& target) {
  TargetDescription description;
  for (const CXmlNode* child : target.GetChildren()) {
    const std::string_view name = child->NameView();
    const char* value = child->ValueText();
    if (name == "Micro_Description") description.text = WithLineBreaks(value);
    if (name == "Datasheet") description.datasheet = CleanLink(value);
    if (name == "Wizard" && *value != '\0') description.wizard = value;
    if (name == "#CDATA") description.script = value;
    if (name == "ConfigName") description.configName = value;
  }
  return description;
}

}  // namespace tarn
