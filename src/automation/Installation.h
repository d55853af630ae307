#pragma once

#include <string>

#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"
#include "project/ProjectModel.h"
#include "wizard/TargetCatalogue.h"

namespace tarn {

class CXmlNode;

// The installation that a manager works with: its folders, its configuration file, and the default
// project, which is open if no other project is. Main thread only.
//
// Calling sequence: Locate(), then Configure(), then SeedDefaultProject(). Before Locate() all
// paths are empty.
class Installation {
 public:
  // Both are borrowed and must outlive this object.
  Installation(FileSystem& fileSystem, Settings& userSettings);

  // Determines the folders and chooses the configuration file: one that is named after the folder
  // `givenDataPath`, or else the one of the whole installation. `givenApplicationPath` is the
  // folder of the installation; null or empty for the default. Returns false if there is no
  // configuration file.
  bool Locate(const char* givenApplicationPath, const char* givenDataPath);
  // Loads the configuration file into the model: paths, node types, settings of the import. Sends
  // its menus to the host. Returns false if the file can't be read; if it is missing, without a
  // line of the log.
  bool Configure(CProjectModel& model);
  // Copies the files of the default project to the user's folder, unless they exist there. A copy
  // that fails is reported when the default project is opened.
  void SeedDefaultProject();

  // Path of the default project; empty before SeedDefaultProject().
  const std::string& GetDefaultProject() const { return defaultProject_; }
  const std::string& GetFolder() const { return folder_; }  // ends in a separator
  const std::string& GetConfigFolder() const { return configFolder_; }
  const std::string& GetConfigFile() const { return configFile_; }
  const std::string& GetDataPath() const { return dataPath_; }
  // Returns the first fault of the configuration file as "FILE:LINE: description"; an empty string
  // if there is none.
  const std::string& GetProblem() const { return problem_; }
  // Returns the catalogue of the targets registered on this system, or else those of the
  // installation, and those in the `further` folders with definitions, which are borrowed.
  TargetCatalogue GetTargetCatalogue(const std::vector<std::string>* further) const {
    return {files_, settings_, folder_ + "targets", further};
  }
  // Resolves a name that isn't an existing file against the configuration folder, without checking
  // that the result exists.
  std::string FindConfigFile(const char* name) const;
  // Returns a value of the system settings below the key of the installation; an empty string if
  // there is none.
  std::string ReadRegistryValue(const char* key, const char* name) const;

 private:
  bool LoadTypes(CProjectModel& model, CXmlNode& configuration);
  // Returns the name of the application folder, which is the key for settings; an empty string for
  // the standard one.
  std::string OwnFolderName() const;

  FileSystem& files_;
  Settings& settings_;
  std::string folder_;
  std::string dataPath_;
  std::string configFolder_;
  std::string configFile_;
  std::string problem_;
  std::string defaultProject_;
};

// Returns a description of what is missing in the current definitions of options and tools; an
// empty string if nothing is. Requires that both components are attached.
std::string FindDefinitionProblem(const ProjectServices& services);

}  // namespace tarn
