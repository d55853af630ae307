#include <gtest/gtest.h>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

constexpr const char* kLibrary = "build/Standard/libcore.a";

// An application "prog" that is listed before the library "core" that it links; "util" is
// independent of both.
class CliOrder : public ::testing::Test {
 protected:
  CliOrder() {
    project.WriteProject(
        {{"prog", {"b.c", "d.c"}}, {"util", {"c.c", "u.c"}}, {"core", {"a.c", "e.c"}}});
    project.Write("src/u.c", "int main(void) { return 0; }\n");
    project.Write("src/d.c", "int d(void) { return 4; }\n");
    project.Write("src/e.c", "int e(void) { return 5; }\n");
    Set("core", "Target.Product", "library");
    Set("core", "Build.OutputFile", kLibrary);
  }

  void Set(const char* application, const char* option, const std::string& value) {
    project.Out({"options", "set", "-a", application, "--", option, value});
  }
  void AddFile(const std::string& application, const std::string& element) {
    std::string text = project.Read(application + ".tapp");
    text.insert(text.rfind("</Application>"), element);
    project.Write(application + ".tapp", text);
  }
  // Returns the applications whose tools ran, in order.
  std::string Links(const std::string& out) {
    std::string links;
    for (std::size_t at = out.find("] build/"); at != out.npos; at = out.find("] build/", at + 1)) {
      links += out.substr(at + 17, out.find('\n', at) - at - 17) + ' ';
    }
    return links;
  }

  CliProject project;
};

TEST_F(CliOrder, WhatAnApplicationLinksIsBuiltBeforeIt) {
  const struct {
    const char* name;
    const char* option;
    const char* value;
    bool isFile = false;
  } rows[] = {
      {"library by name", "Linker.Libraries", "core"},
      {"file of the library", "Linker.Libraries", ":libcore.a"},
      {"argument", "Linker.Extra", "build/Standard/libcore.a"},
      {"part of an argument", "Linker.Extra", "-Wl,--no-gc-sections,build/Standard/libcore.a,-s"},
      {"through a link", "Linker.Extra", "link/libcore.a"},
      {"response file", "Linker.Extra", "@l.rsp"},
      {"linker script", "Linker.Extra", "l.ld"},
      {"passed on", "Linker.Extra", "-Wl,-L=build/Standard -Wl,--library=core"},
      {"node", "", "", true},
  };
  const std::string before = project.Read("prog.tapp");
  project.Write("l.rsp", kLibrary);
  project.Write("l.ld", std::string("INPUT(") + kLibrary + ")");
  std::filesystem::create_directory_symlink("build/Standard", project.PathOf("link"));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    project.Write("prog.tapp", before);
    Set("prog", "Linker.LibraryPaths", "build/Standard");
    if (row.isFile) {
      AddFile("prog", "<Library Header=\"core\" Path=\".\\build\\Standard\\libcore.a\" />");
    } else {
      Set("prog", row.option, row.value);
    }
    project.Out({"clean"});
    const std::string all = project.Out({"build"});
    EXPECT_EQ(Links(all), "libcore.a prog util ") << all;
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
    // The library is built first, separately.
    project.Touch("src/a.c");
    project.Out({"build", "--app", "core"});
    EXPECT_EQ(Links(project.Out({"build", "--app", "prog"})), "prog ");
    if (&row != rows && !row.isFile) continue;
    // A single application is built with its dependency and nothing else.
    project.Out({"clean"});
    const std::string one = project.Out({"build", "--app", "prog"});
    EXPECT_EQ(Links(one), "libcore.a prog ") << one;
    EXPECT_TRUE(Has(one, "[6/6] build/Standard/prog")) << one;
    EXPECT_TRUE(Has(project.Out({"build", "--app", "prog"}), "Nothing to do"));
    project.Touch("src/a.c");
    const std::string status = project.Out({"status"});
    EXPECT_LT(status.find("core  [Standard]  2 out of date"),
              status.find("prog  [Standard]  1 out"))
        << status;
    EXPECT_EQ(Links(project.Out({"build", "--app", "prog"})), "libcore.a prog ");
    EXPECT_EQ(Links(project.Out({"rebuild", "--app", "prog"})), "prog ");
  }
}

TEST_F(CliOrder, ApplicationsThatDoNotUseEachOtherKeepTheOrderOfTheProject) {
  project.Write("src/b.c", "int main(void) { return 0; }\n");
  EXPECT_EQ(Links(project.Out({"build"})), "prog util libcore.a ");
}

TEST_F(CliOrder, ACycleIsAnErrorThatNamesItsApplications) {
  Set("prog", "Linker.Extra", kLibrary);
  AddFile("core", "<Library Header=\"prog\" Path=\".\\build\\Standard\\prog\" />");
  const std::string said =
      "Applications that use each other's outputs can't be built: prog -> core -> prog";
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"build"}, {"build", "--app", "core"}, {"rebuild"}}) {
    const auto build = project.Run(words);
    EXPECT_EQ(build.code, 1) << build.out;
    EXPECT_TRUE(Has(build.out, said)) << build.out << build.err;
    EXPECT_EQ(Links(build.out), "");
  }
  const auto status = project.Run({"status"});
  EXPECT_EQ(status.code, 1);
  EXPECT_TRUE(Has(status.err, said)) << status.err;
  const auto check = project.Run({"check"});
  EXPECT_TRUE(Has(check.out, "Dependency cycles\n  demo.tprj:")) << check.out;
  EXPECT_TRUE(Has(check.out, "prog -> core -> prog")) << check.out;
  project.Out({"clean"});
}

TEST_F(CliOrder, ALibraryThatNoApplicationMakesIsNamedAfterTheLink) {
  Set("prog", "Linker.Applications", "core;nix");
  const auto build = project.Run({"build"});
  EXPECT_EQ(build.code, 1);
  EXPECT_TRUE(Has(build.err, "prog can't be linked: no application of the project is called nix"))
      << build.out << build.err;
  EXPECT_FALSE(Has(build.err, "is called core")) << build.err;
}

TEST_F(CliOrder, ALibraryHoldsItsPartsAndNoOthers) {
  AddFile("core", "<C Header=\"c.c\" Path=\".\\src\\c.c\" />");
  Set("prog", "Linker.Extra", kLibrary);
  project.Out({"build"});
  EXPECT_TRUE(Has(project.Read(kLibrary), "c.c.o/"));
  project.Out({"remove", ".", "core/c.c"});
  project.Out({"build"});
  EXPECT_FALSE(Has(project.Read(kLibrary), "c.c.o/"));
}

}  // namespace
}  // namespace tarn::host
