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
  void Poll();
  // Disables changes during a build.
  void SetBuilding(bool on);
  // Choices and actions for menus. They ask the user for missing input, and do nothing during a
  // build.
  ConfigurationList Configurations() { return options_.ReadConfigurations(); }
  void ChooseConfiguration(const QString& name);
  void AddConfiguration();
  // Actions for a menu; their texts name the option that they would change.
  QAction* UndoAction() { return &undo_; }
  QAction* RedoAction() { return &redo_; }
  OptionsGrid& Grid() { return *grid_; }
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

  NodeOptions options_;
  OptionSheet sheet_;
  std::string mark_;       // NodeOptions::ReadMark of the sheet
  std::string chosenSet_;  // selected by the user; used if the node has it
  std::set<std::string> collapsed_;
  std::string currentKey_;
  std::int32_t switchCount_ = 0;
  bool isBuilding_ = false;
  bool isRestoring_ = false;  // changes of the view are not made by the user
  QTimer refreshTimer_;

  QAction undo_, redo_, find_, resetOne_, resetAll_, copyName_, explain_;
  QComboBox* configurations_ = nullptr;
  QToolButton* addConfiguration_ = nullptr;
  QLabel* setLabel_ = nullptr;
  QComboBox* sets_ = nullptr;
  QLineEdit* filter_ = nullptr;
  QLabel* notice_ = nullptr;
  QSplitter* splitter_ = nullptr;
  OptionsGrid* grid_ = nullptr;
  QTextBrowser* help_ = nullptr;
};

}  // namespace tarn::host
