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

// Controls of the page, which programs that fill it in know as well.
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

// What a wizard looks into. All that it refers to outlives it.
struct WizardSurroundings {
  CProjectModel& model;
  FileSystem& files;
  Settings& settings;
  TargetCatalogue catalogue;
};

// The page that asks for a new application: the microcontroller out of a catalogue, the type, the
// name, the folder, and whether it joins the open project. It makes nothing itself.
class CApplicationPage : public CPropertyPage {
 public:
  explicit CApplicationPage(const WizardSurroundings& wizardSurroundings);
  ~CApplicationPage() override { DestroyWindow(); }

  // What is proposed, then what was chosen. Of a microcontroller that leaves something open, the
  // fields keep what the one that was selected before it has put there.
  NewApplication application;

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
  bool WantsTool() const;
  void TakeFields(NewApplication& wanted) const;

  const WizardSurroundings surroundings;
  std::unique_ptr<CXmlNode> targetsRoot;  // outlives the tree's window
  CXmlTreeCtrl targetTree;
  bool typeBuilds = true;  // the chosen type has sources, rather than a finished program
};

}  // namespace tarn
