// Projects from elsewhere: what they want to run, and to write outside their folder, is refused
// until the user trusts them. Each hostile project is used with all commands of a user's day while
// the world around it is compared, and then with --trust, so that it shows what it would have done.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

// A hostile project, and the folder that it is after. Whatever runs its code leaves a file there.
struct Hostile {
  CliProject project;
  CliProject around;

  std::string Outside(const std::string& name) const { return around.PathOf(name); }
  // A program in the project that leaves a trace, and does what its arguments say.
  void AddTrap(const std::string& name) {
    fs::create_directories(fs::path(project.PathOf(name)).parent_path());
    std::ofstream(project.PathOf(name)) << "#!/bin/sh\necho \"$0\" >> " << Outside("ran") << "\n"
                                        << "exec \"$@\"\n";
    chmod(project.PathOf(name).c_str(), 0755);
  }
  void Set(const std::string& option, const std::string& value, const std::string& node = "") {
    std::vector<std::string> words{"options", "set"};
    if (!node.empty()) words.insert(words.end(), {"-n", node});
    words.insert(words.end(), {"--", option, value});
    project.Out(words);
  }
  void SetCompiler(const std::string& arguments) { Set("C.Compiler.Extra", arguments); }
  // A specification of the compiler driver that runs the trap instead of the compiler.
  void AddSpecs(const std::string& name) {
    AddTrap("trap.sh");
    fs::create_directories(fs::path(project.PathOf(name)).parent_path());
    std::ofstream(project.PathOf(name)) << "@c:\n./trap.sh true %i\n\n";
  }
  void AddPlugin(const std::string& name) {
    project.Write("p.c",
                  "#include <stdio.h>\n__attribute__((constructor)) static void f(void) {\n"
                  "fclose(fopen(\"" +
                      Outside("ran") +
                      "\", \"a\")); }\n"
                      "int plugin_is_GPL_compatible; int onload(void* p) { return 0; }\n");
    ASSERT_EQ(project.RunProgram("gcc", {"-shared", "-fPIC", "-o", name, "p.c"}).code, 0);
  }

  // Every file outside the project, with what it holds.
  std::map<std::string, std::string> World() const {
    std::map<std::string, std::string> files;
    for (const auto& each : fs::recursive_directory_iterator(around.PathOf(""))) {
      if (each.is_directory()) continue;
      std::ifstream file(each.path());
      files[each.path()] = std::string(std::istreambuf_iterator<char>(file), {});
    }
    return files;
  }
};

using Plant = void (*)(Hostile&);

struct Row {
  const char* name;
  const char* wish;  // that the refusal names
  Plant plant;
  bool isNever = false;  // refused to a trusted project, too
};

const Row kRows[] = {
    {"a launcher in the project", "run the launcher ./trap.sh",
     [](Hostile& h) {
       h.AddTrap("trap.sh");
       h.Set("Build.Launcher", "./trap.sh");
     }},
    {"an installed program as the launcher", "run the launcher sh",
     [](Hostile& h) { h.Set("Build.Launcher", "sh -c 'echo ran >> " + h.Outside("ran") + "'"); }},
    {"an installed launcher with arguments", "run the launcher env",
     [](Hostile& h) {
       h.AddTrap("trap.sh");
       h.Set("Build.Launcher", "env ./trap.sh");
     }},
    {"a tool named by a path", "run the tool ./trap.sh",
     [](Hostile& h) {
       h.AddTrap("trap.sh");
       h.Set("Build.TranslateTool", "./trap.sh", "src/a.c");
     }},
    {"a compiler plug-in", "run code with the argument -fplugin=",
     [](Hostile& h) {
       h.AddPlugin("p.so");
       h.SetCompiler("-fplugin=./p.so");
     }},
    {"a plug-in in a response file", "run code with the argument -fplugin=",
     [](Hostile& h) {
       h.AddPlugin("p.so");
       h.project.Write("more", "-Os -fplugin=./p.so\n");
       h.SetCompiler("@more");
     }},
    {"a plug-in for the preprocessor", "run code with the argument -fplugin=",
     [](Hostile& h) {
       h.AddPlugin("p.so");
       h.SetCompiler("-Xpreprocessor -fplugin=./p.so");
     }},
    {"a linker plug-in", "run code with the argument -plug",
     [](Hostile& h) {
       h.AddPlugin("p.so");
       h.Set("Linker.Extra", "-Wl,-plugin,./p.so");
     }},
    {"the compiler's own programs", "run code with the argument -Bbin/",
     [](Hostile& h) {
       h.AddTrap("bin/as");
       h.SetCompiler("-Bbin/");
     }},
    {"a wrapper of the compiler's programs", "run code with the argument -wrapper",
     [](Hostile& h) {
       h.AddTrap("trap.sh");
       h.SetCompiler("-wrapper ./trap.sh");
     }},
    {"a specification file", "run code with the argument -specs=evil.specs",
     [](Hostile& h) {
       h.AddSpecs("evil.specs");
       h.SetCompiler("-specs=evil.specs");
     }},
    {"a specification of a device", "run code with the argument -mmcu=evil",
     [](Hostile& h) {
       h.Set("Target.Toolchain", "avr-gcc");
       h.Set("Target.Device", "evil");
       h.AddSpecs("device-specs/specs-evil");
     }},
    {"a compiler on a search path that leads into the project", "run ",
     [](Hostile& h) {
       h.AddTrap("gcc");
       for (auto& [name, value] : h.project.environment) {
         if (name == "PATH") value = ".:" + value;
       }
     }},
    {"an output outside", "write ",
     [](Hostile& h) { h.Set("Build.OutputFile", h.Outside("new/a.o"), "src/a.c"); }},
    {"an output that climbs out", "write ",
     [](Hostile& h) {
       const std::string folder = fs::path(h.project.PathOf("")).parent_path();
       h.Set("Build.OutputFile", fs::relative(h.Outside("a.o"), folder), "src/a.c");
     }},
    {"outputs in a folder that is a link", "write ",
     [](Hostile& h) { fs::create_directory_symlink(h.Outside(""), h.project.PathOf("build")); }},
    {"an output that is a link to nothing", "write ",
     [](Hostile& h) {
       fs::create_symlink(h.Outside("a.o"), h.project.PathOf("a.o"));
       h.Set("Build.OutputFile", "a.o", "src/a.c");
     },
     true},
    {"a listing outside", "write ",
     [](Hostile& h) { h.Set("Build.ListingFile", h.Outside("a.lst"), "src/a.c"); }},
    {"a map outside", "write ", [](Hostile& h) { h.Set("Linker.MapFile", h.Outside("map")); }},
    {"a map in an argument", "write ",
     [](Hostile& h) { h.Set("Linker.Extra", "-Wl,-Map=" + h.Outside("map")); }},
    {"an abbreviated argument of the linker", "write ",
     [](Hostile& h) { h.Set("Linker.Extra", "-Wl,--dependency-f," + h.Outside("deps")); }},
    {"a listing in an argument", "write ",
     [](Hostile& h) { h.SetCompiler("-Wa,-adhlns=" + h.Outside("list")); }},
    {"declarations in an argument", "write ",
     [](Hostile& h) { h.SetCompiler("-aux-info " + h.Outside("info")); }},
    {"a dump of the compiler", "write ",
     [](Hostile& h) { h.SetCompiler("-fdump-tree-original=" + h.Outside("dump")); }},
    {"a dump through a link", "write ",
     [](Hostile& h) {
       fs::create_directory_symlink(h.Outside(""), h.project.PathOf("link"));
       h.SetCompiler("-fdump-tree-original=link/dump");
     }},
};

bool NeedsCompiler(const Row& row) {
  return std::string(row.wish).find("-mmcu") != std::string::npos &&
         access("/usr/bin/avr-gcc", X_OK) != 0;
}

TEST(CliTrust, AHostileProjectRunsAndWritesNothingUntilItIsTrusted) {
  const std::vector<std::vector<std::string>> uses = {{"status"},
                                                      {"check"},
                                                      {"tree"},
                                                      {"options", "list"},
                                                      {"log"},
                                                      {"report"},
                                                      {"build"},
                                                      {"rebuild", "-v"},
                                                      {"export", "compile-commands"},
                                                      {"export", "sarif"},
                                                      {"clean"},
                                                      {"build"},
                                                      {"globals"},
                                                      {"report", "--errors"},
                                                      {"add", "src/a.h"},
                                                      {"undo"}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    if (NeedsCompiler(row)) continue;
    Hostile hostile;
    hostile.around.Write("bystander", "precious");
    row.plant(hostile);
    const auto before = hostile.World();
    for (const auto& words : uses) {
      const auto answer = hostile.project.Run(words);
      EXPECT_EQ(hostile.World(), before) << words[0] << answer.out << answer.err;
      if (words[0] != "build") continue;
      EXPECT_EQ(answer.code, 3) << answer.out << answer.err;
      EXPECT_TRUE(Has(answer.err, std::string("The project wants to ") + row.wish)) << answer.err;
      EXPECT_TRUE(Has(answer.err, "`tarn trust ")) << answer.err;
    }
    hostile.project.Run({"rebuild", "--trust"});
    EXPECT_EQ(hostile.World() == before, row.isNever) << "what it does with trust";
  }
}

TEST(CliTrust, AScriptOfTheProjectNeedsTrust) {
  Hostile hostile;
  const std::string ini = hostile.Outside("file.ini");
  const std::string script = "tarn.WriteIniValue('S', 'Key', 'value', '" + ini + "')\n";
  hostile.project.Write("own.lua", script);
  hostile.project.ExpectRefusal({"run", "own.lua"}, 3, "run the script");
  hostile.around.Write("users.lua", script);
  const std::string users = hostile.Outside("users.lua");
  const auto answer = hostile.project.Run({"run", users});
  EXPECT_EQ(answer.code, 3) << answer.out << answer.err;
  EXPECT_TRUE(Has(answer.err, "wants to write " + ini)) << answer.err;
  EXPECT_FALSE(fs::exists(ini));
  hostile.project.Out({"run", "--trust", "own.lua"});
  EXPECT_TRUE(Has(hostile.around.Read("file.ini"), "value"));
}

TEST(CliTrust, NothingOutsideIsDeletedWithoutTrustThatABuildMadeThere) {
  Hostile hostile;
  const std::string output = hostile.Outside("a.o");
  hostile.Set("Build.OutputFile", output, "src/a.c");
  hostile.project.Out({"build", "--trust"});
  ASSERT_TRUE(fs::exists(output));
  const auto answer = hostile.project.Run({"clean"});
  EXPECT_EQ(answer.code, 3) << answer.out << answer.err;
  EXPECT_TRUE(Has(answer.err, "delete " + output)) << answer.err;
  EXPECT_TRUE(fs::exists(output));
  hostile.project.Out({"clean", "--trust"});
  EXPECT_FALSE(fs::exists(output));
}

TEST(CliTrust, AnApplicationOutsideIsSavedOfATrustedProject) {
  Hostile hostile;
  CliProject& project = hostile.project;
  fs::rename(project.PathOf("app.tapp"), hostile.Outside("app.tapp"));
  fs::create_symlink(hostile.Outside("app.tapp"), project.PathOf("app.tapp"));
  const std::string before = hostile.around.Read("app.tapp");
  const std::vector<std::string> set{"options", "set", "Compiler.Defines", "A=1"};
  project.ExpectRefusal(set, 3, "outside the folder of the project");
  EXPECT_EQ(hostile.around.Read("app.tapp"), before);
  project.Out({"trust"});
  project.Out(set);
  EXPECT_TRUE(Has(hostile.around.Read("app.tapp"), "A=1"));
}

// What people clone and build every day.
TEST(CliTrust, AProjectThatStaysInsideIsNotAskedAbout) {
  CliProject project;
  fs::create_directory(project.PathOf("inc"));
  project.Write("src/a.ld", "");
  project.Write("more", "-DMORE=1 -Iinc");
  project.Out(
      {"options", "set", "C.Compiler.Extra", "--",
       "-Os -I../inc -Iinc -include src/a.h -DROOT=\"/usr/share\" -isystem /usr/include @more "
       "-ffile-prefix-map=/usr=. -Wa,--fatal-warnings -march=native"});
  project.Out({"options", "set", "Linker.Extra", "--",
               "-Wl,-Map=build/x.map -Wl,--start-group build/Standard/app.obj/c.o -Wl,--end-group "
               "-L/usr/lib -lm -Wl,-rpath,/usr/lib -Wl,--defsym=top=0x20 -T src/a.ld "
               "-Wl,-plugin-opt=-pass-through=-lc"});
  project.Out({"options", "set", "Linker.MapFile", "build/y.map"});
  project.environment.emplace_back("TARN_LAUNCHER", "env");
  const auto answer = project.Run({"build"});
  EXPECT_FALSE(Has(answer.out + answer.err, "trust")) << answer.out << answer.err;
  EXPECT_NE(answer.code, 3);
  // The plug-in runs a program that it gets in this way.
  project.Out({"options", "set", "Linker.Extra", "--", "-Wl,-plugin-opt=./run.sh"});
  const auto refused = project.Run({"build"});
  EXPECT_EQ(refused.code, 3);
  EXPECT_TRUE(Has(refused.err, "run code with the argument -plugin-opt=./run.sh")) << refused.err;
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
  EXPECT_TRUE(Has(project.Out({"trust"}), "trusted already: "));
  const std::string above = fs::path(folder).parent_path();
  project.Out({"trust", ".."});
  EXPECT_TRUE(Has(project.Out({"trust", "--list"}), above + "\n"));
  project.Out({"trust", "--revoke"});
  EXPECT_TRUE(isTrusted()) << "the folder above is in the list";
  project.Out({"trust", "--revoke", ".."});
  EXPECT_FALSE(isTrusted());
  EXPECT_EQ(project.Out({"trust", "--list"}), "");
  project.ExpectRefusal({"trust", "none"}, 2, "is neither a folder nor a project file");
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
