// The wizard in the real window, from the command to a built project.
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/CodeEditor.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

class WizardTest : public testing::IdeFixture {
 protected:
  // Executes the command and operates its dialog; returns false if none appears.
  bool InWizard(const std::function<void(QDialog&)>& use,
                const char* command = "New application...") {
    bool isUsed = false;
    testing::InNextDialog<QDialog>([&](QDialog& dialog) {
      isUsed = true;
      use(dialog);
      if (dialog.isVisible()) dialog.reject();
    });
    EXPECT_TRUE(Choose(command));
    return isUsed;
  }
  static QLineEdit* FieldOf(const QDialog& dialog, const QString& label) {
    for (QLineEdit* const field : dialog.findChildren<QLineEdit*>()) {
      if (field->accessibleName() == label) return field;
    }
    return nullptr;
  }
  static void Fill(const QDialog& dialog, const QString& label, const std::string& text) {
    QLineEdit* const field = FieldOf(dialog, label);
    ASSERT_NE(field, nullptr) << label.toStdString();
    field->selectAll();
    QTest::keyClicks(field, QString::fromStdString(text));
  }
};

TEST_F(WizardTest, LeadsByKeyboardToANewProjectThatBuilds) {
  std::filesystem::create_directory(folder / "new");
  ASSERT_TRUE(InWizard([&](QDialog& dialog) {
    auto* const targets = dialog.findChild<QTreeView*>();
    targets->setFocus();
    QTest::keyClicks(targets, "328p");
    for (QRadioButton* const each : dialog.findChildren<QRadioButton*>()) {
      if (each->text() == "Create a new project") QTest::keyClick(each, Qt::Key_Space);
    }
    Fill(dialog, "Name:", "demo");
    Fill(dialog, "Location:", folder / "new");
    targets->setFocus();
    QTest::keyClick(targets, Qt::Key_Return);
  }));
  ASSERT_TRUE(RunUntil([&] { return window->windowTitle().remove("[*]") == "demo - Tarn"; }));
  ASSERT_TRUE(RunUntil([&] { return FindLine("main.c").isValid(); }));
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(RunUntil([&] { return !window->Commands().IsBuilding(); }));
  EXPECT_TRUE(std::filesystem::exists(folder / "new/build/Standard/demo.elf"));
}

TEST_F(WizardTest, TheProposedFolderIsTheUsersOwnAndThenTheLastOne) {
  const auto propose = [&](const std::string& wanted) {
    std::string proposed;
    EXPECT_TRUE(InWizard(
        [&](QDialog& dialog) {
          proposed = FieldOf(dialog, "Location:")->text().toStdString();
          if (wanted.empty()) return;
          auto* const targets = dialog.findChild<QTreeView*>();
          targets->setFocus();
          QTest::keyClicks(targets, "328p");
          Fill(dialog, "Name:", "demo");
          Fill(dialog, "Location:", wanted);
          targets->setFocus();
          QTest::keyClick(targets, Qt::Key_Return);
        },
        "New project..."));
    RunUntil([&] { return window->Commands().GetProjectPath().ends_with("demo.tprj"); });
    return proposed;
  };
  const std::string first = propose(folder / "mine/demo");
  EXPECT_TRUE(first.starts_with(QDir::homePath().toStdString())) << first;
  EXPECT_TRUE(first.ends_with("/Tarn/Application0")) << first;
  EXPECT_EQ(propose({}), folder / "mine/Application0");
}

TEST_F(WizardTest, ANewProjectGetsAFolderOfItsOwnAndAMicrocontrollerIsFoundByWords) {
  ASSERT_TRUE(InWizard(
      [&](QDialog& dialog) {
        const auto location = [&] { return FieldOf(dialog, "Location:")->text().section('/', -1); };
        Fill(dialog, "Name:", "demo");
        EXPECT_EQ(location(), "demo");
        Fill(dialog, "Location:", folder / "found");
        Fill(dialog, "Name:", "other");
        EXPECT_EQ(location(), "found");
        const auto described = [&dialog](const QString& text) {
          const auto labels = dialog.findChildren<QLabel*>();
          return std::ranges::any_of(labels,
                                     [&](QLabel* each) { return each->text().contains(text); });
        };
        Fill(dialog, "Search", "stm8s 32 pins 16 flash");
        EXPECT_TRUE(described("16 KB flash"));
        QLineEdit* const search = FieldOf(dialog, "Search");
        Fill(dialog, "Search", "atmega328p");
        EXPECT_TRUE(described("32 KB flash"));
        QTest::keyClick(search, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        QTest::keyClick(FieldOf(dialog, "Name:"), Qt::Key_Return);
      },
      "New project..."));
  // The first source is shown.
  ASSERT_TRUE(RunUntil([&] { return window->Editors().count() == 1; }));
  EXPECT_EQ(window->Editors().Current()->GetPath(), folder / "found/src/main.c");
}

TEST_F(WizardTest, ANewProjectIsWholeOnTheDiskAsSoonAsItIsMade) {
  // A file of the user that a project for this target has a copy of as well.
  std::filesystem::create_directories(folder / "new/src");
  folder.Write("new/src/startup.c", "mine");
  ASSERT_TRUE(InWizard(
      [&](QDialog& dialog) {
        auto* const targets = dialog.findChild<QTreeView*>();
        targets->setFocus();
        QTest::keyClicks(targets, "LM3S811");
        Fill(dialog, "Name:", "demo");
        Fill(dialog, "Location:", folder / "new");
        targets->setFocus();
        QTest::keyClick(targets, Qt::Key_Return);
      },
      "New project..."));
  QCoreApplication::processEvents();
  EXPECT_EQ(window->Session().Inspector().IsModified(), 0);
  const std::string texts = window->Session().Inspector().GetFileTexts();
  for (const std::string name : {"main.c", "startup2.c", "syscalls.c"}) {
    EXPECT_TRUE(std::filesystem::exists(folder / ("new/src/" + name))) << name;
  }
  EXPECT_EQ(testing::ReadBytes(folder / "new/src/startup.c"), "mine");
  EXPECT_EQ(Tree().currentIndex().data().toString(), "main.c");
  for (const char* const name : {"demo.tprj", "demo.tapp"}) {
    EXPECT_NE(texts.find(testing::ReadBytes(folder / ("new/" + std::string(name)))),
              std::string::npos)
        << name;
  }
}

TEST_F(WizardTest, FinishStaysOpenAndSaysWhatIsInTheWay) {
  folder.Write("file", "x");
  ASSERT_TRUE(InWizard([&](QDialog& dialog) {
    const auto finish = [&dialog] {
      for (QPushButton* const each : dialog.findChildren<QPushButton*>()) {
        if (each->text() == "Finish") each->click();
      }
    };
    const auto shown = [&dialog] {
      QString text;
      for (const QLabel* const each : dialog.findChildren<QLabel*>()) {
        if (each->isVisible() && each->text().endsWith(".")) text = each->text();
      }
      return text.toStdString();
    };
    Fill(dialog, "Name:", "a/b");
    finish();
    ASSERT_TRUE(dialog.isVisible());
    EXPECT_EQ(shown().find("A name can't contain"), 0u) << shown();
    Fill(dialog, "Name:", "other");
    Fill(dialog, "Location:", folder / "file");
    finish();
    ASSERT_TRUE(dialog.isVisible());
    EXPECT_EQ(shown(), std::string(folder / "file") + " is a file, not a folder.");
    EXPECT_EQ(FieldOf(dialog, "Name:")->text(), "other");
    for (QRadioButton* const each : dialog.findChildren<QRadioButton*>()) {
      if (each->text() == "Create a new project") QTest::keyClick(each, Qt::Key_Space);
    }
    Fill(dialog, "Location:", "new");
    finish();
    ASSERT_TRUE(dialog.isVisible());
    EXPECT_EQ(shown(), "Enter the full path of the folder.");
    Fill(dialog, "Location:", folder / "new");
    auto* const targets = dialog.findChild<QTreeView*>();
    targets->setFocus();
    QTest::keyClicks(targets, "STM8");
    finish();
    ASSERT_TRUE(dialog.isVisible());
    EXPECT_EQ(shown(), "Choose a microcontroller.");
    Fill(dialog, "Location:", folder / "blinky");
    Fill(dialog, "Name:", "blinky-avr");
    QTest::keyClicks(targets, "STM8S103F3");
    finish();
    ASSERT_TRUE(dialog.isVisible());
    EXPECT_EQ(shown(), std::string(folder / "blinky/blinky-avr.tprj") + " already exists.");
  }));
}

TEST_F(WizardTest, ANewFileIsCreatedWithItsNode) {
  Select("led.c");
  testing::InNextDialog<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().path().toStdString(), folder / "blinky/src/drivers");
    dialog.findChild<QLineEdit*>()->setText(QString::fromStdString(folder / "blinky/src/extra.c"));
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  ASSERT_TRUE(Choose("New file..."));
  EXPECT_TRUE(std::filesystem::exists(folder / "blinky/src/extra.c"));
  EXPECT_TRUE(RunUntil([&] { return FindLine("extra.c").isValid(); }));
}

TEST_F(WizardTest, PanesComeWithAProject) {
  const auto shown = [&] { return window->findChild<QDockWidget*>("dock4003")->isVisible(); };
  EXPECT_TRUE(shown());
  window.reset();
  window.emplace(FileSystem::Native());
  ASSERT_TRUE(window->Start());
  window->show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&*window));
  EXPECT_FALSE(shown());
  window->OpenProject(folder / "blinky/blinky-avr.tprj");
  EXPECT_TRUE(RunUntil(shown));
}

TEST_F(WizardTest, EscapeLeavesTheProjectAsItIs) {
  ASSERT_TRUE(InWizard([&](QDialog& dialog) {
    Fill(dialog, "Name:", "demo");
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
  }));
  EXPECT_EQ(window->windowTitle().remove("[*]"), "blinky-avr - Tarn");
  EXPECT_FALSE(FindLine("demo").isValid());
}

TEST_F(WizardTest, ANewProjectIsNotPutIntoTheOpenOneWhichStaysUntilFinish) {
  window->OpenPaths({folder / "blinky/src/main.c"});
  window->Editors().Current()->insert("mine");
  ASSERT_TRUE(InWizard(
      [&](QDialog& dialog) {
        for (QRadioButton* const each : dialog.findChildren<QRadioButton*>()) {
          EXPECT_EQ(each->isChecked(), each->text() == "Create a new project");
          EXPECT_EQ(each->isEnabled(), each->isChecked());
        }
        // It stays open until Finish.
        EXPECT_TRUE(FindLine("main.c").isValid());
        EXPECT_EQ(dialog.findChild<QLabel*>("sheetTitle")->text(), "Create a new project");
        QTest::keyClick(&dialog, Qt::Key_Escape);
      },
      "New project..."));
  EXPECT_TRUE(RunUntil([&] { return FindLine("main.c").isValid(); }));
  EXPECT_EQ(window->windowTitle().remove("[*]"), "blinky-avr - Tarn");
  EXPECT_TRUE(window->Editors().Current()->text().startsWith("mine"));
}

}  // namespace
}  // namespace tarn::host
