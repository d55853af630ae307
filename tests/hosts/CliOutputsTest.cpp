// Outputs that are none: a project may name any file as one.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

TEST(CliOutputs, WhatIsNoProductIsNeitherOverwrittenNorDeleted) {
  const struct {
    const char* file;  // that stays as it is
    const char* output;
    const char* reason;
  } rows[] = {
      {"src/b.c", "src/b.c", "is a source of the project"},
      {"src/a.c", "src/a.c", "is a source of the project"},
      {"src/x.h", "src/x.h", "is what files of the project depend on"},
      {"app.tapp", "app.tapp", "is a file of the project itself"},
      {"demo.tprj", "demo.tprj", "is a file of the project itself"},
      {"src/b.c", "link.o", "is a source of the project"},
      {"src/b.c", "hard.o", "is a source of the project"},
      {"outside/file", "outside/file", "is outside the project's folder"},
      {"outside/file", "link/file", "link leads to "},
      {"outside/file", "file.o", "is outside the project's folder"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.output + std::string(" for ") + row.file);
    CliProject project;
    project.Trust();
    CliProject outside;
    outside.Write("file", "precious");
    project.Write("src/x.h", "");
    project.Write("src/b.c", "#include \"x.h\"\n" + project.Read("src/b.c"));
    fs::create_symlink(project.PathOf("src/b.c"), project.PathOf("link.o"));
    fs::create_hard_link(project.PathOf("src/b.c"), project.PathOf("hard.o"));
    fs::create_directory_symlink(outside.PathOf(""), project.PathOf("link"));
    fs::create_symlink(outside.PathOf("file"), project.PathOf("file.o"));
    project.Out({"build"});
    const bool isOutside = row.file[0] == 'o';
    const std::string output = row.output == std::string("outside/file")
                                   ? outside.PathOf("file")
                                   : project.PathOf(row.output);
    project.Out({"options", "set", "-n", "src/a.c", "Build.OutputFile", output});
    const auto content = [&] { return isOutside ? outside.Read("file") : project.Read(row.file); };
    const std::string before = content();
    for (const char* command : {"build", "rebuild"}) {
      const auto answer = project.Run({command});
      EXPECT_EQ(answer.code, 1) << command;
      EXPECT_TRUE(Has(answer.out, row.reason)) << answer.out << answer.err;
      EXPECT_TRUE(Has(answer.out, "the tool is not run")) << answer.out;
      EXPECT_EQ(content(), before) << command;
    }
    EXPECT_TRUE(Has(project.Run({"report"}).out, row.reason));
    const auto answer = project.Run({"clean"});
    EXPECT_EQ(answer.code, 0) << answer.err;
    EXPECT_TRUE(Has(answer.out, row.reason)) << answer.out;
    EXPECT_EQ(content(), before);
  }
}

// What a build made is its to delete, wherever it is.
TEST(CliOutputs, AProductOutsideIsDeletedAsLongAsItIsTheOneThatWasMade) {
  CliProject project;
  project.Trust();
  CliProject outside;
  const std::string output = outside.PathOf("a.o");
  project.Out({"options", "set", "-n", "src/a.c", "Build.OutputFile", output});
  for (int round = 0; round < 2; ++round) {
    project.Out({"build"});
    project.Out({"rebuild"});
    EXPECT_TRUE(fs::exists(output));
    project.Out({"clean"});
    EXPECT_FALSE(fs::exists(output));
  }
  project.Out({"build"});
  outside.Write("a.o", "somebody's");
  EXPECT_EQ(project.Run({"build"}).code, 1);
  project.Out({"clean"});
  EXPECT_EQ(outside.Read("a.o"), "somebody's");
}

// Also before they are there: what a tool left in their place would pass for theirs.
TEST(CliOutputs, FilesOfTheProgramItselfAreNoOutputsOfAnyOption) {
  const struct {
    const char* option;
    const char* value;
    const char* file;
    const char* node = "";
  } rows[] = {
      {"Build.OutputFile", "demo.tstate", "demo.tstate", "src/a.c"},
      {"Build.OutputFile", "demo.undo.tstate", "demo.undo.tstate", "src/a.c"},
      {"Build.OutputFile", "demo.tlog", "demo.tlog", "src/a.c"},
      {"Build.OutputFile", "app.tlock", "app.tlock", "src/a.c"},
      {"Build.OutputFile", "new.TPRJ", "new.TPRJ", "src/a.c"},
      {"Build.OutputFile", "app.tapp.bak", "app.tapp.bak", "src/a.c"},
      {"Build.OutputFile", "link.o", "link.o", "src/a.c"},
      {"Build.ListingFile", "app.tapp.orig2", "app.tapp.orig2", "src/a.c"},
      {"Linker.MapFile", "demo.tprj", "demo.tprj"},
      {"Linker.MapFile", "../settings/state/trusted", "settings/state/trusted"},
      {"Linker.Extra", "-Wl,-Map=app.tapp", "app.tapp"},
      {"C.Compiler.Extra", "-Wa,-adhlns=demo.tlog", "demo.tlog"},
  };
  CliProject project;
  project.Trust();
  project.Out({"build"});
  fs::create_symlink("demo.tstate", project.PathOf("link.o"));
  for (const auto& row : rows) {
    SCOPED_TRACE(row.option + std::string(" = ") + row.value);
    std::vector<std::string> change{"options", "set"};
    if (*row.node != '\0') change.insert(change.end(), {"-n", row.node});
    change.insert(change.end(), {"--", row.option, row.value});
    project.Out(change);
    const std::string kept[] = {project.Read("demo.tprj"), project.Read("app.tapp"),
                                project.Read("../settings/state/trusted")};
    for (const char* command : {"rebuild", "clean"}) {
      const auto answer = project.Run({command});
      if (*command == 'c' && row.option[0] != 'B') continue;  // it deletes no others
      EXPECT_EQ(answer.code, *command == 'r' ? 1 : 0) << answer.err;
      const std::string said = std::string(row.file) + " is named as an output by the option " +
                               (*row.option == 'C' ? "Compiler.Extra" : row.option) + ", but ";
      const bool isNothingThere = *command == 'c' && !project.Exists(row.file);
      EXPECT_TRUE(Has(answer.out, said) || isNothingThere) << answer.out << answer.err;
    }
    const std::string now[] = {project.Read("demo.tprj"), project.Read("app.tapp"),
                               project.Read("../settings/state/trusted")};
    EXPECT_TRUE(std::equal(std::begin(kept), std::end(kept), std::begin(now)));
    EXPECT_FALSE(Has(project.Read(row.file), "ELF") || Has(project.Read(row.file), "Memory Conf"));
    change[1] = "reset";
    change.pop_back();
    change.erase(std::remove(change.begin(), change.end(), "--"), change.end());
    project.Out(change);
  }
  project.Out({"build"});
}

TEST(CliOutputs, AMapIsNotWrittenOverASource) {
  CliProject project;
  const std::string before = project.Read("src/a.c");
  project.Out({"options", "set", "Linker.MapFile", "src/a.c"});
  const auto answer = project.Run({"build"});
  EXPECT_EQ(answer.code, 1);
  EXPECT_TRUE(Has(answer.out, "is a source of the project; the tool is not run")) << answer.out;
  EXPECT_EQ(project.Read("src/a.c"), before);
}

// The file of an earlier run would pass for the new one.
TEST(CliOutputs, AToolThatLeavesNoOutputHasFailed) {
  CliProject project;
  project.Out({"build"});
  project.Out({"options", "set", "Linker.Extra", "--", "-o other"});
  for (int round = 0; round < 2; ++round) {
    const auto answer = project.Run({"build"});
    EXPECT_EQ(answer.code, 1);
    EXPECT_TRUE(Has(answer.out, "left no file")) << answer.out;
  }
}

TEST(CliOutputs, DependenciesAreKnownWhateverTheUsersOptions) {
  CliProject project;
  fs::create_directory(project.PathOf("lib"));
  project.Write("lib/s.h", "");
  project.Write("src/a.c", "#include <s.h>\n" + project.Read("src/a.c"));
  project.Out({"options", "set", "C.Compiler.Extra", "--", "-isystem lib -MMD -MP"});
  project.Out({"build"});
  project.Write("lib/s.h", "extern int changed;\n");
  EXPECT_TRUE(Has(project.Out({"build"}), "src/a.c"));
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
}

TEST(CliOutputs, AVariableThatTheCompilerReadsCountsAsAnOption) {
  CliProject project;
  for (const char* folder : {"one", "two"}) fs::create_directory(project.PathOf(folder));
  project.Write("one/v.h", "#define VALUE 1\n");
  project.Write("two/v.h", "#define VALUE 2\n");
  project.Write("src/a.c", "#include <v.h>\nint value = VALUE;\n" + project.Read("src/a.c"));
  for (const char* folder : {"one", "two", "one"}) {
    setenv("CPATH", project.PathOf(folder).c_str(), 1);
    EXPECT_TRUE(Has(project.Out({"build"}), "src/a.c")) << folder;
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do")) << folder;
  }
  unsetenv("CPATH");
  EXPECT_EQ(project.Run({"build"}).code, 1);
}

}  // namespace
}  // namespace tarn::host
