// What comes back after the program was killed. The window that is killed runs in a process of its
// own (driver/main.cpp); the one that restores is in this process.
#include <QDialog>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTreeWidget>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorArea.h"
#include "platform/qt/QtText.h"

namespace tarn::host {
namespace {

using testing::ReadBytes;
using testing::RunUntil;

// Longer than a journal waits before it is written.
constexpr int kSettleMs = 2500;

class CrashTest : public testing::IdeFixture {
 protected:
  CrashTest() {
    window->close();
    window.reset();
    folder.Write("blinky/src/new.c", "int added;\n");
  }

  // Runs these lines in a window that is killed at the end of them.
  void Crash(const std::string& lines) {
    QProcess process;
    process.setProgram(TARN_DESKTOP_DRIVER);
    process.start();
    ASSERT_TRUE(process.waitForStarted());
    process.write(QByteArray::fromStdString(lines + "kill\n"));
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
    const QByteArray answers = process.readAllStandardOutput();
    EXPECT_FALSE(answers.contains("failed")) << answers.toStdString();
  }
  // Text in an editor, another file in view, an option and a new node: none of it saved.
  std::string Session() {
    return "open " + folder / "blinky/blinky-avr.tprj" + "\nopen " + folder / "blinky/src/main.c" +
           "\ntype mine \nopen " + folder / "blinky/src/board.h" +
           "\noption led.c C.Compiler.Defines SPEED\nadd " + folder / "blinky/src/new.c" +
           "\nwait " + std::to_string(kSettleMs) + "\n";
  }
  // A new window, as after a start; the dialog that it comes up with, or null.
  QDialog* Start() {
    window.emplace(FileSystem::Native());
    EXPECT_TRUE(window->Start());
    window->show();
    QDialog* dialog = nullptr;
    RunUntil(
        [&] {
          dialog = window->findChild<QDialog*>("recoveryDialog");
          return dialog != nullptr;
        },
        1500);
    return dialog;
  }
  static void Press(const QDialog& dialog, const char* name) {
    auto* const button = dialog.findChild<QPushButton*>(name);
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isEnabled());
    button->click();
    QCoreApplication::processEvents();
  }
  static std::vector<std::string> RowsOf(const QDialog& dialog) {
    std::vector<std::string> rows;
    const auto* const list = dialog.findChild<QTreeWidget*>();
    for (int i = 0; list != nullptr && i < list->topLevelItemCount(); ++i) {
      const QTreeWidgetItem& row = *list->topLevelItem(i);
      rows.push_back(FromQt(row.toolTip(0).section('/', -1) + ": " + row.text(1)));
    }
    return rows;
  }
  std::string Tree() { return window->Session().Inspector().GetTree(); }
  CodeEditor* EditorOf(const std::string& name) {
    for (int i = 0; i < window->Editors().count(); ++i) {
      if (window->Editors().At(i)->GetPath() == folder / name) return window->Editors().At(i);
    }
    ADD_FAILURE() << name << " is not open";
    return nullptr;
  }
  // All that Session() did is there, as changes that are not saved.
  void ExpectRestored() {
    CodeEditor* const editor = EditorOf("blinky/src/main.c");
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isModified());
    EXPECT_EQ(FromQt(editor->GetText()), "mine " + main);
    ASSERT_NE(window->Editors().Current(), nullptr);
    EXPECT_EQ(window->Editors().Current()->GetPath(), folder / "blinky/src/board.h");
    EXPECT_NE(Tree().find("new.c"), std::string::npos);
    EXPECT_NE(window->Session().Inspector().GetFileTexts().find("SPEED"), std::string::npos);
    EXPECT_NE(window->Session().Inspector().IsModified(), 0);
    EXPECT_EQ(ReadBytes(folder / "blinky/blinky-avr.tapp"), application);
    EXPECT_EQ(ReadBytes(folder / "blinky/src/main.c"), main);
  }

  const std::string main = ReadBytes(folder / "blinky/src/main.c");
  const std::string application = ReadBytes(folder / "blinky/blinky-avr.tapp");
};

TEST_F(CrashTest, EverythingThatWasNotSavedIsOfferedAndComesBack) {
  ASSERT_NO_FATAL_FAILURE(Crash(Session()));
  QDialog* const dialog = Start();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(RowsOf(*dialog),
            (std::vector<std::string>{"blinky-avr.tprj: Changes of the project: files and options",
                                      "main.c: Unsaved text"}));
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  ASSERT_NO_FATAL_FAILURE(ExpectRestored());
  EditorOf("blinky/src/main.c")->undo();
  EXPECT_EQ(FromQt(EditorOf("blinky/src/main.c")->GetText()), main);
  EditorOf("blinky/src/main.c")->redo();

  ASSERT_TRUE(Choose("Save all"));
  EXPECT_EQ(ReadBytes(folder / "blinky/src/main.c"), "mine " + main);
  const std::string saved = ReadBytes(folder / "blinky/blinky-avr.tapp");
  EXPECT_NE(saved.find("new.c"), std::string::npos);
  EXPECT_NE(saved.find("SPEED"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "blinky/blinky-avr.tapp.orig"));
  // What is saved is offered no more, however the program ends.
  window.reset();
  EXPECT_EQ(Start(), nullptr);
  EXPECT_TRUE(window->close());
}

TEST_F(CrashTest, ASecondCrashWhileItIsRestoredLosesNothing) {
  ASSERT_NO_FATAL_FAILURE(Crash(Session()));
  ASSERT_NO_FATAL_FAILURE(Crash("wait 300\n"));  // while the dialog is shown
  ASSERT_NO_FATAL_FAILURE(Crash("press later\nwait 100\n"));
  ASSERT_NO_FATAL_FAILURE(Crash("press restore\n"));  // at once after it
  QDialog* const dialog = Start();
  ASSERT_NE(dialog, nullptr);
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  ExpectRestored();
}

TEST_F(CrashTest, NothingIsLostIfTheFilesHaveChangedSince) {
  ASSERT_NO_FATAL_FAILURE(Crash(Session()));
  std::string theirs = application;
  theirs.insert(theirs.rfind("</"), "<C Header=\"theirs.c\" Path=\".\\src\\theirs.c\" />\r\n");
  folder.Write("blinky/blinky-avr.tapp", theirs);
  folder.Write("blinky/src/main.c", "theirs");
  QDialog* const dialog = Start();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(RowsOf(*dialog).back(), "main.c: Unsaved text; the file has changed since");
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  EXPECT_TRUE(EditorOf("blinky/src/main.c")->IsInConflict());
  auto* const area = static_cast<EditorArea*>(window->centralWidget());
  EXPECT_TRUE(area->ProjectBanner().isVisible());
  testing::PressInNextBox(QMessageBox::Save);
  EditorOf("blinky/src/main.c")->KeepMine();
  area->ProjectBanner().onFirst();  // "Reload project", which asks what is to become of the changes
  const std::string saved = ReadBytes(folder / "blinky/blinky-avr.tapp");
  for (const char* const each : {"theirs.c", "new.c", "SPEED"}) {
    EXPECT_NE(saved.find(each), std::string::npos) << each << '\n' << saved;
  }
  EXPECT_TRUE(area->SaveBanner().isVisible());
  EXPECT_EQ(ReadBytes(folder / "blinky/src/main.c"), "mine " + main);
}

TEST_F(CrashTest, LaterAndCloseKeepTheJournalAndDiscardAsksFirst) {
  ASSERT_NO_FATAL_FAILURE(Crash(Session()));
  for (const bool isClosed : {false, true}) {
    QDialog* const dialog = Start();
    ASSERT_NE(dialog, nullptr);
    if (isClosed) {
      dialog->close();
    } else {
      ASSERT_NO_FATAL_FAILURE(Press(*dialog, "later"));
    }
    EXPECT_EQ(window->Editors().count(), 0);
    window->close();
    window.reset();
  }
  QDialog* dialog = Start();
  ASSERT_NE(dialog, nullptr);
  testing::PressInNextBox(QMessageBox::Cancel);
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "discard"));
  EXPECT_TRUE(dialog->isVisible());
  testing::PressInNextBox(QMessageBox::Discard);
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "discard"));
  window.reset();
  EXPECT_EQ(Start(), nullptr);
  EXPECT_EQ(ReadBytes(folder / "blinky/blinky-avr.tapp"), application);
}

TEST_F(CrashTest, ADamagedJournalIsToldAndLeavesTheRest) {
  ASSERT_NO_FATAL_FAILURE(Crash(Session()));
  const std::string journal = "settings/data/journal/1/";
  for (const auto& each : std::filesystem::directory_iterator(folder / journal)) {
    if (ReadBytes(each.path()).starts_with("mine ")) {
      folder.Write(journal + each.path().filename().string(), "x");
    }
  }
  QDialog* dialog = Start();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(RowsOf(*dialog).back(), "main.c: Nothing: what was kept of it is damaged");
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  EXPECT_NE(Tree().find("new.c"), std::string::npos);
  window->close();
  window.reset();
  folder.Write(journal + "index", "tarn-jour");
  dialog = Start();
  ASSERT_NE(dialog, nullptr);
  EXPECT_FALSE(dialog->findChild<QPushButton*>("restore")->isEnabled());
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "later"));
  EXPECT_TRUE(std::filesystem::exists(folder / (journal + "index")));
}

TEST_F(CrashTest, OpenFilesOfAProjectComeBackEvenIfAllIsSaved) {
  ASSERT_NO_FATAL_FAILURE(Crash("open " + folder / "blinky/blinky-avr.tprj" + "\nopen " +
                                folder / "blinky/src/board.h" + "\nwait " +
                                std::to_string(kSettleMs) + "\n"));
  EXPECT_EQ(Start(), nullptr);
  window->OpenProject(folder / "blinky/blinky-avr.tprj");
  EXPECT_NE(EditorOf("blinky/src/board.h"), nullptr);
}

TEST_F(CrashTest, AJournalThatCantBeWrittenIsToldInTheStatusBarAlone) {
  folder.Write("settings/data/journal", "in the way");
  EXPECT_EQ(Start(), nullptr);
  window->OpenPaths({folder / "blinky/src/main.c"});
  window->Editors().Current()->insert("mine");
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

}  // namespace
}  // namespace tarn::host
