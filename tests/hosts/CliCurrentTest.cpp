// Detection of outdated outputs independent of the clock: all changes are made without a pause,
// within the same second as the build before.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

fs::file_time_type TimeOf(const CliProject& project, const std::string& name) {
  return fs::last_write_time(project.PathOf(name));
}

constexpr const char* kC = "src/c.c";
constexpr const char* kObject = "build/Standard/app.obj/src/c.c.o";

struct Row {
  const char* name;
  std::function<void(CliProject&)> change;
  const char* built;
};

const Row kRows[] = {
    {"a source is saved", [](CliProject& p) { p.Edit(kC, "int c(void) { return 4; }\n"); },
     "c.c app"},
    {"a source of the same size gets its old time back",
     [](CliProject& p) {
       const auto time = TimeOf(p, kC);
       p.Edit(kC, "int c(void) { return 9; }\n");
       fs::last_write_time(p.PathOf(kC), time);
     },
     "c.c app"},
    {"an older file is put in place",
     [](CliProject& p) { p.Write(kC, "int c(void) { return 5; }\n"); }, "c.c app"},
    {"a header is saved",
     [](CliProject& p) { p.Edit("src/a.h", "#define A 7\nint b(void);\nint c(void);\n"); },
     "a.c b.c app"},
    {"a header comes that is found before another",
     [](CliProject& p) { p.Edit("inc1/deep/x.h", "#define X 2\n"); }, "x.c app"},
    {"a header that nothing includes comes",
     [](CliProject& p) { p.Edit("inc1/deep/y.h", "#define X 2\n"); }, ""},
    {"a link leads to another header",
     [](CliProject& p) {
       fs::remove(p.PathOf("inc2/link.h"));
       fs::create_symlink("../two.h", p.PathOf("inc2/link.h"));
     },
     "x.c app"},
    {"a source is from the future",
     [](CliProject& p) {
       fs::last_write_time(p.PathOf(kC),
                           fs::file_time_type::clock::now() + std::chrono::hours(24 * 365));
     },
     "c.c app"},
    {"an output is replaced by an older one",
     [](CliProject& p) {
       const std::string old = p.Read(kObject);
       const auto time = TimeOf(p, kObject);
       p.Edit(kC, "int c(void) { return 6; }\n");
       p.Out({"build"});
       p.Edit(kObject, old);
       fs::last_write_time(p.PathOf(kObject), time);
     },
     "c.c app"},
    {"an output is cut", [](CliProject& p) { fs::resize_file(p.PathOf(kObject), 10); }, "c.c app"},
    {"another file of the link is edited",
     [](CliProject& p) {
       p.Edit("link.ld", "PROVIDE(two = 2);\nSECTIONS { } INSERT AFTER .text;\n");
     },
     "app"},
    {"the map is gone", [](CliProject& p) { fs::remove(p.PathOf("build/Standard/app.map")); },
     "app"},
    {"the listing is gone", [](CliProject& p) { fs::remove(p.PathOf("build/c.lst")); }, "c.c app"},
    {"a listing of several sources is gone",
     [](CliProject& p) { fs::remove(p.PathOf("build/ab.lst")); }, ""},
    {"the list of globals is gone",
     [](CliProject& p) { fs::remove(p.PathOf("app-Globals.Standard.xml")); }, "app"},
    {"the compiler is replaced",
     [](CliProject& p) { p.AddProgram("gcc", "#!/bin/sh\nexec /usr/bin/gcc \"$@\"\n"); },
     "a.c b.c c.c x.c app"},
    {"modes change",
     [](CliProject& p) {
       for (const char* each : {kC, kObject, "build/Standard/app", "build/Standard/app.map"}) {
         fs::permissions(p.PathOf(each), fs::perms::owner_all);
       }
     },
     ""},
    {"an output gets another name as well",
     [](CliProject& p) { fs::create_hard_link(p.PathOf(kObject), p.PathOf("keep.o")); }, ""},
    {"a link that led nowhere leads to a header that is found before another",
     [](CliProject& p) { p.Edit("ext/y.h", "#define Y 3\n"); }, "x.c app"},
    {"a folder gets its old time back after a header came",
     [](CliProject& p) {
       const auto time = TimeOf(p, "inc1/deep");
       p.Edit("inc1/deep/x.h", "#define X 2\n");
       fs::last_write_time(p.PathOf("inc1/deep"), time);
     },
     "x.c app"},
    {"a launcher is set",
     [](CliProject& p) {
       p.Out({"options", "set", "Build.Launcher", "env"});
     },
     ""},
    {"the application is renamed",
     [](CliProject& p) {
       p.Out({"rename", "app", "other"});
     },
     ""},
    {"an option changes nothing",
     [](CliProject& p) {
       p.Out({"options", "set", "Compiler.Optimize", "2"});
     },
     ""},
};

TEST(CliCurrent, WhatChangedIsBuiltOnceAndNothingElse) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    CliProject project;
    for (const char* folder : {"inc1/deep", "inc2/deep"}) {
      fs::create_directories(project.PathOf(folder));
    }
    project.WriteProject({{"app", {"a.c", "b.c", "c.c", "x.c"}}});
    project.Write("inc2/deep/x.h", "#define X 1\n");
    project.Write("one.h", "#define Y 1\n");
    project.Write("two.h", "#define Y 2\n");
    fs::create_symlink("../one.h", project.PathOf("inc2/link.h"));
    fs::create_directories(project.PathOf("ext"));
    fs::create_symlink("../ext/y.h", project.PathOf("inc1/link.h"));
    project.Write("src/x.c",
                  "#include <deep/x.h>\n#include <link.h>\nint x(void) { return X + Y; }\n");
    project.Write("link.ld", "PROVIDE(two = 1);\nSECTIONS { } INSERT AFTER .text;\n");
    project.Out({"options", "set", "Directories.Include", "inc1;inc2"});
    project.Out({"options", "set", "Linker.Script", "link.ld"});
    project.Out({"options", "set", "Linker.MapFile", "build/$(Config.Name)/app.map"});
    project.Out({"options", "set", "Compiler.Debug", "Yes"});
    for (const auto& [source, listing] : {std::pair{"a", "ab"}, {"b", "ab"}, {"c", "c"}}) {
      project.Out({"options", "set", "-n", "src/" + std::string(source) + ".c", "Build.ListingFile",
                   "build/" + std::string(listing) + ".lst"});
    }
    EXPECT_EQ(Built(project.Out({"build"})), "a.c b.c c.c x.c app");
    EXPECT_EQ(Built(project.Out({"build"})), "");
    row.change(project);
    EXPECT_EQ(Built(project.Out({"build"})), row.built);
    EXPECT_EQ(Built(project.Out({"build"})), "");
  }
}

// The change is older than the object: it shows only in a comparison with the state before the run.
TEST(CliCurrent, WhatChangesWhileACompilerRunsIsCompiledAgain) {
  struct {
    const char* name;
    const char* command;  // shell command, run after the compiler
  } const rows[] = {
      {"the source is saved", "echo 'int c(void) { return X + 8; }' >> src/c.c"},
      {"a header comes that is found before another", "echo '#define X 2' > inc1/x.h"},
      {"the same, moved there", "mv other/x.h inc1/x.h"},
      {"the folder is exchanged", "mv inc2 old; mv other inc2"},
      {"a link to the folder is exchanged", "rm inc3; ln -s other inc3"},
      {"the compiler is exchanged", "mv \"$TMPDIR/next\" \"$TMPDIR/bin/gcc\""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    CliProject project;
    project.Trust();
    for (const char* each : {"inc1", "inc2", "other"}) fs::create_directory(project.PathOf(each));
    fs::create_directory_symlink("inc2", project.PathOf("inc3"));
    project.Write("inc2/x.h", "#define X 1\n");
    project.Write("other/x.h", "#define X 2\n");
    project.Write("src/c.c", "#include <x.h>\n");
    project.Out({"options", "set", "Directories.Include", "inc1;inc3;inc2"});
    const std::string compiler = "#!/bin/sh\nexec /usr/bin/gcc \"$@\"\n";
    project.AddProgram("../next", compiler);
    project.AddProgram("gcc", compiler);
    project.AddProgram("run", std::string("#!/bin/sh\n\"$@\" || exit 1\ncase \"$*\" in *c.c*) ") +
                                  "[ -e \"$TMPDIR/did\" ] || { touch \"$TMPDIR/did\"; " +
                                  row.command + "; } ;; esac\n");
    project.Out({"options", "set", "Build.Launcher", "run"});
    // An early run would be repeated at once.
    EXPECT_EQ(Built(project.Out({"build", "-j1"})), "a.c b.c c.c app");
    const std::string again = Built(project.Out({"build"}));
    EXPECT_TRUE(Has(again, "c.c app")) << again;
    EXPECT_EQ(Built(project.Out({"build"})), "");
  }
}

// Edits a file named by an option of the linker.
TEST(CliCurrent, FilesThatLinkerArgumentsNameAreFollowed) {
  const char* const rows[][3] = {
      // Arguments, the file that is created or changed, its content.
      {"lib/a.ld", "lib/a.ld", "PROVIDE(p = 2);\n"},
      {"-Wl,--start-group,lib/a.ld,--end-group", "lib/a.ld", "PROVIDE(p = 3);\n"},
      {"-Xlinker lib/a.ld", "lib/a.ld", "PROVIDE(p = 4);\n"},
      {"@lib/l.rsp", "lib/a.ld", "PROVIDE(p = 5);\n"},
      {"-Wl,@lib/l.rsp", "lib/l.rsp", "lib/t.ld\n"},
      {"-T lib/t.ld", "lib/t.ld", "SECTIONS { } INSERT AFTER .data;\n"},
      {"-Wl,-T,lib/t.ld", "lib/t.ld", "SECTIONS { } INSERT AFTER .text;\n"},
      {"-Wl,--script=lib/t.ld", "lib/t.ld", "SECTIONS { } INSERT AFTER .bss;\n"},
      {"-Tlib/t.ld", "lib/t.ld", "INCLUDE lib/a.ld SECTIONS { } INSERT AFTER .text;\n"},
      {"-Tlib/t.ld", "lib/a.ld", "PROVIDE(p = 6);\n"},
      {"-Llib0 -Llib -lf", "lib/libf.a", "PROVIDE(p = 7);\n"},
      {"-Llib0 -Llib -lf", "lib/libf.so", "PROVIDE(p = 8);\n"},
      {"-Llib0 -Llib -lf", "lib0/libf.a", "PROVIDE(p = 9);\n"},
      {"-Llib0 -lm", "lib0/libm.so", "PROVIDE(p = 9);\n"},
      {"-Wl,-Map,build/x.map", "", ""},
  };
  CliProject project;
  for (const char* folder : {"lib", "lib0"}) fs::create_directories(project.PathOf(folder));
  for (const char* name : {"lib/a.ld", "lib/libf.a"}) project.Write(name, "PROVIDE(p = 1);\n");
  project.Write("lib/t.ld", "SECTIONS { } INSERT AFTER .text;\n");
  project.Write("lib/l.rsp", "lib/a.ld\n");
  for (const auto& [arguments, file, text] : rows) {
    SCOPED_TRACE(arguments);
    project.Out({"options", "set", "Linker.Extra", "--", arguments});
    project.Out({"build"});
    EXPECT_EQ(Built(project.Out({"build"})), "");
    if (*file == '\0') continue;
    project.Edit(file, text);
    EXPECT_EQ(Built(project.Out({"build"})), "app") << file;
    EXPECT_EQ(Built(project.Out({"build"})), "");
  }
}

// Edits or adds a file that the compiler or its assembler reads, or removes it if the text is null.
TEST(CliCurrent, WhatACompilerReadsIsFollowed) {
  const struct {
    const char* options;
    const char* source;
    const char* file;
    const char* text;
    const char* built = "x.c app";
  } rows[] = {
      {"-Iinc1 -Iinc2", "#define H <x.h>\n#include H\n", "inc1/x.h", ""},
      {"-Iinc1 -Iinc2", "/* */ #include <x.h>\n", "inc1/x.h", ""},
      {"-Iinc1 -Iinc2 -include x.h", "", "inc1/x.h", ""},
      {"--include-directory=inc1 -Iinc2", "#include <x.h>\n", "inc1/x.h", ""},
      {"-Wp,-I,inc1 -Iinc2", "#include <x.h>\n", "inc1/x.h", ""},
      {"@i.rsp -Iinc2", "#include <x.h>\n", "inc1/x.h", ""},
      {"-Iinc1 -idirafter inc2", "#include <x.h>\n", "inc1/x.h", ""},
      {"-Iinc1", "#if __has_include(<opt.h>)\n#endif\n", "inc1/opt.h", ""},
      {"-Iinc2", "#if __has_include(<x.h>)\n#endif\n", "inc2/x.h", nullptr},
      {"", "#if __has_include(\"opt.h\")\n#endif\n", "src/opt.h", ""},
      {"-isystem inc2", "#include <x.h>\n", "inc2/x.h", "\n"},
      {"@i.rsp", "", "i.rsp", "-DI"},
      {"@o.rsp", "", "i.rsp", "-DI"},
      {"", "__asm__(\".incbin \\\"l.bin\\\"\");\n", "l.bin", "2"},
      {"-Wa,-adhls=build/x.lst", "", "i.inc", " .incbin \"l.bin\"\n", "s.s app"},
      {"-save-temps=obj", "", "i.inc", "\n", "s.s app"},
  };
  CliProject project;
  project.WriteProject({{"app", {"x.c"}}});
  project.Write("src/x.c", "int main(void) { return 0; }\n");
  project.Write("src/s.s", ".include \"i.inc\"\n");
  project.Out({"add", "src/s.s"});
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.options) + row.source);
    fs::remove_all(project.PathOf("inc1"));
    for (const char* folder : {"inc1", "inc2"}) fs::create_directories(project.PathOf(folder));
    fs::remove(project.PathOf("src/opt.h"));
    project.Write("inc2/x.h", "");
    project.Write("i.inc", "");
    project.Write("i.rsp", "-Iinc1");
    project.Write("o.rsp", "@i.rsp");
    project.Write("l.bin", "1");
    project.Write("src/x.c", std::string(row.source) + "int main(void) { return 0; }\n");
    project.Out({"options", "set", "C.Compiler.Extra", "--", row.options});
    project.Out({"rebuild"});
    EXPECT_EQ(Built(project.Out({"build"})), "");
    if (row.text == nullptr) {
      fs::remove(project.PathOf(row.file));
    } else {
      project.Edit(row.file, row.text);
    }
    EXPECT_EQ(Built(project.Out({"build"})), row.built);
    EXPECT_EQ(Built(project.Out({"build"})), "");
  }
}

TEST(CliCurrent, AKilledBuildGoesOnWhereItWas) {
  CliProject project;
  project.AddProgram(
      "gcc",
      "#!/bin/sh\n[ -e \"$TMPDIR/killed\" ] || case \"$*\" in *c.c*)\n"
      "touch \"$TMPDIR/killed\"; server=$(cut -d' ' -f4 /proc/$PPID/stat)\n"
      "kill -9 $(cut -d' ' -f4 /proc/$server/stat); sleep 9 ;; esac\nexec /usr/bin/gcc \"$@\"\n");
  EXPECT_EQ(project.Run({"build", "-j1"}).code, 128 + 9);
  EXPECT_EQ(Built(project.Out({"build"})), "c.c app");
}

TEST(CliCurrent, ASecondBuildWaitsOrFails) {
  CliProject project;
  // The first build lasts until the last one has reported that it is waiting.
  project.AddProgram("gcc",
                     "#!/bin/sh\nfor i in $(seq 200); do [ -e go ] || sleep 0.1; done\n"
                     "exec /usr/bin/gcc \"$@\"\n");
  const std::string untilItWaits =
      "\"$0\" build demo.tprj 2>&1 | { read -r line; echo \"$line\"; touch go; cat; }";
  fs::copy_file(project.PathOf("demo.tprj"), project.PathOf("twin.tprj"));
  bool isAsked = false;
  const auto first = project.Run({"build", "demo.tprj"}, [&](Process&, const std::string&) {
    if (std::exchange(isAsked, true)) return;
    project.ExpectRefusal({"build", "--no-wait", "demo.tprj"}, 3, "Another build of this project");
    const auto refused = project.Run({"build", "--no-wait", "--json", "demo.tprj"});
    EXPECT_TRUE(Has(refused.out, "\"result\": \"refused\"")) << refused.out;
    // A different project with the same application.
    project.ExpectRefusal({"build", "--no-wait", "twin.tprj"}, 3, "Another build");
    const auto second = project.RunProgram("/bin/sh", {"-c", untilItWaits, TARN_PROGRAM});
    EXPECT_TRUE(Has(second.out, "Waiting for another build")) << second.out;
    EXPECT_TRUE(Has(second.out, "\nNothing to do")) << second.out;
  });
  EXPECT_EQ(first.code, 0);
}

TEST(CliCurrent, AMissingSourceIsNamedRatherThanWhatIsMadeFromIt) {
  CliProject project;
  const std::string source = project.Read("src/c.c");
  const struct {
    const char* name;
    std::function<void()> prepare;
  } rows[] = {
      {"never built", [] {}},
      {"output changed", [&] { project.Edit("build/Standard/app.obj/src/c.c.o", "x"); }},
      {"output missing", [&] { fs::remove_all(project.PathOf("build")); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    row.prepare();
    fs::remove(project.PathOf("src/c.c"));
    const std::string status = project.Run({"status"}).out;
    EXPECT_TRUE(Has(status, "src/c.c  its source src/c.c is missing\n")) << status;
    project.Write("src/c.c", source);
    project.Out({"build"});
  }
}

TEST(CliCurrent, AStateThatCannotBeKeptIsReportedEachTime) {
  CliProject project;
  fs::create_directory(project.PathOf("demo.tstate"));
  for (int i = 0; i < 2; ++i) {
    const auto built = project.Run({"build", "-q"});
    EXPECT_EQ(built.code, 3);
    EXPECT_TRUE(Has(built.err, "The state of this build couldn't be saved")) << built.err;
  }
}

TEST(CliCurrent, TwoApplicationsThatMakeOneFileAreRefused) {
  const std::pair<const char*, const char*> rows[] = {
      {"Build.OutputFile", "have the same output file"}, {"Linker.MapFile", "both produce"}};
  for (const auto& [option, said] : rows) {
    CliProject project;
    project.WriteProject({{"app", {"a.c", "b.c"}}, {"two", {"a.c", "b.c"}}});
    for (const char* each : {"app", "two"}) {
      project.Out({"options", "set", "--app", each, option, "build/same"});
    }
    const auto refused = project.Run({"build"});
    EXPECT_EQ(refused.code, 1) << refused.out;
    EXPECT_TRUE(Has(refused.out + refused.err, said)) << refused.out << refused.err;
    project.Out({"options", "set", "--app", "two", option, "build/other"});
    EXPECT_TRUE(Has(project.Out({"build"}), "Built 6 files"));
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  }
}

TEST(CliCurrent, ASourceThatIsMadeIntoOneFileWithDifferentOptionsIsRefused) {
  CliProject project;
  project.WriteProject({{"app", {"a.c", "b.c"}}, {"two", {"a.c", "b.c"}}});
  for (const char* each : {"app", "two"}) {
    project.Out(
        {"options", "set", "-n", each + std::string("/a.c"), "Build.OutputFile", "build/a.o"});
  }
  project.Out({"build"});
  project.Out({"options", "set", "--app", "two", "Compiler.Defines", "X"});
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"build"}, {"build", "--app", "two"}}) {
    const auto refused = project.Run(words);
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(Has(refused.out,
                    "in the applications app and two, but different options; set "
                    "Build.OutputFile of one of them"))
        << refused.out;
  }
  EXPECT_TRUE(Has(project.Run({"check"}).out, "build/a.o is also the output of src/a.c"));
  project.Out({"options", "set", "--app", "app", "Compiler.Defines", "X"});
  EXPECT_EQ(Built(project.Out({"build"})), "a.c b.c app a.c b.c two");
}

}  // namespace
}  // namespace tarn::host
