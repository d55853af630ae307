#include "hosts/core/TargetPackages.h"

#include <utility>

#include "hosts/core/LogEntry.h"
#include "platform/paths/Paths.h"
#include "platform/settings/IniStore.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr std::string_view kPackages = "Software\\Corvane\\Tarn7\\Targets\\";
// Prefix of the file's title, so that keys of other vendors are not overwritten.
constexpr std::string_view kOwnPrefix = "Tarn-";
// Longest value that readers of the registry accept.
constexpr std::size_t kLongestValue = 259;

struct Package {
  std::string key;
  std::string label;
  std::string path;
};

std::vector<Package> FindPackages(FileSystem& files, const std::string& folder) {
  std::vector<Package> packages;
  const auto entries = files.ListFolder(folder);
  if (!entries) return packages;
  for (const FolderEntry& each : *entries) {
    if (each.isFolder || !EqualNoCase(ExtensionOf(each.name), ".xml")) continue;
    const std::string title = SplitPath(each.name).title;
    const std::string path = JoinPath(folder, each.name);
    const auto text = files.ReadWholeFile(path);
    const auto root = text ? ParseXml(*text) : nullptr;
    const std::string label = GetAttribute(root.get(), "Header");
    const std::string key = std::string(kPackages).append(kOwnPrefix).append(title);
    packages.push_back({key, label.empty() ? title : label, path});
  }
  return packages;
}

std::vector<std::string> KeysInFolder(const IniFile& store, const std::string& folder) {
  std::vector<std::string> keys;
  for (const std::string& section : store.SectionNames()) {
    if (!StartsWithNoCase(section, kPackages)) continue;
    if (FolderOf(store.Read(section, "XmlPath").value_or("")) == folder) keys.push_back(section);
  }
  return keys;
}

bool WritePackage(IniFile& store, const Package& package) {
  return package.path.size() <= kLongestValue &&
         store.Write(package.key, "NickName", IniFile::Quoted(package.label)) &&
         store.Write(package.key, "XmlPath", IniFile::Quoted(package.path));
}

bool IsKeyOf(const std::vector<Package>& packages, const std::string& key) {
  for (const Package& each : packages) {
    if (EqualNoCase(each.key, key)) return true;
  }
  return false;
}

}  // namespace

TargetPackages::TargetPackages(FileSystem& fileSystem, std::string registryFile,
                               std::string targetFolder)
    : files_(fileSystem), registry_(std::move(registryFile)), folder_(std::move(targetFolder)) {}

Status TargetPackages::Register() {
  const std::vector<Package> packages = FindPackages(files_, folder_);
  return EditIniStore(files_, registry_, [&](IniFile& store) {
    for (const std::string& key : KeysInFolder(store, folder_)) {
      if (!IsKeyOf(packages, key)) store.RemoveSection(key);
    }
    for (const Package& each : packages) {
      if (!WritePackage(store, each)) return false;
    }
    return true;
  });
}

Status TargetPackages::Unregister() {
  return EditIniStore(files_, registry_, [&](IniFile& store) {
    for (const std::string& key : KeysInFolder(store, folder_)) store.RemoveSection(key);
    return true;
  });
}

std::vector<std::string> TargetPackages::ListRegistered() const {
  const IniFile store = ReadIniStore(files_, registry_);
  std::vector<std::string> paths;
  for (const std::string& key : KeysInFolder(store, folder_)) {
    paths.push_back(store.Read(key, "XmlPath").value_or(""));
  }
  return paths;
}

}  // namespace tarn::host
