#include "wizard/ApplicationPage.h"

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/Dialogs.h"
#include "widgets/Edit.h"
#include "widgets/HyperlinkCtrl.h"
#include "widgets/PropertySheet.h"
#include "widgets/Static.h"
#include "wizard/TargetCatalogue.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr std::uint32_t kFieldStyle = kStyleBorder | kEditAutoScroll;

constexpr ControlRow kControls[] = {
    {8015, ControlKind::Label, "Type:", {8, 11, 88, 29}},
    {kIdType, ControlKind::DropDownList, "", {96, 8, 336, 32}},
    {8010, ControlKind::Label, "Processor:", {8, 43, 88, 61}},
    {kIdTargetFrame, ControlKind::Frame, "", {96, 40, 336, 288}},
    {8017, ControlKind::Label, "Description:", {352, 43, 632, 61}},
    {kIdDescription, ControlKind::Label, "Description", {352, 64, 632, 260}},
    {kIdDatasheet, ControlKind::Link, "DataSheet", {352, 268, 632, 288}},
    {8013, ControlKind::Label, "Name:", {8, 303, 88, 321}},
    {kIdName, ControlKind::Edit, "", {96, 300, 632, 324}, kFieldStyle},
    {8014, ControlKind::Label, "Location:", {8, 335, 88, 353}},
    {kIdLocation, ControlKind::Edit, "", {96, 332, 588, 356}, kFieldStyle},
    {kIdBrowse, ControlKind::PushButton, "...", {596, 332, 632, 356}},
    {kIdLaunchTool,
     ControlKind::CheckBox,
     "Launch Cobbler to generate source files",
     {96, 364, 632, 384}},
    {kIdIntoProject,
     ControlKind::RadioButton,
     "Insert to the current project",
     {96, 392, 340, 412},
     0,
     true},
    {kIdNewProject, ControlKind::RadioButton, "Create a new project", {352, 392, 632, 412}},
};
constexpr PageTemplate kTemplate = {107, {640, 420}, kControls};

// User settings that are kept between sessions.
constexpr const char* kSection = "Project";
constexpr const char* kLastProcessor = "LastProcessor";
constexpr const char* kFirstProcessor = "ST72521R9";
constexpr const char* kUseCobbler = "UseCobbler";

constexpr const char* kProgramFilter = "Applications (*.hex;*.bin;*.aof)|*.hex;*.bin;*.aof;*|";

bool IsYes(const CXmlNode& node, const char* name) {
  return EqualNoCase(OrEmpty(node.GetAttrValue(name)), "Yes");
}

// A control without an image isn't shown, so an empty image is used if the installation has none.
std::shared_ptr<const Bitmap> TargetPicture(const WizardEnvironment& environment) {
  const std::string path = environment.model.Services().configFolder + "resources/target.bmp";
  auto bitmap = ReadBitmapFile(environment.files, path);
  return bitmap ? bitmap : std::make_shared<const Bitmap>(Bitmap{{16, 16}, {}, {}});
}

}  // namespace

CApplicationPage::CApplicationPage(const WizardEnvironment& wizardEnvironment)
    : CPropertyPage(kTemplate), environment_(wizardEnvironment) {
  const bool isDefault = environment_.model.IsDefaultProject();
  application.createNewProject = isDefault;
  SetHeader(GetMessageText(isDefault ? kRowWizardTitleNew : kRowWizardTitleAdd),
            GetMessageText(kRowWizardSubtitle));
}

void CApplicationPage::OnInitDialog() {
  FindControl<CEdit>(kIdName)->SetControlText(application.applicationName);
  FindControl<CEdit>(kIdLocation)->SetControlText(application.location);
  const bool isNew = application.createNewProject;
  FindControl<CButton>(isNew ? kIdNewProject : kIdIntoProject)->SetCheck(true);
  ShowTargets();
  FillTypes();
  if (isNew) FindControl<CButton>(kIdIntoProject)->EnableWindow(false);
  OnTypeChosen();
  OnTargetSelected();
}

void CApplicationPage::ShowTargets() {
  auto& frame = *FindControl<CStatic>(kIdTargetFrame);
  frame.ShowWindow(false);
  targetTree_.Create(1, kStyleChild | kStyleVisible | kStyleBorder, frame.GetRect(), this,
                     kIdTargetTree);
  const auto picture = TargetPicture(environment_);
  targetTree_.AddImage("Targets", picture);
  targetTree_.AddImage("Target", picture);

  targetsRoot_ = environment_.catalogue.Read();
  targetTree_.SetXmlRoot(targetsRoot_.get());
  // All families are collapsed, except for the one with the selected microcontroller.
  for (CXmlNode* family : targetsRoot_->GetChildren()) {
    targetTree_.SelectNode(family);
    CTreeItem* const item = targetTree_.GetSelectedItem();
    if (item != nullptr && item->GetData() == family) targetTree_.Expand(*item, false);
  }
  const std::string last =
      environment_.settings.ReadProfile(kSection, kLastProcessor, kFirstProcessor);
  if (CXmlNode* const target = targetsRoot_->FindDescendantByAttr("Header", last)) {
    targetTree_.SelectNode(target);
  }
  if (CTreeItem* const item = targetTree_.GetSelectedItem()) targetTree_.EnsureVisible(*item);
}

void CApplicationPage::FillTypes() {
  auto& list = *FindControl<CComboBox>(kIdType);
  for (const CXmlNode* type : environment_.model.Types().GetRoot().GetChildren()) {
    if (IsYes(*type, "Application")) list.AddString(OrEmpty(type->GetAttrValue("Header")), type);
  }
  if (application.typeHeader.empty()) {
    list.SetCurSel(0);
    application.typeHeader = list.GetText(0);
  } else {
    list.SelectString(application.typeHeader);
  }
}

void CApplicationPage::OnSetActive() {
  GetSheet()->EnableFinish(true);
}

bool CApplicationPage::WantsTool() const {
  return environment_.settings.ReadProfile(kSection, kUseCobbler, "No") != "No";
}

void CApplicationPage::OnTargetSelected() {
  auto& description = *FindControl<CStatic>(kIdDescription);
  description.SetControlText("");
  const CXmlNode* const target = targetTree_.GetCurrentNode();
  if (target == nullptr) return;
  application.useCobbler = WantsTool();
  auto& launch = *FindControl<CButton>(kIdLaunchTool);
  launch.SetCheck(false);
  launch.EnableWindow(false);

  TargetDescription reported = DescribeTarget(*target);
  description.SetControlText(reported.text);
  if (reported.datasheet) {
    auto& link = *FindControl<CHyperlinkCtrl>(kIdDatasheet);
    if (!reported.datasheet->empty()) link.SetAddress(*reported.datasheet);
    link.EnableWindow(!reported.datasheet->empty());
  }
  if (reported.wizard && typeBuilds_) {
    launch.SetCheck(application.useCobbler);
    launch.EnableWindow(true);
    application.wizardPath = std::move(*reported.wizard);
  }
  if (reported.script) application.targetText = std::move(*reported.script);
  if (reported.configName) application.configName = std::move(*reported.configName);
}

void CApplicationPage::OnTypeChosen() {
  const auto& list = *FindControl<CComboBox>(kIdType);
  const auto* const type = static_cast<const CXmlNode*>(list.GetItemData(list.GetCurSel()));
  if (type == nullptr) return;
  application.typeHeader = OrEmpty(type->GetAttrValue("Header"));
  typeBuilds_ = IsYes(*type, "Build");
  if (typeBuilds_) {
    auto& name = *FindControl<CEdit>(kIdName);
    name.SetControlText(WithoutExtension(name.GetControlText()));
  }
  OnTargetSelected();
}

void CApplicationPage::OnControl(int controlId) {
  if (controlId == kIdType) OnTypeChosen();
  if (controlId == kIdBrowse) OnBrowse();
}

// Asks for the folder of the sources, or for the finished program.
void CApplicationPage::OnBrowse() {
  const WindowHandle asked = GetSheet()->GetOwnerWindow();
  std::string folder;
  std::string name;
  if (typeBuilds_) {
    folder = ChooseFolder(asked, {FindControl<CEdit>(kIdLocation)->GetControlText()});
  } else {
    const std::vector<std::string> chosen = ChooseFiles(asked, {kProgramFilter, {}, false});
    if (!chosen.empty()) {
      folder = FolderOf(chosen.front());
      name = FileNameOf(chosen.front());
    }
  }
  // The sheet may have been closed while the dialog was open.
  if (folder.empty() || !IsCreated()) return;
  FindControl<CEdit>(kIdLocation)->SetControlText(folder);
  if (!name.empty()) FindControl<CEdit>(kIdName)->SetControlText(name);
}

std::intptr_t CApplicationPage::OnMessage(std::uint32_t message, std::intptr_t wParam,
                                          std::intptr_t lParam) {
  if (message != kXmlTreeSelect) return CPropertyPage::OnMessage(message, wParam, lParam);
  OnTargetSelected();
  return 0;
}

void CApplicationPage::TakeFields(NewApplication& wanted) const {
  wanted.applicationName = FindControl<CEdit>(kIdName)->GetControlText();
  wanted.location = FindControl<CEdit>(kIdLocation)->GetControlText();
  wanted.createNewProject = FindControl<CButton>(kIdNewProject)->IsChecked();
}

std::string CApplicationPage::FindFinishProblem() {
  NewApplication wanted = application;
  TakeFields(wanted);
  return environment_.model.Items().FindApplicationProblem(wanted);
}

void CApplicationPage::OnWizardFinish() {
  TakeFields(application);
  const CXmlNode* const target = targetTree_.GetCurrentNode();
  if (target == nullptr) return;
  // The check box is saved for the next time; the decision if the tool runs now was made when the
  // microcontroller was selected.
  const bool isTicked = FindControl<CButton>(kIdLaunchTool)->IsChecked();
  application.wizardPath =
      isTicked ? DescribeTarget(*target).wizard.value_or(std::string()) : std::string();
  environment_.settings.WriteProfile(kSection, kUseCobbler, isTicked ? "Yes" : "No");
  environment_.settings.WriteProfile(kSection, kLastProcessor,
                                     OrEmpty(target->GetAttrValue("Header")));
}

}  // namespace tarn
