#include "hosts/desktop/OptionsWindow.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QSplitter>
#include <QTextBrowser>
#include <QToolButton>
#include <algorithm>
#include <utility>

#include "hosts/core/ProjectTemplate.h"
#include "hosts/desktop/DesktopSettings.h"
#include "hosts/desktop/OptionsGrid.h"
#include "hosts/desktop/SearchField.h"
#include "platform/text/Text.h"
#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {

namespace {

// While the options of all nodes are being published, there are a hundred notifications per second.
constexpr int kRefreshMs = 80;
constexpr int kMargin = 6;
// Initial heights of grid and help.
constexpr int kGridHeight = 400;
constexpr int kHelpHeight = 130;
constexpr const char* kCollapsed = "Collapsed=";
constexpr const char* kSelected = "Selected=";
constexpr const char* kSplitterKey = "options/splitter";
constexpr const char* kNameShareKey = "options/nameShare";
constexpr const char* kValueShareKey = "options/valueShare";

QString Html(const std::string& text) {
  return ToQt(text).toHtmlEscaped();
}

// Rich text doesn't support transparent colours.
QString QuietColour(const QPalette& palette) {
  return Blend(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.45F).name();
}

QString WordForRange(const OptionDefinition& option) {
  const QString least = Html(option.minimum);
  const QString most = Html(option.maximum);
  if (!least.isEmpty() && !most.isEmpty())
    return OptionsWindow::tr("From %1 to %2.").arg(least, most);
  if (!least.isEmpty()) return OptionsWindow::tr("At least %1.").arg(least);
  return most.isEmpty() ? QString() : OptionsWindow::tr("At most %1.").arg(most);
}

QString DescribeStored(const StoredValue& stored, const QString& quiet) {
  const QString value = stored.value.empty() ? OptionsWindow::tr("(empty)") : Html(stored.value);
  const QString line =
      OptionsWindow::tr("Set on %1 %2 for %3: %4")
          .arg(WordForLevel(stored.kind), Html(stored.label), Html(stored.configuration), value);
  return stored.counts ? line : "<span style='color:" + quiet + "'>" + line + "</span>";
}

}  // namespace

OptionsWindow::OptionsWindow(BuildSession& session, QWidget* parent)
    : QWidget(parent), options_(session), collapsed_{"Internal"} {
  setObjectName("options");
  grid_ = new OptionsGrid(this);
  help_ = new QTextBrowser(this);
  help_->setAccessibleName(tr("Option description"));
  help_->setFrameShape(QFrame::NoFrame);
  help_->setTabChangesFocus(true);
  help_->setOpenLinks(false);
  help_->document()->setDocumentMargin(kMargin + 2);
  splitter_ = new QSplitter(Qt::Vertical, this);
  splitter_->addWidget(grid_);
  splitter_->addWidget(help_);
  splitter_->setStretchFactor(0, 4);
  splitter_->setStretchFactor(1, 1);
  ResetLayout();
  notice_ = new QLabel(this);
  notice_->setObjectName("notice");
  notice_->setWordWrap(true);
  notice_->setMargin(kMargin);
  notice_->setAutoFillBackground(true);
  notice_->setBackgroundRole(QPalette::ToolTipBase);
  notice_->setForegroundRole(QPalette::ToolTipText);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(MakeHead());
  layout->addWidget(splitter_, 1);
  // Placed below the grid, so that no row moves when a build begins.
  layout->addWidget(notice_);

  ConnectGrid();
  refreshTimer_.setSingleShot(true);
  refreshTimer_.setInterval(kRefreshMs);
  connect(&refreshTimer_, &QTimer::timeout, this, [this] { Refresh(); });
  setFocusProxy(grid_);
  SetTabOrder();
  MakeActions();
  RestoreLayout();
  ShowState();
}

void OptionsWindow::ConnectGrid() {
  grid_->Model().onChange = [this](OptionRow row, const QString& value) {
    return Change(row, value);
  };
  grid_->Delegate().check = [this](const OptionRow& row, const QString& value) {
    return Check(row, value);
  };
  grid_->Delegate().onReset = [this](const QModelIndex& index) {
    if (const OptionRow* const row = grid_->Model().RowAt(index)) Reset(OptionRow(*row));
  };
  grid_->onCurrentChanged = [this] {
    ShowHelp();
    SaveView();
  };
  connect(grid_, &QTreeView::expanded, this, [this] { SaveView(); });
  connect(grid_, &QTreeView::collapsed, this, [this] { SaveView(); });
  grid_->installEventFilter(this);
  grid_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(grid_, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& place) { ShowMenu(place); });
}

void OptionsWindow::SetTabOrder() {
  QWidget* before = configurations_;
  for (QWidget* const next : {static_cast<QWidget*>(addConfiguration_),
                              static_cast<QWidget*>(sets_), static_cast<QWidget*>(filter_),
                              static_cast<QWidget*>(grid_), static_cast<QWidget*>(help_)}) {
    setTabOrder(before, next);
    before = next;
  }
}

// Destroying the children must not trigger callbacks any more.
OptionsWindow::~OptionsWindow() {
  grid_->Delegate().Abandon();
  grid_->onCurrentChanged = {};
}

void OptionsWindow::MakeActions() {
  const auto add = [this](QAction& action, const QString& text, const QKeySequence& keys,
                          auto onTriggered) {
    action.setText(text);
    action.setShortcut(keys);
    action.setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(&action, &QAction::triggered, this, onTriggered);
    addAction(&action);
  };
  const auto again = [this] { refreshTimer_.start(0); };
  add(undo_, tr("Undo"), QKeySequence::Undo, [this, again] {
    if (!isBuilding_ && options_.Undo()) again();
  });
  add(redo_, tr("Redo"), QKeySequence::Redo, [this, again] {
    if (!isBuilding_ && options_.Redo()) again();
  });
  redo_.setShortcuts(
      {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
  add(find_, tr("Search options"), QKeySequence::Find, [this] {
    filter_->setFocus();
    filter_->selectAll();
  });
  add(resetOne_, tr("Reset") + "\tDel", {}, [this] {
    if (const OptionRow* const row = grid_->CurrentRow()) Reset(OptionRow(*row));
  });
  add(resetAll_, tr("Reset all options of this node..."), {}, [this] { ResetAll(); });
  add(copyName_, tr("Copy name"), {}, [this] {
    if (const OptionRow* const row = grid_->CurrentRow()) {
      QGuiApplication::clipboard()->setText(ToQt(row->GetKey()));
    }
  });
  add(explain_, tr("Explain"), {}, [this] { help_->setFocus(); });
}

QWidget* OptionsWindow::MakeHead() {
  auto* const head = new QWidget(this);
  auto* const layout = new QGridLayout(head);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kMargin);
  const auto addChoice = [&](int row, const QString& text, QLabel*& label) {
    auto* const combo = new QComboBox(head);
    combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    combo->setMinimumContentsLength(6);
    label = new QLabel(text, head);
    label->setBuddy(combo);
    layout->addWidget(label, row, 0);
    layout->addWidget(combo, row, 1, 1, row == 0 ? 1 : 2);
    return combo;
  };
  QLabel* configurationLabel = nullptr;
  configurations_ = addChoice(0, tr("Confi&guration:"), configurationLabel);
  configurations_->setObjectName("configurations");
  configurations_->setAccessibleName(tr("Configuration"));
  connect(configurations_, &QComboBox::textActivated, this,
          [this](const QString& name) { ChooseConfiguration(name); });
  addConfiguration_ = new QToolButton(head);
  addConfiguration_->setText("+");
  addConfiguration_->setToolTip(tr("Add a configuration..."));
  addConfiguration_->setAccessibleName(tr("Add a configuration"));
  connect(addConfiguration_, &QToolButton::clicked, this, [this] { AddConfiguration(); });
  layout->addWidget(addConfiguration_, 0, 2);
  sets_ = addChoice(1, tr("&Options of:"), setLabel_);
  sets_->setObjectName("sets");
  sets_->setAccessibleName(tr("Options of"));
  connect(sets_, &QComboBox::activated, this, [this] {
    chosenSet_ = FromQt(sets_->currentData().toString());
    mark_.clear();
    Refresh();
  });
  filter_ = new SearchField(tr("Search options"), head);
  filter_->setObjectName("filter");
  filter_->installEventFilter(this);
  connect(filter_, &QLineEdit::textChanged, this, [this] { ShowRows(); });
  layout->addWidget(filter_, 2, 0, 1, 3);
  return head;
}

bool OptionsWindow::event(QEvent* event) {
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (!isKey) return QWidget::event(event);
  const QKeySequence keys(static_cast<QKeyEvent*>(event)->keyCombination());
  for (QAction* const action : {&undo_, &redo_, &find_}) {
    if (!action->shortcuts().contains(keys)) continue;
    event->accept();
    if (event->type() == QEvent::KeyPress) action->trigger();
    return true;
  }
  return QWidget::event(event);
}

void OptionsWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  refreshTimer_.start(0);
}

// Keys in the search field: down moves to the results, Escape shows all options again.
bool OptionsWindow::eventFilter(QObject* object, QEvent* event) {
  // A label or a value can be changed elsewhere without the node being loaded again.
  if (object == grid_ && event->type() == QEvent::FocusIn) refreshTimer_.start(0);
  if (object != filter_ || event->type() != QEvent::KeyPress) return false;
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter: {
      const QModelIndex first = grid_->Model().index(0, 0, grid_->Model().index(0, 0));
      if (grid_->CurrentRow() == nullptr && first.isValid()) grid_->MakeCurrent(first);
      grid_->setFocus();
      return true;
    }
    case Qt::Key_Escape:
      filter_->clear();
      return true;
    default:
      return false;
  }
}

void OptionsWindow::OnNodeLoaded() {
  if (!isBuilding_) {
    if (!refreshTimer_.isActive()) refreshTimer_.start();
  } else if (isVisible()) {
    // During a build a different node would be current when the event loop runs next.
    Show(options_.Read(chosenSet_));
  }
}

void OptionsWindow::FinishEditing() {
  grid_->Delegate().FinishOpen();
}

void OptionsWindow::Poll() {
  const std::int32_t count = options_.GetSwitchCount();
  if (std::exchange(switchCount_, count) != count) refreshTimer_.start(0);
}

void OptionsWindow::SetBuilding(bool on) {
  isBuilding_ = on;
  ShowState();
  mark_.clear();
  if (!on) refreshTimer_.start(0);
}

void OptionsWindow::Refresh() {
  if (isBuilding_ || !isVisible()) return;
  std::string newMark = options_.ReadMark();
  if (newMark == mark_) return;
  mark_ = std::move(newMark);
  Show(options_.Read(chosenSet_));
}

void OptionsWindow::Show(OptionSheet newSheet) {
  const bool isSameNode =
      newSheet.node == sheet_.node && newSheet.path == sheet_.path && newSheet.set == sheet_.set;
  // Input for one node must not be stored at the next one.
  if (!isSameNode) grid_->Delegate().Abandon();
  sheet_ = std::move(newSheet);
  grid_->Delegate().baseFolder = ToQt(sheet_.folder);
  ShowChoices();
  ShowRows();
  ShowState();
}

void OptionsWindow::ShowChoices() {
  configurations_->clear();
  for (const std::string& name : sheet_.configurations.names) configurations_->addItem(ToQt(name));
  configurations_->setCurrentIndex(
      configurations_->findText(ToQt(sheet_.configurations.current), Qt::MatchFixedString));
  sets_->clear();
  sets_->addItem(ToQt(sheet_.node), ToQt(sheet_.ownSet));
  for (const OptionSet& each : sheet_.innerSets) {
    sets_->addItem(tr("%1 in %2").arg(ToQt(each.label), ToQt(sheet_.node)), ToQt(each.name));
  }
  sets_->setCurrentIndex(std::max(sets_->findData(ToQt(sheet_.set)), 0));
  setLabel_->setVisible(!sheet_.innerSets.empty());
  sets_->setVisible(!sheet_.innerSets.empty());
}

void OptionsWindow::ShowRows() {
  isRestoring_ = true;
  grid_->Model().SetSections(FilterSections(sheet_.sections, FromQt(filter_->text())));
  RestoreView();
  isRestoring_ = false;
  ShowHelp();
}

void OptionsWindow::ShowState() {
  const QString building = tr("Options can't be changed while a build is running.");
  notice_->setText(isBuilding_ ? building : QString());
  notice_->setVisible(isBuilding_);
  grid_->Model().SetReadOnly(isBuilding_);
  configurations_->setEnabled(!isBuilding_ && !sheet_.ownSet.empty());
  addConfiguration_->setEnabled(configurations_->isEnabled());
  const auto name = [](QAction& action, const QString& plain, const QString& of,
                       const std::string& label) {
    action.setText(label.empty() ? plain : of.arg(ToQtLabel(label)));
  };
  name(undo_, tr("Undo"), tr("Undo: %1"), sheet_.undo);
  name(redo_, tr("Redo"), tr("Redo: %1"), sheet_.redo);
  undo_.setEnabled(!isBuilding_ && !sheet_.undo.empty());
  redo_.setEnabled(!isBuilding_ && !sheet_.redo.empty());
  resetAll_.setEnabled(!isBuilding_ && !sheet_.ownSet.empty());
  grid_->viewport()->update();
}

void OptionsWindow::KeepLayout() const {
  DesktopSettings settings;
  settings.setValue(kSplitterKey, splitter_->saveState());
  settings.setValue(kNameShareKey, grid_->GetShares().name);
  settings.setValue(kValueShareKey, grid_->GetShares().value);
}

void OptionsWindow::ResetLayout() {
  splitter_->setSizes({kGridHeight, kHelpHeight});
  grid_->SetShares({});
}

void OptionsWindow::RestoreLayout() {
  const DesktopSettings settings;
  // No-op for invalid data.
  splitter_->restoreState(settings.value(kSplitterKey).toByteArray());
  grid_->SetShares(
      {settings.value(kNameShareKey).toDouble(), settings.value(kValueShareKey).toDouble()});
}

// Restores the window's state, which the server stores per node; while a filter is active, all
// results are shown.
void OptionsWindow::RestoreView() {
  const std::string state = options_.GetViewState();
  for (const std::string_view line : Split(state, '\n')) {
    if (line.starts_with(kCollapsed)) {
      collapsed_.clear();
      for (std::string& name : SplitList(line.substr(std::string_view(kCollapsed).size()))) {
        collapsed_.insert(std::move(name));
      }
    } else if (line.starts_with(kSelected)) {
      currentKey_ = line.substr(std::string_view(kSelected).size());
    }
  }
  const bool isFiltered = !filter_->text().trimmed().isEmpty();
  OptionsModel& model = grid_->Model();
  for (int i = 0; i < model.rowCount(); ++i) {
    const QModelIndex section = model.index(i, 0);
    grid_->setFirstColumnSpanned(i, {}, true);
    grid_->setExpanded(section,
                       isFiltered || collapsed_.count(model.SectionAt(section)->name) == 0);
  }
  const OptionRow* const row = grid_->CurrentRow();
  const QModelIndex wanted = model.Find(currentKey_);
  if (wanted.isValid() && (row == nullptr || row->GetKey() != currentKey_)) {
    grid_->MakeCurrent(wanted);
  }
}

void OptionsWindow::SaveView() {
  if (isRestoring_) return;
  if (const OptionRow* const row = grid_->CurrentRow()) currentKey_ = row->GetKey();
  if (filter_->text().trimmed().isEmpty()) {
    const OptionsModel& model = grid_->Model();
    for (int i = 0; i < model.rowCount(); ++i) {
      const QModelIndex section = model.index(i, 0);
      const std::string& name = model.SectionAt(section)->name;
      if (grid_->isExpanded(section)) {
        collapsed_.erase(name);
      } else {
        collapsed_.insert(name);
      }
    }
  }
  if (isBuilding_) return;
  options_.SetViewState(kCollapsed + JoinList({collapsed_.begin(), collapsed_.end()}) + "\n" +
                        kSelected + currentKey_);
}

void OptionsWindow::ShowHelp() {
  const OptionRow* const row = grid_->CurrentRow();
  const QString quiet = QuietColour(palette());
  if (row == nullptr) {
    const QString hint = sheet_.sections.empty() ? tr("Select a node of the project.")
                                                 : tr("Select an option to see its description.");
    help_->setHtml("<span style='color:" + quiet + "'>" + hint + "</span>");
    return;
  }
  const OptionDefinition& option = row->definition;
  QString text = "<b>" + Html(option.label) + "</b> &nbsp;<span style='color:" + quiet + "'>" +
                 Html(option.GetKey()) + "</span>";
  const auto addLine = [&text](const QString& line) {
    if (!line.isEmpty()) text += "<div style='margin-top:4px'>" + line + "</div>";
  };
  addLine(Html(option.help));
  addLine(WordForRange(option));
  if (row->HasMacros()) {
    addLine(tr("As written: %1").arg(Html(row->written)));
    addLine(tr("Expands to: %1").arg(row->value.empty() ? tr("(empty)") : Html(row->value)));
  }
  for (const StoredValue& stored : options_.Explain(option)) addLine(DescribeStored(stored, quiet));
  if (!row->IsOwn() && !option.defaultValue.empty() && !row->HasMacros()) {
    addLine(tr("Default: %1").arg(Html(option.defaultValue)));
  }
  help_->setHtml(text);
}

QString OptionsWindow::Check(const OptionRow& row, const QString& value) {
  if (isBuilding_) return tr("Options can't be changed while a build is running.");
  return IsNodeType(row.definition) ? CheckType(value)
                                    : ToQt(options_.Check(row.definition, FromQt(value)));
}

// Checks the kind, because the project silently skips a kind without a definition.
QString OptionsWindow::CheckType(const QString& value) {
  QStringList known;
  for (const std::string& name : options_.ListTypes()) known += ToQt(name);
  if (known.contains(value, Qt::CaseInsensitive)) return {};
  return tr("Unknown node type \"%1\". Known types: %2.").arg(value, known.join(", "));
}

bool OptionsWindow::Change(const OptionRow& row, const QString& value) {
  if (isBuilding_ || !options_.Set(row.definition, FromQt(value))) return false;
  refreshTimer_.start(0);
  return true;
}

void OptionsWindow::Reset(const OptionRow& row) {
  if (isBuilding_ || !row.MayReset()) return;
  options_.Reset(row.definition);
  refreshTimer_.start(0);
}

void OptionsWindow::ResetAll() {
  const auto answer = QMessageBox::question(
      this, tr("Reset options"),
      tr("Reset all options set on %1, in every configuration? This can't be undone.")
          .arg(ToQt(sheet_.node)));
  if (answer != QMessageBox::Yes || isBuilding_) return;
  options_.ResetAll();
  refreshTimer_.start(0);
}

void OptionsWindow::ChooseConfiguration(const QString& name) {
  // The displayed state may be out of date.
  if (isBuilding_ || EqualNoCase(FromQt(name), Configurations().current)) return;
  options_.SelectConfiguration(FromQt(name));
  refreshTimer_.start(0);
}

void OptionsWindow::AddConfiguration() {
  if (isBuilding_ || Configurations().current.empty()) return;
  bool isGiven = false;
  const QString name = QInputDialog::getText(window(), tr("Add a configuration"), tr("Name:"),
                                             QLineEdit::Normal, {}, &isGiven)
                           .trimmed();
  if (!isGiven || isBuilding_) return;
  const std::vector<std::string> names = Configurations().names;
  const bool isKnown = std::any_of(names.begin(), names.end(), [&name](const std::string& each) {
    return EqualNoCase(each, FromQt(name));
  });
  const QString problem = isKnown ? tr("The configuration %1 already exists.").arg(name)
                                  : ToQt(CheckFileTitle(FromQt(name), "configuration"));
  if (!problem.isEmpty()) {
    QMessageBox::warning(window(), tr("Add a configuration"), problem);
    return;
  }
  const std::string refusal = options_.AddConfiguration(FromQt(name));
  if (!refusal.empty()) {
    QMessageBox::warning(window(), tr("Add a configuration"), ToQt(refusal));
  }
  refreshTimer_.start(0);
}

void OptionsWindow::ShowMenu(const QPoint& place) {
  const OptionRow* const row = grid_->CurrentRow();
  resetOne_.setEnabled(row != nullptr && row->MayReset() &&
                       grid_->Model().MayEdit(grid_->currentIndex()));
  copyName_.setEnabled(row != nullptr);
  explain_.setEnabled(row != nullptr);
  QMenu menu(this);
  menu.addAction(&resetOne_);
  menu.addAction(&copyName_);
  menu.addAction(&explain_);
  menu.addSeparator();
  menu.addAction(&undo_);
  menu.addAction(&redo_);
  menu.addSeparator();
  menu.addAction(&resetAll_);
  menu.exec(grid_->viewport()->mapToGlobal(place));
}

}  // namespace tarn::host
