#pragma once

#include <string>

#include "widgets/PropertySheet.h"
#include "wizard/ApplicationPage.h"

namespace tarn {

// The sheet that asks for a new application, which `page` holds.
class CProjectWizard : public CPropertySheet {
 public:
  CProjectWizard(const std::string& title, WindowHandle askedWindow,
                 const WizardSurroundings& surroundings);
  ~CProjectWizard() override { DestroyWindow(); }

  CApplicationPage page;
};

// Makes a wizard each time that the model asks for one.
class ProjectWizardMaker final : public IProjectWizard {
 public:
  explicit ProjectWizardMaker(const WizardSurroundings& wizardSurroundings)
      : surroundings(wizardSurroundings) {}
  bool AskNewApplication(NewApplication& application) override;

 private:
  const WizardSurroundings surroundings;
};

}  // namespace tarn
