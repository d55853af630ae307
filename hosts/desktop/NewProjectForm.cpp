#include "hosts/desktop/NewProjectForm.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <vector>

#include "hosts/core/Toolchains.h"
#include "hosts/core/WizardForm.h"
#include "hosts/desktop/TreeFilter.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn::host {

namespace {

// The targets as nodes that the filter can search; `place` is the path in the catalogue.
std::vector<IndexedNode> IndexTargets(const CPropertySheet& sheet) {
  std::vector<IndexedNode> nodes;
  for (const WizardTarget& each : WizardForm(sheet).ListTargets()) {
    IndexedNode node;
    node.type = "Target";
    node.label = ToQt(each.name);
    node.above = ToQt(each.description.substr(0, each.description.find('\n')));
    node.keywords = ToQt(each.path + ' ' + each.keywords + ' ' + each.description);
    node.place = each.path;
    nodes.push_back(std::move(node));
  }
  return nodes;
}

}  // namespace

void NewProjectForm::Extend(const CPropertySheet& sheet, QDialog& dialog,
                            const QString& pictureFolder, const std::string& newFolder) {
  if (!WizardForm::Fits(sheet)) return;
  if (!newFolder.empty()) {
    WizardForm(sheet).RequireNewProject();
    WizardForm(sheet).SetLocation(newFolder);
    auto* const title = dialog.findChild<QLabel*>("sheetTitle");
    if (title != nullptr) title->setText(Translated("Create a new project"));
  }
  WizardForm(sheet).HideUnusedTool();
  auto* const form = new NewProjectForm(sheet, dialog);
  form->AddSearch(pictureFolder);
  form->FollowName();
}

std::string NewProjectForm::FindProblem(const CPropertySheet& sheet, FileSystem& files,
                                        const std::string& tools) {
  if (!WizardForm::Fits(sheet)) return {};
  const WizardForm form(sheet);
  if (form.MissesTarget()) return FromQt(tr("Choose a microcontroller."));
  const WizardProposals chosen = form.Read();
  const std::string project = JoinPath(chosen.location, chosen.applicationName + ".tprj");
  if (chosen.createNewProject && files.Exists(project)) {
    return FromQt(tr("%1 already exists.").arg(ToQt(project)));
  }
  const std::string& name = chosen.applicationName;
  const std::string program = FindProgramRefusing(tools, form.GetToolchain(), name);
  if (program.empty()) return {};
  return FromQt(tr("%1 can't handle spaces or special characters in a name.").arg(ToQt(program)));
}

NewProjectForm::NewProjectForm(const CPropertySheet& shownSheet, QDialog& dialog)
    : QObject(&dialog), sheet_(shownSheet) {}

void NewProjectForm::AddSearch(const QString& pictureFolder) {
  WizardForm form(sheet_);
  QWidget* const tree = WidgetOf(form.GetTargetTree());
  if (tree == nullptr) return;
  // Otherwise a family that the user hasn't chosen would be selected at first.
  if (form.MissesTarget()) form.ClearTarget();
  const QRect place = tree->geometry();
  auto* const filter = new TreeFilter(*tree, pictureFolder, tree->parentWidget());
  filter->SetPurpose(tr("Search"), tr("Lists the microcontrollers and boards with these words in "
                                      "their name, family, core or description"));
  filter->AlignWithFrame();
  filter->setGeometry(place);
  filter->show();
  filter->queryNodes = [this] { return IndexTargets(sheet_); };
  filter->onCurrent = [this](const IndexedNode* node) {
    WizardForm own(sheet_);
    if (node == nullptr) return own.ClearTarget();
    WizardChoices choices;
    choices.target = node->place;
    static_cast<void>(own.Fill(choices));
  };
  filter->Begin();
  // Deferred until the tree has its new height.
  QTimer::singleShot(0, this, [this] { WizardForm(sheet_).ShowTarget(); });
}

// The proposed location is the folder of the projects. It stays if the application can be added to
// a project.
void NewProjectForm::FollowName() {
  const WizardProposals proposals = WizardForm(sheet_).Read();
  if (proposals.mayJoinProject || !proposals.createNewProject) return;
  name_ = qobject_cast<QLineEdit*>(WidgetOf(WizardForm(sheet_).GetNameField()));
  if (name_ == nullptr || proposals.location.empty()) return;
  base_ = AddSeparator(proposals.location);
  proposed_ = proposals.location;
  ProposeLocation();
  connect(name_, &QLineEdit::textEdited, this, [this] { ProposeLocation(); });
}

void NewProjectForm::ProposeLocation() {
  WizardForm form(sheet_);
  const std::string name(Trim(FromQt(name_->text())));
  const bool isFolder = name.find_first_of("/\\") == name.npos && name != "..";
  if (!isFolder || form.Read().location != proposed_) return;
  proposed_ = base_ + name;
  form.SetLocation(proposed_);
}

}  // namespace tarn::host
