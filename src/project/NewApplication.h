#pragma once

#include <string>

namespace tarn {

// Properties of an application to be created.
struct NewApplication {
  bool createNewProject = true;  // false adds it to the open project
  std::string applicationName;   // the title of its file
  std::string location;          // the folder
  std::string typeHeader;        // label of the application type

  // Data of the selected microcontroller.
  std::string targetText;               // script for the host to run
  std::string configName = "Standard";  // initial configuration
  bool useCobbler = false;              // run `wizardPath` afterwards
  std::string wizardPath;               // tool that generates the initial sources
};

// Dialog that asks the user for a new application.
class IProjectWizard {
 public:
  // Shows the dialog with the proposals in `application`. Returns true if the user finished it,
  // with the choices in `application`; else leaves it unchanged. An application that is proposed
  // with a new project always gets one. Runs a nested event loop: any user action, and therefore
  // any change of the model, may happen before the call returns.
  virtual bool AskNewApplication(NewApplication& application) = 0;

 protected:
  ~IProjectWizard() = default;
};

}  // namespace tarn
