#include "hosts/core/WizardForm.h"

#include "hosts/core/TargetName.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"
#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/Edit.h"
#include "widgets/HyperlinkCtrl.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr int kWizardPage = 107;

constexpr int kTargetTree = 622;
constexpr int kName = 8004;
constexpr int kLocation = 8005;
constexpr int kType = 8006;
constexpr int kIntoProject = 8008;
constexpr int kNewProject = 8009;
constexpr int kDatasheet = 8012;
constexpr int kLaunchTool = 8020;

struct Target {
  std::string path;
  CTreeItem* item = nullptr;
};

// Items of the catalogue have their XML element as data. A family may be empty, and a target may
// have children.
bool IsTarget(const CTreeItem& item) {
  const auto* const element = static_cast<const CXmlNode*>(item.GetData());
  return element != nullptr && element->NameView() == "Target";
}

// The catalogue is below a single root item.
void CollectTargets(const CTreeItem& family, const std::string& path,
                    std::vector<Target>& targets) {
  for (CTreeItem* item = family.GetFirstChildItem(); item != nullptr;
       item = item->GetNextSiblingItem()) {
    const std::string own = path + item->GetText();
    if (IsTarget(*item)) targets.push_back({own, item});
    CollectTargets(*item, own + "/", targets);
  }
}

std::string AttributeOf(const CXmlNode& element, const char* name) {
  const char* const value = element.GetAttrValue(name);
  return value == nullptr ? std::string() : value;
}

std::string DescriptionOf(const CXmlNode& target) {
  const CXmlNode* const text = target.FindChild("Micro_Description");
  return text == nullptr ? std::string() : ReplaceAll(std::string(text->ValueText()), "\\n", "\n");
}

std::vector<Target> TargetsOf(const CPropertyPage& page) {
  std::vector<Target> targets;
  const auto& tree = *page.FindControl<CTreeCtrl>(kTargetTree);
  if (tree.GetRootItem() != nullptr) CollectTargets(*tree.GetRootItem(), "", targets);
  return targets;
}

// Returns true if `name` is the whole path, or its end after a slash.
bool IsNamed(const Target& target, const std::string& name) {
  if (name.empty() || name.size() > target.path.size()) return false;
  const std::size_t start = target.path.size() - name.size();
  return EqualNoCase(target.path.substr(start), name) &&
         (start == 0 || target.path[start - 1] == '/');
}

void Type(CEdit& edit, const std::optional<std::string>& text) {
  if (text) edit.NotifyTextEdited(*text, {text->size(), text->size()});
}

}  // namespace

bool WizardForm::Fits(const CPropertySheet& sheet) {
  return sheet.GetPage() != nullptr && sheet.GetPage()->IsCreated() &&
         sheet.GetPage()->GetId() == kWizardPage;
}

WizardProposals WizardForm::Read() const {
  WizardProposals proposals;
  const auto& types = *page_.FindControl<CComboBox>(kType);
  proposals.typeHeader = types.GetText(types.GetCurSel());
  for (int i = 0; i < types.GetCount(); ++i) proposals.typeHeaders.push_back(types.GetText(i));
  const CTreeItem* const selected = page_.FindControl<CTreeCtrl>(kTargetTree)->GetSelectedItem();
  for (Target& each : TargetsOf(page_)) {
    if (each.item == selected) proposals.target = each.path;
    proposals.targets.push_back(std::move(each.path));
  }
  proposals.applicationName = page_.FindControl<CEdit>(kName)->GetControlText();
  proposals.location = page_.FindControl<CEdit>(kLocation)->GetControlText();
  proposals.createNewProject = page_.FindControl<CButton>(kNewProject)->IsChecked();
  proposals.mayJoinProject = page_.FindControl<CButton>(kIntoProject)->IsEnabled();
  proposals.launchTool = page_.FindControl<CButton>(kLaunchTool)->IsChecked();
  proposals.mayLaunchTool = page_.FindControl<CButton>(kLaunchTool)->IsEnabled();
  return proposals;
}

bool WizardForm::MissesTarget() const {
  const WizardProposals proposals = Read();
  return proposals.target.empty() && !proposals.targets.empty();
}

std::vector<WizardTarget> WizardForm::ListTargets() const {
  std::vector<WizardTarget> list;
  for (Target& each : TargetsOf(page_)) {
    const auto& element = *static_cast<const CXmlNode*>(each.item->GetData());
    list.push_back({std::move(each.path), each.item->GetText(), DescriptionOf(element),
                    AttributeOf(element, "Maker") + ' ' + AttributeOf(element, "Core")});
  }
  return list;
}

std::string WizardForm::GetToolchain() const {
  const auto& types = *page_.FindControl<CComboBox>(kType);
  const auto* const type = static_cast<const CXmlNode*>(types.GetItemData(types.GetCurSel()));
  const CTreeItem* const item = GetTargetTree().GetSelectedItem();
  const bool isBuilt = type != nullptr && EqualNoCase(AttributeOf(*type, "Build"), "Yes");
  if (!isBuilt || item == nullptr || !IsTarget(*item)) return {};
  return AttributeOf(*static_cast<const CXmlNode*>(item->GetData()), "Toolchain");
}

CTreeCtrl& WizardForm::GetTargetTree() const {
  return *page_.FindControl<CTreeCtrl>(kTargetTree);
}

CEdit& WizardForm::GetNameField() const {
  return *page_.FindControl<CEdit>(kName);
}

void WizardForm::ClearTarget() {
  CTreeCtrl& tree = GetTargetTree();
  if (CTreeItem* const top = tree.GetRootItem()) {
    tree.SelectItem(top);
    tree.EnsureVisible(*top);
  }
  page_.FindControl<CHyperlinkCtrl>(kDatasheet)->EnableWindow(false);
}

void WizardForm::ShowTarget() {
  if (CTreeItem* const item = GetTargetTree().GetSelectedItem()) {
    GetTargetTree().EnsureVisible(*item);
  }
}

void WizardForm::HideUnusedTool() {
  for (const Target& each : TargetsOf(page_)) {
    const auto& element = *static_cast<const CXmlNode*>(each.item->GetData());
    const CXmlNode* const tool = element.FindChild("Wizard");
    if (tool != nullptr && !OrEmpty(tool->ValueText()).empty()) return;
  }
  page_.FindControl<CButton>(kLaunchTool)->ShowWindow(false);
}

void WizardForm::RequireNewProject() {
  static_cast<void>(ChooseProject(true));
  page_.FindControl<CButton>(kIntoProject)->EnableWindow(false);
}

void WizardForm::SetLocation(const std::string& location) {
  page_.FindControl<CEdit>(kLocation)->SetControlText(location);
}

// A choice that fills in other fields is made before the choices for those fields.
std::optional<WizardRefusal> WizardForm::Fill(const WizardChoices& choices) {
  std::optional<WizardRefusal> refusal;
  if (choices.typeHeader) refusal = ChooseType(*choices.typeHeader);
  if (!refusal && choices.target) refusal = ChooseTarget(*choices.target);
  if (!refusal && choices.createNewProject) refusal = ChooseProject(*choices.createNewProject);
  if (!refusal && choices.launchTool) refusal = ChooseTool(*choices.launchTool);
  if (refusal) return refusal;
  Type(*page_.FindControl<CEdit>(kName), choices.applicationName);
  Type(*page_.FindControl<CEdit>(kLocation), choices.location);
  return std::nullopt;
}

std::optional<WizardRefusal> WizardForm::ChooseType(const std::string& typeHeader) {
  auto& types = *page_.FindControl<CComboBox>(kType);
  if (types.GetText(types.GetCurSel()) == typeHeader) return std::nullopt;
  std::vector<std::string> known;
  for (int i = 0; i < types.GetCount(); ++i) {
    known.push_back(types.GetText(i));
    if (!EqualNoCase(known.back(), typeHeader)) continue;
    types.NotifySelected(i);
    return std::nullopt;
  }
  return WizardRefusal{"Unknown application type \"" + typeHeader + "\".", typeHeader, known};
}

std::optional<WizardRefusal> WizardForm::ChooseTarget(const std::string& target) {
  auto& tree = *page_.FindControl<CTreeCtrl>(kTargetTree);
  std::vector<std::string> names;
  std::vector<const CXmlNode*> nodes;
  std::vector<Target> named, same, similar;
  for (Target& each : TargetsOf(page_)) {
    // A full path is unambiguous.
    if (each.path == target) {
      tree.SelectItem(each.item);
      return std::nullopt;
    }
    names.push_back(each.item->GetText());
    nodes.push_back(static_cast<const CXmlNode*>(each.item->GetData()));
    const NameFit fit = FitTargetName(*nodes.back(), target);
    if (fit == NameFit::Same) same.push_back(each);
    if (fit == NameFit::Similar) similar.push_back(each);
    if (IsNamed(each, target)) named.push_back(std::move(each));
  }
  if (named.empty()) named = same.empty() ? std::move(similar) : std::move(same);
  // No target, as may have been proposed.
  if (target.empty() && Read().target.empty()) return std::nullopt;
  if (named.size() == 1) {
    tree.SelectItem(named.front().item);
    return std::nullopt;
  }
  if (named.empty()) {
    return WizardRefusal{"Unknown target \"" + target + "\".", target, std::move(names),
                         ProposalText(FindNearTargets(nodes, target))};
  }
  std::string paths;
  for (const Target& each : named) paths += (paths.empty() ? "" : ", ") + each.path;
  return WizardRefusal{"Several targets are named \"" + target + "\": " + paths + ".", target, {}};
}

std::optional<WizardRefusal> WizardForm::ChooseProject(bool createNewProject) {
  auto& button = *page_.FindControl<CButton>(createNewProject ? kNewProject : kIntoProject);
  button.NotifyClicked();
  if (button.IsChecked()) return std::nullopt;
  return WizardRefusal{"No open project can contain an application of this type.", "false", {}};
}

std::optional<WizardRefusal> WizardForm::ChooseTool(bool launchTool) {
  auto& box = *page_.FindControl<CButton>(kLaunchTool);
  if (box.IsChecked() != launchTool) box.NotifyClicked();
  if (box.IsChecked() == launchTool) return std::nullopt;
  return WizardRefusal{"This target has no tool that generates the initial sources.", "true", {}};
}

}  // namespace tarn::host
