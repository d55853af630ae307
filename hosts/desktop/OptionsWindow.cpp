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
    : QWidget(parent), options(session), collapsed{"Internal"} {
  setObjectName("options");
  grid = new OptionsGrid(this);
  help = new QTextBrowser(this);
  help->setAccessibleName(tr("Option description"));
  help->setFrameShape(QFrame::NoFrame);
  help->setTabChangesFocus(true);
  help->setOpenLinks(false);
  help->document()->setDocumentMargin(kMargin + 2);
  splitter = new QSplitter(Qt::Vertical, this);
  splitter->addWidget(grid);
  splitter->addWidget(help);
  splitter->setStretchFactor(0, 4);
  splitter->setStretchFactor(1, 1);
  ResetLayout();
  notice = new QLabel(this);
  notice->setObjectName("notice");
  notice->setWordWrap(true);
  notice->setMargin(kMargin);
  notice->setAutoFillBackground(true);
  notice->setBackgroundRole(QPalette::ToolTipBase);
  notice->setForegroundRole(QPalette::ToolTipText);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(MakeHead());
  layout->addWidget(splitter, 1);
  // Placed below the grid, so that no row moves when a build begins.
  layout->addWidget(notice);

  ConnectGrid();
  refreshTimer.setSingleShot(true);
  refreshTimer.setInterval(kRefreshMs);
  connect(&refreshTimer, &QTimer::timeout, this, [this] { Refresh(); });
  setFocusProxy(grid);
  SetTabOrder();
  MakeActions();
  RestoreLayout();
  ShowState();
}

void OptionsWindow::ConnectGrid() {
  grid->Model().onChange = [this](OptionRow row, const QString& value) {
    return Change(row, value);
  };
  grid->Delegate().check = [this](const OptionRow& row, const QString& value) {
    return Check(row, value);
  };
  grid->Delegate().onReset = [this](const QModelIndex& index) {
    if (const OptionRow* const row = grid->Model().RowAt(index)) Reset(OptionRow(*row));
  };
  grid->onCurrentChanged = [this] {
    ShowHelp();
    SaveView();
  };
  connect(grid, &QTreeView::expanded, this, [this] { SaveView(); });
  connect(grid, &QTreeView::collapsed, this, [this] { SaveView(); });
  grid->installEventFilter(this);
  grid->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(grid, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& place) { ShowMenu(place); });
}

void OptionsWindow::SetTabOrder() {
  QWidget* before = configurations;
  for (QWidget* const next :
       {static_cast<QWidget*>(addConfiguration), static_cast<QWidget*>(sets),
        static_cast<QWidget*>(filter), static_cast<QWidget*>(grid), static_cast<QWidget*>(help)}) {
    setTabOrder(before, next);
    before = next;
  }
}

// Destroying the children must not trigger callbacks any more.
OptionsWindow::~OptionsWindow() {
  grid->Delegate().Abandon();
  grid->onCurrentChanged = {};
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
  const auto again = [this] { refreshTimer.start(0); };
  add(undo, tr("Undo"), QKeySequence::Undo, [this, again] {
    if (!isBuilding && options.Undo()) again();
  });
  add(redo, tr("Redo"), QKeySequence::Redo, [this, again] {
    if (!isBuilding && options.Redo()) again();
  });
  redo.setShortcuts(
      {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
  add(find, tr("Search options"), QKeySequence::Find, [this] {
    filter->setFocus();
    filter->selectAll();
  });
  add(resetOne, tr("Reset") + "\tDel", {}, [this] {
    if (const OptionRow* const row = grid->CurrentRow()) Reset(OptionRow(*row));
  });
  add(resetAll, tr("Reset all options of this node..."), {}, [this] { ResetAll(); });
  add(copyName, tr("Copy name"), {}, [this] {
    if (const OptionRow* const row = grid->CurrentRow()) {
      QGuiApplication::clipboard()->setText(ToQt(row->GetKey()));
    }
  });
  add(explain, tr("Explain"), {}, [this] { help->setFocus(); });
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
  configurations = addChoice(0, tr("Confi&guration:"), configurationLabel);
  configurations->setObjectName("configurations");
  configurations->setAccessibleName(tr("Configuration"));
  connect(configurations, &QComboBox::textActivated, this,
          [this](const QString& name) { ChooseConfiguration(name); });
  addConfiguration = new QToolButton(head);
  addConfiguration->setText("+");
  addConfiguration->setToolTip(tr("Add a configuration..."));
  addConfiguration->setAccessibleName(tr("Add a configuration"));
  connect(addConfiguration, &QToolButton::clicked, this, [this] { AddConfiguration(); });
  layout->addWidget(addConfiguration, 0, 2);
  sets = addChoice(1, tr("&Options of:"), setLabel);
  sets->setObjectName("sets");
  sets->setAccessibleName(tr("Options of"));
  connect(sets, &QComboBox::activated, this, [this] {
    chosenSet = FromQt(sets->currentData().toString());
    mark.clear();
    Refresh();
  });
  filter = new SearchField(tr("Search options"), head);
  filter->setObjectName("filter");
  filter->installEventFilter(this);
  connect(filter, &QLineEdit::textChanged, this, [this] { ShowRows(); });
  layout->addWidget(filter, 2, 0, 1, 3);
  return head;
}

bool OptionsWindow::event(QEvent* event) {
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
  if (!isKey) return QWidget::event(event);
  const QKeySequence keys(static_cast<QKeyEvent*>(event)->keyCombination());
  for (QAction* const action : {&undo, &redo, &find}) {
    if (!action->shortcuts().contains(keys)) continue;
    event->accept();
    if (event->type() == QEvent::KeyPress) action->trigger();
    return true;
  }
  return QWidget::event(event);
}

void OptionsWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  refreshTimer.start(0);
}

// Keys in the search field: down moves to the results, Escape shows all options again.
bool OptionsWindow::eventFilter(QObject* object, QEvent* event) {
  // A label or a value can be changed elsewhere without the node being loaded again.
  if (object == grid && event->type() == QEvent::FocusIn) refreshTimer.start(0);
  if (object != filter || event->type() != QEvent::KeyPress) return false;
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter: {
      const QModelIndex first = grid->Model().index(0, 0, grid->Model().index(0, 0));
      if (grid->CurrentRow() == nullptr && first.isValid()) grid->MakeCurrent(first);
      grid->setFocus();
      return true;
    }
    case Qt::Key_Escape:
      filter->clear();
      return true;
    default:
      return false;
  }
}

void OptionsWindow::OnNodeLoaded() {
  if (!isBuilding) {
    if (!refreshTimer.isActive()) refreshTimer.start();
  } else if (isVisible()) {
    // During a build a different node would be current when the event loop runs next.
    Show(options.Read(chosenSet));
  }
}

void OptionsWindow::FinishEditing() {
  grid->Delegate().FinishOpen();
}

void OptionsWindow::Look() {
  const std::int32_t count = options.GetSwitchCount();
  if (std::exchange(switchCount, count) != count) refreshTimer.start(0);
}

void OptionsWindow::SetBuilding(bool on) {
  isBuilding = on;
  ShowState();
  mark.clear();
  if (!on) refreshTimer.start(0);
}

void OptionsWindow::Refresh() {
  if (isBuilding || !isVisible()) return;
  std::string newMark = options.ReadMark();
  if (newMark == mark) return;
  mark = std::move(newMark);
  Show(options.Read(chosenSet));
}

void OptionsWindow::Show(OptionSheet newSheet) {
  const bool isSameNode =
      newSheet.node == sheet.node && newSheet.path == sheet.path && newSheet.set == sheet.set;
  // Input for one node must not be stored at the next one.
  if (!isSameNode) grid->Delegate().Abandon();
  sheet = std::move(newSheet);
  grid->Delegate().baseFolder = ToQt(sheet.folder);
  ShowChoices();
  ShowRows();
  ShowState();
}

void OptionsWindow::ShowChoices() {
  configurations->clear();
  for (const std::string& name : sheet.configurations.names) configurations->addItem(ToQt(name));
  configurations->setCurrentIndex(
      configurations->findText(ToQt(sheet.configurations.current), Qt::MatchFixedString));
  sets->clear();
  sets->addItem(ToQt(sheet.node), ToQt(sheet.ownSet));
  for (const OptionSet& each : sheet.innerSets) {
    sets->addItem(tr("%1 in %2").arg(ToQt(each.label), ToQt(sheet.node)), ToQt(each.name));
  }
  sets->setCurrentIndex(std::max(sets->findData(ToQt(sheet.set)), 0));
  setLabel->setVisible(!sheet.innerSets.empty());
  sets->setVisible(!sheet.innerSets.empty());
}

void OptionsWindow::ShowRows() {
  isRestoring = true;
  grid->Model().SetSections(FilterSections(sheet.sections, FromQt(filter->text())));
  RestoreView();
  isRestoring = false;
  ShowHelp();
}

void OptionsWindow::ShowState() {
  const QString building = tr("Options can't be changed while a build is running.");
  notice->setText(isBuilding ? building : QString());
  notice->setVisible(isBuilding);
  grid->Model().SetReadOnly(isBuilding);
  configurations->setEnabled(!isBuilding && !sheet.ownSet.empty());
  addConfiguration->setEnabled(configurations->isEnabled());
  const auto name = [](QAction& action, const QString& plain, const QString& of,
                       const std::string& label) {
    action.setText(label.empty() ? plain : of.arg(ToQtLabel(label)));
  };
  name(undo, tr("Undo"), tr("Undo: %1"), sheet.undo);
  name(redo, tr("Redo"), tr("Redo: %1"), sheet.redo);
  undo.setEnabled(!isBuilding && !sheet.undo.empty());
  redo.setEnabled(!isBuilding && !sheet.redo.empty());
  resetAll.setEnabled(!isBuilding && !sheet.ownSet.empty());
  grid->viewport()->update();
}

void OptionsWindow::KeepLayout() const {
  DesktopSettings settings;
  settings.setValue(kSplitterKey, splitter->saveState());
  settings.setValue(kNameShareKey, grid->GetShares().name);
  settings.setValue(kValueShareKey, grid->GetShares().value);
}

void OptionsWindow::ResetLayout() {
  splitter->setSizes({kGridHeight, kHelpHeight});
  grid->SetShares({});
}

void OptionsWindow::RestoreLayout() {
  const DesktopSettings settings;
  // No-op for invalid data.
  splitter->restoreState(settings.value(kSplitterKey).toByteArray());
  grid->SetShares(
      {settings.value(kNameShareKey).toDouble(), settings.value(kValueShareKey).toDouble()});
}

// Restores the window's state, which the server stores per node; while a filter is active, all
// results are shown.
void OptionsWindow::RestoreView() {
  const std::string state = options.GetViewState();
  for (const std::string_view line : Split(state, '\n')) {
    if (line.starts_with(kCollapsed)) {
      collapsed.clear();
      for (std::string& name : SplitList(line.substr(std::string_view(kCollapsed).size()))) {
        collapsed.insert(std::move(name));
      }
    } else if (line.starts_with(kSelected)) {
      currentKey = line.substr(std::string_view(kSelected).size());
    }
  }
  const bool isFiltered = !filter->text().trimmed().isEmpty();
  OptionsModel& model = grid->Model();
  for (int i = 0; i < model.rowCount(); ++i) {
    const QModelIndex section = model.index(i, 0);
    grid->setFirstColumnSpanned(i, {}, true);
    grid->setExpanded(section, isFiltered || collapsed.count(model.SectionAt(section)->name) == 0);
  }
  const OptionRow* const row = grid->CurrentRow();
  const QModelIndex wanted = model.Find(currentKey);
  if (wanted.isValid() && (row == nullptr || row->GetKey() != currentKey)) {
    grid->MakeCurrent(wanted);
  }
}

void OptionsWindow::SaveView() {
  if (isRestoring) return;
  if (const OptionRow* const row = grid->CurrentRow()) currentKey = row->GetKey();
  if (filter->text().trimmed().isEmpty()) {
    const OptionsModel& model = grid->Model();
    for (int i = 0; i < model.rowCount(); ++i) {
      const QModelIndex section = model.index(i, 0);
      const std::string& name = model.SectionAt(section)->name;
      if (grid->isExpanded(section)) {
        collapsed.erase(name);
      } else {
        collapsed.insert(name);
      }
    }
  }
  if (isBuilding) return;
  options.SetViewState(kCollapsed + JoinList({collapsed.begin(), collapsed.end()}) + "\n" +
                       kSelected + currentKey);
}

void OptionsWindow::ShowHelp() {
  const OptionRow* const row = grid->CurrentRow();
  const QString quiet = QuietColour(palette());
  if (row == nullptr) {
    const QString hint = sheet.sections.empty() ? tr("Select a node of the project.")
                                                : tr("Select an option to see its description.");
    help->setHtml("<span style='color:" + quiet + "'>" + hint + "</span>");
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
  for (const StoredValue& stored : options.Explain(option)) addLine(DescribeStored(stored, quiet));
  if (!row->IsOwn() && !option.defaultValue.empty() && !row->HasMacros()) {
    addLine(tr("Default: %1").arg(Html(option.defaultValue)));
  }
  help->setHtml(text);
}

QString OptionsWindow::Check(const OptionRow& row, const QString& value) {
  if (isBuilding) return tr("Options can't be changed while a build is running.");
  return IsNodeType(row.definition) ? CheckType(value)
                                    : ToQt(options.Check(row.definition, FromQt(value)));
}

// Checks the kind, because the project silently skips a kind without a definition.
QString OptionsWindow::CheckType(const QString& value) {
  QStringList known;
  for (const std::string& name : options.ListTypes()) known += ToQt(name);
  if (known.contains(value, Qt::CaseInsensitive)) return {};
  return tr("Unknown node type \"%1\". Known types: %2.").arg(value, known.join(", "));
}

bool OptionsWindow::Change(const OptionRow& row, const QString& value) {
  if (isBuilding || !options.Set(row.definition, FromQt(value))) return false;
  refreshTimer.start(0);
  return true;
}

void OptionsWindow::Reset(const OptionRow& row) {
  if (isBuilding || !row.MayReset()) return;
  options.Reset(row.definition);
  refreshTimer.start(0);
}

void OptionsWindow::ResetAll() {
  const auto answer = QMessageBox::question(
      this, tr("Reset options"),
      tr("Reset all options set on %1, in every configuration? This can't be undone.")
          .arg(ToQt(sheet.node)));
  if (answer != QMessageBox::Yes || isBuilding) return;
  options.ResetAll();
  refreshTimer.start(0);
}

void OptionsWindow::ChooseConfiguration(const QString& name) {
  // The displayed state may be out of date.
  if (isBuilding || EqualNoCase(FromQt(name), Configurations().current)) return;
  options.SelectConfiguration(FromQt(name));
  refreshTimer.start(0);
}

void OptionsWindow::AddConfiguration() {
  if (isBuilding || Configurations().current.empty()) return;
  bool isGiven = false;
  const QString name = QInputDialog::getText(window(), tr("Add a configuration"), tr("Name:"),
                                             QLineEdit::Normal, {}, &isGiven)
                           .trimmed();
  if (!isGiven || isBuilding) return;
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
  const std::string refusal = options.AddConfiguration(FromQt(name));
  if (!refusal.empty()) {
    QMessageBox::warning(window(), tr("Add a configuration"), ToQt(refusal));
  }
  refreshTimer.start(0);
}

void OptionsWindow::ShowMenu(const QPoint& place) {
  const OptionRow* const row = grid->CurrentRow();
  resetOne.setEnabled(row != nullptr && row->MayReset() &&
                      grid->Model().MayEdit(grid->currentIndex()));
  copyName.setEnabled(row != nullptr);
  explain.setEnabled(row != nullptr);
  QMenu menu(this);
  menu.addAction(&resetOne);
  menu.addAction(&copyName);
  menu.addAction(&explain);
  menu.addSeparator();
  menu.addAction(&undo);
  menu.addAction(&redo);
  menu.addSeparator();
  menu.addAction(&resetAll);
  menu.exec(grid->viewport()->mapToGlobal(place));
}

}  // namespace tarn::host
