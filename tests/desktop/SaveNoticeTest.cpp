// Messages to the user after a save that met another program's changes.
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeWidget>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorArea.h"
#include "hosts/desktop/SaveNotice.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {
namespace {

class SaveNoticeTest : public testing::IdeFixture {
 protected:
  Banner& Shown() { return static_cast<EditorArea*>(window->centralWidget())->SaveBanner(); }
  Banner& Changed() { return static_cast<EditorArea*>(window->centralWidget())->ProjectBanner(); }
  std::string Application() { return testing::ReadBytes(folder / "blinky/blinky-avr.tapp"); }
  // Changes a label in the file as another program would.
  void RenameThere(const std::string& label, const std::string& to) {
    std::string text = Application();
    const std::string wanted = "Header=\"" + label + "\"";
    const auto at = text.find(wanted);
    ASSERT_NE(at, std::string::npos);
    folder.Write("blinky/blinky-avr.tapp", text.replace(at, wanted.size(), "Header=\"" + to + '"'));
  }
  void RenameHere(const std::string& label, const std::string& to) {
    ASSERT_EQ(window->Session().Inspector().SelectNodeByKey(label), 1);
    ASSERT_NE(window->Session().Manager().SavePropertyValue("C", "General", "Header", to), 0);
  }
};

TEST_F(SaveNoticeTest, ChangesOfBothSidesAreSavedTogetherAndReported) {
  ASSERT_NO_FATAL_FAILURE(RenameThere("uart.c", "theirs"));
  ASSERT_NO_FATAL_FAILURE(RenameHere("led.c", "ours"));
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_NE(Application().find("theirs"), std::string::npos);
  EXPECT_NE(Application().find("ours"), std::string::npos);
  EXPECT_TRUE(testing::RunUntil([&] { return FindLine("theirs").isValid(); }));
  EXPECT_TRUE(Shown().isVisible());
  EXPECT_EQ(FromQt(Shown().accessibleName()),
            "blinky-avr.tapp was also changed by another program. It now contains both changes.");
  ASSERT_TRUE(Choose("undoProject"));
  EXPECT_TRUE(FindLine("led.c").isValid());
  EXPECT_TRUE(FindLine("theirs").isValid()) << "what was merged is not taken back";
  ASSERT_TRUE(Choose("redoProject"));
  ASSERT_NO_FATAL_FAILURE(RenameHere("ours", "own"));
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_TRUE(Shown().isVisible()) << "until the user hides it";
  Shown().onSecond();
  EXPECT_FALSE(Shown().isVisible());
}

TEST_F(SaveNoticeTest, AConflictLeadsToTheOtherVersionAndToTheList) {
  ASSERT_NO_FATAL_FAILURE(RenameThere("led.c", "theirs"));
  const std::string theirs = Application();
  ASSERT_NO_FATAL_FAILURE(RenameHere("led.c", "ours"));
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_NE(Application().find("ours"), std::string::npos);
  EXPECT_EQ(Application().find("theirs"), std::string::npos);
  ASSERT_TRUE(Shown().isVisible());
  EXPECT_TRUE(Shown().accessibleName().contains("with 1 conflict"));
  EXPECT_TRUE(Shown().accessibleName().endsWith("blinky-avr.tapp.orig"));
  Q_EMIT Shown().findChild<QLabel*>()->linkActivated("0");
  ASSERT_NE(window->Editors().Current(), nullptr);
  EXPECT_EQ(FromQt(window->Editors().Current()->GetText()), theirs);
  window->Editors().CloseCurrent();

  std::string row;
  testing::InNextDialog<QDialog>([&](QDialog& dialog) {
    auto* const list = dialog.findChild<QTreeWidget*>();
    ASSERT_EQ(list->topLevelItemCount(), 1);
    for (int i = 0; i < 4; ++i) row += FromQt(list->topLevelItem(0)->text(i)) + '|';
    Q_EMIT list->itemActivated(list->topLevelItem(0), 0);
  });
  Shown().onFirst();
  EXPECT_EQ(row, "blinky-avr.tapp|Drivers/ours|Header changed on both sides|blinky-avr.tapp.orig|");
  EXPECT_EQ(window->Editors().count(), 1);
}

TEST_F(SaveNoticeTest, TheBannerLeadsToEveryCopyThatWasKept) {
  SaveNotice notice(*window, Shown());
  std::string opened;
  notice.onShowFile = [&](const std::string& path) { opened = path; };
  SaveReport report;
  for (const char* const name : {"/p/a", "/p/b", "/p/c", "/p/d", "/p/e"}) {
    report.written.push_back({name, std::string(name) + ".orig", false, false});
  }
  notice.Show(report);
  EXPECT_EQ(FromQt(Shown().accessibleName()),
            "a, b, c, d, e was replaced. Its previous content was saved as: "
            "a.orig, b.orig, c.orig and 2 more");
  Q_EMIT Shown().findChild<QLabel*>()->linkActivated("2");
  EXPECT_EQ(opened, "/p/c.orig");
  Shown().onSecond();
  report.conflicts = {{"/p/a", "led.c", "Header", "/p/a.orig"},
                      {"/p/b", "led.c", "Header", "/p/b.orig"}};
  report.written.clear();
  report.written.push_back({"/p/a", "/p/a.orig", true, false});
  notice.Show(report);
  EXPECT_TRUE(Shown().accessibleName().endsWith("a.orig, b.orig"));
}

TEST_F(SaveNoticeTest, AConflictAtTheEndIsShownBeforeTheWindowCloses) {
  ASSERT_NO_FATAL_FAILURE(RenameThere("led.c", "theirs"));
  ASSERT_NO_FATAL_FAILURE(RenameHere("led.c", "ours"));
  bool isSeen = false;
  testing::InNextDialog<QDialog>([&](QDialog& dialog) {
    isSeen = dialog.objectName() == "saveList";
    dialog.close();
  });
  window->close();
  EXPECT_TRUE(isSeen);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(SaveNoticeTest, ReloadingAProjectWithChangesAsksWhatBecomesOfThem) {
  const struct {
    QMessageBox::StandardButton answer;
    bool isKeptHere;
    bool isSaved;
  } rows[] = {{QMessageBox::Discard, false, false},
              {QMessageBox::Cancel, true, false},
              {QMessageBox::Save, false, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.answer);
    if (window->Session().Inspector().IsModified() == 0) {
      ASSERT_NO_FATAL_FAILURE(RenameHere("led.c", "ours"));
      folder.Write("blinky/blinky-avr.tapp", Application() + "\r\n");
      ASSERT_TRUE(testing::RunUntil([&] { return Changed().isVisible(); }));
    }
    testing::PressInNextBox(row.answer);
    Changed().onFirst();
    QCoreApplication::processEvents();
    EXPECT_EQ(window->Session().Inspector().IsModified() != 0, row.isKeptHere);
    EXPECT_EQ(Changed().isVisible(), row.isKeptHere);
    EXPECT_EQ(Application().find("ours") != std::string::npos, row.isSaved);
  }
}

}  // namespace
}  // namespace tarn::host
