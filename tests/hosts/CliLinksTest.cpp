// Symbolic links in place of files that the program names itself: a project from elsewhere may
// contain them, and nothing may be written to their targets.

#include <gtest/gtest.h>

#include <filesystem>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRefused = "symbolic link";

TEST(CliLinks, NothingIsWrittenWhereAPlantedLinkLeads) {
  const struct {
    const char* link;
    std::vector<std::string> command;
    int code;
  } rows[] = {
      {"demo.tstate", {"build"}, 3},
      {"demo.tlog", {"build"}, 3},
      {"app-Globals.Standard.xml", {"build"}, 0},
      {"demo.undo.tstate", {"options", "set", "Compiler.Defines", "A=1"}, 0},
      {"compile_commands.json", {"export", "compile-commands"}, 3},
      {"chosen.json", {"export", "compile-commands", "-o", "chosen.json"}, 3},
      {"demo.sarif", {"export", "sarif"}, 3},
      {"src/new.c", {"add", "--create", "src/new.c"}, 3},
      {"demo.tlock", {"build"}, 3},
      {"demo.tlock", {"build", "--no-wait"}, 3},
      {"app.tlock", {"build"}, 3},
      {"demo.tlock", {"options", "set", "Compiler.Defines", "A=1"}, 3},
  };
  for (const auto& row : rows) {
    for (const bool isDangling : {false, true}) {
      SCOPED_TRACE(row.link + std::string(isDangling ? ", to nothing" : ""));
      CliProject project;
      CliProject outside;
      if (row.command[0] == "export") project.Out({"build"});
      const std::string target = outside.PathOf("file");
      const bool isNew = row.command[0] == "add";
      if (isNew && !isDangling) continue;  // the user specified that file
      if (!isDangling) outside.Write("file", "precious");
      fs::create_symlink(target, project.PathOf(row.link));
      const auto answer = project.Run(row.command);
      EXPECT_EQ(answer.code, row.code) << answer.out << answer.err;
      const std::string said = answer.out + answer.err;
      EXPECT_TRUE(Has(said, kRefused)) << said;
      EXPECT_TRUE(Has(said, row.link)) << said;
      EXPECT_TRUE(Has(said, target) || !Has(row.link, ".tlock")) << said;
      EXPECT_FALSE(Has(project.Read("app.tapp"), "A=1") && Has(row.link, ".tlock"));
      EXPECT_EQ(fs::exists(target), !isDangling);
      if (!isDangling) {
        EXPECT_EQ(outside.Read("file"), "precious");
      }
      EXPECT_TRUE(fs::is_symlink(project.PathOf(row.link)));
    }
  }
}

TEST(CliLinks, ACopyTakesANameThatNoLinkHas) {
  CliProject project;
  CliProject outside;
  std::string text = project.Read("app.tapp");
  project.Write("app.tapp", text.insert(text.find("<Group"), "<<<<<<< HEAD\n"));
  const std::string damaged = project.Read("app.tapp");
  fs::create_symlink(outside.PathOf("file"), project.PathOf("app.tapp.bak"));
  project.Out({"options", "set", "Compiler.Defines", "A=1", "--damaged-ok"});
  EXPECT_FALSE(outside.Exists("file"));
  EXPECT_EQ(project.Read("app.tapp.bak2"), damaged);
}

// The link may be intentional, and its target is another file of the project.
TEST(CliLinks, AProjectFileThatIsALinkIsSavedWhereItLeads) {
  CliProject project;
  fs::create_directory(project.PathOf("shared"));
  fs::rename(project.PathOf("app.tapp"), project.PathOf("shared/app.tapp"));
  fs::create_symlink("shared/app.tapp", project.PathOf("app.tapp"));
  project.Out({"options", "set", "Compiler.Defines", "A=1"});
  EXPECT_TRUE(fs::is_symlink(project.PathOf("app.tapp")));
  EXPECT_TRUE(Has(project.Read("shared/app.tapp"), "A=1"));
}

// The journal is appended to in place, so a hard link to it would change as well.
TEST(CliLinks, AFurtherNameOfTheJournalKeepsItsBytes) {
  CliProject project;
  project.Out({"build"});
  fs::create_hard_link(project.PathOf("demo.tstate"), project.PathOf("copy"));
  const std::string before = project.Read("copy");
  project.Write("src/c.c", "int c(void) { return 4; }\n");
  project.Out({"build"});
  EXPECT_EQ(project.Read("copy"), before);
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
}

}  // namespace
}  // namespace tarn::host
