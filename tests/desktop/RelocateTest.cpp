// Sources that were moved while a project was closed or open.

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <functional>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/RelocateDialog.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

class DesktopRelocate : public testing::IdeFixture {
 protected:
  // Chooses the menu entry, and operates the dialog once its search has ended.
  void Relocate(const std::function<void(RelocateDialog&, QTreeWidget&)>& work) {
    bool isSeen = false;
    testing::InNextDialog<QDialog>([&](QDialog& dialog) {
      auto& list = *dialog.findChild<QTreeWidget*>();
      EXPECT_TRUE(testing::RunUntil([&] { return list.topLevelItemCount() > 0; }));
      isSeen = true;
      work(static_cast<RelocateDialog&>(dialog), list);
      if (dialog.isVisible()) dialog.reject();
    });
    ASSERT_TRUE(Choose("Find moved files..."));
    EXPECT_TRUE(isSeen);
  }
  static QPushButton& Accept(QDialog& dialog) {
    return *dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
  }
  std::string FileText() { return testing::ReadBytes(folder / "blinky/blinky-avr.tapp"); }
  std::string Texts() { return window->Session().Inspector().GetFileTexts(); }
};

TEST_F(DesktopRelocate, MovedSourcesAreCorrectedInOneStep) {
  const std::string before = FileText();
  fs::rename(folder / "blinky/src/drivers", folder / "blinky/src/hal");
  Relocate([](RelocateDialog& dialog, QTreeWidget& list) {
    EXPECT_EQ(list.topLevelItem(0)->text(0).toStdString(), "src/drivers/led.c");
    EXPECT_EQ(list.topLevelItem(0)->text(1).toStdString(), "src/hal/led.c");
    Accept(dialog).click();
  });
  EXPECT_NE(Texts().find("\\hal\\led.c"), std::string::npos);
  EXPECT_EQ(Texts().find("\\drivers\\led.c"), std::string::npos);
  EXPECT_TRUE(FindLine("led.c").isValid());
  EXPECT_EQ(FileText(), before) << "only a save writes it";
  ASSERT_TRUE(Choose("undoProject"));
  EXPECT_NE(Texts().find("\\drivers\\led.c"), std::string::npos);
}

TEST_F(DesktopRelocate, OneOfSeveralIsForTheUser) {
  fs::create_directories(folder / "blinky/a");
  fs::create_directories(folder / "blinky/b");
  fs::copy(folder / "blinky/src/main.c", folder / "blinky/a/main.c");
  fs::rename(folder / "blinky/src/main.c", folder / "blinky/b/main.c");
  Relocate([](RelocateDialog& dialog, QTreeWidget& list) {
    EXPECT_FALSE(Accept(dialog).isEnabled());
    auto* const box = list.findChild<QComboBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->currentIndex(), -1);
    const int place = box->findText("b/main.c");
    box->setCurrentIndex(place);
    Q_EMIT box->activated(place);
    EXPECT_TRUE(testing::RunUntil([&] { return Accept(dialog).isEnabled(); }));
    EXPECT_EQ(list.topLevelItem(0)->checkState(0), Qt::Checked);
    Accept(dialog).click();
  });
  EXPECT_NE(Texts().find(".\\b\\main.c"), std::string::npos);
}

TEST_F(DesktopRelocate, WhatIsLeftOutStaysAsItIs) {
  const std::string before = FileText();
  fs::create_directories(folder / "blinky/a");
  fs::rename(folder / "blinky/src/main.c", folder / "blinky/a/main.c");
  Relocate([](RelocateDialog& dialog, QTreeWidget& list) {
    EXPECT_TRUE(Accept(dialog).isEnabled());
    list.topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    EXPECT_TRUE(testing::RunUntil([&] { return !Accept(dialog).isEnabled(); }));
  });
  EXPECT_EQ(FileText(), before);
}

// The project can't be opened in this state, and undo requires the file at its old path.
TEST_F(DesktopRelocate, AnApplicationThatHasMovedIsCorrectedInOneStep) {
  const std::string project = folder / "blinky/blinky-avr.tprj";
  const std::string before = testing::ReadBytes(project);
  window->close();
  window.reset();
  fs::create_directory(folder / "blinky/app");
  const std::string moved = folder / "blinky/app/blinky-avr.tapp";
  fs::rename(folder / "blinky/blinky-avr.tapp", moved);
  window.emplace(FileSystem::Native());
  ASSERT_TRUE(window->Start());
  window->show();
  testing::InNextDialog<QMessageBox>([](QMessageBox& box) {
    for (QAbstractButton* each : box.buttons()) {
      if (each->text().contains("Find")) each->click();
    }
    testing::InNextDialog<QDialog>([](QDialog& dialog) {
      EXPECT_TRUE(testing::RunUntil([&] { return Accept(dialog).isEnabled(); }));
      Accept(dialog).click();
      if (dialog.isVisible()) dialog.reject();
    });
  });
  window->OpenProject(project);
  EXPECT_NE(Texts().find("app\\blinky-avr.tapp"), std::string::npos);
  EXPECT_EQ(testing::ReadBytes(project), before);
  fs::copy(moved, folder / "blinky/blinky-avr.tapp");
  ASSERT_TRUE(Choose("undoProject"));
  EXPECT_EQ(Texts().find("app\\blinky-avr.tapp"), std::string::npos);
  ASSERT_TRUE(Choose("redoProject"));
  ASSERT_TRUE(Choose("Save all"));
  EXPECT_NE(testing::ReadBytes(project).find("app\\blinky-avr.tapp"), std::string::npos);
}

}  // namespace
}  // namespace tarn::host
