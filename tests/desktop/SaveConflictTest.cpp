// Saving and building while a text is in conflict with its file.
#include <tarn/commands.h>

#include <QMessageBox>
#include <QPushButton>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/Banner.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/EditorTabs.h"
#include "widgets/qt/QtText.h"

namespace tarn::host {
namespace {

class SaveConflictTest : public testing::IdeFixture {
 protected:
  // A text in conflict in a background tab, a changed one in the current tab, and a change of the
  // project.
  SaveConflictTest() {
    window->OpenPaths({Main()});
    window->Editors().Current()->insert("mine ");
    folder.Write("blinky/src/main.c", "int theirs;\n");
    window->OpenPaths({Board()});
    window->Editors().Current()->insert("// more\n");
    EXPECT_EQ(window->Session().Inspector().SelectNodeByKey("led.c"), 1);
    EXPECT_TRUE(Choose("Remove"));
  }

  std::string Main() { return folder / "blinky/src/main.c"; }
  std::string Board() { return folder / "blinky/src/board.h"; }
  // Presses the button with this text in the next message box.
  void AnswerWith(const QString& button) {
    testing::InNextDialog<QMessageBox>([this, button](QMessageBox& box) {
      asked = box.text();
      for (QAbstractButton* each : box.buttons()) {
        if (each->text().remove('&') == button) return each->click();
      }
      ADD_FAILURE() << "no " << button.toStdString();
      box.reject();
    });
  }

  QString asked;
};

TEST_F(SaveConflictTest, AllElseIsSavedAndTheBannerNamesWhatIsNot) {
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_TRUE(testing::ReadBytes(Board()).starts_with("// more\n"));
  EXPECT_EQ(testing::ReadBytes(Main()), "int theirs;\n");
  EXPECT_EQ(window->Session().Inspector().IsModified(), 0);
  EXPECT_EQ(window->Editors().Current()->GetPath(), Main());
  QStringList shown;
  for (const QFrame* each : window->findChildren<QFrame*>()) {
    const bool isBanner = dynamic_cast<const Banner*>(each) != nullptr;
    if (isBanner && each->isVisible()) shown += each->accessibleName();
  }
  EXPECT_EQ(shown.join('|').toStdString(),
            "main.c was not saved, because another program has changed it too.");
}

TEST_F(SaveConflictTest, ABuildAsksWhetherToTakeTheFileFromTheDisk) {
  std::optional<BuildEnd> ended;
  const auto others = window->Commands().onEnded;
  window->Commands().onEnded = [&](BuildEnd end) {
    ended = end;
    others(end);
  };
  AnswerWith("Cancel");
  window->Commands().Run(TARN_CMD_BUILD_ALL);
  ASSERT_TRUE(testing::RunUntil([&] { return ended.has_value(); }));
  EXPECT_EQ(asked.toStdString(), "main.c has unsaved changes. Build the version on disk?");
  EXPECT_EQ(*std::exchange(ended, {}), BuildEnd::Refused);
  AnswerWith("Build");
  window->Commands().Run(TARN_CMD_BUILD_ALL);
  ASSERT_TRUE(testing::RunUntil([&] { return ended.has_value(); }));
  EXPECT_NE(*ended, BuildEnd::Refused);
}

TEST_F(SaveConflictTest, TheQuestionAtTheEndSaysThatSavingReplacesTheOtherText) {
  ASSERT_TRUE(Choose("Save all"));
  AnswerWith("Save");
  EXPECT_TRUE(window->Editors().CloseCurrent());
  EXPECT_TRUE(asked.contains("Another program has also changed this file"));
  EXPECT_TRUE(testing::ReadBytes(Main()).starts_with("mine "));
}

}  // namespace
}  // namespace tarn::host
