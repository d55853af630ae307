#pragma once

#include <gtest/gtest.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTreeView>
#include <filesystem>
#include <optional>
#include <string>

#include "hosts/desktop/IdeWindow.h"
#include "support/TestEnvironment.h"
#include "support/qt/WindowLoop.h"
#include "widgets/qt/QtToolkit.h"

namespace tarn::testing {

// The main window with the real server, tools and compiler, on a copy of the installed example.
class IdeFixture : public ::testing::Test {
 protected:
  IdeFixture()
      : root("TARN_ROOT", SourcePath("share").c_str()),
        settings("TARN_SETTINGS", (folder / "settings").c_str()) {
    std::filesystem::copy(SourcePath("share/examples/blinky-avr"), folder / "blinky",
                          std::filesystem::copy_options::recursive);
    window.emplace(FileSystem::Native());
    EXPECT_TRUE(window->Start());
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&*window));
    window->OpenProject(folder / "blinky/blinky-avr.tprj");
  }

  // The view of the project tree.
  QTreeView& Tree() {
    return *window->findChild<QDockWidget*>("dock4003")->findChild<QTreeView*>();
  }
  // Returns the row with this label anywhere in the tree.
  QModelIndex FindLine(const QString& label) {
    const QAbstractItemModel& model = *Tree().model();
    const QModelIndexList found = model.match(model.index(0, 0), Qt::DisplayRole, label, 1,
                                              Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? QModelIndex() : found.front();
  }
  // Scrolls to a row and returns a position on it, relative to the viewport.
  QPoint PointOf(const QString& label) {
    const QModelIndex line = FindLine(label);
    EXPECT_TRUE(line.isValid()) << label.toStdString();
    Tree().scrollTo(line);
    const QRect place = Tree().visualRect(line);
    // A position on the label; the rest of the row doesn't react.
    return {place.left() + 30, place.center().y()};
  }
  // Clicks on a row of the tree.
  void Select(const QString& label) {
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, PointOf(label));
  }
  // Waits for a popup menu; returns nullptr if none appears.
  QMenu* AwaitPopup() {
    QMenu* menu = nullptr;
    RunUntil([&] {
      menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      return menu != nullptr;
    });
    return menu;
  }
  // Finds an entry in any menu by opening the menus, as a user does. `name` is its text, or its
  // object name if the text varies.
  QAction* FindEntry(const QString& name) {
    for (QAction* const top : window->menuBar()->actions()) {
      Q_EMIT top->menu()->aboutToShow();
      for (QAction* const entry : top->menu()->actions()) {
        const bool isNamed = entry->objectName() == name;
        if (isNamed || entry->text().remove(u'&').section('\t', 0, 0) == name) return entry;
      }
    }
    return nullptr;
  }
  // Triggers a menu entry; returns false if it is missing or disabled.
  bool Choose(const QString& name) {
    QAction* const entry = FindEntry(name);
    if (entry == nullptr || !entry->isEnabled()) return false;
    entry->trigger();
    return true;
  }
  // Adds enough nodes that a build has to wait for their options.
  void MakeLarge() {
    const std::string path = folder / "blinky/blinky-avr.tapp";
    std::string text = ReadBytes(path);
    const auto end = text.rfind("</");
    ASSERT_NE(end, std::string::npos);
    std::string nodes;
    for (int i = 0; i < 3000; ++i) {
      nodes += "<C Header=\"more" + std::to_string(i) + ".c\" Path=\"more.c\"/>\n";
    }
    ASSERT_TRUE(window->Commands().ReopenWith({{path, text.insert(end, nodes)}}));
  }
  // Runs the event loop until the build has ended; returns false on timeout.
  bool AwaitBuild() {
    return RunUntil([&] { return !window->Commands().IsBuilding(); });
  }
  // Returns true if the output exists in the folder of the standard configuration.
  bool IsBuilt(const std::string& output) {
    return std::filesystem::exists(folder / "blinky/build/Standard/" + output);
  }

  ScratchFolder folder{"tarn-desktop-"};
  ScopedVariable root;
  ScopedVariable settings;
  QtToolkit toolkit;
  std::optional<host::IdeWindow> window;
};

}  // namespace tarn::testing
