// Projects from elsewhere: running their programs and writing outside their folder is refused until
// the user trusts them. Each hostile project is used with all everyday commands while the files
// outside are compared, and then with --trust, to show that it would have done harm.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

#include "hosts/CliProject.h"
#include "platform/files/FileSystem.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

const std::string kOutputs = "build/Standard/";
const std::string kObjects = kOutputs + "app.obj/src/";

// A hostile project, and the folder that it attacks. Any execution of its code leaves a file there.
struct Hostile {
  CliProject project;
  CliProject around;

  std::string Outside(const std::string& name) const { return around.PathOf(name); }
  // Adds a program to the project that leaves a trace and runs its arguments.
  void AddTrap(const std::string& name) {
    project.Edit(name, "#!/bin/sh\necho \"$0\" >> " + Outside("ran") + "\nexec \"$@\"\n");
    chmod(project.PathOf(name).c_str(), 0755);
  }
  // "%" in the value is replaced by the outside folder.
  void Set(const std::string& option, const std::string& value, const std::string& node = "") {
    std::vector<std::string> words{"options", "set"};
    if (!node.empty()) words.insert(words.end(), {"-n", node});
    words.insert(words.end(), {"--", option, ReplaceAll(value, "%", Outside(""))});
    project.Out(words);
  }
  // Adds a specs file for the compiler driver that runs the trap instead of the compiler.
  void AddSpecs(const std::string& name) { project.Edit(name, "@c:\n./trap.sh true %i\n\n"); }
  void AddPlugin() {
    project.Write("p.c",
                  "#include <stdio.h>\n__attribute__((constructor)) static void f(void) {\n"
                  "fclose(fopen(\"" +
                      Outside("ran") +
                      "\", \"a\")); }\n"
                      "int plugin_is_GPL_compatible; int onload(void* p) { return 0; }\n");
    ASSERT_EQ(project.RunProgram("gcc", {"-shared", "-fPIC", "-o", "p.so", "p.c"}).code, 0);
  }

  // Adds a link of this name that leads to a file outside which does not exist.
  void AddLink(const std::string& name) {
    fs::create_directories(fs::path(project.PathOf(name)).parent_path());
    fs::create_symlink(Outside("linked"), project.PathOf(name));
  }
  // Adds such links at the names of all dumps of the compiler.
  void AddLinksForDumps() {
    fs::create_directory(project.PathOf("probe"));
    project.RunProgram("gcc", {"-c", "-dpa", "src/a.c", "-o", "probe/a.c.o"});
    for (const auto& each : fs::directory_iterator(project.PathOf("probe"))) {
      if (each.path().extension() != ".o") AddLink(kObjects + each.path().filename().string());
    }
  }
  // Adds an object that has the linker compile with options that run code.
  void AddBytecode() {
    project.Write("e.c", "int e(void) { return 1; }\nint main(void) { return e(); }\n");
    project.Write("opts", "'-O2' '-flto=2' '-mstack-protector-guard-symbol=$(shell touch " +
                              Outside("ran") + ")'" + std::string(1, '\0'));
    ASSERT_EQ(project.RunProgram("gcc", {"-c", "-O2", "-flto", "e.c", "-o", "e.o"}).code, 0);
    project.RunProgram("objcopy", {"--update-section", ".gnu.lto_.opts=opts", "e.o"});
    project.RunProgram("ar", {"qcs", "libe.a", "e.o"});
    Set("Linker.Extra", "-Wl,-z,muldefs");
  }
  // Marks the section with the options of a wide object as one without content, like ".bss". What
  // reads the options finds them anyway.
  void HideOptions(const std::string& object) {
    std::string bytes = project.Read(object);
    const auto number = [&bytes](std::size_t at, int size) {
      std::size_t value = 0;
      while (size-- > 0) value = value << 8 | static_cast<unsigned char>(bytes.at(at + size));
      return value;
    };
    const std::size_t table = number(40, 8);
    const std::size_t names = number(table + 64 * number(62, 2) + 24, 8);
    for (std::size_t i = 0; i < number(60, 2); ++i) {
      const std::size_t header = table + 64 * i;
      if (bytes.substr(names + number(header, 4)).starts_with(".gnu.lto_.opts")) {
        bytes.at(header + 4) = 8;
      }
    }
    project.Write(object, bytes);
  }
  void AddAssembly() {
    Set("Target.Toolchain", "sdcc-mcs51");
    for (const char* name : {"src/z.asm", "z.asm"}) project.Write(name, " .area CSEG\n");
    project.Out({"add", "src/z.asm"});
    Set("Build.OutputFile", "z", "src/z.asm");
  }

  // Returns every file outside the project with its content.
  std::map<std::string, std::string> World() const {
    std::map<std::string, std::string> files;
    for (const auto& each : fs::recursive_directory_iterator(Outside(""))) {
      if (each.is_directory()) continue;
      files[each.path()] = around.Read(fs::relative(each.path(), Outside("")));
    }
    return files;
  }
};

constexpr const char* kExtra = "C.Compiler.Extra";
constexpr const char* kOutput = "Build.OutputFile";
constexpr const char* kNode = "src/a.c";
constexpr const char* kFromObject =
    "run the tool with the argument -mstack-protector-guard-symbol=$";

const struct Row {
  const char* name;
  const char* wish;  // named in the refusal
  const char* option;
  const char* value;
  const char* node = "";
  void (*plant)(Hostile&) = nullptr;
  const char* link = "";               // in the project; the refusal names it with its target
  bool isNever = false;                // refused even to a trusted project
  const char* needs = "/usr/bin/gcc";  // a program; without it, the row is skipped
} kRows[] = {
    {"a launcher in the project", "run the launcher ./trap.sh", "Build.Launcher", "./trap.sh"},
    {"an installed program as the launcher", "run the launcher sh", "Build.Launcher",
     "sh -c 'echo ran >> %ran'"},
    {"an installed launcher with arguments", "run the launcher env", "Build.Launcher",
     "env ./trap.sh"},
    {"a tool named by a path", "run the tool ./trap.sh", "Build.TranslateTool", "./trap.sh", kNode},
    {"a compiler plug-in", "run code with the argument -fplugin=", kExtra, "-fplugin=./p.so"},
    {"a plug-in in a response file", "run code with the argument -fplugin=", kExtra, "@more", "",
     [](Hostile& h) { h.project.Write("more", "-Os -fplugin=./p.so\n"); }},
    {"a hidden plug-in in a response file", "run code with the argument -fplugin=", kExtra, "@more",
     "", [](Hostile& h) { h.project.Write("more", "-fplug\\in=./p.so\n"); }},
    {"a plug-in for a second compilation", "run code with the argument -fcompare-debug", kExtra,
     "-fcompare-debug=-fplugin=./p.so", "", [](Hostile& h) { h.AddPlugin(); }},
    {"a script for errors of the linker", "run code with the argument --error-h", "Linker.Extra",
     "-Wl,--error-h=./trap.sh -lnope"},
    {"a plug-in for the preprocessor", "run code with the argument -fplugin=", kExtra,
     "-Xpreprocessor -fplugin=./p.so"},
    {"a linker plug-in", "run code with the argument -plug", "Linker.Extra", "-Wl,-plugin,./p.so"},
    {"the compiler's own programs", "run code with the argument -Bbin/", kExtra, "-Bbin/", "",
     [](Hostile& h) { h.AddTrap("bin/as"); }},
    {"a wrapper of the compiler's programs", "run code with the argument -wrapper", kExtra,
     "-wrapper ./trap.sh"},
    {"a specification file", "run code with the argument -specs=evil.specs", kExtra,
     "-specs=evil.specs", "", [](Hostile& h) { h.AddSpecs("evil.specs"); }},
    {"a specification of a device", "run code with the argument -mmcu=evil", "Target.Device",
     "evil", "",
     [](Hostile& h) {
       h.Set("Target.Toolchain", "avr-gcc");
       h.AddSpecs("device-specs/specs-evil");
     },
     "", false, "/usr/bin/avr-gcc"},
    {"a compiler on a search path that leads into the project", "run ", kExtra, "-Os", "",
     [](Hostile& h) {
       h.AddTrap("gcc");
       for (auto& [name, value] : h.project.environment) {
         if (name == "PATH") value = ".:" + value;
       }
     }},
    {"an assembler on such a path", "run ", kExtra, "-Os", "",
     [](Hostile& h) {
       h.AddTrap("as");
       for (auto& [name, value] : h.project.environment) {
         if (name == "PATH") value = ".:" + value;
       }
     }},
    {"specifications in a root of the project", "run the tool with the argument -specs", kExtra,
     "--sysroot=sr -specs=evil.specs", "",
     [](Hostile& h) {
       h.AddSpecs("sr/lib/evil.specs");
       h.AddSpecs("sr/usr/lib/evil.specs");
     }},
    {"a root of the project for a device", "run ", kExtra, "--sysroot=sr", "",
     [](Hostile& h) {
       h.Set("Target.Toolchain", "avr-gcc");
       h.Set("Target.Device", "evil");
       h.AddSpecs("sr/lib/device-specs/specs-evil");
     },
     "", false, "/usr/bin/avr-gcc"},
    {"a command in a makefile of the compiler", "run the tool with the argument -frandom-seed=$",
     "Linker.Extra", "-flto=2 '-frandom-seed=$$(shell touch %ran)'", "",
     [](Hostile& h) { h.Set(kExtra, "-flto"); }},
    // This link fails in a way that leaves the commands out.
    {"commands next to an object", "run commands from the file ", "Linker.Extra",
     "-Wl,--no-gc-sections", "",
     [](Hostile& h) {
       h.Set("Target.Toolchain", "avr-gcc");
       h.Set("Target.Device", "atmega328p");
       h.project.Write("src/c.c", "int none(void); int c(void) { return none(); }\n");
       h.project.Edit(kObjects + "c.c.rpo", "M c.c\nD " + h.project.PathOf("") +
                                                "\nA '-wrapper' '" + h.project.PathOf("trap.sh") +
                                                "' '-c' 'src/c.c'\nO none\n");
     },
     "", true, "/usr/bin/avr-gcc"},
    {"specifications that the compiler lacks", "run commands from the file ", "Linker.Extra",
     "-fsanitize=address -static-libasan", "",
     [](Hostile& h) {
       h.Set("Target.Toolchain", "avr-gcc");
       h.Set("Target.Device", "atmega328p");
       h.AddPlugin();
       h.project.Write("libsanitizer.spec", "*link_libasan:\n-plugin ./p.so\n\n");
     },
     "", false, "/usr/bin/avr-gcc"},
    {"an object with options of a compiler", kFromObject, "Linker.Extra", "-Wl,-z,muldefs e.o", "",
     [](Hostile& h) { h.AddBytecode(); }},
    {"a library with such an object", kFromObject, "Linker.Libraries", "e", "",
     [](Hostile& h) {
       h.AddBytecode();
       h.Set("Linker.LibraryPaths", ".");
       h.Set("Linker.Extra", "-Wl,-u,e,-z,muldefs");
     }},
    {"an object that claims to have none", "run code, which is in the file ", "Linker.Extra", "e.o",
     "",
     [](Hostile& h) {
       h.AddBytecode();
       h.HideOptions("e.o");
     }},
    {"a linker script among the objects that names it", kFromObject, "Build.OutputFile", "i.o",
     kNode,
     [](Hostile& h) {
       h.AddBytecode();
       h.project.Write("src/a.c", "GROUP(/*\"*/ \"e.o\" AS_NEEDED(-lm)) /* \" */\n");
       h.Set("Compiler.Extra", "-E -P", kNode);
     }},
    {"an assembler source that makes it", kFromObject, kExtra, "-O1", "",
     [](Hostile& h) {
       h.AddBytecode();
       h.project.RunProgram("gcc", {"-S", "-O2", "-flto", "e.c", "-o", "src/e.s"});
       h.project.Write("src/e.s", ".section .gnu.lto_.opts,\"e\"\n.incbin \"opts\"\n" +
                                      h.project.Read("src/e.s"));
       h.project.Out({"add", "src/e.s"});
     }},
    {"notes for coverage", "run the tool with the argument -fprofile-note", kExtra,
     "-ftest-coverage -fprofile-note=%note"},
    {"a file of a passed-on flag", "run the tool with the argument -Wp", kExtra, "-Wp -o,%new", "",
     [](Hostile& h) { h.Set("Target.Toolchain", "sdcc-mcs51"); }, "", false, "/usr/bin/sdcc"},
    {"flags of a linker in a response file", "run code with the argument -plugin", "Linker.Extra",
     "-Wl,@more", "", [](Hostile& h) { h.project.Write("more", "--as-needed -plugin ./p.so\n"); }},
    {"an intermediate file in the working folder", "write ", kExtra, "-save-temps", "",
     [](Hostile& h) {
       h.Set("Target.Toolchain", "avr-gcc");
       h.Set("Target.Device", "atmega328p");
       h.AddLink("a.i");
     },
     "a.i", true, "/usr/bin/avr-gcc"},
    {"an output outside", "write ", kOutput, "%new/a.o", kNode},
    {"an output that climbs out", "write ", kOutput, "../../../../../../..%a.o", kNode},
    {"outputs in a folder that is a link", "write ", kExtra, "-Os", "",
     [](Hostile& h) { fs::create_directory_symlink(h.Outside(""), h.project.PathOf("build")); },
     "build"},
    {"an output that is a link to nothing", "write ", kOutput, "a.o", kNode,
     [](Hostile& h) { fs::create_symlink(h.Outside("a.o"), h.project.PathOf("a.o")); }, "a.o",
     true},
    {"a listing outside", "write ", "Build.ListingFile", "%a.lst", kNode},
    {"a map outside", "write ", "Linker.MapFile", "%map"},
    {"a map in an argument", "write ", "Linker.Extra", "-Wl,-Map=%map"},
    {"an abbreviated argument of the linker", "run the tool with the argument --dependency-f",
     "Linker.Extra", "-Wl,--dependency-f,%deps"},
    {"a listing in an argument", "write ", kExtra, "-Wa,-adhlns=%list"},
    {"declarations in an argument", "write ", kExtra, "-aux-info %info"},
    {"a dump of the compiler", "run the tool with the argument -fdump-tree", kExtra,
     "-fdump-tree-original=%dump"},
    {"a dump by a different name of the argument", "run the tool with the argument --dump-tree",
     kExtra, "--dump-tree-original=%dump"},
    {"a dump among other letters", "run the tool with the argument -dpa", kExtra, "-dpa", "",
     [](Hostile& h) { h.AddLinksForDumps(); }},
    {"a plug-in by a different name of the argument",
     "run code with the argument --compare-debug=--plugin", kExtra,
     "--compare-debug=--plugin=./p.so", "", [](Hostile& h) { h.AddPlugin(); }},
    {"a server for modules", "run code with the argument --module-mapper", kExtra,
     "-x c++ --module-mapper=|./trap.sh --modules-ts"},
    {"a different linker", "run code with the argument -fuse-ld=lld", "Linker.Extra",
     "-fuse-ld=lld -Wl,-mllvm,-load=./p.so", "", [](Hostile& h) { h.AddPlugin(); }, "", false,
     "/usr/bin/ld.lld"},
    {"a different language", "run the tool with the argument -x", "Compiler.Extra", "-x f95 -cpp",
     kNode,
     [](Hostile& h) {
       h.project.Write("src/a.c", "module foo\ninteger :: a\nend module\n");
       h.AddLink("foo.mod0");
     },
     "", false, "/usr/bin/gfortran"},
    {"a source among the arguments of a link", "run the tool with the argument x.c", "Linker.Extra",
     "-fstack-usage x.c", "",
     [](Hostile& h) {
       h.project.Write("x.c", "int x(void) { return 1; }\n");
       h.AddLink(kOutputs + "app-x.su");
     }},
    {"a source of a different name among them", "run the tool with the argument -x", "Linker.Extra",
     "-fstack-usage -x c x.o", "",
     [](Hostile& h) {
       h.project.Write("x.o", "int x(void) { return 1; }\n");
       h.AddLink(kOutputs + "app-x.su");
     }},
    {"an object that is a source", "run the tool with the argument a.i", "Linker.Extra",
     "-fstack-usage", "",
     [](Hostile& h) {
       h.Set("Compiler.Extra", "-E", kNode);
       h.Set(kOutput, "a.i", kNode);
       h.AddLink(kOutputs + "app-a.su");
     }},
    {"files of a link that generates code", "write ", "Linker.Extra",
     "--coverage -flto-partition=max", "",
     [](Hostile& h) {
       h.Set(kExtra, "-flto");
       h.AddLink(kOutputs + "app.ltrans1.ltrans.gcno");
     },
     "build/Standard/app.ltrans1.ltrans.gcno", true},
    {"an intermediate file by a different name of the argument", "write ", kExtra, "--save-temps",
     "", [](Hostile& h) { h.AddLink(kObjects + "a.c.i"); }, "build/Standard/app.obj/src/a.c.i",
     true},
    {"a file whose name starts with a dash", "write ", kExtra, "-MD -aux-info", "",
     [](Hostile& h) { h.AddLink("-MD"); }, "-MD", true},
    {"a map whose name the compiler adds", "run the tool with the argument -Map", "Linker.Extra",
     "-Wl,-Map", "", [](Hostile& h) { h.AddLink("--library=stdc++"); }},
    {"a different output of an assembler", "run the tool with the argument ", "Compiler.Extra",
     "%victim", "src/z.asm", [](Hostile& h) { h.AddAssembly(); }, "", false, "/usr/bin/sdas8051"},
    {"a listing that a link updates", "write ", "Linker.Extra", "-V", "",
     [](Hostile& h) {
       h.Set("Target.Toolchain", "sdcc-mcs51");
       h.AddLink(kObjects + "a.c.rst");
     },
     "build/Standard/app.obj/src/a.c.rst", true, "/usr/bin/sdcc"},
    {"an intermediate file through a link", "write ", kExtra, "-save-temps", "",
     [](Hostile& h) {
       fs::create_directories(h.project.PathOf("build/Standard/app.obj/src"));
       fs::create_symlink(h.Outside("temp"), h.project.PathOf("build/Standard/app.obj/src/a.c.i"));
     },
     "build/Standard/app.obj/src/a.c.i", true},
    {"a report through a link", "write ", kExtra, "-fopt-info-all=link/dump", "",
     [](Hostile& h) { fs::create_directory_symlink(h.Outside(""), h.project.PathOf("link")); },
     "link"},
};

TEST(CliTrust, AHostileProjectRunsAndWritesNothingUntilItIsTrusted) {
  constexpr std::string_view kUses =
      "status;check;tree;options list;log;report;rebuild -v;export compile-commands;"
      "export sarif;clean;build;globals;report --errors;add src/a.h";
  // Each row is built, and the other commands take turns over the rows.
  constexpr std::size_t kUsesOfARow = 4;
  const auto uses = Split(kUses, ';');
  std::size_t next = 0;
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const std::string wish = row.wish;
    if (access(row.needs, X_OK) != 0) continue;
    Hostile hostile;
    CliProject& project = hostile.project;
    hostile.around.Write("bystander", "precious");
    hostile.AddTrap("trap.sh");
    if (Has(wish, "plug")) hostile.AddPlugin();
    if (row.plant != nullptr) row.plant(hostile);
    hostile.Set(row.option, row.value, row.node);
    const auto before = hostile.World();
    for (std::size_t i = 0; i <= kUsesOfARow; ++i) {
      const std::string_view use = i == 0 ? "build" : uses[next++ % uses.size()];
      const auto answer = project.Run(Words(use));
      if (use.starts_with("add ")) project.Run({"undo"});
      EXPECT_EQ(hostile.World(), before) << use << answer.out << answer.err;
      if (i != 0) continue;
      EXPECT_EQ(answer.code, 3) << answer.out << answer.err;
      EXPECT_TRUE(Has(answer.err, "The project wants to " + wish)) << answer.err;
      EXPECT_TRUE(Has(answer.err, "`tarn trust ")) << answer.err;
      const std::string link = "(the link " + project.PathOf(row.link) + " leads to ";
      EXPECT_EQ(Has(answer.err, link + fs::path(hostile.Outside("")).parent_path().string()),
                *row.link != '\0')
          << answer.err;
    }
    project.Run({"rebuild", "--trust"});
    EXPECT_EQ(hostile.World() == before, row.isNever) << "what it does with trust";
  }
}

TEST(CliTrust, AScriptOfTheProjectNeedsTrust) {
  Hostile hostile;
  const std::string ini = hostile.Outside("file.ini");
  const std::string script = "tarn.WriteIniValue('S', 'Key', 'value', '" + ini + "')\n";
  hostile.project.Write("own.lua", script);
  hostile.around.Write("users.lua", script);
  hostile.project.ExpectRefusal({"run", "own.lua"}, 3, "run the script");
  hostile.project.ExpectRefusal({"run", hostile.Outside("users.lua")}, 3, "wants to write " + ini);
  EXPECT_FALSE(fs::exists(ini));
  hostile.project.Out({"run", "--trust", "own.lua"});
  EXPECT_TRUE(Has(hostile.around.Read("file.ini"), "value"));
}

TEST(CliTrust, NothingOutsideIsDeletedWithoutTrustThatABuildMadeThere) {
  Hostile hostile;
  hostile.Set(kOutput, "%a.o", kNode);
  hostile.project.Out({"build", "--trust"});
  ASSERT_TRUE(hostile.around.Exists("a.o"));
  const auto answer = hostile.project.Run({"clean"});
  EXPECT_EQ(answer.code, 3) << answer.out << answer.err;
  EXPECT_TRUE(Has(answer.err, "delete " + hostile.Outside("a.o"))) << answer.err;
  EXPECT_TRUE(hostile.around.Exists("a.o"));
  hostile.project.Out({"clean", "--trust"});
  EXPECT_FALSE(hostile.around.Exists("a.o"));
}

// This includes writing a lock file.
TEST(CliTrust, AFileOutsideIsSavedAndLockedOnlyForATrustedProject) {
  for (const char* name : {"app", "demo"}) {
    SCOPED_TRACE(name);
    Hostile hostile;
    CliProject& project = hostile.project;
    const std::string file = name + std::string(*name == 'a' ? ".tapp" : ".tprj");
    fs::rename(project.PathOf(file), hostile.Outside(file));
    fs::create_symlink(hostile.Outside(file), project.PathOf(file));
    const auto before = hostile.World();
    project.Out({"build"});
    project.ExpectRefusal({"rename", *name == 'a' ? "c.c" : "app", "d"}, 3,
                          "the link " + project.PathOf(file) + " leads to " +
                              hostile.Outside(file) + ", which is outside the folder of the");
    EXPECT_EQ(hostile.World(), before);
    project.Out({"trust"});
    project.Out({"rename", *name == 'a' ? "c.c" : "app", "d"});
    project.Out({"build"});
    EXPECT_TRUE(Has(hostile.around.Read(file), "\"d\""));
    EXPECT_TRUE(hostile.around.Exists(name + std::string(".tlock")));
  }
}

// Options of ordinary projects.
TEST(CliTrust, AProjectThatStaysInsideIsNotAskedAbout) {
  CliProject project;
  fs::create_directory(project.PathOf("inc"));
  project.Write("src/a.ld", "");
  project.Write("more", "-DMORE=1 -Iinc");
  project.Out(
      {"options", "set", "C.Compiler.Extra", "--",
       "-Os -I../inc -Iinc -include src/a.h -DROOT=\"/usr/share\" -isystem /usr/include @more "
       "-ffile-prefix-map=/usr=. -Wa,--fatal-warnings -march=native -isysroot / "
       "-dA -dp -dP -dD --coverage -fno-common -fstack-usage --param max-unroll-times=4 "
       "-Wno-unused -Wp,-DPASSED"});
  project.Out({"options", "set", "Linker.Extra", "--",
               "-Wl,-Map=build/x.map -Wl,--start-group build/Standard/app.obj/c.o -Wl,--end-group "
               "-L/usr/lib -lm -Wl,-rpath,/usr/lib -Wl,--defsym=top=0x20 -T src/a.ld "
               "-Wl,-plugin-opt=-pass-through=-lc --coverage -Wl,-Bstatic -Wl,-Bdynamic "
               "-Wl,-Bsymbolic-functions -Wl,-x -Wl,-R,/usr/lib -Wl,-z,relro "
               "-Wl,-dynamic-linker,/lib64/ld-linux-x86-64.so.2 --sysroot=/"});
  project.Out({"options", "set", "Linker.MapFile", "build/y.map"});
  project.environment.emplace_back("TARN_LAUNCHER", "env");
  const auto answer = project.Run({"build"});
  EXPECT_FALSE(Has(answer.out + answer.err, "trust")) << answer.out << answer.err;
  EXPECT_NE(answer.code, 3);
  // The plug-in runs the program passed in this argument.
  project.Out({"options", "set", "Linker.Extra", "--", "-Wl,-plugin-opt=./run.sh"});
  const auto refused = project.Run({"build"});
  EXPECT_EQ(refused.code, 3);
  EXPECT_TRUE(Has(refused.err, "run code with the argument -plugin-opt=./run.sh")) << refused.err;
}

// Prebuilt objects of link-time optimization are ordinary, too.
TEST(CliTrust, LinkTimeOptimizationNeedsNoTrustByItself) {
  for (const char* prefix : {"", "avr-"}) {
    Hostile hostile;
    CliProject& project = hostile.project;
    const std::string compiler = prefix + std::string("gcc");
    if (access(("/usr/bin/" + compiler).c_str(), X_OK) != 0) continue;
    if (*prefix != '\0') hostile.Set("Target.Toolchain", compiler);
    if (*prefix != '\0') hostile.Set("Target.Device", "atmega328p");
    project.Write("e.c", "int e(void) { return 1; }\n");
    project.RunProgram(compiler, {"-c", "-O2", "-flto", "-ffat-lto-objects", "e.c", "-o", "e.o"});
    fs::create_directory(project.PathOf("thin"));
    project.RunProgram(prefix + std::string("ar"), {"qcsT", "thin/libe.a", "e.o"});
    hostile.Set(kExtra, "-flto");
    hostile.Set("Linker.Extra", "-flto -Lthin -le -Wl,-allow-multiple-definition");
    const auto answer = project.Run({"build"});
    EXPECT_EQ(answer.code, 0) << answer.out << answer.err;
  }
}

TEST(CliTrust, TheListHoldsFoldersWithAllBelowThem) {
  CliProject project;
  project.AddProgram("starter", "#!/bin/sh\nexec \"$@\"\n");
  project.Out({"options", "set", "Build.Launcher", "starter"});
  const std::string folder = fs::canonical(project.PathOf(""));
  const auto isTrusted = [&] { return project.Run({"rebuild"}).code == 0; };
  EXPECT_EQ(project.Out({"trust", "--list"}), "");
  EXPECT_FALSE(isTrusted());
  EXPECT_TRUE(Has(project.Out({"trust", "demo.tprj"}), "trusted: "));
  EXPECT_TRUE(isTrusted());
  EXPECT_TRUE(Has(project.Out({"trust"}), "already trusted: "));
  const std::string above = fs::path(folder).parent_path();
  project.Out({"trust", ".."});
  EXPECT_TRUE(Has(project.Out({"trust", "--list"}), above + "\n"));
  project.Out({"trust", "--revoke"});
  EXPECT_TRUE(isTrusted()) << "the folder above is in the list";
  project.Out({"trust", "--revoke", ".."});
  EXPECT_FALSE(isTrusted());
  EXPECT_EQ(project.Out({"trust", "--list"}), "");
  for (const char* word : {"none", "src/a.c"}) {
    project.ExpectRefusal({"trust", word}, 2, "is neither a folder nor a project file");
  }
}

TEST(CliTrust, CommandsThatChangeTheListAtOnceLoseNothing) {
  CliProject project;
  const auto listed = [&] { return Split(project.Out({"trust", "--list"}), '\n').size(); };
  constexpr std::size_t kCommands = 12;
  std::vector<std::thread> commands;
  for (std::size_t i = 0; i < kCommands; ++i) {
    const std::string folder = "f" + std::to_string(i);
    fs::create_directory(project.PathOf(folder));
    commands.emplace_back([&project, folder] { project.Out({"trust", folder}); });
  }
  for (std::thread& each : commands) each.join();
  EXPECT_EQ(listed(), kCommands + 1) << "with the empty piece after the last line";
  const auto lock = FileSystem::Native().TryLock(project.PathOf("../settings/state/trusted.lock"),
                                                 LockPurpose::Edit);
  ASSERT_TRUE(lock);
  project.ExpectRefusal({"trust"}, 3, "process ");
  EXPECT_EQ(listed(), kCommands + 1);
}

TEST(CliTrust, ANewProjectInANewFolderIsTrustedAndAnImportedOneIsNot) {
  CliProject project;
  project.Out({"new", "fresh", "--compiler", "host-gcc"});
  EXPECT_TRUE(Has(project.Out({"trust", "--list"}), "/fresh\n"));
  fs::create_directory(project.PathOf("full"));
  project.Write("full/other.tprj", project.Read("demo.tprj"));
  project.Out({"new", "full", "--compiler", "host-gcc"});
  EXPECT_FALSE(Has(project.Out({"trust", "--list"}), "/full\n")) << "it holds what others wrote";
}

}  // namespace
}  // namespace tarn::host
