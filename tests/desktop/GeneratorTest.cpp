// Adding files that a build makes from others, in the real window.
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>

#include "desktop/IdeFixture.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

class GeneratorTest : public testing::IdeFixture {
 protected:
  struct Fields {
    explicit Fields(QDialog& shown)
        : dialog(shown),
          input(*shown.findChild<QLineEdit*>("input")),
          tool(*shown.findChild<QComboBox*>("tool")),
          commands(*shown.findChild<QLineEdit*>("commands")),
          output(*shown.findChild<QLineEdit*>("output")),
          adds(*shown.findChild<QCheckBox*>("adds")) {}

    static void Enter(QLineEdit& field, const std::string& text) {
      field.selectAll();
      QTest::keyClick(&field, Qt::Key_Delete);
      QTest::keyClicks(&field, QString::fromStdString(text));
    }
    void Choose(const char* name) {
      tool.setCurrentIndex(tool.findData(name));
      Q_EMIT tool.activated(tool.currentIndex());
    }
    // Presses Enter, and returns what is then shown as the reason why the dialog stays open.
    std::string Finish() {
      QTest::keyClick(&dialog, Qt::Key_Return);
      const auto* const problem = dialog.findChild<QLabel*>("problem");
      return dialog.isVisible() ? problem->text().toStdString() : std::string();
    }

    QDialog& dialog;
    QLineEdit& input;
    QComboBox& tool;
    QLineEdit& commands;
    QLineEdit& output;
    QCheckBox& adds;
  };

  // Operates the dialog of the command; cancels it if it is still open afterwards.
  void InDialog(const std::function<void(Fields& fields)>& use) {
    testing::InNextDialog<QDialog>([&](QDialog& dialog) {
      Fields fields(dialog);
      use(fields);
      if (dialog.isVisible()) dialog.reject();
    });
    ASSERT_TRUE(Choose("Add generated file..."));
  }
  std::string OptionOf(const char* name) {
    return window->Session().Manager().GetPropertyValue("Generator", "Build", name);
  }
  QString CurrentLabel() { return Tree().currentIndex().data().toString(); }
};

TEST_F(GeneratorTest, AnEmbeddedFileIsSelectedAndItsSourceIsCompiled) {
  folder.Write("blinky/src/logo.bin", "12345");
  Select("Drivers");
  InDialog([&](Fields& fields) {
    Fields::Enter(fields.input, "src/logo.bin");
    EXPECT_EQ(fields.tool.currentData().toString(), "embed");
    EXPECT_EQ(fields.output.placeholderText(), "build/blinky-avr.gen/logo.c");
    EXPECT_FALSE(fields.commands.isVisible());
    EXPECT_TRUE(fields.adds.isChecked());
    EXPECT_EQ(fields.Finish(), "");
  });
  EXPECT_EQ(CurrentLabel(), "logo.bin");
  EXPECT_EQ(FindLine("logo.bin").parent(), FindLine("Drivers"));
  EXPECT_EQ(OptionOf("TranslateTool"), "embed");
  EXPECT_TRUE(FindLine("logo.c").isValid());
  ASSERT_TRUE(Choose("Build all"));
  ASSERT_TRUE(AwaitBuild());
  EXPECT_TRUE(std::filesystem::exists(folder / "blinky/build/blinky-avr.gen/logo.c"));
  EXPECT_TRUE(IsBuilt("blinky-avr.elf"));
}

TEST_F(GeneratorTest, ATemplateGetsTheVersionToolAndItsOutputTheStampThatTheToolNeeds) {
  folder.Write("blinky/version.h.in", "@GIT_COMMIT@");
  InDialog([&](Fields& fields) {
    Fields::Enter(fields.input, "version.h.in");
    EXPECT_EQ(fields.tool.currentData().toString(), "version");
    EXPECT_EQ(fields.output.placeholderText(), "build/blinky-avr.gen/version.h");
    EXPECT_FALSE(fields.adds.isChecked());
    Fields::Enter(fields.output, "build/gen/v.h");
    EXPECT_EQ(fields.Finish(), "");
  });
  EXPECT_EQ(CurrentLabel(), "version.h.in");
  EXPECT_EQ(OptionOf("OutputFile"), "build/gen/v.h.stamp");
}

TEST_F(GeneratorTest, CommandsAreRequiredAndStored) {
  folder.Write("blinky/sine.csv", "1");
  InDialog([&](Fields& fields) {
    Fields::Enter(fields.input, folder / "blinky/sine.csv");
    fields.Choose("command");
    EXPECT_TRUE(fields.commands.isVisible());
    EXPECT_EQ(fields.Finish(), "Enter the commands that make the output.");
    Fields::Enter(fields.commands, "cp $(General.Path) $(Build.OutputFile)");
    EXPECT_EQ(fields.Finish(), "");
  });
  EXPECT_EQ(CurrentLabel(), "sine.csv");
  const std::string path = folder / "blinky/";
  const std::string expected = "cp " + path + "sine.csv " + path + "build/blinky-avr.gen/sine.c";
  EXPECT_TRUE(RunUntil([&] { return OptionOf("Commands") == expected; })) << OptionOf("Commands");
}

TEST_F(GeneratorTest, WhatCantBeAddedIsRefusedWithTheReason) {
  folder.Write("blinky/logo.bin", "1");
  folder.Write("blinky/more/logo.bin", "1");
  folder.Write("blinky/build/blinky-avr.gen/old.c", "1");
  InDialog([&](Fields& fields) {
    Fields::Enter(fields.input, "logo.bin");
    EXPECT_EQ(fields.Finish(), "");
  });
  const struct {
    const char* input;
    const char* output;
    const char* problem;
  } rows[] = {
      {"", "", "Choose the file that another one is made from."},
      {"none.bin", "", "none.bin does not exist."},
      {"src", "", "src is a folder."},
      {"logo.bin", "", "logo.bin is in the application already. Remove it there first."},
      {"src/main.c", "", "src/main.c is in the application already. Remove it there first."},
      {"more/logo.bin", "", "build/blinky-avr.gen/logo.c is made from another file already."},
      {"more/logo.bin", "more/logo.bin", "The output can't be the file that it is made from."},
      {"more/logo.bin", "src", "src is a folder."},
      {"more/logo.bin", "src/main.c",
       "src/main.c exists. Only files in a subfolder of \"build\" are replaced."},
      {"more/logo.bin", "build/blinky-avr.gen/old.c", ""},
  };
  InDialog([&](Fields& fields) {
    for (const auto& row : rows) {
      Fields::Enter(fields.input, row.input);
      Fields::Enter(fields.output, row.output);
      EXPECT_EQ(fields.Finish(), row.problem) << row.input << " " << row.output;
    }
  });
}

}  // namespace
}  // namespace tarn::host
