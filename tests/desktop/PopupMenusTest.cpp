// The popup menus that the server's windows request, from the installed configuration.
#include "hosts/desktop/PopupMenus.h"

#include <tarn/commands.h>

#include <QContextMenuEvent>
#include <QInputDialog>
#include <QPlainTextEdit>
#include <QTimer>

#include "desktop/IdeFixture.h"
#include "hosts/core/LogEntry.h"
#include "hosts/desktop/RecentProjects.h"
#include "hosts/desktop/ServerTexts.h"
#include "xml/XmlNode.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

class PopupMenusTest : public testing::IdeFixture {
 protected:
  std::string TextsOf(const QMenu* menu) {
    QStringList texts;
    if (menu != nullptr) {
      for (const QAction* entry : menu->actions())
        texts += entry->text().remove('&').section('\t', 0, 0);
    }
    return texts.join("|").toStdString();
  }
  QAction* EntryOf(const QMenu* menu, const QString& text) {
    if (menu == nullptr) return nullptr;
    for (QAction* const entry : menu->actions()) {
      if (entry->text().remove('&').section('\t', 0, 0) == text) return entry;
    }
    return nullptr;
  }
  void AskByKey(QWidget& widget) {
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(&widget, &event);
  }
};

TEST_F(PopupMenusTest, ANodeHasTheMenuOfItsTypeByMouseAndByKeyWithTheToolsThatFitIt) {
  QTest::mouseClick(Tree().viewport(), Qt::RightButton, {}, PointOf("Drivers"));
  QMenu* menu = AwaitPopup();
  EXPECT_EQ(TextsOf(menu),
            "Build|Rebuild|Clean||Add files...|Add generated file...|New "
            "folder|Copy|Paste|Remove||Options...|Reset to "
            "defaults");
  menu->close();

  Select("main.c");
  AskByKey(Tree());
  menu = AwaitPopup();
  ASSERT_NE(EntryOf(menu, "Run tool"), nullptr);
  // Those of other toolchains can't be applied to it.
  EXPECT_EQ(TextsOf(EntryOf(menu, "Run tool")->menu()), "AVR C compiler");
  EntryOf(menu, "Open")->trigger();
  EXPECT_TRUE(RunUntil([&] { return window->Editors().count() == 1; }));
  menu->close();
}

TEST_F(PopupMenusTest, AConfigurationIsChosenFromAListAndAddedByItsName) {
  const auto choices = [this] {
    QMenu* const menu = FindEntry("Configuration")->menu();
    Q_EMIT menu->aboutToShow();
    return EntryOf(menu, "Select")->menu();
  };
  EXPECT_EQ(TextsOf(choices()), "Standard|Debug");
  EXPECT_TRUE(EntryOf(choices(), "Standard")->isChecked());
  EntryOf(choices(), "Debug")->trigger();
  EXPECT_TRUE(EntryOf(choices(), "Debug")->isChecked());

  testing::InNextDialog<QInputDialog>([](QInputDialog& question) {
    question.setTextValue("Release");
    question.accept();
  });
  EntryOf(FindEntry("Configuration")->menu(), "Add")->trigger();
  EXPECT_TRUE(EntryOf(choices(), "Release")->isChecked());
  // The name of an earlier command must not be reused.
  window->Commands().Run(TARN_CMD_ADD_CONFIGURATION);
  window->Commands().Run(TARN_CMD_SELECT_CONFIGURATION);
  window->Session().Manager().ProjectSave();
  const QString saved =
      QString::fromStdString(testing::ReadBytes(folder / "blinky/blinky-avr.tapp"));
  EXPECT_EQ(saved.count("<Config Header=\"Release\" />"), 1);
  // The new configuration has the options of the previously active one.
  EXPECT_EQ(saved.count("Value=\"atmega328p\""), 3);
}

TEST_F(PopupMenusTest, WhatCantBeDoneNowIsGreyAndTheLogCopiesAndClearsItself) {
  auto* const log = window->findChild<QPlainTextEdit*>();
  ASSERT_NE(log, nullptr);
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  ASSERT_TRUE(RunUntil([&] { return !log->toPlainText().isEmpty(); }));
  AskByKey(*log);
  QMenu* const menu = AwaitPopup();
  ASSERT_NE(EntryOf(menu, "Stop"), nullptr);
  EXPECT_FALSE(EntryOf(menu, "Stop")->isEnabled());
  EntryOf(menu, "Clear the log")->trigger();
  EXPECT_TRUE(RunUntil([&] { return log->toPlainText().trimmed().isEmpty(); }));
  menu->close();
}

TEST_F(PopupMenusTest, OnlyAnotherApplicationCanBeMadeActive) {
  const char* const command = "Set as active application";
  Select("blinky-avr");
  EXPECT_FALSE(FindEntry(command)->isEnabled());
  Select("main.c");
  EXPECT_FALSE(FindEntry(command)->isEnabled());
  folder.Write("blinky/boot.tapp", "<Application Header=\"boot\" Path=\"boot.tapp\"/>");
  ASSERT_NE(window->Session().Manager().AddExistingItem(folder / "blinky/boot.tapp"), 0);
  Select("blinky-avr");
  EXPECT_TRUE(FindEntry(command)->isEnabled());
  ASSERT_TRUE(Choose(command));
  EXPECT_FALSE(FindEntry(command)->isEnabled());
}

TEST_F(PopupMenusTest, ADeletedProjectIsNotOfferedAgain) {
  folder.Write("gone.tprj", "");
  RecentProjects::Note(folder / "gone.tprj");
  const auto offered = [this] {
    QMenu* const menu = FindEntry("Open recent")->menu();
    Q_EMIT menu->aboutToShow();
    return TextsOf(menu);
  };
  EXPECT_NE(offered().find("gone.tprj"), std::string::npos) << offered();
  std::filesystem::remove(folder / "gone.tprj");
  EXPECT_EQ(offered().find("gone.tprj"), std::string::npos) << offered();
  EXPECT_NE(offered().find("blinky-avr.tprj"), std::string::npos) << offered();
}

TEST(ToolEntriesTest, CompilersOfOtherFamiliesAreRemoved) {
  const auto list = [](const char* own) {
    std::string names;
    for (const ToolEntry& each : WithoutForeignTools(
             ReadToolEntries("<T><T Id='33059' Header='s-a.c' Toolchain='s'/><T Id='33060' "
                             "Header='s-b.c' Toolchain='s'/><T Id='33061' Header='lint.c'/></T>"),
             own)) {
      names += each.name + " ";
    }
    return names;
  };
  EXPECT_EQ(list("s-b.c"), "s-b.c lint.c ");
  EXPECT_EQ(list(""), "s-a.c s-b.c lint.c ");
}

TEST(ServerTextsTest, EveryMenuEntryOfTheInstallationCanBeTranslated) {
  const auto read =
      ParseXml(testing::ReadBytes(testing::SourcePath("share/config/projectmanager.config")));
  ASSERT_NE(read, nullptr);
  const std::function<void(const CXmlNode&)> check = [&](const CXmlNode& node) {
    for (const CXmlNode* each : node.GetChildren()) {
      const std::string text = GetAttribute(each, "Header");
      EXPECT_TRUE(text.empty() || IsServerText(text)) << text;
      check(*each);
    }
  };
  for (const char* part : {"ToolBar", "MainMenus", "PopupMenus"}) {
    ASSERT_NE(read->FindChild(part), nullptr) << part;
    check(*read->FindChild(part));
  }
  EXPECT_TRUE(IsServerText("Project"));
  EXPECT_FALSE(IsServerText("Projec"));
}

}  // namespace
}  // namespace tarn::host
