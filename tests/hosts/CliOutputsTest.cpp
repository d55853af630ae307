// Files that must not be treated as outputs, although a project may name any file as one.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

TEST(CliOutputs, WhatIsNoProductIsNeitherOverwrittenNorDeleted) {
  const struct {
    const char* file;  // must remain unchanged
    const char* output;
    const char* reason;
  } rows[] = {
      {"src/b.c", "src/b.c", "is a source of the project"},
      {"src/a.c", "src/a.c", "is a source of the project"},
      {"src/x.h", "src/x.h", "is a dependency of files of the project"},
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

// Before the first build nothing is recorded about what the sources include.
TEST(CliOutputs, TheFirstBuildOverwritesNoSourceThatIsNotListed) {
  const struct {
    const char* option;
    const char* value;
    const char* file;
    std::string text;
    bool isKept;
    const char* node = "";
    const char* more = "";  // content of a response file
  } rows[] = {
      {"Build.OutputFile", "src/a.h", "src/a.h", "int a(void);", true, "src/a.c"},
      {"Build.ListingFile", "src/a.h", "src/a.h", "int a(void);", true, "src/a.c"},
      {"Build.ListingFile", "src/part.c", "src/part.c", "mine", true, "src/a.c"},
      {"Linker.MapFile", "notes.txt", "notes.txt", "mine", true},
      {"Linker.Extra", "-Wl,-Map=part.c", "part.c", "mine", true},
      {"Linker.MapFile", "chip.icf", "chip.icf", "place in ROM", true},
      {"Linker.MapFile", "image.dat", "image.dat", std::string("\x7f\0", 2), true},
      {"Build.OutputFile", "rom.bin", "rom.bin", "included by a source", true, "src/a.c"},
      {"Build.OutputFile", "x.map", "x.map", "included by a source", true},
      {"Build.OutputFile", "run", "run", "#!/bin/sh", true},
      {"C.Compiler.Extra", "@more", "info.txt", "mine", true, "", "-aux-info info.txt"},
      {"C.Compiler.Extra", "@more", "part.c", "mine", true, "", "-Wa,-adhlns=part.c"},
      {"Linker.Extra", "@more", "notes.txt", "mine", true, "", "-Wl,-Map,notes.txt"},
      {"Linker.Extra", "@more", "x.map", "from a clone", false, "", "-Wl,-Map,x.map"},
      {"Build.OutputFile", "fw.bin", "fw.bin", "from a clone", false},
      {"Build.OutputFile", "fw", "fw",
       "\x7f"
       "ELF from a clone",
       false},
      {"Build.OutputFile", "src/a.o", "src/a.o", "from a clone", false, "src/a.c"},
      {"Build.OutputFile", "app.elf", "app.elf", "from a clone", false},
      {"Build.OutputFile", "c.a", "c.a", std::string("\x7f\0", 2), false, "src/c.c"},
      {"Build.ListingFile", "a.lst", "a.lst", "from a clone", false, "src/a.c"},
      {"Linker.MapFile", "app.map", "app.map", "from a clone", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.option + std::string(" = ") + row.value);
    CliProject project;
    std::vector<std::string> change{"options", "set"};
    if (*row.node != '\0') change.insert(change.end(), {"-n", row.node});
    change.insert(change.end(), {"--", row.option, row.value});
    project.Out(change);
    project.Write(row.file, row.text);
    project.Write("more", row.more);
    for (const char* command : {"build", "clean", "rebuild"}) {
      const auto answer = project.Run({command});
      const bool isClean = *command == 'c';  // deletes only outputs and listings
      EXPECT_EQ(answer.code, row.isKept && !isClean ? 1 : 0) << answer.out << answer.err;
      EXPECT_EQ(Has(answer.out, "no build of this project made it"),
                row.isKept && (!isClean || *row.option == 'B'))
          << answer.out;
      EXPECT_EQ(project.Exists(row.file) && project.Read(row.file) == row.text, row.isKept);
    }
  }
}

TEST(CliOutputs, AListingThatABuildHasMadeIsReplacedUnderAnyName) {
  CliProject project;
  project.Out({"options", "set", "-n", "src/c.c", "Build.ListingFile", "listing.txt"});
  project.Out({"build"});
  const std::string listing = project.Read("listing.txt");
  project.Edit("listing.txt", "changed");
  project.Write("src/c.c", "int c(void) { return 4; }\n");
  project.Out({"build"});
  EXPECT_NE(project.Read("listing.txt"), "changed");
  project.Out({"clean"});
  EXPECT_FALSE(project.Exists("listing.txt"));
}

// A build may delete its own products, wherever they are.
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

// Also refused before these files exist: a tool's output would be mistaken for them.
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
      {"Linker.MapFile", "../settings/user/registry.ini", "settings/user/registry.ini"},
      {"Linker.MapFile", ".git/config", ".git/config"},
      {"Build.OutputFile", "sub/.Hg/hgrc", "sub/.Hg/hgrc", "src/a.c"},
      {"Build.OutputFile", "control/x.o", "control/x.o", "src/a.c"},
      {"C.Compiler.Extra", "-Wa,-adhlns=.svn/wc.db", ".svn/wc.db"},
      {"Linker.Extra", "-Wl,-Map=app.tapp", "app.tapp"},
      {"C.Compiler.Extra", "-Wa,-adhlns=demo.tlog", "demo.tlog"},
  };
  CliProject project;
  project.Trust();
  project.Out({"build"});
  fs::create_symlink("demo.tstate", project.PathOf("link.o"));
  project.Edit(".git/config", "[core]");
  fs::create_directory_symlink(".git", project.PathOf("control"));
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
      if (*command == 'c' && row.option[0] != 'B') continue;  // clean deletes no others
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

// Returns the names of all files below the project's folder, except for those that Tarn stores next
// to the project.
std::set<std::string> FilesOf(const CliProject& project) {
  std::set<std::string> names;
  const fs::path folder = fs::path(project.PathOf("")).parent_path();
  for (const auto& each : fs::recursive_directory_iterator(folder)) {
    const fs::path name = each.path().lexically_relative(folder);
    const std::string extension = name.extension();
    const bool isKept = extension == ".tlock" || extension == ".tlog" || extension == ".tstate";
    if (!each.is_directory() && !isKept) names.insert(name.string());
  }
  return names;
}

TEST(CliOutputs, CleanDeletesWhatWasMadeAndNothingElse) {
  CliProject project;
  const std::string folder = "build/Standard/app.obj/";
  project.Out({"options", "set", "C.Compiler.Extra", "--", "-fstack-usage"});
  project.Out({"options", "set", "Linker.MapFile", folder + "app.map"});
  project.Edit("build/notes.txt", "the user's");
  // One has the name of a by-product, the other is in the same folder.
  project.Edit(folder + "src/a.c.i", "the user's");
  project.Edit(folder + "src/d.c", "int d;");
  project.Out({"build"});
  const auto before = FilesOf(project);
  EXPECT_TRUE(before.contains(folder + "app.map"));
  EXPECT_TRUE(before.contains(folder + "src/a.c.su"));
  EXPECT_TRUE(before.contains(folder + "src/a.c.d"));
  EXPECT_TRUE(before.contains("app-Globals.Standard.xml"));
  // A change of permissions alone doesn't matter.
  fs::permissions(project.PathOf(folder + "src/a.c.su"), fs::perms::owner_all);
  // A file that was changed since is not a product any more.
  project.Edit(folder + "src/c.c.su", "the user's");
  fs::rename(project.PathOf(folder + "src/b.c.d"), project.PathOf("kept"));
  fs::create_symlink(project.PathOf("kept"), project.PathOf(folder + "src/b.c.d"));
  project.Out({"clean"});
  const std::set<std::string> left = {"app.tapp",
                                      "demo.tprj",
                                      "build/notes.txt",
                                      "kept",
                                      "src/a.c",
                                      "src/a.h",
                                      "src/b.c",
                                      "src/c.c",
                                      folder + "src/a.c.i",
                                      folder + "src/d.c",
                                      folder + "src/b.c.d",
                                      folder + "src/c.c.su"};
  EXPECT_EQ(FilesOf(project), left);
  EXPECT_TRUE(Has(project.Out({"build"}), "Built 4 files"));
}

// A link that generates code invents names, and one compiler uses the working folder.
TEST(CliOutputs, CleanDeletesFurtherFilesThatCompilersWrite) {
  const struct {
    const char* toolchain;
    const char* compiler;
    const char* linker;
    const char* made;
    const char* needs;
  } rows[] = {
      {"host-gcc", "-flto", "-flto --coverage", "build/Standard/app.wpa.gcno", "/usr/bin/gcc"},
      {"host-gcc", "-flto", "-flto --coverage", "build/Standard/app.ltrans0.ltrans.gcno",
       "/usr/bin/gcc"},
      {"avr-gcc", "-save-temps", "", "a.i", "/usr/bin/avr-gcc"},
      {"avr-gcc", "-save-temps", "", "a.s", "/usr/bin/avr-gcc"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.made);
    if (access(row.needs, X_OK) != 0) continue;
    CliProject project;
    project.Out({"options", "set", "Target.Toolchain", row.toolchain});
    if (*row.toolchain == 'a') project.Out({"options", "set", "Target.Device", "atmega328p"});
    project.Out({"options", "set", "C.Compiler.Extra", "--", row.compiler});
    if (*row.linker != '\0') project.Out({"options", "set", "Linker.Extra", "--", row.linker});
    const auto before = FilesOf(project);
    project.Out({"build"});
    EXPECT_TRUE(project.Exists(row.made));
    project.Out({"clean"});
    EXPECT_EQ(FilesOf(project), before);
  }
}

// A compiler cache that hard-links its files into the build makes them read-only.
TEST(CliOutputs, AReadOnlyOutputIsReplacedAndDeletedIfABuildMadeIt) {
  CliProject project;
  const std::string object = project.PathOf("build/Standard/app.obj/src/c.c.o");
  const auto protect = [&object] { fs::permissions(object, fs::perms::owner_read); };
  project.Out({"build"});
  protect();
  project.Write("src/c.c", "int c(void) { return 4; }\n");
  EXPECT_EQ(Built(project.Out({"build"})), "c.c app");
  protect();
  project.Out({"clean"});
  EXPECT_FALSE(fs::exists(object));
  // A file of the user with that name is left alone, and the reason is reported.
  project.Edit("build/Standard/app.obj/src/c.c.o", "");
  protect();
  for (const char* command : {"build", "clean"}) {
    const auto answer = project.Run({command});
    EXPECT_EQ(answer.code, 1) << command;
    EXPECT_TRUE(Has(answer.out, "src/c.c.o can't be ")) << answer.out << answer.err;
    EXPECT_TRUE(Has(answer.out, ": the file is read-only")) << answer.out << answer.err;
    EXPECT_TRUE(fs::exists(object)) << command;
  }
}

TEST(CliOutputs, WhatAnArgumentWritesIsNotWrittenOverASource) {
  const struct {
    const char* option;
    const char* value;
    const char* node = "";
  } rows[] = {
      {"Linker.MapFile", "src/c.c"},
      {"Linker.Extra", "-Wl,-Map=src/c.c"},
      {"C.Compiler.Extra", "-aux-info src/c.c"},
      {"C.Compiler.Extra", "-Wa,-al=src/c.c"},
      {"C.Compiler.Extra", "-Wa,--M=src/c.c"},
      {"C.Compiler.Extra", "-Wa,-MD,src/c.c"},
      {"C.Compiler.Extra", "-time=src/c.c"},
      {"C.Compiler.Extra", "-ftest-coverage -fprofile-note=src/c.c"},
      {"C.Compiler.Extra", "-ftest-coverage --profile-note=src/c.c"},
      // The compiler adds the source.
      {"C.Compiler.Extra", "-Wp,-aux-info"},
      {"C.Compiler.Extra", "-Xpreprocessor -MF"},
      {"C.Compiler.Extra", "-Xpreprocessor"},
      {"C.Compiler.Extra", "-Wp,-MD -g"},
      {"C.Compiler.Extra", "-fdump-tree-original=src/c.c"},
      {"C.Compiler.Extra", "--dump-tree-original=src/c.c"},
      {"Linker.Extra", "-Wl,--M=src/c.c"},
      {"Linker.Extra", "-Wl,-depe,src/c.c"},
      {"Linker.Extra", "-Wl,--ou=src/c.c"},
      {"Linker.Extra", "-flto -aux-info src/c.c"},
      {"Linker.Extra", "-flto -fopt-info-all=src/c.c"},
      {"Linker.Extra", "-flto -Wa,-adhlns=src/c.c"},
      // Next to the output, where the compiler puts them.
      {"Build.OutputFile", "src/x.o", "src/a.c"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    CliProject project;
    project.Trust();
    project.Write("src/x.s", ".globl x\nx: .byte 0\n");
    project.Out({"add", "src/x.s"});
    project.Out({"options", "set", "C.Compiler.Extra", "--", "-save-temps"});
    std::vector<std::string> change{"options", "set"};
    if (*row.node != '\0') change.insert(change.end(), {"-n", row.node});
    change.insert(change.end(), {"--", row.option, row.value});
    project.Out(change);
    const std::string before = project.Read("src/c.c") + project.Read("src/x.s");
    const auto answer = project.Run({"build"});
    EXPECT_EQ(answer.code, 1);
    EXPECT_TRUE(Has(answer.out, "is a source of the project; the tool is not run")) << answer.out;
    EXPECT_EQ(project.Read("src/c.c") + project.Read("src/x.s"), before);
  }
}

// The output of an earlier run must not be taken for the new one.
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

TEST(CliOutputs, CleanRemovesWhatFailedRunsAndRemovedSourcesHaveLeft) {
  CliProject project;
  project.Trust();
  project.Out({"options", "set", "C.Compiler.Extra", "--", "-save-temps=obj -fstack-usage"});
  project.Out({"build"});
  project.Write("build/notes", "");
  project.Out({"remove", "src/c.c"});
  project.Edit("src/a.c", "#include \"a.h\"\nint a(void) { return missing; }\n");
  EXPECT_EQ(project.Run({"build"}).code, 1);
  project.Out({"clean"});
  std::set<std::string> left;
  for (const auto& each : fs::recursive_directory_iterator(project.PathOf("build"))) {
    if (!each.is_directory()) left.insert(each.path().filename());
  }
  EXPECT_EQ(left, std::set<std::string>{"notes"});
}

TEST(CliOutputs, AnOutputWithoutANameIsReportedAsTheEmptyOption) {
  CliProject project;
  project.Out({"options", "set", "-n", "src/c.c", "Build.OutputFile", ""});
  const std::string said = "the option Build.OutputFile is empty; it has to name the output file";
  for (const char* jobs : {"-j1", "-j3"}) {
    const auto built = project.Run({"build", jobs});
    EXPECT_EQ(built.code, 1);
    EXPECT_TRUE(Has(built.out, said)) << built.out;
    EXPECT_FALSE(Has(built.out, "gcc")) << built.out;
  }
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
