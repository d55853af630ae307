#pragma once

#include <QAction>
#include <QCoreApplication>
#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <set>
#include <string>

#include "hosts/desktop/NodeOptions.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QSplitter;
class QTextBrowser;
class QToolButton;

namespace tarn::host {

class OptionsGrid;

// Shows and edits the options of the current node: a search field and the configuration above a
// property grid, and the help of the selected option below it. Follows the server's notifications,
// but reads options only while visible.
//
// Borrows the session. Main thread only.
class OptionsWindow : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::OptionsWindow)

 public:
  explicit OptionsWindow(BuildSession& session, QWidget* parent = nullptr);
  ~OptionsWindow() override;

  // Call this when the server has loaded a different node, or the same one again.
  void OnNodeLoaded();
  // Stores the value being edited, unless it is invalid.
  void FinishEditing();
  // Call this periodically: checks for changes without a notification.
  void Look();
  // Disables changes during a build.
  void SetBuilding(bool on);
  // Choices and actions for menus. They ask the user for missing input, and do nothing during a
  // build.
  ConfigurationList Configurations() { return options.ReadConfigurations(); }
  void ChooseConfiguration(const QString& name);
  void AddConfiguration();
  // Actions for a menu; their texts name the option that they would change.
  QAction* UndoAction() { return &undo; }
  QAction* RedoAction() { return &redo; }
  OptionsGrid& Grid() { return *grid; }
  // Stores the column widths and the height of the help, for the next run.
  void KeepLayout() const;
  // Restores the default layout.
  void ResetLayout();

 protected:
  // Overrides menu shortcuts: undo, redo and search refer to the options while the window has the
  // focus.
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void ConnectGrid();
  void SetTabOrder();
  void MakeActions();
  QWidget* MakeHead();
  void Refresh();
  void Show(OptionSheet newSheet);
  void ShowChoices();
  void ShowRows();
  void ShowHelp();
  void ShowState();
  void RestoreLayout();
  void RestoreView();
  void SaveView();
  bool Change(const OptionRow& row, const QString& value);
  void Reset(const OptionRow& row);
  void ResetAll();
  void ShowMenu(const QPoint& place);
  QString Check(const OptionRow& row, const QString& value);
  QString CheckType(const QString& value);

  NodeOptions options;
  OptionSheet sheet;
  std::string mark;       // NodeOptions::ReadMark of the sheet
  std::string chosenSet;  // selected by the user; used if the node has it
  std::set<std::string> collapsed;
  std::string currentKey;
  std::int32_t switchCount = 0;
  bool isBuilding = false;
  bool isRestoring = false;  // changes of the view are not made by the user
  QTimer refreshTimer;

  QAction undo, redo, find, resetOne, resetAll, copyName, explain;
  QComboBox* configurations = nullptr;
  QToolButton* addConfiguration = nullptr;
  QLabel* setLabel = nullptr;
  QComboBox* sets = nullptr;
  QLineEdit* filter = nullptr;
  QLabel* notice = nullptr;
  QSplitter* splitter = nullptr;
  OptionsGrid* grid = nullptr;
  QTextBrowser* help = nullptr;
};

}  // namespace tarn::host
