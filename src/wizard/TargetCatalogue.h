#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"
#include "xml/XmlNode.h"

namespace tarn {

// A file of target descriptions that this machine knows.
struct TargetPackage {
  std::string label;
  std::string path;
};

// The microcontrollers that a new application can be made for.
//
// Packages are the keys below "Software\Corvane\Tarn7\Targets" of the registry, each with the
// values NickName, XmlPath, Name and Hidden; a machine where nobody has registered any has those
// that lie in the installation. What can't be read is left out, and nothing is told: whoever asks
// shows what there is. Keeps nothing between two calls. Host's thread only.
class TargetCatalogue {
 public:
  // `installedFolder` holds the description files of the installation (*.xml). The disk and the
  // settings have to outlive the catalogue.
  TargetCatalogue(FileSystem& fileSystem, const Settings& settingsStores,
                  std::string installedFolder);

  // Those that aren't hidden, in the order of the registry, or in that of their file names.
  std::vector<TargetPackage> FindPackages() const;
  // All packages as one tree below an element "Targets" of the same label: the root element of each
  // file with what is below it, hidden children left out. A damaged file gives what stands in front
  // of the damage, and the root gets "Problem" then: "FILE:LINE: what", of the first such file.
  // Never null.
  std::unique_ptr<CXmlNode> Read() const;

 private:
  std::optional<TargetPackage> ReadPackage(const std::string& key) const;
  std::vector<TargetPackage> FindInstalled() const;

  FileSystem& files;
  const Settings& settings;
  std::string folder;
};

// What the children of a target say. Nothing stands for a child that isn't there, which is another
// thing than one without a text.
struct TargetDescription {
  std::string text;                      // may have several lines
  std::optional<std::string> datasheet;  // a link
  std::optional<std::string> wizard;     // path of a tool that writes sources; never empty
  std::optional<std::string> script;     // sets the new application up
  std::optional<std::string> configName;
};

// Reads an element "Target"; of two children of a kind the last one counts.
TargetDescription DescribeTarget(const CXmlNode& target);

}  // namespace tarn
