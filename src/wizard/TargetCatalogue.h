#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"

namespace tarn {

class CXmlNode;

// File of target descriptions that is registered or installed.
struct TargetPackage {
  std::string label;
  std::string path;
};

// Catalogue of the microcontrollers for which an application can be created.
//
// Packages are the keys below "Software\Corvane\Tarn7\Targets" of the registry, each with the
// values NickName, XmlPath, Name and Hidden; if none is registered, those in the installation are
// used. Files that can't be read are left out without a message; the caller shows what is
// available. Keeps no state between calls. Main thread only.
class TargetCatalogue {
 public:
  // `installedFolder` contains the description files of the installation (*.xml). The `further`
  // folders with definitions may have more in their folders "targets"; null for none. The
  // references must outlive the catalogue.
  TargetCatalogue(FileSystem& fileSystem, const Settings& settingsStores,
                  std::string installedFolder, const std::vector<std::string>* further = nullptr);

  // Returns the packages that aren't hidden, in registry order or, for installed ones, in the order
  // of their file names, followed by those of the further folders. One with the file name of an
  // earlier package replaces it.
  std::vector<TargetPackage> FindPackages() const;
  // Returns all packages as one tree below an element "Targets" with the package labels: the root
  // element of each file with its descendants, except for hidden children. From a damaged file, the
  // part before the damage is used, and the root gets the attribute "Problem" with the first such
  // fault as "FILE:LINE: description". Never returns nullptr.
  std::unique_ptr<CXmlNode> Read() const;

 private:
  std::optional<TargetPackage> ReadPackage(const std::string& key) const;
  std::vector<TargetPackage> FindIn(const std::string& folder) const;
  std::vector<TargetPackage> FindRegistered() const;

  FileSystem& files_;
  const Settings& settings_;
  std::string folder_;
  const std::vector<std::string>* further_;
};

// Values in the children of a target. nullopt means that the child is absent, as opposed to an
// empty child.
struct TargetDescription {
  std::string text;                      // may have several lines
  std::optional<std::string> datasheet;  // a link
  std::optional<std::string> wizard;     // path of a tool that generates sources; never empty
  std::optional<std::string> script;     // sets up the new application
  std::optional<std::string> configName;
};

// Parses an element "Target". If a child occurs twice, the last one takes precedence.
TargetDescription DescribeTarget(const CXmlNode& target);

}  // namespace tarn
