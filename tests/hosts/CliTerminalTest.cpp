#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

// Sets the window title, clears the screen, and contains eight-bit sequences in both forms and
// right-to-left overrides.
const std::string kHostile =
    "\x1b]0;pwned\x07\x1b[2J\xC2\x9B"
    "31m\x9B"
    "2J\x7F\xE2\x80\xAE\xE2\x81\xA6";

// Returns the first harmful sequence of an output in hexadecimal; an empty string if there is none.
std::string FindHarm(const std::string& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto at = [&](std::size_t n) {
      return i + n < text.size() ? static_cast<unsigned char>(text[i + n]) : 0u;
    };
    const bool isControl = (at(0) < 0x20 && text[i] != '\n' && text[i] != '\t' &&
                            !(text[i] == '\r' && at(1) == '\n')) ||
                           at(0) == 0x7F;
    const bool isC1 = at(0) == 0xC2 && at(1) >= 0x80 && at(1) <= 0x9F;
    const bool isTurn = at(0) == 0xE2 && ((at(1) == 0x80 && at(2) >= 0xAA && at(2) <= 0xAE) ||
                                          (at(1) == 0x81 && at(2) >= 0xA6 && at(2) <= 0xA9));
    // A stray continuation byte; the text of these tests contains no others in this range.
    const bool isByte = at(0) == 0x9B && (i == 0 || static_cast<unsigned char>(text[i - 1]) < 0x80);
    if (isControl || isC1 || isTurn || isByte) return text.substr(i > 30 ? i - 30 : 0, 60);
  }
  return {};
}

TEST(CliTerminal, NoCommandPassesOnControlCharactersOfAProjectOrATool) {
  CliProject project;
  project.Trust();
  project.AddProgram("gcc",
                     "#!/bin/sh\ncase \"$*\" in *c.c*) cat \"$TMPDIR/said\" >&2;; esac\n"
                     "exec /usr/bin/gcc \"$@\"\n");
  project.Write("../said", kHostile + "src/c.c:1:1: warning: " + kHostile + "\n" + kHostile + "\n");
  const std::string application = ReplaceAll(
      ReplaceAll(project.Read("app.tapp"), "Header=\"Sources\"", "Header=\"" + kHostile + "\""),
      "<Config Header=\"Fast\" />",
      "<Config Header=\"Fast\" /><Config Header=\"" + kHostile + "\" />");
  project.Write("app.tapp", ReplaceAll(application, "</Group>",
                                       "<C Header=\"" + kHostile + "\" Path=\".\\src\\" + kHostile +
                                           ".c\" Exclude=\"Yes\" /></Group>"));
  project.Write("say.lua", "print(\"" + ReplaceAll(kHostile, "\x7F", "\\127") + "\") error(\"" +
                               kHostile + "\")");
  // "%" is replaced by the hostile text.
  constexpr std::string_view kCommands =
      "status;build;build -v;log;log --xml;report;tree;check;config list;options list;"
      "options set Compiler.Defines A=%;options get Compiler.Defines;"
      "options explain Compiler.Defines;run say.lua;globals;export sarif -o -;"
      "export compile-commands -o -;%;build --%;build %;build -c %;add %;rename c.c %;remove %x;"
      "new % --target %;targets %;relocate %;relocate % %;log %;import %;undo;complete node";
  for (const std::string_view command : Split(kCommands, ';')) {
    std::vector<std::string> words = Words(command);
    for (std::string& word : words) word = ReplaceAll(word, "%", kHostile);
    if (words.front() == "complete") words.emplace_back();
    const auto answer = project.Run(words);
    EXPECT_EQ(FindHarm(answer.out), "") << command;
    EXPECT_EQ(FindHarm(answer.err), "") << command;
  }
  for (const char* command : {"status", "tree", "report", "log", "build"}) {
    const auto answer = project.Run({command, "--json"});
    EXPECT_EQ(FindHarm(answer.out + answer.err), "") << command;
    EXPECT_TRUE(nlohmann::json::accept(answer.out)) << command << answer.out;
  }
  // The characters are shown escaped, not dropped, and JSON preserves them.
  EXPECT_TRUE(Has(project.Run({"tree"}).out, "\\x1b]0;pwned\\x07"));
  const auto tree = nlohmann::json::parse(project.Run({"tree", "--json"}).out);
  EXPECT_TRUE(Has(tree.dump(), "\\u001b]0;pwned\\u0007")) << tree;
}

// Such a name is refused in many commands, and shown by each.
TEST(CliTerminal, ALineEndInANameBreaksNoLine) {
  CliProject project;
  const std::string name = "n\nEVIL";
  std::filesystem::create_directory(project.PathOf(name));
  project.Edit(name + "/" + name + ".tprj", project.Read("demo.tprj"));
  project.Edit("x\nEVIL.tprj", project.Read("demo.tprj"));
  // "%" is replaced by the name.
  constexpr std::string_view kCommands =
      "%;help %;% --help;build %;build -c % demo.tprj;build -a % demo.tprj;status %;tree %;check %;"
      "log %;report %;globals %;export sarif %;export sarif demo.tprj -o %/no;options get %;"
      "options set % %;options get -n % Build.Tool demo.tprj;config add % demo.tprj;trust %;"
      "trust %/no;add demo.tprj %;add --create demo.tprj src/%;rename demo.tprj a.c %;"
      "remove demo.tprj %;run %;import %;new %;new no/% --target %;targets %;targets --family %;"
      "relocate demo.tprj % %;undo %;status;build --%";
  for (const std::string_view command : Split(kCommands, ';')) {
    std::vector<std::string> words = Words(command);
    for (std::string& word : words) word = ReplaceAll(word, "%", name);
    const auto answer = project.Run(words);
    EXPECT_FALSE(Has(answer.out + answer.err, "\nEVIL")) << command << answer.out << answer.err;
  }
}

}  // namespace
}  // namespace tarn::host
