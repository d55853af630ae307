#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <tuple>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

// Returns the last line of a build without the time: "Built 4 files".
std::string EndOf(const CliProject::Answer& answer) {
  const std::string text = answer.out.substr(0, answer.out.rfind(" ("));
  return text.substr(text.rfind('\n') + 1);
}

std::string Build(CliProject& project) {
  return EndOf(project.Run({"build"}));
}

void Rename(const CliProject& project, const std::string& from, const std::string& to) {
  fs::rename(project.PathOf(from), project.PathOf(to));
}

// Inserts these elements before the application's sources.
void AddNodes(CliProject& project, const std::string& nodes) {
  std::string text = project.Read("app.tapp");
  project.Write("app.tapp", text.insert(text.find("<Group "), nodes));
}

std::string SourceNode(const std::string& path) {
  return "<C Header=\"" + path.substr(path.rfind('\\') + 1) + "\" Path=\"" + path + "\" />";
}

TEST(CliNames, ANameWithALineFeedIsRefusedBeforeAnythingChanges) {
  CliProject project;
  project.Edit("src/a\nb.c", "");
  project.Edit("l\nf/demo.tprj", project.Read("demo.tprj"));
  const std::string before = project.Read("app.tapp");
  const std::string why = ": a name with a control character cannot be used.";
  const struct {
    std::vector<std::string> words;
    int code;
    std::string said;
  } rows[] = {
      {{"add", "src/a\nb.c"}, 2, "/src/a\\x0ab.c can't be added" + why},
      {{"add", "--create", "src/x\ny.c"}, 2, "/src/x\\x0ay.c can't be added" + why},
      {{"trust", "l\nf"}, 2, "/l\\x0af can't be trusted" + why},
      {{"trust", "l\nf/demo.tprj"}, 2, "/l\\x0af/demo.tprj can't be trusted" + why},
      {{"build", "l\nf"}, 3, "/l\\x0af can't be read" + why},
  };
  for (const auto& row : rows) project.ExpectRefusal(row.words, row.code, row.said);
  EXPECT_EQ(project.Read("app.tapp"), before);
  EXPECT_FALSE(project.Exists("src/x\ny.c"));
}

TEST(CliNames, ToolsGetNamesAsTheDiskSpellsThem) {
  CliProject project;
  Rename(project, "src/a.c", "src/A.c");
  Rename(project, "src", "SRC");
  fs::create_directories(project.PathOf("Build/standard"));
  EXPECT_EQ(Build(project), "Built 4 files");
  EXPECT_EQ(Build(project), "Nothing to do");
  EXPECT_TRUE(project.Exists("build/Standard/app"));
  EXPECT_TRUE(fs::is_empty(project.PathOf("Build/standard")));
  EXPECT_TRUE(Has(project.Out({"export", "compile-commands", "-o", "-"}), "SRC/A.c"));
}

TEST(CliNames, AnOptionMeansWhatTheDiskHoldsNow) {
  const struct {
    const char *name, *folder, *listed, *come, *status;
  } cases[] = {
      {"the exact folder comes", "inc", "INC", "INC", "command"},
      {"a folder inside, too", "a/inc/z", "a/INC/z", "a/INC/z", "command"},
      {"the name gets ambiguous", "a/INC/z", "a/inc/z", "a/Inc/z", "command"},
      {"a missing folder comes in another spelling", "x", "inc;x", "INC", "command"},
      {"the exact folder was meant from the start", "inc", "inc", "INC", "up to date"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    CliProject project;
    project.Write("src/c.c", "#include \"r.h\"\nint c(void) { return R; }\n");
    fs::create_directories(project.PathOf(each.folder));
    project.Write(std::string(each.folder) + "/r.h", "#define R 4\n");
    project.Out({"options", "set", "Directories.Include", each.listed});
    EXPECT_EQ(Build(project), "Built 4 files");
    EXPECT_EQ(Build(project), "Nothing to do");
    fs::create_directories(project.PathOf(each.come));
    EXPECT_TRUE(Has(project.Out({"status"}), each.status)) << project.Out({"status"});
  }
}

TEST(CliNames, OutputsOfSimilarNamesAreFilesOfTheirOwn) {
  CliProject project;
  project.WriteProject({{"App", {"m.c", "a/x.c", "A/x.c"}}, {"app", {"n.c"}}});
  fs::create_directories(project.PathOf("src/a"));
  fs::create_directories(project.PathOf("src/A"));
  fs::create_directories(project.PathOf("build/STANDARD"));
  project.Write("build/STANDARD/app", "a user's");
  project.Write("src/m.c", "int a(void), b(void);\nint main(void) { return a() + b(); }\n");
  project.Write("src/n.c", "int main(void) { return 9; }\n");
  project.Write("src/a/x.c", "int a(void) { return 3; }\n");
  project.Write("src/A/x.c", "int b(void) { return 4; }\n");
  EXPECT_EQ(Build(project), "Built 6 files");
  EXPECT_EQ(Build(project), "Nothing to do");
  EXPECT_EQ(project.RunProgram(project.PathOf("build/Standard/App"), {}).code, 7);
  EXPECT_EQ(project.RunProgram(project.PathOf("build/Standard/app"), {}).code, 9);
  for (const char* made : {"App.obj", "app.obj", "App.map", "app.map"}) {
    EXPECT_TRUE(project.Exists(std::string("build/Standard/") + made)) << made;
  }
  for (int i = 0; i < 2; ++i) project.Out({"clean"});
  EXPECT_FALSE(project.Exists("build/Standard/app"));
  EXPECT_EQ(project.Read("build/STANDARD/app"), "a user's");
}

TEST(CliNames, OneFileUnderTwoNamesIsBuiltOnce) {
  for (const char* other : {".\\src\\C.c", ".\\SRC\\c.c", ".\\src\\..\\SRC\\c.c"}) {
    SCOPED_TRACE(other);
    CliProject project;
    AddNodes(project, SourceNode(other));
    const CliProject::Answer built = project.Run({"build"});
    EXPECT_EQ(EndOf(built), "Built 4 files, 1 warning") << built.out;
    EXPECT_TRUE(Has(built.out, "c.c: warning: is listed more than once")) << built.out;
    EXPECT_EQ(Build(project), "Nothing to do");
    // A separate file is built, too.
    fs::create_directories(project.PathOf("SRC"));
    project.Write("src/C.c", "int d;\n");
    project.Write("SRC/c.c", "int e;\n");
    EXPECT_FALSE(Has(Build(project), "warning"));
    EXPECT_EQ(Build(project), "Nothing to do");
  }
}

TEST(CliNames, ANameMeansTheFileThatHasIt) {
  CliProject project;
  project.Write("src/A.c", "int d;\n");
  project.ExpectRefusal({"remove", "src/A.c"}, 2, "src/A.c");
  project.ExpectRefusal({"options", "set", "-n", "src/A.c", "Build.Exclude", "Yes"}, 2, "src/A.c");
  EXPECT_EQ(project.Out({"add", "src/A.c"}), "added src/A.c\n");
  EXPECT_EQ(project.Out({"remove", "SRC/b.c"}), "removed SRC/b.c\n");
  // Even before the first build each has its own command.
  const std::string commands = project.Out({"export", "compile-commands", "-o", "-"});
  EXPECT_TRUE(Has(commands, "src/a.c.o")) << commands;
  EXPECT_TRUE(Has(commands, "src/A.c.o")) << commands;
  EXPECT_EQ(project.Out({"remove", "src/A.c"}), "removed src/A.c\n");
  EXPECT_TRUE(Has(project.Read("app.tapp"), "src\\a.c"));
}

TEST(CliNames, AProjectIsTheSameByWhateverPathItIsOpened) {
  CliProject project;
  fs::create_directories(project.PathOf("p"));
  for (const char* name : {"demo.tprj", "app.tapp", "src"}) {
    Rename(project, name, std::string("p/") + name);
  }
  fs::create_directory_symlink(project.PathOf("p"), project.PathOf("link"));
  EXPECT_EQ(EndOf(project.Run({"build", "link"})), "Built 4 files");
  for (const char* path : {"p", "./P", "link/DEMO.tprj", "link", "p/../link/demo.tprj"}) {
    EXPECT_EQ(EndOf(project.Run({"build", path})), "Nothing to do") << path;
  }
}

TEST(CliNames, ALetterAndAColonBeginADriveForModelAndTools) {
  CliProject project;
  fs::create_directories(project.PathOf("a:b"));
  project.Write("a:b/x.c", "#include \"x.h\"\nint x = X;\n");
  project.Write("a:b/x.h", "#define X 1\n");
  AddNodes(project, SourceNode(".\\a:b\\x.c"));
  EXPECT_EQ(Build(project), "Built 5 files");
  EXPECT_EQ(Build(project), "Nothing to do");
  project.Touch("a:b/x.h");
  EXPECT_EQ(Build(project), "Built 2 files");
  AddNodes(project, SourceNode("a:b\\x.c"));
  EXPECT_TRUE(Build(project).starts_with("Failed"));
}

TEST(CliNames, ALetterAndAColonInADirectiveArePartOfAName) {
  CliProject project;
  for (const char* folder : {"one", "two"}) fs::create_directory(project.PathOf(folder));
  project.Write("two/a:b.h", "#define B 1\n");
  project.Write("src/a.h", "#include <a:b.h>\nint a(void);\n");
  project.Out({"options", "set", "Directories.Include", "one;two"});
  EXPECT_EQ(Build(project), "Built 4 files");
  project.Write("one/a:b.h", "#define B 2\n");
  EXPECT_EQ(Build(project), "Built 3 files") << "it is found before the other one";
  EXPECT_EQ(Build(project), "Nothing to do");
  fs::remove(project.PathOf("one/a:b.h"));
  EXPECT_EQ(Build(project), "Built 3 files");
  // A compiler would wait for the other end of a pipe.
  ASSERT_EQ(mkfifo(project.PathOf("one/a:b.h").c_str(), 0600), 0);
  project.Out({"clean"});
  const auto built = project.Run({"build"});
  EXPECT_TRUE(Has(built.out, "one/a:b.h can't be read")) << built.out;
}

TEST(CliNames, ARenameByLetterCaseIsAChange) {
  const struct {
    const char *name, *from, *to, *end;
  } cases[] = {
      {"a header is missing by its name", "src/a.h", "src/A.h", "Failed"},
      {"a source has another name", "src/c.c", "src/C.c", "Built 2 files"},
      {"a folder of sources", "src", "Src", "Built 4 files"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    CliProject project;
    EXPECT_EQ(Build(project), "Built 4 files");
    Rename(project, each.from, each.to);
    EXPECT_TRUE(Build(project).starts_with(each.end));
    if (std::string(each.end) == "Failed") continue;
    EXPECT_EQ(Build(project), "Nothing to do");
    // Objects of the former name are still up to date.
    Rename(project, each.to, each.from);
    EXPECT_EQ(Build(project), "Built 1 file");
    EXPECT_EQ(Build(project), "Nothing to do");
  }
}

TEST(CliNames, AStepUpAfterASymbolicLinkLeadsFromItsTarget) {
  CliProject project;
  fs::create_directories(project.PathOf("far/sub"));
  fs::create_directory_symlink(project.PathOf("far/sub"), project.PathOf("src/link"));
  project.Write("far/l.h", "#define L 0\n");
  project.Write("src/l.h", "#error found by the letters of its name\n");
  project.Write("far/l.c", "#include \"link/../l.h\"\nint l = L;\n");
  project.Write("src/a.h", "#include \"link/../l.h\"\nint a(void);\n");
  AddNodes(project, SourceNode(".\\src\\link\\..\\l.c"));
  project.Out({"options", "set", "Directories.Include", "src;src/link/.."});
  EXPECT_TRUE(Has(project.Read("app.tapp"), "Path=\".\\src\\link\\..\\l.c\""));
  EXPECT_EQ(Build(project), "Built 5 files");
  EXPECT_EQ(Build(project), "Nothing to do");
  project.Touch("far/l.h");
  EXPECT_EQ(Build(project), "Built 4 files");
  EXPECT_EQ(Build(project), "Nothing to do");
}

TEST(CliNames, AProjectBehindALinkFindsSourcesAboveItsRealFolder) {
  CliProject project;
  fs::create_directories(project.PathOf("deep/p"));
  fs::create_directories(project.PathOf("deep/common"));
  for (const char* name : {"demo.tprj", "app.tapp", "src"}) {
    Rename(project, name, std::string("deep/p/") + name);
  }
  for (const char* name : {"k.c", "n.c"}) {
    project.Write(std::string("deep/common/") + name, std::string("int ") + name[0] + ";\n");
  }
  std::string text = project.Read("deep/p/app.tapp");
  text.insert(text.find("<Group "), SourceNode("..\\common\\k.c"));
  project.Write("deep/p/app.tapp", text);
  fs::create_directory_symlink(project.PathOf("deep/p"), project.PathOf("link"));

  EXPECT_EQ(EndOf(project.Run({"build", "link"})), "Built 5 files");
  EXPECT_EQ(EndOf(project.Run({"build", "link"})), "Nothing to do");
  project.Out({"add", "link/demo.tprj", "deep/common/n.c"});
  text = project.Read("deep/p/app.tapp");
  for (const char* path : {"Path=\"..\\common\\k.c\"", "Path=\"..\\common\\n.c\""}) {
    EXPECT_TRUE(Has(text, path)) << text;
  }
  EXPECT_EQ(EndOf(project.Run({"build", "deep/p"})).substr(0, 5), "Built");
  project.Out({"remove", "link/demo.tprj", "deep/common/n.c"});
  EXPECT_FALSE(Has(project.Read("deep/p/app.tapp"), "n.c"));
}

TEST(CliNames, NoByteInAFolderNameIsSpecial) {
  for (const std::string name :
       {"a,b", "50%", "100%d", "a b", "x#y", "x$y", "$(Build.Tool)", "it's", "a;b", "a&b", "@c",
        "p(q)", "\xC3\xBC", "a:b", "a\"b", "--o", "[x]"}) {
    SCOPED_TRACE(name);
    CliProject project;
    fs::create_directories(project.PathOf(name + "/inc"));
    Rename(project, "src", name + "/src");
    Rename(project, name + "/src/a.h", name + "/inc/a.h");
    for (const char* file : {"demo.tprj", "app.tapp"}) Rename(project, file, name + "/" + file);
    std::string text = project.Read(name + "/app.tapp");
    text.replace(text.find("</Section>"), 10,
                 "</Section><Section Header=\"Directories\" ><Property Header=\"Include\" "
                 "Value=\"$(General.ApplicationDir)inc\" /></Section>");
    project.Write(name + "/app.tapp", text);
    const std::string folder = "./" + name;
    const auto built = project.Run({"build", folder});
    EXPECT_EQ(EndOf(built), "Built 4 files") << built.out << built.err;
    EXPECT_EQ(EndOf(project.Run({"build", folder})), "Nothing to do");
    EXPECT_TRUE(project.Exists(name + "/build/Standard/app.map"));
    fs::remove_all(project.PathOf(name + "/build"));
    EXPECT_EQ(EndOf(project.Run({"build", folder})), "Built 4 files");
    EXPECT_TRUE(project.Exists(name + "/build/Standard/app.map"));
    fs::remove(project.PathOf(name + "/inc/a.h"));
    EXPECT_TRUE(EndOf(project.Run({"build", folder})).starts_with("Failed"));
  }
}

TEST(CliNames, AFileThatIsListedTwiceIsBuiltAndLinkedOnce) {
  CliProject project;
  AddNodes(project, SourceNode(".\\src\\a.c"));
  const CliProject::Answer built = project.Run({"build"});
  EXPECT_EQ(EndOf(built), "Built 4 files, 1 warning");
  EXPECT_TRUE(Has(built.out, "src/a.c: warning: is listed more than once")) << built.out;
  EXPECT_EQ(Build(project), "Nothing to do");
  EXPECT_FALSE(Has(project.Out({"status"}), "never"));

  project.ExpectRefusal({"remove", "a.c"}, 2, "\"a.c#1\" the first");
  project.ExpectRefusal({"remove", "src/a.c"}, 2, "several times. APP/src/a.c is");
  project.ExpectRefusal({"remove", "a.c#3"}, 2,
                        "No file, group or application is called \"a.c#3\"");
  EXPECT_EQ(project.Out({"remove", "Sources/a.c"}), "removed Sources/a.c\n");
  AddNodes(project, SourceNode(".\\src\\a.c") + SourceNode(".\\src\\b.c"));
  EXPECT_EQ(project.Out({"remove", "src/b.c#2"}), "removed src/b.c#2\n");
  const std::string tree = project.Out({"tree"});
  EXPECT_LT(tree.find("b.c"), tree.find("Sources")) << tree;
}

TEST(CliNames, TwoSourcesWithOneOutputAreAnError) {
  CliProject project;
  for (const char* source : {"src/a.c", "src/c.c"}) {
    project.Out({"options", "set", "-n", source, "Build.OutputFile", "build/same.o"});
  }
  const CliProject::Answer built = project.Run({"build"});
  EXPECT_EQ(built.code, 1);
  EXPECT_TRUE(Has(built.out, "src/a.c and ")) << built.out;
  EXPECT_TRUE(Has(built.out, "have the same output file")) << built.out;
  EXPECT_FALSE(project.Exists("build/same.o"));
  // An excluded file causes no conflict.
  project.Out({"options", "set", "-n", "src/c.c", "Build.Exclude", "Yes"});
  EXPECT_EQ(Build(project), "Built 3 files");
  // Names that differ only in letter case are different files.
  project.Out({"options", "set", "-n", "src/c.c", "Build.Exclude", "No"});
  project.Out({"options", "set", "-n", "src/c.c", "Build.OutputFile", "build/Same.o"});
  EXPECT_EQ(Build(project), "Built 2 files");
  EXPECT_EQ(Build(project), "Nothing to do");
}

TEST(CliNames, NamesOnTheNetworkStayAsTheyAre) {
  CliProject project;
  const std::string nodes = SourceNode("\\\\server\\share\\u.c") + SourceNode("//server/share/v.c");
  AddNodes(project, nodes);
  project.Out({"options", "set", "Compiler.Optimize", "1"});
  const std::string text = project.Read("app.tapp");
  for (const char* path : {"Path=\"\\\\server\\share\\u.c\"", "Path=\"//server/share/v.c\""}) {
    EXPECT_TRUE(Has(text, path)) << text;
  }
  const CliProject::Answer built = project.Run({"build"});
  EXPECT_EQ(built.code, 1);
  EXPECT_TRUE(Has(built.out, "\\\\server\\share\\u.c: No such file")) << built.out;
}

TEST(CliNames, ANameThatMeansNothingIsAnErrorWithTheNearestOne) {
  CliProject project;
  project.Trust();
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"remove", "src/aa.c"}, "Did you mean \"src/a.c\""},
      {{"options", "get", "-n", "Source", "Build.Exclude"}, "Did you mean \"Sources\""},
      {{"build", "--app", "ap"}, "Did you mean \"app\""},
      {{"build", "--config", "Fsat"}, "Did you mean \"Fast\""},
  };
  for (const auto& [arguments, said] : cases) project.ExpectRefusal(arguments, 2, said);
  project.Write("x.lua",
                "print(pcall(host.build, 'build', 'ap'))\nprint(pcall(host.build, 'biuld'))\n"
                "print(host.build('build', 'APP'))\n");
  const std::string out = project.Out({"run", "x.lua"});
  for (const char* said : {"no application \"ap\" in this project. Did you mean \"app\"?",
                           "Did you mean \"build\"?", "succeeded\t4\t0"}) {
    EXPECT_TRUE(Has(out, said)) << out;
  }
}

TEST(CliNames, ApplicationsWithLabelsThatDifferInLettersOnlyAreApart) {
  CliProject project;
  project.Trust();
  for (const char* name : {"one", "two"}) {
    project.Write(std::string("src/") + name + ".c", "int main(void) { return 0; }\n");
  }
  project.Write("src/two.c", "int more[999] = {1};\nint main(void) { return more[1]; }\n");
  project.WriteProject({{"App", {"one.c"}}, {"app", {"two.c"}}});
  EXPECT_EQ(Build(project), "Built 4 files");
  const std::string rebuilt = project.Out({"rebuild", "-a", "app"});
  EXPECT_TRUE(Has(rebuilt, "src/two.c") && !Has(rebuilt, "src/one.c")) << rebuilt;
  EXPECT_NE(rebuilt.substr(rebuilt.find("\nApp ") + 4, 30),
            rebuilt.substr(rebuilt.find("\napp ") + 4, 30));
  for (const auto& [name, own, other] : {std::tuple{"App", "one.c", "two.c"},
                                         {"app", "two.c", "one.c"},
                                         {"./app.tapp", "two.c", "one.c"}}) {
    for (const char* command : {"tree", "export"}) {
      std::vector<std::string> words = {command, "-a", name};
      if (words[0] == "export") words.insert(words.begin() + 1, {"compile-commands", "-o", "-"});
      const std::string out = project.Out(words);
      EXPECT_TRUE(Has(out, own) && !Has(out, other)) << name << out;
    }
  }
  project.Out({"config", "add", "Slow", "-a", "app"});
  EXPECT_FALSE(Has(project.Read("App.tapp"), "Slow"));
  project.Out({"clean", "-a", "App"});
  EXPECT_FALSE(project.Exists("build/Standard/App"));
  EXPECT_TRUE(project.Exists("build/Standard/app"));
  for (const char* command : {"clean", "build", "tree", "status"}) {
    project.ExpectRefusal({command, "-a", "APP"}, 2,
                          "several applications \"APP\". Specify one by its path: App.tapp, "
                          "app.tapp");
  }
  EXPECT_EQ(project.Run({"check"}).out,
            "Duplicate labels\n  demo.tprj:4: the labels of the applications App.tapp and app.tapp "
            "differ only in letter case\n1 finding\n");
  project.Write("x.lua",
                "print(pcall(host.size, 'APP'))\nprint(host.build('clean', 'app'))\n"
                "print(#host.size('app'))\n");
  EXPECT_TRUE(Has(project.Out({"run", "x.lua"}), "several applications"));
  EXPECT_FALSE(project.Exists("build/Standard/app"));

  // Equal labels don't affect selection by path.
  for (const char* file : {"demo.tprj", "app.tapp"}) {
    std::string text = project.Read(file);
    text.replace(text.find("Header=\"app\""), 12, "Header=\"App\"");
    project.Write(file, text);
  }
  project.ExpectRefusal({"build", "-a", "App"}, 2, "several applications");
  const std::string out = project.Out({"build", "-a", "app.tapp"});
  EXPECT_TRUE(Has(out, "src/two.c") && !Has(out, "src/one.c")) << out;
}

TEST(CliNames, AnEmptyNameIsNotTheWholeProject) {
  CliProject project;
  project.Trust();
  project.Out({"build"});
  const std::vector<std::string> commands[] = {
      {"clean", "--app", ""},
      {"clean", "-a", ""},
      {"build", "--app="},
      {"rebuild", "--app=", "app"},
      {"build", "-c", ""},
      {"status", "--config", ""},
      {"tree", ""},
      {"options", "list", "-n", ""},
      {"options", "set", "Compiler.Optimize", "1", "--node", ""},
      {"add", "src/a.c", "--to", ""},
      {"export", "compile-commands", "--config", ""},
  };
  for (const auto& command : commands) project.ExpectRefusal(command, 2, "needs a ");
  project.Write("x.lua", R"(
    for _, call in ipairs({
      function() host.build("clean", "") end, function() host.build("clean", "app", "b", "c") end,
      function() host.size("") end, function() host.size("nope") end,
      function() host.size("app", "b") end, function() host.wait("app") end,
      function() host.add_configuration("x", "", "y") end }) do
      assert(not pcall(call))
    end
    assert(host.size("app") ~= ""))");
  project.Out({"run", "x.lua"});
  EXPECT_TRUE(project.Exists("build/Standard/app"));
}

TEST(CliNames, NamesThatAProjectCanNotStoreAreRefused) {
  CliProject project;
  for (const std::string name : {"&quot;x", "a&slash;", "a\x7f"}) {
    project.ExpectRefusal({"new", name, "--compiler", "host-gcc"}, 2, "name can't contain");
    EXPECT_FALSE(project.Exists(name));
    project.Write("src/" + name + ".c", "");
    EXPECT_EQ(project.Run({"add", "src/" + name + ".c"}).code, 2) << name;
    project.ExpectRefusal({"rename", "src/a.c", name}, 2, "not a valid name for a node");
  }
  EXPECT_FALSE(Has(project.Read("app.tapp"), "&"));
  // Written by hand. Without trust, no tool gets such an argument at all.
  project.Trust();
  for (const std::string name : {"c\x01.c", "c\x7f.c"}) {
    project.Write("src/" + name, "int d;\n");
    AddNodes(project, SourceNode(".\\src\\" + name));
    const auto built = project.Run({"build"});
    EXPECT_EQ(built.code, 1);
    EXPECT_TRUE(Has(built.out, "its name holds a control character")) << built.out;
  }
}

TEST(CliNames, APercentSignInANameIsNotReplacedByTheLinker) {
  CliProject project;
  for (const std::string name : {"a%b", "%"}) {
    project.Out({"new", name, "--compiler", "host-gcc"});
    project.Out({"build", name});
    EXPECT_TRUE(project.Exists(name + "/build/Standard/" + name + ".map"));
    EXPECT_TRUE(Has(project.Out({"build", name}), "Nothing to do"));
    for (const auto& each : fs::directory_iterator(project.PathOf(name))) {
      EXPECT_FALSE(Has(each.path().filename().string(), "tmp")) << each;
    }
  }
}

TEST(CliNames, TheTypeOfANodeDecidesTheLanguage) {
  CliProject project;
  Rename(project, "src/c.c", "src/c.C");
  project.Write("src/c.C", "int c(void) { int class = 3; return class; }\n");
  EXPECT_EQ(Build(project), "Built 4 files");
}

}  // namespace
}  // namespace tarn::host
