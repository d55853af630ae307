#include "wizard/ProjectWizard.h"

#include "xml/XmlNode.h"

#include <utility>

namespace tarn {

CProjectWizard::CProjectWizard(const std::string& title, WindowHandle askedWindow,
                               const WizardEnvironment& environment)
    : CPropertySheet(title, askedWindow), page(environment) {
  SetPage(page);
  const std::string picture = environment.model.Services().configFolder + "resources/wizard.bmp";
  SetHeaderBitmap(ReadBitmapFile(environment.files, picture));
}

bool ProjectWizardMaker::AskNewApplication(NewApplication& application) {
  CProjectWizard wizard("Project New", environment_.model.Services().mainframeHandle, environment_);
  wizard.page.application = application;
  if (wizard.DoModal() != kSheetFinish) return false;
  application = std::move(wizard.page.application);
  return true;
}

}  // namespace tarn
