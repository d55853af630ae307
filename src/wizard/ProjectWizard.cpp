#include "wizard/ProjectWizard.h"

#include "xml/XmlNode.h"

#include <utility>

namespace tarn {

CProjectWizard::CProjectWizard(const std::string& title, WindowHandle askedWindow,
                               const WizardSurroundings& surroundings)
    : CPropertySheet(title, askedWindow), page(surroundings) {
  SetPage(page);
  const std::string picture = surroundings.model.Services().configFolder + "resources/wizard.bmp";
  SetHeaderBitmap(ReadBitmapFile(surroundings.files, picture));
}

bool ProjectWizardMaker::AskNewApplication(NewApplication& application) {
  CProjectWizard wizard("Project New", surroundings_.model.Services().mainframeHandle,
                        surroundings_);
  wizard.page.application = application;
  if (wizard.DoModal() != kSheetFinish) return false;
  application = std::move(wizard.page.application);
  return true;
}

}  // namespace tarn
