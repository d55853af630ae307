#pragma once

#include <memory>
#include <string>

#include "platform/files/FileSystem.h"
#include "platform/settings/Settings.h"
#include "project/NewApplication.h"
#include "project/ProjectModel.h"
#include "views/XmlTreeCtrl.h"
#include "widgets/PropertyPage.h"
#include "wizard/TargetCatalogue.h"

namespace tarn {

// Controls of the page, with the ids that programs use to fill it in.
enum ApplicationPageControl : int {
  kIdTargetTree = 622,
  kIdName = 8004,
  kIdLocation = 8005,
  kIdType = 8006,
  kIdBrowse = 8007,
  kIdIntoProject = 8008,
  kIdNewProject = 8009,
  kIdDescription = 8011,
  kIdDatasheet = 8012,
  kIdTargetFrame = 8016,
  kIdLaunchTool = 8020,
};

// Objects that a wizard uses. All references must outlive the wizard.
struct WizardEnvironment {
  CProjectModel& model;
  FileSystem& files;
  Settings& settings;
  TargetCatalogue catalogue;
};

// Wizard page for a new application: the microcontroller from a catalogue, the type, the name, the
// folder, and if the application is added to the open project. It doesn't create anything itself.
class CApplicationPage : public CPropertyPage {
 public:
  explicit CApplicationPage(const WizardEnvironment& wizardEnvironment);
  ~CApplicationPage() override { DestroyWindow(); }

  // Initially the proposed values, then the chosen ones. Fields that the selected microcontroller
  // doesn't define keep the values of the one selected before.
  NewApplication application;

  // Returns the reason why the wizard can't be finished with the current input; an empty string if
  // it can.
  std::string FindFinishProblem() override;

 protected:
  void OnInitDialog() override;
  void OnSetActive() override;
  void OnWizardFinish() override;
  void OnControl(int controlId) override;
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override;

 private:
  void ShowTargets();
  void FillTypes();
  void OnTargetSelected();
  void OnTypeChosen();
  void OnBrowse();
  // Returns true if the user's setting is to run the tool that generates sources.
  bool WantsTool() const;
  // Copies name, location and project choice from the controls to `wanted`.
  void TakeFields(NewApplication& wanted) const;

  const WizardEnvironment environment_;
  std::unique_ptr<CXmlNode> targetsRoot_;  // must outlive the tree's window
  CXmlTreeCtrl targetTree_;
  bool typeBuilds_ = true;  // the chosen type is built from sources, not a finished program
};

}  // namespace tarn
