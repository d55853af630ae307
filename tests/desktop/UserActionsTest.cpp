// A user's actions with mouse and keyboard in the real window, and their effect on the project.
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/CodeEditor.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

class UserActionsTest : public testing::IdeFixture {
 protected:
  std::string ParentOf(const QString& label) {
    return FindLine(label).parent().data().toString().toStdString();
  }
  // Drags without releasing the button.
  void DragTo(QPoint onto) {
    QWidget* const lines = Tree().viewport();
    const QPoint from = PointOf("led.c");
    QTest::mousePress(lines, Qt::LeftButton, {}, from);
    for (int step = 1; step <= 10; ++step) {
      // With the button pressed, unlike the moves of QTest.
      const QPointF place = from + (onto - from) * step / 10;
      QMouseEvent move(QEvent::MouseMove, place, lines->mapToGlobal(place), Qt::NoButton,
                       Qt::LeftButton, {});
      QApplication::sendEvent(lines, &move);
    }
  }
  // Presses this button of the next message box; returns false if none appears.
  bool Answer(QMessageBox::StandardButton button, const std::function<void()>& asking) {
    bool isAsked = false;
    testing::InNextDialog<QMessageBox>([&](QMessageBox& box) {
      isAsked = box.button(button) != nullptr;
      if (isAsked) box.button(button)->click();
    });
    asking();
    return isAsked;
  }
};

TEST_F(UserActionsTest, AGroupIsRenamedInItsPlaceAndEscapeLeavesIt) {
  QCoreApplication::processEvents();  // opens it
  const auto rename = [&](const QString& from, const QString& to, Qt::Key end) {
    Select(from);
    if (end == Qt::Key_Escape) {
      QTest::keyClick(&Tree(), Qt::Key_F2);
    } else {
      QTest::mouseDClick(Tree().viewport(), Qt::LeftButton, {}, PointOf(from));
    }
    QLineEdit* field = nullptr;
    ASSERT_TRUE(RunUntil(
        [&] {
          field = Tree().findChild<QLineEdit*>();
          return field != nullptr;
        },
        3000));
    // The server is still loading the project in the meantime.
    const QPointer<QLineEdit> kept = field;
    RunUntil([] { return false; }, 500);
    ASSERT_NE(kept, nullptr);
    QTest::keyClicks(field, to);
    QTest::keyClick(field, end);
  };
  rename("Drivers", "Hardware", Qt::Key_Return);
  ASSERT_TRUE(RunUntil([&] { return FindLine("Hardware").isValid(); }));
  EXPECT_EQ(ParentOf("led.c"), "Hardware");
  rename("Hardware", "Nothing", Qt::Key_Escape);
  EXPECT_TRUE(Tree().hasFocus());
  EXPECT_TRUE(FindLine("Hardware").isValid());
  window->Session().Manager().ProjectSave();
  EXPECT_NE(testing::ReadBytes(folder / "blinky/blinky-avr.tapp").find("Header=\"Hardware\""),
            std::string::npos);
}

TEST_F(UserActionsTest, ANodeThatIsDraggedOntoAGroupGoesIntoIt) {
  ASSERT_EQ(ParentOf("led.c"), "Drivers");
  const QPoint onto = PointOf("Application");
  // A drag that is released elsewhere or cancelled has ended: the next click drops nothing.
  DragTo({Tree().viewport()->width() + 50, onto.y()});
  QTest::mouseRelease(Tree().viewport(), Qt::LeftButton, {},
                      {Tree().viewport()->width() + 50, onto.y()});
  Select("Application");
  DragTo(onto);
  QTest::keyClick(&Tree(), Qt::Key_Escape);
  QTest::mouseRelease(Tree().viewport(), Qt::LeftButton, {}, onto);
  RunUntil([] { return false; }, 100);
  ASSERT_EQ(ParentOf("led.c"), "Drivers");

  DragTo(onto);
  QTest::mouseRelease(Tree().viewport(), Qt::LeftButton, {}, onto);
  ASSERT_TRUE(RunUntil([&] { return ParentOf("led.c") == "Application"; })) << ParentOf("led.c");
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  EXPECT_TRUE(IsBuilt("blinky-avr.elf"));
}

TEST_F(UserActionsTest, StopEndsABuildWithItsTools) {
  std::optional<BuildEnd> ended;
  window->Commands().onEnded = [&](BuildEnd end) { ended = end; };
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(Choose("Stop"));
  ASSERT_TRUE(RunUntil([&] { return ended.has_value(); }));
  EXPECT_EQ(ended, BuildEnd::Stopped);
  EXPECT_FALSE(IsBuilt("blinky-avr.elf"));
}

TEST_F(UserActionsTest, ClosingAsksForTextThatIsNotSaved) {
  const std::string path = folder / "blinky/src/main.c";
  const std::string before = testing::ReadBytes(path);
  window->OpenPaths({path});
  ASSERT_EQ(window->Editors().count(), 1);
  window->Editors().Current()->insert("// mine\n");
  EXPECT_TRUE(Answer(QMessageBox::Cancel, [&] { window->close(); }));
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(testing::ReadBytes(path), before);
  EXPECT_TRUE(Answer(QMessageBox::Save, [&] { window->close(); }));
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(testing::ReadBytes(path), "// mine\n" + before);
}

TEST_F(UserActionsTest, ClosingTellsWhereTheChangesOfAProjectAreThatCantBeSaved) {
  const std::string path = folder / "blinky/blinky-avr.tapp";
  window->Session().Inspector().SelectNodeByKey("led.c");
  ASSERT_TRUE(Choose("Remove"));
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_TRUE(Answer(QMessageBox::Ok, [&] { window->close(); }));
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(testing::ReadBytes(path + ".unsaved").find("led.c"), std::string::npos);
}

// The names of copies would be too long.
TEST_F(UserActionsTest, ChangesThatCanBeWrittenNowhereMayBeDiscarded) {
  const std::string name = std::string(245, 'n') + ".tapp";
  const std::string attributes = "Header=\"n\" Extern=\"" + name + "\" Path=\"" + name + "\"";
  const std::string text = "<Application " + attributes + " ><Group Header=\"g\" /></Application>";
  std::filesystem::create_directory(folder / "long");
  folder.Write("long/" + name, text);
  folder.Write("long/demo.tprj",
               "<Project Header=\"demo\" ><Application " + attributes + " /></Project>");
  window->OpenPaths({folder / "long/demo.tprj"});
  window->Session().Inspector().SelectNodeByKey("g");
  ASSERT_TRUE(Choose("Remove"));
  std::filesystem::permissions(folder / ("long/" + name), std::filesystem::perms::owner_read);
  EXPECT_TRUE(Answer(QMessageBox::Cancel, [&] { window->close(); }));
  EXPECT_TRUE(window->isVisible());
  EXPECT_TRUE(Answer(QMessageBox::Discard, [&] { window->close(); }));
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(testing::ReadBytes(folder / ("long/" + name)), text);
}

TEST_F(UserActionsTest, WhatStandsInAnEditorIsWhatIsBuilt) {
  window->OpenPaths({folder / "blinky/src/main.c"});
  window->Editors().Current()->insert("#error mine\n");
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  EXPECT_FALSE(IsBuilt("blinky-avr.elf"));
  EXPECT_FALSE(window->Editors().Current()->isModified());
}

}  // namespace
}  // namespace tarn::host
