#include <gtest/gtest.h>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

struct CompletionCase {
  const char* name;
  std::vector<std::string> words;  // the last one is being completed
  std::string offered;             // lines in alphabetical order
};

// Returns the non-empty lines in alphabetical order.
std::string Sorted(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    // fish separates a description by a tab.
    const std::string line = text.substr(at, std::min(text.find('\t', at), end) - at);
    if (!line.empty()) lines.push_back(line);
    at = end + 1;
  }
  std::sort(lines.begin(), lines.end());
  std::string sorted;
  for (const std::string& line : lines) sorted += (sorted.empty() ? "" : " ") + line;
  return sorted;
}

const std::vector<CompletionCase>& Cases() {
  static const std::vector<CompletionCase> cases = {
      {"a command", {"stat"}, "status"},
      {"a nested command", {"options", "s"}, "set"},
      {"a command of the same name elsewhere", {"config", "sel"}, "select"},
      {"a switch", {"build", "--ver"}, "--verbose"},
      {"no switch of another command", {"import", "--conf"}, ""},
      {"a configuration behind its switch", {"build", "--config", "F"}, "Fast"},
      {"a configuration as an argument", {"config", "select", ""}, "Fast Standard"},
      {"an application", {"status", "-a", ""}, "app"},
      {"a node", {"options", "get", "X.Y", "--node", "src/b"}, "src/b.c"},
      {"an option", {"options", "get", "Compiler.Def"}, "Compiler.Defines"},
      {"an option behind a switch", {"options", "get", "-q", "Compiler.Def"}, "Compiler.Defines"},
      {"a project", {"build", "de"}, "demo.tprj"},
      {"a project behind an option's value", {"options", "get", "X.Y", "demo.t"}, "demo.tprj"},
      {"a value isn't a command", {"build", "-c", "clean", "demo.t"}, "demo.tprj"},
      {"a target", {"targets", "ATtiny1"}, "ATtiny10 ATtiny13 ATtiny13A ATtiny1634 ATtiny167"},
      {"a target behind its switch", {"new", "x", "--target", "ATtiny13"}, "ATtiny13 ATtiny13A"},
      {"a family of targets", {"targets", "--family", "STM8L"}, "STM8L"},
      {"nothing for a new name", {"config", "add", "F"}, ""},
      {"nothing hidden", {"comp"}, "completion"},
      {"the project that is named", {"build", "other/o.tprj", "-c", "S"}, "Slow Standard"},
  };
  return cases;
}

std::string FolderOfProgram() {
  const std::string program = TARN_PROGRAM;
  return program.substr(0, program.rfind('/'));
}

// A project with this program in its PATH and the script of one shell in a file.
struct Shell {
  explicit Shell(const std::string& name) {
    std::filesystem::create_directories(project.PathOf("other"));
    project.Write("other/o.tprj",
                  "\r\n<Project Header=\"o\" Path=\".\\o.tprj\" ActiveApp=\"o\" ><Application "
                  "Header=\"o\" Extern=\".\\o.tapp\" Path=\".\\o.tapp\" /></Project>");
    project.Write("other/o.tapp",
                  "\r\n<Application Header=\"o\" Path=\".\\o.tapp\" ><Configs><Config "
                  "Header=\"Slow\" /></Configs></Application>");
    std::string& path = project.environment.back().second;
    path = FolderOfProgram() + ":" + path;
    const std::string script = project.Out({"completion", name});
    project.Write("script", script);
  }

  CliProject project;
};

TEST(Completion, BashOffersWhatCanFollow) {
  Shell shell("bash");
  for (const CompletionCase& each : Cases()) {
    std::vector<std::string> arguments = {
        "-c",
        ". ./script; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _tarn; "
        "printf '%s\\n' \"${COMPREPLY[@]}\"",
        "bash", "tarn"};
    arguments.insert(arguments.end(), each.words.begin(), each.words.end());
    const auto answer = shell.project.RunProgram("bash", arguments);
    EXPECT_EQ(Sorted(answer.out), each.offered) << each.name;
    EXPECT_EQ(answer.err, "") << each.name;
  }
}

TEST(Completion, FishOffersWhatCanFollow) {
  if (FindProgram("fish").empty()) GTEST_SKIP() << "fish isn't on this machine";
  Shell shell("fish");
  for (const CompletionCase& each : Cases()) {
    std::string line = "tarn";
    for (const std::string& word : each.words) line += " " + word;
    const auto answer = shell.project.RunProgram(
        "fish", {"--no-config", "-c", ". ./script; complete -C '" + line + "'"});
    EXPECT_EQ(Sorted(answer.out), each.offered) << each.name << answer.err;
  }
}

TEST(Completion, ZshReadsItsScript) {
  if (FindProgram("zsh").empty()) GTEST_SKIP() << "zsh isn't on this machine";
  Shell shell("zsh");
  const auto answer = shell.project.RunProgram(
      "zsh", {"-f", "-c", "compdef() { print $* }; . ./script; whence -w _tarn_do_options_set"});
  EXPECT_EQ(answer.out, "_tarn_do tarn\n_tarn_do_options_set: function\n") << answer.err;
  EXPECT_EQ(answer.err, "");
}

TEST(Completion, ANameFromAProjectNeverRunsAsCode) {
  Shell shell("bash");
  shell.project.WriteProject({{"$(touch ran)`touch ran`;touch ran", {"a.c"}}});
  const auto answer = shell.project.RunProgram(
      "bash", {"-c",
               ". ./script; COMP_WORDS=(tarn build demo.tprj -a ''); COMP_CWORD=4; _tarn; "
               "eval \"printf '%s' ${COMPREPLY[0]}\""});
  EXPECT_EQ(answer.out, "$(touch ran)`touch ran`;touch ran") << answer.err;
  EXPECT_FALSE(shell.project.Exists("ran"));
}

}  // namespace
}  // namespace tarn::host
