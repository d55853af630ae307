#pragma once

#include <string>

#include "widgets/PropertySheet.h"
#include "wizard/ApplicationPage.h"

namespace tarn {

// Wizard sheet for a new application; `page` has the values.
class CProjectWizard : public CPropertySheet {
 public:
  CProjectWizard(const std::string& title, WindowHandle askedWindow,
                 const WizardEnvironment& environment);
  ~CProjectWizard() override { DestroyWindow(); }

  CApplicationPage page;
};

// Creates a wizard each time the model requests a new application.
class ProjectWizardMaker final : public IProjectWizard {
 public:
  explicit ProjectWizardMaker(const WizardEnvironment& wizardEnvironment)
      : environment_(wizardEnvironment) {}
  // Shows the wizard, initialised with `application`. Returns false and leaves `application`
  // unchanged if the user cancelled.
  bool AskNewApplication(NewApplication& application) override;

 private:
  const WizardEnvironment environment_;
};

}  // namespace tarn
