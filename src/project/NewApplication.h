#pragma once

#include <string>

namespace tarn {

// What a new application is to be.
struct NewApplication {
  bool createNewProject = true;  // else it goes into the open project
  std::string applicationName;   // the title of its file
  std::string location;          // the folder
  std::string typeHeader;        // label of the application type

  // What the chosen microcontroller says.
  std::string targetText;               // script for the host
  std::string configName = "Standard";  // the configuration to begin with
  bool useCobbler = false;              // whether `wizardPath` is to run
  std::string wizardPath;               // tool that makes the first sources
};

// Whoever asks the user for an application.
class IProjectWizard {
 public:
  // True for Finish, with the choices in place of the proposals; else nothing is changed. What is
  // proposed as a new project becomes one. Runs the user's actions, and therefore anything, before
  // it returns.
  virtual bool AskNewApplication(NewApplication& application) = 0;

 protected:
  ~IProjectWizard() = default;
};

}  // namespace tarn
