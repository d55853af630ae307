#include "hosts/desktop/GeneratorDialog.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "platform/paths/Paths.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

constexpr int kFieldWidth = 420;
constexpr int kLongestText = 4096;  // of a path or command lines

// Types of files that a build compiles.
bool IsCompiled(const std::string& type) {
  return type == "C" || type == "Cpp" || type == "Assembler";
}

}  // namespace

GeneratorDialog::GeneratorDialog(NewGenerator& newGenerator, FileTypes& fileTypes, QWidget* parent)
    : QDialog(parent), generator_(newGenerator), types_(fileTypes) {
  setObjectName("generatorDialog");
  setWindowTitle(tr("Add generated file"));
  AddWidgets();
  Update();
}

void GeneratorDialog::AddWidgets() {
  form_ = new QFormLayout;
  form_->addRow(tr("&Made from:"), MakeInputRow());
  tool_ = new QComboBox(this);
  tool_->setObjectName("tool");
  for (const GeneratorTool& each : generator_.GetTools()) {
    tool_->addItem(Translated(each.label), ToQt(each.name));
  }
  connect(tool_, &QComboBox::activated, this, [this] {
    isToolChosen_ = true;
    Update();
  });
  form_->addRow(tr("&Tool:"), tool_);
  commands_ = new QLineEdit(this);
  commands_->setObjectName("commands");
  commands_->setMaxLength(kLongestText);
  commands_->setPlaceholderText("python3 make.py $(General.Path) $(Build.OutputFile)");
  commands_->setToolTip(
      tr("Command lines that make the file, separated by semicolons. They run in "
         "the application's folder, and only if the project is trusted."));
  form_->addRow(tr("&Commands:"), commands_);
  output_ = new QLineEdit(this);
  output_->setObjectName("output");
  output_->setMaxLength(kLongestText);
  output_->setToolTip(tr("The file that is made, relative to the application's folder."));
  connect(output_, &QLineEdit::textEdited, this, [this] { Update(); });
  form_->addRow(tr("&Output:"), output_);
  adds_ = new QCheckBox(tr("&Add the output to the project, to compile it"), this);
  adds_->setObjectName("adds");
  connect(adds_, &QCheckBox::clicked, this, [this] { isAddsChosen_ = true; });
  form_->addRow({}, adds_);

  auto* const buttons = new QDialogButtonBox(this);
  buttons->addButton(tr("Add"), QDialogButtonBox::AcceptRole)->setDefault(true);
  // The toolkit's own translation may not be installed.
  buttons->addButton(QDialogButtonBox::Cancel)
      ->setText(QCoreApplication::translate("SheetDialog", "Cancel"));
  connect(buttons, &QDialogButtonBox::accepted, this, [this] { TryFinish(); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const rows = new QVBoxLayout(this);
  rows->addLayout(form_);
  rows->addWidget(MakeProblemRow());
  rows->addWidget(buttons);
  rows->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* GeneratorDialog::MakeInputRow() {
  auto* const row = new QWidget(this);
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  input_ = new QLineEdit(row);
  input_->setObjectName("input");
  input_->setMaxLength(kLongestText);
  input_->setMinimumWidth(kFieldWidth);
  input_->setPlaceholderText(tr("A picture, a table, a template ..."));
  connect(input_, &QLineEdit::textEdited, this, [this] { Update(); });
  layout->addWidget(input_, 1);
  auto* const browse = new QPushButton(tr("&Browse..."), row);
  browse->setAutoDefault(false);
  connect(browse, &QPushButton::clicked, this, [this] { Browse(); });
  layout->addWidget(browse);
  row->setFocusProxy(input_);
  return row;
}

QWidget* GeneratorDialog::MakeProblemRow() {
  problemRow_ = new QWidget(this);
  auto* const row = new QHBoxLayout(problemRow_);
  row->setContentsMargins(0, 0, 0, 0);
  auto* const icon = new QLabel(problemRow_);
  const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side, side));
  row->addWidget(icon, 0, Qt::AlignTop);
  problem_ = new QLabel(problemRow_);
  problem_->setObjectName("problem");
  problem_->setTextFormat(Qt::PlainText);
  problem_->setWordWrap(true);
  row->addWidget(problem_, 1);
  problemRow_->hide();
  return problemRow_;
}

void GeneratorDialog::Browse() {
  const std::string present = GetRequest().input;
  const std::string& start = present.empty() ? generator_.GetFolder() : present;
  const QString chosen =
      QFileDialog::getOpenFileName(this, tr("File to make another one from"), ToQt(start));
  if (chosen.isEmpty()) return;
  input_->setText(Shown(FromQt(chosen)));
  Update();
}

GeneratorRequest GeneratorDialog::GetRequest() const {
  GeneratorRequest request;
  const std::string input = FromQt(input_->text().trimmed());
  const bool isPart = IsRelativePath(input);
  if (!input.empty()) {
    request.input = CanonicalPath(isPart ? JoinPath(generator_.GetFolder(), input) : input);
  }
  request.tool = FromQt(tool_->currentData().toString());
  request.output = FromQt(output_->text().trimmed());
  request.commands = FromQt(commands_->text().trimmed());
  request.addsOutput = adds_->isChecked();
  return request;
}

void GeneratorDialog::Update() {
  problemRow_->hide();
  if (!isToolChosen_) {
    const int usual = tool_->findData(ToQt(generator_.GetDefaultTool(GetRequest().input)));
    if (usual >= 0) tool_->setCurrentIndex(usual);
  }
  GeneratorRequest request = GetRequest();
  form_->setRowVisible(commands_, generator_.NeedsCommands(request.tool));
  if (!isAddsChosen_) adds_->setChecked(IsCompiled(types_.Of(generator_.GetOutput(request))));
  request.output.clear();
  const bool hasInput = !request.input.empty();
  output_->setPlaceholderText(hasInput ? Shown(generator_.GetOutput(request)) : QString());
}

void GeneratorDialog::TryFinish() {
  const QString problem = TextOf(generator_.FindProblem(GetRequest()));
  if (problem.isEmpty()) return accept();
  problem_->setText(problem);
  problemRow_->show();
  QAccessibleEvent alert(problem_, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

// Returns an empty string if there is no problem.
QString GeneratorDialog::TextOf(GeneratorProblem problem) const {
  const GeneratorRequest request = GetRequest();
  const QString input = Shown(request.input);
  const QString output = Shown(generator_.GetOutput(request));
  switch (problem) {
    case GeneratorProblem::None:
      return {};
    case GeneratorProblem::NoInput:
      return tr("Choose the file that another one is made from.");
    case GeneratorProblem::InputMissing:
      return tr("%1 does not exist.").arg(input);
    case GeneratorProblem::InputIsFolder:
      return tr("%1 is a folder.").arg(input);
    case GeneratorProblem::InputUnstorable:
      return tr("A project can't store the name %1.").arg(input);
    case GeneratorProblem::InputIsUsed:
      return tr("%1 is in the application already. Remove it there first.").arg(input);
    case GeneratorProblem::NoCommands:
      return tr("Enter the commands that make the output.");
    case GeneratorProblem::OutputIsInput:
      return tr("The output can't be the file that it is made from.");
    case GeneratorProblem::OutputIsFolder:
      return tr("%1 is a folder.").arg(output);
    case GeneratorProblem::OutputIsMade:
      return tr("%1 is made from another file already.").arg(output);
    case GeneratorProblem::OutputExists:
      return tr("%1 exists. Only files in a subfolder of \"build\" are replaced.").arg(output);
  }
  return {};
}

QString GeneratorDialog::Shown(const std::string& path) const {
  const std::string& folder = generator_.GetFolder();
  return ToQt(path.starts_with(folder) ? path.substr(folder.size()) : path);
}

}  // namespace tarn::host
