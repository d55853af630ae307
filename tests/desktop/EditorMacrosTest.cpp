// Code of a source that the active configuration excludes.
#include "hosts/desktop/EditorMacros.h"

#include <QComboBox>

#include "desktop/IdeFixture.h"
#include "hosts/desktop/CodeEditor.h"
#include "hosts/desktop/OptionsWindow.h"

namespace tarn::host {
namespace {

using testing::RunUntil;

std::string Commands(const std::string& predefined, const std::vector<std::string>& arguments) {
  std::string text = "<Commands Predefined='" + predefined + "'><Command Program='cc'>";
  for (const std::string& each : arguments) text += "<A V='" + each + "'/>";
  return text + "</Command></Commands>";
}

TEST(EditorMacros, TheLastArgumentForAMacroCounts) {
  const struct {
    const char* predefined;
    std::vector<std::string> arguments;
    const char* macros;
  } rows[] = {
      {"", {"-c", "x.c"}, ""},
      {"A=1;B", {"-DC", "-D", "D=2"}, "A=1 B C D=2"},
      {"A=1", {"-UA"}, ""},
      {"", {"-DA=1", "-DA=2"}, "A=2"},
      {"", {"-DA", "-U", "A", "-DB"}, "B"},
      {"", {"-DF(x)=x", "-DNAME=a b", "-D"}, ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ReadGivenMacros(Commands(row.predefined, row.arguments)), row.macros);
  }
  EXPECT_EQ(ReadGivenMacros("no XML"), "");
}

TEST(EditorMacros, NamesOfTheCompilersOwnHaveToBeKnown) {
  const struct {
    const char* text;
    bool isKnown;
  } rows[] = {
      {"#ifdef DEBUG\n#endif\n", true},
      {"#ifndef __X_H__\n#define __X_H__\n#endif\n", true},
      {"#ifdef __cplusplus\n#endif\n", true},
      {"#if defined(__AVR__) && !defined DEBUG\n#endif\n", true},
      {"  #  if defined(__ARM__)\n#endif\n", false},
      {"#if A\n#elif __B > 2\n#endif\n", false},
      {"#define A __ARM__\nint __ARM__;\n", true},
  };
  for (const auto& row : rows)
    EXPECT_EQ(KnowsConditions(row.text, "__AVR__=1"), row.isKnown) << row.text;
}

class EditorMacrosTest : public testing::IdeFixture {
 protected:
  void Choose(const QString& configuration) {
    window->Options().ChooseConfiguration(configuration);
  }
  // Returns true if the first occurrence of the word has the style of excluded code.
  bool IsGrey(const char* word) {
    CodeEditor& editor = *window->Editors().Current();
    const auto place = editor.GetText().indexOf(word);
    constexpr int kInactive = 64;
    return (editor.SendScintilla(QsciScintilla::SCI_GETSTYLEAT, static_cast<long>(place)) &
            kInactive) != 0;
  }
};

TEST_F(EditorMacrosTest, CodeThatTheConfigurationLeavesOutIsGrey) {
  folder.Write("blinky/src/main.c",
               "#ifdef DEBUG\nint debugged;\n#else\nint plain;\n#endif\n"
               "#ifdef __AVR__\nint target;\n#endif\n");
  window->OpenPaths({folder / "blinky/src/main.c"});
  ASSERT_TRUE(RunUntil([this] { return IsGrey("debugged"); }));
  EXPECT_FALSE(IsGrey("plain"));
  EXPECT_FALSE(IsGrey("target"));
  Choose("Debug");
  EXPECT_TRUE(RunUntil([this] { return IsGrey("plain"); }));
  EXPECT_FALSE(IsGrey("debugged"));
  Choose("Standard");
  EXPECT_TRUE(RunUntil([this] { return IsGrey("debugged"); }));
  CodeEditor& editor = *window->Editors().Current();
  editor.insertAt("#if __OF_THE_COMPILER__\n#endif\n", 0, 0);
  EXPECT_TRUE(RunUntil([this] { return !IsGrey("debugged"); })) << "it can't be judged now";
  editor.undo();
  EXPECT_TRUE(RunUntil([this] { return IsGrey("debugged"); }));
}

}  // namespace
}  // namespace tarn::host
