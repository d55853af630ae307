// Files from outside: dropped on the window, or named on the command line.
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QUrl>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/CodeEditor.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

class OpenPathsTest : public testing::IdeFixture {
 protected:
  // Drops a file on a widget; like the toolkit, passes the event on to its parents.
  void Drop(QWidget& widget, const std::string& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    const QPoint place = widget.rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&widget, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&widget, &drop);
  }
};

TEST_F(OpenPathsTest, ADroppedFileIsEditedAndADroppedProjectOpened) {
  Drop(*window, folder / "blinky/src/blinker.c");
  ASSERT_TRUE(RunUntil([&] { return window->Editors().count() == 1; }));
  // Dropped on a text, which by default would insert the name.
  Drop(*window->Editors().Current()->viewport(), folder / "blinky/src/blinker.h");
  ASSERT_TRUE(RunUntil([&] { return window->Editors().count() == 2; }));
  EXPECT_FALSE(window->Editors().Current()->isModified());

  std::filesystem::copy(folder / "blinky", folder / "other",
                        std::filesystem::copy_options::recursive);
  const std::string other = folder / "other/blinky-avr.tprj";
  Drop(window->Editors(), other);
  EXPECT_TRUE(RunUntil([&] { return window->Session().GetProjectPath() == other; }));
  // An application opens the project next to it.
  Drop(window->Editors(), folder / "blinky/blinky-avr.tapp");
  const std::string first = folder / "blinky/blinky-avr.tprj";
  EXPECT_TRUE(RunUntil([&] { return window->Session().GetProjectPath() == first; }));
}

TEST_F(OpenPathsTest, AFileThatTheProjectSpellsInAnotherWayIsEditedOnce) {
  std::filesystem::rename(folder / "blinky/src", folder / "blinky/SRC");
  for (const char* path : {"src/main.c", "src\\MAIN.C", "SRC/main.c"}) {
    SendWindowMessage(window->Frame().GetHandle(), kMsgOpenFileAtLine,
                      reinterpret_cast<std::intptr_t>(path), -3);
    RunUntil([] { return false; }, 50);
    ASSERT_NE(window->Editors().Current(), nullptr) << path;
    EXPECT_EQ(window->Editors().Current()->GetPath(), folder / "blinky/SRC/main.c");
  }
  EXPECT_EQ(window->Editors().count(), 1);
}

TEST_F(OpenPathsTest, OfSeveralFilesTheMissingOnesAreNamedAndTheOthersOpened) {
  QString reported;
  testing::InNextDialog<QMessageBox>([&](QMessageBox& box) {
    reported = box.text();
    box.reject();
  });
  window->OpenPaths({folder / "blinky/src/none.c", folder / "blinky/src/main.c",
                     folder / "blinky/src", folder / "blinky/blinky-avr.tprj"});
  EXPECT_TRUE(reported.contains("src/none.c")) << reported.toStdString();
  EXPECT_FALSE(reported.contains("main.c"));
  EXPECT_EQ(window->Editors().count(), 1);
}

}  // namespace
}  // namespace tarn::host
