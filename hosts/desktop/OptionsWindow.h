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

// The options of the current node, to be looked at and changed: a search field and the
// configuration above a property grid, and what the selected option means below it. Follows the
// server, and reads only while it can be seen.
//
// Borrows the session. On the frame's thread.
class OptionsWindow : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(tarn::host::OptionsWindow)

 public:
  explicit OptionsWindow(BuildSession& session, QWidget* parent = nullptr);
  ~OptionsWindow() override;

  // The server has a node in hand, another one or the same anew.
  void OnNodeLoaded();
  // Stores what the user is writing, unless it is nothing that can be stored.
  void FinishEditing();
  // To be called now and then: looks for what nobody is told of.
  void Look();
  // While a build runs nothing can be changed.
  void SetBuilding(bool on);
  // For menus: what can be chosen, and what they do. They ask the user for what they need, and do
  // nothing while a build runs.
  ConfigurationList Configurations() { return options.ReadConfigurations(); }
  void ChooseConfiguration(const QString& name);
  void AddConfiguration();
  // For a menu; they know what they would change.
  QAction* UndoAction() { return &undo; }
  QAction* RedoAction() { return &redo; }
  OptionsGrid& Grid() { return *grid; }
  // How columns and help share the room, for the next run.
  void KeepLayout() const;
  // Back to how they first do.
  void ResetLayout();

 protected:
  // Undo, redo and search mean the options while the keyboard is here, whatever a menu has them
  // for.
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
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
  std::string mark;       // of what the sheet was read from
  std::string chosenSet;  // that the user wants to see, where the node has it
  std::set<std::string> collapsed;
  std::string currentKey;
  std::int32_t switchCount = 0;
  bool isBuilding = false;
  bool isRestoring = false;  // of the view, which is no choice of the user's
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
