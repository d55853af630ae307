#pragma once

#include <string>

#include "drivers/PropertyManagerDriver.h"
#include "drivers/ToolManagerDriver.h"
#include "output/BuildOutput.h"
#include "platform/files/FileSystem.h"
#include "platform/process/Process.h"
#include "project/BuildControl.h"
#include "project/NodeTypes.h"
#include "project/ProjectViews.h"
#include "widgets/Wnd.h"

namespace tarn {

// Everything that the parts of a project use and don't own: disk, log, components, windows,
// builder, host, and the paths and types of the installation. The owner sets it before the first
// operation and keeps it alive longer than the parts, which hold a reference to it. All pointers
// are borrowed. Main thread only.
struct ProjectServices {
  explicit ProjectServices(FileSystem& disk) : files(disk) {}
  ProjectServices(const ProjectServices&) = delete;
  ProjectServices& operator=(const ProjectServices&) = delete;

  FileSystem& files;
  CBuildOutput* output = nullptr;
  CPropertyManagerDriver* propertyManager = nullptr;
  CToolManagerDriver* toolManager = nullptr;
  ProjectViews views;
  BuildControl build;
  WindowHandle mainframeHandle = 0;
  NodeTypes types;

  std::string configFolder;  // ends with a separator
  std::string configFilePath;
  std::string examplesFolder;  // ends with a separator
  std::string applicationPath;
  std::string dataPath;
  // Folder in which hosts store per-user state. Builds must not write there. Empty if unknown.
  std::string stateFolder;

  // Conversion of projects in the old format: launcher of the script, its interpreter (empty:
  // Perl), and the time limit.
  ProcessLauncher* launcher = &ProcessLauncher::Native();
  std::string importProgram;
  int importSeconds = 600;
};

}  // namespace tarn
