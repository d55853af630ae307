#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

// Returns a project's application with an additional option in line 3 and an additional node in
// line 5.
std::string Application(const std::string& option, const std::string& node) {
  std::string sections = option;
  if (!option.empty() && !option.starts_with('<')) {
    const auto dot = option.find('.');
    const auto equal = option.find('=');
    sections = "<Section Header=\"" + option.substr(0, dot) + "\" ><Property Header=\"" +
               option.substr(dot + 1, equal - dot - 1) + "\" Value=\"" + option.substr(equal + 1) +
               "\" /></Section>";
  }
  return "<Application Header=\"app\" Extern=\".\\app.tapp\" Path=\".\\app.tapp\" >\n"
         "<Options><Config Header=\"Standard\" ><Set Header=\"Application\" ><Section "
         "Header=\"Target\" ><Property Header=\"Toolchain\" Value=\"host-gcc\" /></Section>\n" +
         sections +
         "\n</Set></Config></Options><Group Header=\"Sources\" >"
         "<C Header=\"b.c\" Path=\".\\src\\b.c\" />\n" +
         node + "</Group></Application>";
}

std::string Node(const std::string& type, const std::string& path, const std::string& more = "") {
  return "<" + type + " Header=\"n\" Path=\"" + path + "\" " + more + "/>";
}

TEST(CliCheck, NamesEachKindOfFindingWithItsPosition) {
  const struct {
    std::string option, node, wanted;
    std::function<void(CliProject&)> prepare = {};
  } rows[] = {
      {"", "", ""},
      {"", "stray", "Damage\n  app.tapp:5: stray text \"stray\"\n"},
      {"", Node("C", ".\\src\\gone.c"), "Missing files\n  app.tapp:5: src/gone.c is missing\n"},
      {"Linker.Script=x.ld", "", "Missing files\n  app.tapp:3: x.ld is missing (Linker.Script)\n"},
      {"Linker.Script=$(General.ApplicationDir)x.ld", "",
       "Missing files\n  app.tapp:3: x.ld is missing (Linker.Script)\n"},
      // Outputs of tools need not exist, nor a source that is found in an additional folder.
      {"Linker.MapFile=maps/x.map", "", ""},
      {"Directories.AddSrcPaths=more", Node("C", ".\\src\\d.c"), "",
       [](CliProject& project) {
         fs::create_directory(project.PathOf("more"));
         project.Write("more/d.c", "");
       }},
      {"Directories.Include=src; inc ", "",
       "Missing folders\n  app.tapp:3: inc is missing (Directories.Include)\n"},
      {"Linker.LibraryPaths=src", "", ""},
      {"Linker.Libraries=m;nowhere", "",
       "Missing libraries\n  app.tapp:3: the library nowhere was found neither in the library "
       "folders nor among the compiler's libraries (Linker.Libraries)\n"},
      // Other folders next to the compiler's are not searched by the linker.
      {"Linker.Libraries=:git-sh-setup", "",
       "Missing libraries\n  app.tapp:3: the library :git-sh-setup was found neither in the "
       "library "
       "folders nor among the compiler's libraries (Linker.Libraries)\n"},
      {"Linker.Applications=app;nix", "",
       "Invalid values\n  app.tapp:3: Application.Linker.Applications: no application of the "
       "project is called nix\n"},
      // The output of an application, outside of the library folders.
      {"<Section Header=\"Build\" ><Property Header=\"OutputFile\" Value=\"libself.a\" /></Section>"
       "<Section Header=\"Linker\" ><Property Header=\"Libraries\" Value=\"self\" /></Section>",
       "",
       "Missing libraries\n  app.tapp:3: the library self was found neither in the library "
       "folders nor among the compiler's libraries (Linker.Libraries)\n"},
      {"", Node("C", ".\\SRC\\c.c"),
       "Letter case\n  app.tapp:5: SRC/c.c is spelled src/c.c on disk\n"},
      {"Directories.Include=Src", "",
       "Letter case\n  app.tapp:3: Src is spelled src on disk (Directories.Include)\n"},
      {"", Node("C", ".\\Xy.c"),
       "Missing files\n  app.tapp:5: Xy.c is missing: could be XY.c or xy.c\n",
       [](CliProject& project) {
         for (const char* name : {"XY.c", "xy.c"}) project.Write(name, "");
       }},
      {"", Node("C", ".\\src\\b.c"),
       "Duplicate files\n  app.tapp:5: src/b.c is listed more than once\n"},
      {"<Section Header=\"Build\" ><Property Header=\"OutputFile\" "
       "Value=\"build/Standard/app.obj/src/"
       "b.c.o\" /></Section>",
       "",
       "Duplicate outputs\n  app.tapp:4: build/Standard/app.obj/src/b.c.o is also the output of "
       "app.tapp\n"},
      {"", Node("C", "D:\\x\\d.c"),
       "Unreachable drives\n  app.tapp:5: D:\\x\\d.c is on a drive that is not mapped\n"},
      {"", Node("Text", "/etc/passwd"),
       "Absolute paths\n  app.tapp:5: /etc/passwd is an absolute path\n"},
      {"Directories.Include=/usr/include;$(General.ApplicationDir)src", "",
       "Absolute paths\n  app.tapp:3: /usr/include is an absolute path (Directories.Include)\n"},
      {"", Node("C", ".\\src\\a&quot;b.c"), "",
       [](CliProject& project) { project.Write("src/a\"b.c", ""); }},
      // ".." after a link refers to the link's target, as in a build.
      {"Directories.Include=src/link/../inc", Node("C", ".\\src\\link\\..\\d.c"), "",
       [](CliProject& project) {
         fs::create_directories(project.PathOf("far/sub"));
         fs::create_directories(project.PathOf("far/inc"));
         fs::create_directory_symlink(project.PathOf("far/sub"), project.PathOf("src/link"));
         project.Write("far/d.c", "");
       }},
      {"", Node("C", ".\\src"), "Not a file\n  app.tapp:5: src is not a file\n"},
      {"", Node("C", ".\\src\\pipe.c"), "Not a file\n  app.tapp:5: src/pipe.c is not a file\n",
       [](CliProject& project) { mkfifo(project.PathOf("src/pipe.c").c_str(), 0600); }},
      {"Directories.Include=src/a.h", "",
       "Not a folder\n  app.tapp:3: src/a.h is not a folder (Directories.Include)\n"},
      {"Build.Launcher=nosuch -x", "",
       "Missing programs\n  app.tapp:3: nosuch is not installed; it is needed by Build.Launcher\n"},
      {"", "<C Header=\"n\" />", "Nodes without a file\n  app.tapp:5: n does not name a file\n"},
      {"", "<Header Path=\"\" />",
       "Nodes without a file\n  app.tapp:5: <Header> does not name a file\n"},
      {"", "<Group Header=\"n\" />", ""},
      {"", "",
       "Leftover applications\n  demo.tprj:2: former/app.tapp is not part of the project, but may "
       "have "
       "changes that app.tapp lacks\n",
       [](CliProject& project) {
         for (const char* folder : {"former", "more"}) fs::create_directory(project.PathOf(folder));
         project.Write("former/app.tapp", Application("", ""));
         project.Write("former/other.tapp", "<Application Header=\"other\" />");
         project.Write("more/app.tapp", "<Application Header=\"more\" />");
       }},
      {"", Node("C", ".\\lnk\\b.c"),
       "Files with several names\n  app.tapp:5: src/b.c and lnk/b.c are the same file, which is "
       "built twice\n",
       [](CliProject& project) { fs::create_directory_symlink("src", project.PathOf("lnk")); }},
      {"Directories.Include=/usr/include", "",
       "Absolute paths\n  app.tapp:3: /usr/include is an absolute path (Directories.Include)\n"},
      {"Compiler.Optimise=2", "",
       "Unknown options\n  app.tapp:3: no definition contains the option "
       "Application.Compiler.Optimise\n"},
      {"",
       "<C Header=\"n\" Path=\".\\src\\c.c\" ><Options>\n<Config Header=\"Fast\" ><Set "
       "Header=\"X\" >"
       "\n<Section Header=\"S\" ><Property Header=\"P\" Value=\"\" /></Section></Set></Config>"
       "</Options></C>",
       "Unknown options\n  app.tapp:7: no definition contains the option X.S.P\n"
       "Unknown configurations\n  app.tapp:7: options are stored for the configuration Fast, which "
       "the application does not have\n"},
      {"Compiler.Optimize=q", "",
       "Invalid values\n  app.tapp:3: Application.Compiler.Optimize: Invalid value \"q\"; expected "
       "one of: 0, 1, 2, 3, s.\n"},
      {"", Node("Widget", ".\\src\\c.c"),
       "Unknown node types\n  app.tapp:5: Widget is not a type in the configuration file, so n is "
       "not "
       "built\n"},
      {"Build.TranslateTool=none.such", "",
       "Unknown tools\n  demo.tprj:2: no definition contains the tool none.such\n"},
      {"", "",
       "Missing programs\n  g++ is not installed; it is needed by host-gcc.link\n"
       "  gcc is not installed; it is needed by host-gcc.c\n",
       [](CliProject& project) { project.Point("PATH", "src"); }},
      {"", "", "Errors in definitions\n  ",
       [](CliProject& project) {
         project.Point("TARN_ROOT", "share");
         fs::create_directory(project.PathOf("share"));
         fs::copy(std::string(std::getenv("TARN_SOURCE_DIR")) + "/share/config",
                  project.PathOf("share/config"), fs::copy_options::recursive);
         project.Write("share/config/tools/broken.tools",
                       "<Tools><Tool Name=\"a\"><Stop/></Tool></Tools>");
       }},
  };
  for (const auto& row : rows) {
    CliProject project;
    project.Write("app.tapp", Application(row.option, row.node));
    if (row.prepare) row.prepare(project);
    const auto answer = project.Run({"check"});
    SCOPED_TRACE(row.option + row.node + row.wanted + answer.err);
    EXPECT_EQ(answer.code, row.wanted.empty() ? 0 : 1);
    EXPECT_TRUE(answer.out.starts_with(row.wanted)) << answer.out;
    const auto lines = std::count(row.wanted.begin(), row.wanted.end(), '\n');
    const std::string summary = lines > 2 ? "2 findings\n" : "1 finding\n";
    EXPECT_TRUE(answer.out.ends_with(row.wanted.empty() ? "No findings\n" : summary)) << answer.out;
    EXPECT_FALSE(project.Exists("demo.tstate") || project.Exists("build"));
  }
}

TEST(CliCheck, TellsProgramsAndTakesOneApplication) {
  CliProject project;
  project.ExpectRefusal({"check", "src"}, 3, "src");
  if (geteuid() != 0) {
    fs::permissions(project.PathOf("src/c.c"), fs::perms::none);
    EXPECT_EQ(project.Run({"check"}).out,
              "Unreadable files\n  app.tapp:2: src/c.c can't be read\n1 finding\n");
  }
  fs::remove(project.PathOf("app.tapp"));
  const auto refused = project.Run({"check", "--json"});
  EXPECT_EQ(refused.code, 3);
  EXPECT_TRUE(Has(nlohmann::json::parse(refused.out, nullptr, false).value("error", ""),
                  "app.tapp' does not exist"))
      << refused.out;
  project.WriteProject({{"one", {"a.c", "gone.c"}}, {"two", {"b.c", "lost.c"}}});
  project.ExpectRefusal({"check", "--app", "three"}, 2, "three");
  const auto answer = project.Run({"check", "--json", "--app", "two"});
  EXPECT_EQ(answer.code, 1) << answer.err;
  EXPECT_EQ(nlohmann::json::parse(answer.out, nullptr, false),
            nlohmann::json::parse(R"({"damage": [], "definitionErrors": [], "findings": [
      {"kind": "missing-file", "file": ")" +
                                  project.PathOf("two.tapp") + R"(", "line": 2,
       "application": "two", "node": "lost.c", "option": "", "subject": ")" +
                                  project.PathOf("src/lost.c") +
                                  R"(", "text": "src/lost.c is missing"}]})"));
  EXPECT_EQ(project.Run({"check", "-q", "--app", "one"}).out,
            "Missing files\n  one.tapp:2: src/gone.c is missing\n1 finding\n");
}

}  // namespace
}  // namespace tarn::host
