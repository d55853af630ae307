#include "hosts/cli/HelpText.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "hosts/cli/CommandLine.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

void ForEach(const CommandEntry& command, const std::function<void(const CommandEntry&)>& call) {
  call(command);
  for (const CommandEntry& each : command.children) ForEach(each, call);
}

TEST(HelpText, SaysAllThatACommandTakes) {
  CommandEntry command;
  command.words = {"paint"};
  command.help = "Paint a wall";
  command.arguments = {{"WALL", "Which", ValueKind::None, true, false},
                       {"COLOUR", "How", ValueKind::None, false, true}};
  command.flags = {{{"-b", "--brush"},
                    "WIDTH",
                    "Width of the brush, in so many words that the "
                    "line has to go on below it",
                    ValueKind::None},
                   {{"--twice"}, "", "Once more", ValueKind::None}};
  command.examples = {{"tarn paint north", "in white"}};
  EXPECT_EQ(MakeHelpText(command),
            "Paint a wall.\n"
            "\n"
            "Usage: tarn paint WALL [COLOUR...] [options]\n"
            "\n"
            "Arguments\n"
            "  WALL    Which\n"
            "  COLOUR  How\n"
            "\n"
            "Options\n"
            "  -b, --brush WIDTH  Width of the brush, in so many words that the line has to\n"
            "                     go on below it\n"
            "      --twice        Once more\n"
            "\n"
            "Examples\n"
            "  tarn paint north  in white\n");
}

TEST(HelpText, NoCommandIsForgottenAndNoLineIsTooWide) {
  const CommandEntry program = DescribeCommandLine();
  const std::string overview = MakeHelpText(program);
  for (const CommandEntry& each : program.children) {
    EXPECT_NE(overview.find("\n  " + each.words.back() + " "), std::string::npos)
        << each.words.back() << " is in no group";
  }
  ForEach(program, [](const CommandEntry& command) {
    EXPECT_NE(command.help, "") << command.Title();
    const std::string text = MakeHelpText(command);
    for (const std::string_view line : Split(text, '\n')) {
      EXPECT_LT(line.size(), 80u) << command.Title() << ": " << line;
    }
    // Each entry of a list fits on one line.
    for (const CommandEntry& each : command.children) {
      EXPECT_NE(text.find("  " + each.help + "\n"), std::string::npos) << each.help;
    }
    for (const auto& [line, help] : command.examples) {
      EXPECT_NE(text.find("  " + line + "  "), std::string::npos) << line;
      EXPECT_NE(text.find("  " + help + "\n"), std::string::npos) << line << " wraps";
    }
    for (const FlagEntry& flag : command.flags) EXPECT_NE(flag.help, "") << command.Title();
  });
}

// Users type in examples, so they must be correct.
TEST(HelpText, EveryExampleIsACommandLineThatTheParserTakes) {
  ForEach(DescribeCommandLine(), [](const CommandEntry& command) {
    for (const auto& [line, help] : command.examples) {
      std::string plain = line.starts_with(". <(") ? line.substr(4, line.size() - 5) : line;
      plain = std::string(Trim(plain.substr(0, plain.find_first_of(">|"))));
      std::vector<std::string> words;
      for (const std::string_view word : Split(plain, ' ')) words.emplace_back(word);
      std::vector<const char*> arguments;
      for (const std::string& word : words) arguments.push_back(word.c_str());
      ::testing::internal::CaptureStderr();
      ::testing::internal::CaptureStdout();
      Console console(std::cout, {});
      const auto parsed =
          ParseCommandLine(static_cast<int>(arguments.size()), arguments.data(), console);
      ::testing::internal::GetCapturedStdout();
      EXPECT_EQ(::testing::internal::GetCapturedStderr(), "") << line;
      EXPECT_EQ(parsed.exitCode, kExitDone) << line;
      const std::string ran = parsed.invocation ? parsed.invocation->command->name : "";
      const bool isOwn = command.words.empty() || ran == command.Name();
      EXPECT_TRUE(isOwn) << line << " shows " << ran;
    }
  });
}

TEST(CommandLine, HelpBeforeACommandIsHelpAfterIt) {
  const char* const front[] = {"tarn", "help", "options", "set"};
  const char* const behind[] = {"tarn", "options", "set", "--help"};
  std::ostringstream first, second;
  Console out(first, {}), other(second, {});
  EXPECT_EQ(ParseCommandLine(4, front, out).exitCode, kExitDone);
  ParseCommandLine(4, behind, other);
  EXPECT_EQ(first.str(), second.str());
  EXPECT_TRUE(first.str().starts_with("Set an option.\n")) << first.str();
}

}  // namespace
}  // namespace tarn::host
