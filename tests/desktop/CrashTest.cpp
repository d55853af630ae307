// Recovery after the program was killed. The window that is killed runs in a separate process
// (driver/main.cpp); the one that restores is in this process.
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QTreeWidget>
#include <algorithm>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorArea.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {
namespace {

using testing::ReadBytes;
using testing::RunUntil;

// Longer than the delay before a journal is written.
constexpr int kSettleMs = 2500;

class CrashTest : public testing::IdeFixture {
 protected:
  CrashTest() {
    window->close();
    window.reset();
    folder.Write("blinky/src/new.c", "int added;\n");
  }

  // A window in a separate process, which the destructor kills if it is still running.
  class Window {
   public:
    Window() {
      process_.setProgram(TARN_DESKTOP_DRIVER);
      process_.start();
      EXPECT_TRUE(process_.waitForStarted());
    }
    // Returns after all of these lines have been executed.
    void Send(const std::string& lines) {
      process_.write(QByteArray::fromStdString(lines));
      QByteArray answers;
      while (answers.count('\n') < std::count(lines.begin(), lines.end(), '\n')) {
        ASSERT_TRUE(process_.waitForReadyRead(60000)) << answers.toStdString();
        answers += process_.readAllStandardOutput();
      }
      errors += process_.readAllStandardError();
      EXPECT_FALSE(answers.contains("failed")) << answers.toStdString();
    }
    void Kill() {
      process_.write("kill\n");
      ASSERT_TRUE(process_.waitForFinished(60000));
      EXPECT_EQ(process_.exitStatus(), QProcess::CrashExit);
    }

    QByteArray errors;  // contains the texts of all message boxes

   private:
    QProcess process_;
  };
  // Executes these lines in a window and then kills it.
  static void Crash(const std::string& lines) {
    Window crashing;
    crashing.Send(lines);
    crashing.Kill();
  }
  // Closes the next message box and stores its text.
  static void CloseNextBox(QString& text) {
    testing::InNextDialog<QMessageBox>([&text](QMessageBox& box) {
      box.reject();
      text = box.text();
    });
  }
  EditorArea& Area() { return static_cast<EditorArea&>(*window->centralWidget()); }
  // An edited text, a different file in view, an option and a new node, all of them unsaved.
  std::string Session() {
    return "open " + folder / "blinky/blinky-avr.tprj" + "\nopen " + folder / "blinky/src/main.c" +
           "\ntype mine \nopen " + folder / "blinky/src/board.h" +
           "\noption led.c C.Compiler.Defines SPEED\nadd " + folder / "blinky/src/new.c" +
           "\nwait " + std::to_string(kSettleMs) + "\n";
  }
  // Opens a new window and returns the dialog that it shows, or nullptr.
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
  // Expects all changes of Session() as unsaved changes.
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
            (std::vector<std::string>{"blinky-avr.tprj: Project changes: files and options",
                                      "main.c: Unsaved text"}));
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  ASSERT_NO_FATAL_FAILURE(ExpectRestored());
  EditorOf("blinky/src/main.c")->undo();
  EXPECT_EQ(FromQt(EditorOf("blinky/src/main.c")->GetText()), main);
  EditorOf("blinky/src/main.c")->redo();
  ASSERT_TRUE(Choose("undoProject"));
  EXPECT_EQ(Tree().find("new.c"), std::string::npos);
  ASSERT_TRUE(Choose("redoProject"));

  ASSERT_TRUE(Choose("Save all"));
  EXPECT_EQ(ReadBytes(folder / "blinky/src/main.c"), "mine " + main);
  const std::string saved = ReadBytes(folder / "blinky/blinky-avr.tapp");
  EXPECT_NE(saved.find("new.c"), std::string::npos);
  EXPECT_NE(saved.find("SPEED"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder / "blinky/blinky-avr.tapp.orig"));
  // Saved content is not offered again, even after an abnormal end.
  window.reset();
  EXPECT_EQ(Start(), nullptr);
  EXPECT_TRUE(window->close());
}

TEST_F(CrashTest, ASecondCrashWhileItIsRestoredLosesNothing) {
  ASSERT_NO_FATAL_FAILURE(Crash(Session()));
  ASSERT_NO_FATAL_FAILURE(Crash("wait 300\n"));  // while the dialog is shown
  ASSERT_NO_FATAL_FAILURE(Crash("press later\nwait 100\n"));
  ASSERT_NO_FATAL_FAILURE(Crash("press restore\n"));  // immediately after the restore
  QDialog* const dialog = Start();
  ASSERT_NE(dialog, nullptr);
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  ExpectRestored();
}

TEST_F(CrashTest, WhatOthersHaveWrittenSinceIsMergedInMemory) {
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
  EXPECT_FALSE(Area().ProjectBanner().isVisible());
  EXPECT_EQ(ReadBytes(folder / "blinky/blinky-avr.tapp"), theirs);
  EditorOf("blinky/src/main.c")->KeepMine();
  ASSERT_TRUE(Choose("Save all"));
  const std::string saved = ReadBytes(folder / "blinky/blinky-avr.tapp");
  for (const char* const each : {"theirs.c", "new.c", "SPEED"}) {
    EXPECT_NE(saved.find(each), std::string::npos) << each << '\n' << saved;
  }
  EXPECT_EQ(ReadBytes(folder / "blinky/src/main.c"), "mine " + main);
}

TEST_F(CrashTest, AChangeThatDoesNotFitIsRestoredForASaveToMerge) {
  ASSERT_NO_FATAL_FAILURE(Crash(Session()));
  ASSERT_NO_FATAL_FAILURE(Crash("press later\nopen " + folder / "blinky/blinky-avr.tprj" +
                                "\noption led.c C.Compiler.Defines OTHER\nsave\n"));
  const std::string theirs = ReadBytes(folder / "blinky/blinky-avr.tapp");
  ASSERT_NE(theirs.find("OTHER"), std::string::npos);
  QDialog* const dialog = Start();
  ASSERT_NE(dialog, nullptr);
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  EXPECT_TRUE(Area().ProjectBanner().isVisible());
  EXPECT_EQ(ReadBytes(folder / "blinky/blinky-avr.tapp"), theirs);
  EXPECT_TRUE(FindEntry("undoProject")->isEnabled());
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_NE(ReadBytes(folder / "blinky/blinky-avr.tapp").find("SPEED"), std::string::npos);
  EXPECT_EQ(ReadBytes(folder / "blinky/blinky-avr.tapp.orig"), theirs);
}

TEST_F(CrashTest, TwoWindowsOfOneProjectAreBothRestored) {
  const std::string open =
      "open " + folder / "blinky/blinky-avr.tprj" + "\nopen " + folder / "blinky/src/main.c" + "\n";
  const std::string settle = "wait " + std::to_string(kSettleMs) + "\n";
  Window first;
  first.Send(open + "type one \nadd " + folder / "blinky/src/new.c" +
             "\noption uart.c C.Compiler.Defines FIRST\n" + settle);
  Crash(open + "type two \nopen " + folder / "blinky/src/board.h" +
        "\ntype three \noption led.c C.Compiler.Defines SPEED\n" + settle);
  first.Kill();
  // The journal of the second window is offered after that of the first one.
  const QPointer<QDialog> dialog = Start();
  ASSERT_NE(dialog, nullptr);
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  QDialog* next = nullptr;
  ASSERT_TRUE(RunUntil([&] {
    next = window->findChild<QDialog*>("recoveryDialog");
    return next != nullptr && next != dialog;
  }));
  QString reported;
  CloseNextBox(reported);
  ASSERT_NO_FATAL_FAILURE(Press(*next, "restore"));
  EXPECT_TRUE(reported.contains("main.c already has other unsaved changes"))
      << reported.toStdString();
  for (const char* const each : {"new.c", "FIRST", "SPEED"}) {
    EXPECT_NE(window->Session().Inspector().GetFileTexts().find(each), std::string::npos) << each;
  }
  EXPECT_EQ(ReadBytes(folder / "blinky/blinky-avr.tapp"), application);
  EXPECT_FALSE(Area().ProjectBanner().isVisible());
  const CodeEditor* const board = EditorOf("blinky/src/board.h");
  const CodeEditor* const mine = EditorOf("blinky/src/main.c");
  const CodeEditor* const copy = EditorOf("settings/data/rescued/main.c.unsaved");
  ASSERT_TRUE(board != nullptr && mine != nullptr && copy != nullptr);
  EXPECT_TRUE(board->GetText().startsWith("three "));
  EXPECT_EQ(FromQt(mine->GetText()), "one " + main);
  EXPECT_EQ(FromQt(copy->GetText()), "two " + main);
  // One undo step per window.
  ASSERT_TRUE(Choose("undoProject"));
  ASSERT_TRUE(Choose("undoProject"));
  EXPECT_FALSE(FindEntry("undoProject")->isEnabled());
  EXPECT_EQ(Tree().find("new.c"), std::string::npos);
}

TEST_F(CrashTest, ChangesThatContradictThoseOfAnotherWindowGoToAFile) {
  const std::string open = "open " + folder / "blinky/blinky-avr.tprj" + "\n";
  const std::string settle = "wait " + std::to_string(kSettleMs) + "\n";
  Window first;
  first.Send(open + "option led.c C.Compiler.Defines FIRST\n" + settle);
  Crash(open + "option led.c C.Compiler.Defines SECOND\n" + settle);
  first.Kill();
  Window restoring;
  restoring.Send("press restore\nwait 300\npress restore\nwait 300\n");
  EXPECT_TRUE(restoring.errors.contains("conflict with")) << restoring.errors.toStdString();
  restoring.Kill();
  const std::string copy = ReadBytes(folder / "settings/data/rescued/blinky-avr.tapp.unsaved");
  EXPECT_NE(copy.find("SECOND"), std::string::npos);
  EXPECT_EQ(ReadBytes(folder / "blinky/blinky-avr.tapp"), application);
}

TEST_F(CrashTest, ChangesOfAProjectThatIsGoneCanBeSavedElsewhere) {
  ASSERT_NO_FATAL_FAILURE(Crash(Session()));
  std::filesystem::remove_all(folder / "blinky");
  std::filesystem::create_directory(folder / "copies");
  QDialog* dialog = Start();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(RowsOf(*dialog).front().ends_with("the project no longer exists"));
  QString reported;
  testing::InNextDialog<QMessageBox>([&](QMessageBox& box) {
    for (QAbstractButton* each : box.buttons()) {
      if (each->text().contains("Save copies")) each->click();
    }
    testing::InNextDialog<QFileDialog>([&](QFileDialog& chooser) {
      chooser.setDirectory(ToQt(folder / "copies"));
      chooser.findChild<QLineEdit*>()->clear();
      static_cast<QDialog&>(chooser).done(QDialog::Accepted);
      CloseNextBox(reported);
    });
  });
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  EXPECT_TRUE(reported.contains("main.c.unsaved")) << reported.toStdString();
  EXPECT_EQ(ReadBytes(folder / "copies/main.c.unsaved"), "mine " + main);
  EXPECT_NE(ReadBytes(folder / "copies/blinky-avr.tapp.unsaved").find("SPEED"), std::string::npos);
  window.reset();
  EXPECT_NE(Start(), nullptr) << "the journal stays";
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
  EXPECT_EQ(RowsOf(*dialog).back(), "main.c: None: the recovery data is damaged");
  ASSERT_NO_FATAL_FAILURE(Press(*dialog, "restore"));
  EXPECT_NE(Tree().find("new.c"), std::string::npos);
  window->close();
  window.reset();
  folder.Write(journal + "index", "tarn-jour");
  dialog = Start();
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->findChild<QLabel*>()->text().contains(ToQt(journal + "index: missing ")));
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

TEST_F(CrashTest, AJournalThatCantBeWrittenIsToldUntilItCan) {
  std::filesystem::remove_all(folder / "settings/data/journal");
  folder.Write("settings/data/journal", "in the way");
  EXPECT_EQ(Start(), nullptr);
  window->OpenPaths({folder / "blinky/src/main.c"});
  window->Editors().Current()->insert("mine");
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  Banner& banner = Area().JournalBanner();
  EXPECT_TRUE(banner.isVisible());
  EXPECT_TRUE(banner.accessibleName().contains(ToQt(folder / "settings/data/journal")));
  banner.onFirst();
  EXPECT_TRUE(banner.isVisible());
  std::filesystem::remove(folder / "settings/data/journal");
  banner.onFirst();
  EXPECT_FALSE(banner.isVisible());
  EXPECT_TRUE(std::filesystem::exists(folder / "settings/data/journal/1/index"));
  // A journal that was deleted while in use is re-created.
  std::filesystem::remove_all(folder / "settings/data/journal");
  window->Editors().Current()->insert("more");
  banner.onFirst();
  EXPECT_FALSE(banner.isVisible());
  EXPECT_TRUE(std::filesystem::exists(folder / "settings/data/journal/1/index"));
}

}  // namespace
}  // namespace tarn::host
