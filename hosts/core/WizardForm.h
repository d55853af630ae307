#pragma once

#include <optional>
#include <string>
#include <vector>

#include "widgets/Edit.h"
#include "widgets/PropertySheet.h"
#include "widgets/TreeCtrl.h"

namespace tarn::host {

// A host's input for the wizard for a new application. Fields that are not set retain the proposed
// values.
struct WizardChoices {
  std::optional<std::string> typeHeader;  // one of the choices, in any letter case
  std::optional<std::string> target;      // name, or path if the name is ambiguous
  std::optional<std::string> applicationName;
  std::optional<std::string> location;
  std::optional<bool> createNewProject;
  std::optional<bool> launchTool;  // the tool that generates the first sources for the target
};

// Current content of the wizard.
struct WizardProposals {
  std::string typeHeader;  // empty if none is selected
  std::vector<std::string> typeHeaders;
  std::string target;                // path; empty if none is selected
  std::vector<std::string> targets;  // paths: families and name, separated by slashes
  std::string applicationName;
  std::string location;
  bool createNewProject = true;
  bool mayJoinProject = false;  // createNewProject can be changed
  bool launchTool = false;
  bool mayLaunchTool = false;
};

// A choice that the wizard doesn't offer.
struct WizardRefusal {
  std::string text;                  // why, as a sentence
  std::string value;                 // requested value
  std::vector<std::string> choices;  // known names, for a suggestion
  std::string hint = {};             // suggestion, if the names alone don't lead to it
};

// A microcontroller or board of the catalogue.
struct WizardTarget {
  std::string path;  // families and name, separated by slashes
  std::string name;
  std::string description;  // may have several lines
  std::string keywords;     // maker and core
};

// Fills in the wizard for a new application in place of a user: addresses its controls by their ids
// and performs the actions that a user could. Valid only for the duration of one RunSheet.
class WizardForm {
 public:
  explicit WizardForm(const CPropertySheet& sheet) : page_(*sheet.GetPage()) {}

  // Returns true if the sheet is this wizard. All other functions require that.
  static bool Fits(const CPropertySheet& sheet);

  WizardProposals Read() const;
  // Applies the choices in order; on the first one that can't be made, stops and returns the
  // reason.
  std::optional<WizardRefusal> Fill(const WizardChoices& choices);
  // Returns true if a family of the catalogue, or nothing, is selected although there are targets.
  bool MissesTarget() const;
  std::vector<WizardTarget> ListTargets() const;
  // Returns the toolchain of the selected target; an empty string if the application isn't built.
  std::string GetToolchain() const;
  // Selects the top of the catalogue, and disables the link to a data sheet until a target has one.
  void ClearTarget();
  // Scrolls to the selected target.
  void ShowTarget();
  // Hides the check box for the tool that generates the first sources, unless a target has one.
  void HideUnusedTool();
  // Chooses a new project, and takes the choice away from the user.
  void RequireNewProject();
  // Replaces the proposed location.
  void SetLocation(const std::string& location);

  // The controls, for hosts that extend the wizard's window.
  CTreeCtrl& GetTargetTree() const;
  CEdit& GetNameField() const;

 private:
  std::optional<WizardRefusal> ChooseType(const std::string& typeHeader);
  std::optional<WizardRefusal> ChooseTarget(const std::string& target);
  std::optional<WizardRefusal> ChooseProject(bool createNewProject);
  std::optional<WizardRefusal> ChooseTool(bool launchTool);

  CPropertyPage& page_;
};

}  // namespace tarn::host
