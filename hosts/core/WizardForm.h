#pragma once

#include <optional>
#include <string>
#include <vector>

#include "widgets/PropertySheet.h"
#include "widgets/TreeCtrl.h"

namespace tarn::host {

// What a host would have in the wizard for a new application; what it leaves open stays as it was
// proposed.
struct WizardChoices {
  std::optional<std::string> typeHeader;  // one of those on offer, whatever the case
  std::optional<std::string> target;      // name, or path where several have the name
  std::optional<std::string> applicationName;
  std::optional<std::string> location;
  std::optional<bool> createNewProject;
  std::optional<bool> launchTool;  // the tool that writes the first sources for the target
};

// What stands in the wizard.
struct WizardProposals {
  std::string typeHeader;  // empty when none is selected
  std::vector<std::string> typeHeaders;
  std::string target;                // path; empty when none is selected
  std::vector<std::string> targets;  // paths: families and name, with slashes between them
  std::string applicationName;
  std::string location;
  bool createNewProject = true;
  bool mayJoinProject = false;  // whether the former is a choice at all
  bool launchTool = false;
  bool mayLaunchTool = false;
};

// A choice that the wizard doesn't offer.
struct WizardRefusal {
  std::string text;                  // why, as a sentence
  std::string value;                 // what was wanted
  std::vector<std::string> choices;  // names that could have been meant instead
};

// Works with the wizard for a new application in place of a user: knows its controls by their
// numbers, and does with them what a user could. For the time of one RunSheet.
class WizardForm {
 public:
  explicit WizardForm(CPropertySheet& sheet) : page(*sheet.GetPage()) {}

  // Whether the sheet is this wizard; with another one the functions below must not be called.
  static bool Fits(const CPropertySheet& sheet);

  WizardProposals Read() const;
  // Stops at the first choice that can't be made, and tells it.
  std::optional<WizardRefusal> Fill(const WizardChoices& choices);

 private:
  std::optional<WizardRefusal> ChooseType(const std::string& typeHeader);
  std::optional<WizardRefusal> ChooseTarget(const std::string& target);
  std::optional<WizardRefusal> ChooseProject(bool createNewProject);
  std::optional<WizardRefusal> ChooseTool(bool launchTool);

  CPropertyPage& page;
};

}  // namespace tarn::host
