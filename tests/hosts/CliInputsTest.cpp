// Files that the tools read implicitly, or would read if they existed.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

using Change = std::function<void(CliProject&)>;

Change Edits(const std::string& file, const std::string& text) {
  return [=](CliProject& p) { p.Edit(file, text); };
}

Change Removes(const std::string& file) {
  return [=](CliProject& p) { fs::remove_all(p.PathOf(file)); };
}

// Edits a file without changing its size or modification time.
Change EditsUnseen(const std::string& file, const std::string& from, const std::string& to) {
  return [=](CliProject& p) {
    const auto time = fs::last_write_time(p.PathOf(file));
    std::string text = p.Read(file);
    p.Edit(file, text.replace(text.find(from), from.size(), to));
    fs::last_write_time(p.PathOf(file), time);
  };
}

// Runs a program in the project's folder; it must succeed.
Change Runs(const std::string& command) {
  return [=](CliProject& p) { EXPECT_EQ(p.RunProgram("/bin/sh", {"-c", command}).code, 0); };
}

struct Row {
  const char* name;
  const char* compiler;  // options
  const char* linker;
  const char* source;  // start of x.c
  Change before;
  Change change;
  const char* built = "x.c app";
};

void ExpectBuilt(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    CliProject project;
    project.Trust();  // some rows run programs of the project
    project.WriteProject({{"app", {"x.c", "c.c"}}});
    for (const char* folder : {"inc1", "inc2", "tools"}) {
      fs::create_directory(project.PathOf(folder));
    }
    project.Write("inc2/x.h", "");
    project.Write("src/x.c", std::string(row.source) + "int main(void) { return 0; }\n");
    project.Out({"options", "set", "-n", "src/x.c", "C.Compiler.Extra", "--", row.compiler});
    project.Out({"options", "set", "Linker.Extra", "--", row.linker});
    if (row.before) row.before(project);
    EXPECT_EQ(Built(project.Out({"build"})), "x.c c.c app");
    EXPECT_EQ(Built(project.Out({"build"})), "");
    row.change(project);
    EXPECT_EQ(Built(project.Out({"build"})), row.built);
    EXPECT_EQ(Built(project.Out({"build"})), "");
  }
}

constexpr const char* kStringify =
    "#define S_(x) #x\n#define S(x) S_(x)\n#define DIR cfg\n#if "
    "__has_include(S(DIR/o.h))\n#endif\n";
constexpr const char* kOption = "#if __has_include(CFG)\n#endif\n";

TEST(CliInputs, AFileIsTestedForByANameFromAMacro) {
  ExpectBuilt({
      {"a string",
       "",
       "",
       "#define CFG \"o.h\"\n#if __has_include(CFG)\n#endif\n",
       {},
       Edits("src/o.h", "")},
      {"the file goes", "", "", "#define CFG \"o.h\"\n#if __has_include(CFG)\n#endif\n",
       Edits("src/o.h", ""), Removes("src/o.h")},
      {"stringified, in a folder to come", "-Iinc1", "", kStringify, {}, Edits("inc1/cfg/o.h", "")},
      {"pasted",
       "-Iinc1",
       "",
       "#define C(a, b) <a##b.h>\n#if __has_include(C(o, pt))\n#endif\n",
       {},
       Edits("inc1/opt.h", "")},
      {"in an option", "-Iinc1 -DCFG='<o.h>'", "", kOption, {}, Edits("inc1/o.h", "")},
      {"in an option with quotes",
       "-DCFG='\"o.h\"' -DLIST='\"a\",\"b\"'",
       "",
       kOption,
       {},
       Edits("src/o.h", "")},
      {"in a response file", "@o.rsp", "", kOption, Edits("o.rsp", "-Iinc1 \"-DCFG=<o.h>\""),
       Edits("inc1/o.h", "")},
      {"in another file", "-Iinc1 -include inc2/c.h", "", "#if HAS(\"o.h\")\n#endif\n",
       Edits("inc2/c.h", "#define HAS(x) __has_include(x)\n"), Edits("src/o.h", "")},
      {"an absolute name", "", "", "",
       [](CliProject& p) {
         p.Write("src/x.c", "#if __has_include(\"" + p.PathOf("inc1/new/o.h") +
                                "\")\n#endif\nint main(void) { return 0; }\n");
       },
       Edits("inc1/new/o.h", "")},
      {"a name that nothing tests for",
       "-Iinc1",
       "",
       kStringify,
       {},
       Edits("inc1/cfg/p.h", ""),
       ""},
  });
}

TEST(CliInputs, ANameThatOnlyTheCompilerKnowsIsReported) {
  CliProject project;
  project.Write("src/c.c",
                "#define S_(x) #x\n#define S(x) S_(x)\n"
                "#if __has_include(S(gcc-__GNUC__.h))\n#endif\nint c;\n");
  project.Out({"build"});
  EXPECT_TRUE(Has(project.Out({"status"}), "by a name that only the compiler knows"));
  EXPECT_EQ(Built(project.Out({"build"})), "c.c app");
}

constexpr const char* kBinary = "__asm__(\".incbin \\\"d.bin\\\"\");\n";
constexpr const char* kMacroBinary =
    "#define BIN(f) __asm__(\".incbin \\\"\" f \"\\\"\")\nBIN(\"d.bin\");\n";

TEST(CliInputs, AFileOfTheAssemblerIsFoundEarlier) {
  ExpectBuilt({
      {"in the working folder", "-Iinc1", "", kBinary, Edits("inc1/d.bin", "1"),
       Edits("d.bin", "2")},
      {"in an earlier folder", "-Wa,-I,inc1 -Wa,-I,inc2", "", kMacroBinary,
       Edits("inc2/d.bin", "1"), Edits("inc1/d.bin", "2")},
      {"elsewhere", "-Iinc1", "", kBinary, Edits("inc1/d.bin", "1"), Edits("e.bin", "2"), ""},
      {"at the link", "-flto", "-flto", kBinary, Edits("d.bin", "1"), Edits("d.bin", "2")},
      {"at the link, by a macro", "-flto -Wa,-I,inc1", "-flto", kMacroBinary,
       Edits("inc1/d.bin", "1"), Edits("inc1/d.bin", "2")},
      {"at the link, earlier", "-flto -Wa,-I,inc1", "-flto", kMacroBinary, Edits("inc1/d.bin", "1"),
       Edits("d.bin", "2")},
  });
}

TEST(CliInputs, APrecompiledHeaderIsReadInstead) {
  const char* const kInclude = "#include <x.h>\n";
  const Change compile = Runs("gcc -x c-header inc2/x.h -o inc2/x.h.gch");
  const Change compileAnother =
      Runs("mkdir -p inc2/x.h.gch; gcc -O1 -x c-header inc2/x.h -o inc2/x.h.gch/b");
  const Change compileVariant =
      Runs("mkdir -p inc2/x.h.gch; gcc -x c-header inc2/x.h -o inc2/x.h.gch/a");
  ExpectBuilt({
      {"a file comes", "-Iinc2", "", kInclude, {}, compile},
      {"a file changes", "-Iinc2", "", kInclude, compile,
       Runs("echo '#define Y' >> inc2/x.h; gcc -x c-header inc2/x.h -o inc2/x.h.gch")},
      {"a file goes", "-Iinc2", "", kInclude, compile, Removes("inc2/x.h.gch")},
      {"a folder comes", "-Iinc2", "", kInclude, {}, compileVariant},
      {"one more in a folder", "-Iinc2", "", kInclude, compileVariant, compileAnother},
      {"one in a folder goes", "-Iinc2", "", kInclude, compileVariant, Removes("inc2/x.h.gch/a")},
      {"for an option", "-include inc2/x.h", "", "", {}, compile},
  });
}

TEST(CliInputs, AMemberOfAThinArchiveChanges) {
  const Change make = Runs("echo 'int f;' > f.c; gcc -c f.c -o inc1/f.o; ar rcT libf.a inc1/f.o");
  const Change change = Runs("echo 'int f = 1;' > f.c; gcc -c f.c -o inc1/f.o");
  const Change makeNested = [=](CliProject& p) {
    make(p);
    Runs("ar rcT libg.a libf.a")(p);
  };
  ExpectBuilt({
      {"of a library", "", "-L. -lf", "", make, change, "app"},
      {"of an argument", "", "libf.a", "", make, change, "app"},
      {"of an archive in it", "", "-L. -lg", "", makeNested, change, "app"},
      {"of a file that a linker script names", "", "-T l.ld", "",
       [=](CliProject& p) {
         make(p);
         p.Edit("l.ld", "INPUT(libf.a)\nSECTIONS { } INSERT AFTER .text;\n");
       },
       change, "app"},
  });
}

TEST(CliInputs, ALibraryIsFoundEarlier) {
  const auto add = [](const std::string& script) {
    return [=](CliProject& p) {
      Runs("echo 'int f;' > f.c; gcc -c f.c -o f.o; ar rc inc2/libf.a f.o")(p);
      p.Edit("l.ld", script + "SECTIONS { } INSERT AFTER .text;\n");
    };
  };
  ExpectBuilt({
      {"one of the compiler comes", "", "-Linc1", "", {}, Runs("ar rc inc1/libgcc.a"), "app"},
      {"one of the compiler changes", "", "-Linc1", "", Runs("ar rc inc1/libm.a"),
       Runs("echo 'int f;' > f.c; gcc -c f.c -o f.o; ar rc inc1/libm.a f.o"), "app"},
      {"in a folder of a script", "", "-lf -T l.ld", "",
       add("SEARCH_DIR(\"inc1\") SEARCH_DIR(inc2)\n"), Runs("cp inc2/libf.a inc1/libf.a"), "app"},
      {"in a folder of a script that is found in one", "", "-lf -T l.ld", "",
       [=](CliProject& p) {
         add("SEARCH_DIR(inc2)\nINCLUDE m.ld\n")(p);
         p.Edit("inc2/m.ld", "SEARCH_DIR(inc1)\n");
       },
       Edits("m.ld", "SEARCH_DIR(inc1) PROVIDE(p = 1);\n"), "app"},
      {"of another name", "", "-Linc1", "", {}, Runs("ar rc inc1/libother.a"), ""},
  });
}

TEST(CliInputs, AnAvrLibraryIsFoundEarlier) {
  if (FindProgram("avr-gcc").empty()) GTEST_SKIP() << "avr-gcc isn't on this machine";
  CliProject project;
  project.Out({"options", "set", "Target.Toolchain", "avr-gcc"});
  project.Out({"options", "set", "Target.Device", "atmega328p"});
  project.Out({"options", "set", "Linker.LibraryPaths", "lib"});
  fs::create_directory(project.PathOf("lib"));
  project.Out({"build"});
  for (const char* change :
       {"avr-ar rc lib/libc.a", "avr-gcc -c -x c /dev/null -o e.o; avr-ar rc lib/libc.a e.o",
        "avr-ar rc lib/libatmega328p.a"}) {
    SCOPED_TRACE(change);
    EXPECT_EQ(Built(project.Out({"build"})), "");
    Runs(change)(project);
    EXPECT_EQ(Built(project.Out({"build"})), "app.elf");
  }
}

TEST(CliInputs, AFolderWithAPrefixIsSearched) {
  const char* const kInclude = "#include <x.h>\n";
  ExpectBuilt({
      {"last",
       "-iprefix ./ -iwithprefix inc1 -iwithprefix inc2",
       "",
       kInclude,
       {},
       Edits("inc1/x.h", "")},
      {"before others",
       "-iprefixin -iwithprefixbeforec1 -Iinc2",
       "",
       kInclude,
       {},
       Edits("inc1/x.h", "")},
      {"long names",
       "--include-prefix=./ --include-with-prefix-before=inc1 -Iinc2",
       "",
       kInclude,
       {},
       Edits("inc1/x.h", "")},
      {"another prefix later",
       "-iprefix inc -iwithprefix 1 -iprefix no -iwithprefix 2 -Iinc2",
       "",
       kInclude,
       {},
       Edits("no2/x.h", "")},
  });
}

TEST(CliInputs, LinkTimeOptimizationKeepsTheCompilersQuiet) {
  CliProject project;
  project.Out({"options", "set", "C.Compiler.Extra", "--", "-flto"});
  project.Out({"options", "set", "Linker.Extra", "--", "-flto"});
  project.Write("src/c.c", kBinary);
  project.Write("d.bin", "1");
  const std::string out = project.Out({"build"});
  EXPECT_FALSE(Has(out, "warning")) << out;
  project.Edit("d.bin", "2");
  EXPECT_EQ(Built(project.Out({"build"})), "c.c app");
}

// Compiler flags from a makefile that request separate dependency files.
TEST(CliInputs, OptionsForDependenciesHideNone) {
  CliProject project;
  int edits = 0;
  for (const char* options : {"-MF own.d", "-MMD -MP -MFown.d", "-MT own -MQ other", "-M",
                              "-MM -MG", "-Wp,-MD,own.d", "-Wp,-MMD,own.d", "@own.rsp"}) {
    SCOPED_TRACE(options);
    project.Write("own.rsp", "-MMD -MF own.d");
    project.Out({"options", "set", "C.Compiler.Extra", "--", options});
    project.Out({"build"});
    EXPECT_EQ(Built(project.Out({"build"})), "");
    project.Edit("src/a.h", "int a(void);\n//" + std::to_string(++edits));
    EXPECT_EQ(Built(project.Out({"build"})), "a.c b.c app");
  }
}

TEST(CliInputs, AFileBesideTheObjectGoes) {
  const auto removes = [](const std::string& extension) {
    return Runs("rm $(find build -name 'x.c" + extension + "')");
  };
  ExpectBuilt({
      {"the stack usage", "-fstack-usage", "", "", {}, removes(".su")},
      {"split debug information", "-g -gsplit-dwarf", "", "", {}, removes(".dwo")},
      {"notes for coverage", "-ftest-coverage", "", "", {}, removes(".gcno")},
  });
}

constexpr const char* kAssembler = "#!/bin/sh\n#1\nexec /usr/bin/as \"$@\"\n";
constexpr const char* kLinker = "#!/bin/sh\n#1\nexec /usr/bin/ld \"$@\"\n";

Change AddsProgram(const std::string& path, const std::string& text) {
  return [=](CliProject& p) {
    p.Edit(path, text);
    fs::permissions(p.PathOf(path), fs::perms::owner_all);
  };
}

TEST(CliInputs, WhatTheCompilerStartsChanges) {
  const std::string compiler = "#!/bin/sh\n#1\nexec /usr/bin/gcc \"$@\"\n";
  ExpectBuilt({
      {"the compiler, unseen", "", "", "", AddsProgram("../bin/gcc", compiler),
       EditsUnseen("../bin/gcc", "#1", "#2"), "x.c c.c app"},
      {"its mode only", "", "", "", AddsProgram("../bin/gcc", compiler),
       [](CliProject& p) {
         fs::permissions(p.PathOf("../bin/gcc"), fs::perms::owner_exec, fs::perm_options::add);
       },
       ""},
      {"its assembler", "-Btools", "", "", AddsProgram("tools/as", kAssembler),
       EditsUnseen("tools/as", "#1", "#2")},
      {"its assembler comes", "-Btools/", "", "", {}, AddsProgram("tools/as", kAssembler)},
      {"its assembler comes in PATH",
       "",
       "",
       "",
       {},
       AddsProgram("../bin/as", kAssembler),
       "x.c c.c app"},
      {"its linker", "", "-Btools", "", AddsProgram("tools/ld", kLinker),
       EditsUnseen("tools/ld", "#1", "#2"), "app"},
      {"its start-up code", "", "-Btools", "",
       Runs("cp $(gcc -print-file-name=crti.o) tools/crti.o"),
       Runs("cp tools/crti.o n; rm tools/crti.o; mv n tools/crti.o"), "app"},
  });
}

TEST(CliInputs, AFileOfAnOptionIsFoundEarlier) {
  ExpectBuilt({
      {"an include", "-Iinc1 -Iinc2 -include x.h", "", "", {}, Edits("x.h", "")},
      {"macros", "-Iinc2 -imacros x.h", "", "", {}, Edits("x.h", "")},
      {"a linker script", "", "-Linc1 -T l.ld", "",
       Edits("inc1/l.ld", "SECTIONS { } INSERT AFTER .text;\n"),
       Edits("l.ld", "SECTIONS { } INSERT AFTER .data;\n"), "app"},
      {"a link on the way leads elsewhere", "-Ilink", "", "#include <x.h>\n",
       Runs("cp inc2/x.h inc1/x.h; ln -s inc1 link"), Runs("ln -sfn inc2 link")},
      {"versions of symbols", "", "-shared -Wl,--version-script=inc1/v.map", "",
       Edits("inc1/v.map", "{ global: main; };\n"), Edits("inc1/v.map", "{ local: *; };\n"), "app"},
      {"a member of a group in a script", "", "inc1/g.ld", "",
       Runs("gcc -c -x c /dev/null -o inc2/e.o; echo 'GROUP(inc2/e.o)' > inc1/g.ld"),
       Runs("gcc -g -c -x c /dev/null -o inc2/e.o"), "app"},
  });
}

TEST(CliInputs, AnApplicationWithoutFilesIsNamed) {
  CliProject project;
  project.WriteProject({{"app", {}}});
  const auto expect = [&](const std::string& name) {
    const auto built = project.Run({"build", "--app", name});
    EXPECT_EQ(built.code, 1) << name;
    EXPECT_TRUE(Has(built.out + built.err, "the application " + name +
                                               " has no files to build; add some, for example "
                                               "with `tarn add FILE`"))
        << built.out << built.err;
  };
  expect("app");  // with an empty group
  project.Out({"add", "src/a.h"});
  expect("app");
  project.Out({"add", "--application", "bare", "--empty"});
  expect("bare");
  // A library may consist of headers only.
  project.Out({"add", "--application", "headers", "--library", "src/a.h"});
  EXPECT_EQ(Built(project.Out({"build", "--app", "headers"})), "headers.a");
  // An application without sources of its own may be in a library.
  project.Write("src/main.c", "int main(void) { return 0; }\n");
  project.Out({"add", "--application", "code", "--library", "src/main.c"});
  project.Out({"options", "set", "-a", "app", "Linker.Applications", "code"});
  EXPECT_EQ(Built(project.Out({"build", "--app", "app"})), "main.c code.a app");
}

}  // namespace
}  // namespace tarn::host
