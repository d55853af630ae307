// Read errors: a file that exists and can't be read is not the same as a missing one. Each call
// that reads a file of the project or a definition fails once, one after the other.

#ifdef TARN_FAULTS

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

// A built project with its own definitions, which is restored before each run.
class FailingDisk {
 public:
  FailingDisk() {
    fs::copy(TARN_SHARE, project_.PathOf("share"), fs::copy_options::recursive);
    project_.Point("TARN_ROOT", "share");
    project_.Out({"build"});
    fs::copy(project_.PathOf(""), Kept(), fs::copy_options::recursive);
  }
  ~FailingDisk() { fs::remove_all(Kept()); }

  void PutBack() {
    for (const char* name : {"demo.tprj", "app.tapp", "demo.undo.tstate"}) {
      fs::remove(project_.PathOf(name));
      if (fs::exists(Kept() + name)) fs::copy_file(Kept() + name, project_.PathOf(name));
    }
  }

  // Runs the command with a fault in this call; call 0 means none, and lists the calls instead.
  CliProject::Answer Run(const std::vector<std::string>& words, int call, int error) {
    PutBack();
    const auto environment = project_.environment;
    project_.environment.insert(project_.environment.end(),
                                {{"LD_PRELOAD", TARN_FAULTS},
                                 {"FAULT_PROGRAM", "tarn"},
                                 {"FAULT_BELOW", fs::canonical(project_.PathOf("")).string()},
                                 {"FAULT_AT", std::to_string(call)},
                                 {"FAULT", std::to_string(error)}});
    if (call == 0) project_.environment.emplace_back("FAULT_LOG", project_.PathOf("calls"));
    const auto answer = project_.Run(words);
    project_.environment = environment;
    return answer;
  }

  // Returns the numbers of the calls that read the project or its definitions, and a possible error
  // for each.
  std::vector<std::pair<int, int>> FindReads(const std::vector<std::string>& words) {
    fs::remove(project_.PathOf("calls"));
    Run(words, 0, 0);
    std::istringstream lines(project_.Read("calls"));
    std::vector<std::pair<int, int>> found;
    std::string number, call, kind, path;
    std::map<std::string, std::set<std::string>> files;  // by extension
    while (lines >> number >> call >> kind && std::getline(lines, path)) {
      const bool isRead = call == "read";
      const bool isOpen = call.starts_with("open");
      const std::string extension = fs::path(path).extension();
      const bool isMeant = extension == ".tprj" || extension == ".tapp" ||
                           extension == ".options" || extension == ".tools" ||
                           extension == ".config";
      // All definitions of a kind are read by the same code.
      std::set<std::string>& examined = files[extension];
      if (examined.size() < 2) examined.insert(path);
      if (isMeant && (isRead || isOpen) && examined.contains(path))
        found.emplace_back(std::stoi(number), isRead ? EIO : EACCES);
    }
    return found;
  }

  std::string Files() const { return project_.Read("demo.tprj") + project_.Read("app.tapp"); }

 private:
  std::string Kept() const {
    return fs::path(project_.PathOf("")).parent_path().string() + "-kept/";
  }

  CliProject project_;
};

TEST(CliReadErrors, RefuseEveryCommandAndCostNothing) {
  const std::vector<std::vector<std::string>> commands = {
      {"options", "set", "Compiler.Defines", "A=1"},
      {"options", "set", "Compiler.Defines", "A=1", "--damaged-ok"},
      {"build"},
      {"build", "--damaged-ok"},
      {"status"},
      {"clean", "--damaged-ok"},
  };
  FailingDisk disk;
  const std::string before = disk.Files();
  for (const auto& words : commands) {
    const auto expected = disk.Run(words, 0, 0);
    const std::string after = disk.Files();
    const auto reads = disk.FindReads(words);
    EXPECT_GT(reads.size(), 10U);
    for (const auto& [call, error] : reads) {
      const auto answer = disk.Run(words, call, error);
      SCOPED_TRACE(words[0] + ", call " + std::to_string(call) + ": " + answer.out + answer.err);
      // A second read may succeed; a build may rebuild everything because of the first error.
      if (answer.code == 0 && disk.Files() == after) {
        const std::string said = answer.out.substr(0, answer.out.find('('));
        EXPECT_TRUE(expected.out.starts_with(said) || Has(said, "Built 4 files"));
        continue;
      }
      EXPECT_EQ(answer.code, 3);
      EXPECT_EQ(disk.Files(), before);
      EXPECT_TRUE(Has(answer.out + answer.err, std::strerror(error)));
    }
  }
}

TEST(CliReadErrors, WhatCanNotBeExaminedIsNeitherMissingNorThere) {
  const struct {
    std::vector<std::string> words;
    const char* unknown;  // every call for it fails
    int code;
    const char* said;
    const char* program = "tarn";
  } rows[] = {
      {{"check"}, "src/c.c", 1, "src/c.c can't be read: "},
      {{"check"}, "src", 1, "src/c.c can't be read: "},
      {{"status"}, "src/c.c", 0, "src/c.c can't be read: "},
      {{"status"}, "src/a.h", 0, "src/a.h can't be read: "},
      {{"status"}, "build/Standard/app", 0, "build/Standard/app can't be read: "},
      {{"relocate"}, "app.tapp", 3, "/app.tapp: "},
      {{"relocate"}, "src/c.c", 3, "/src/c.c: "},
      {{"relocate", "src/gone.c", "src/d.c"}, "src/d.c", 3, "/src/d.c: "},
      {{"add", "src/d.c"}, "src/d.c", 2, "/src/d.c can't be added: "},
      {{"add", "--create", "src/d.c"}, "src/d.c", 2, "/src/d.c can't be added: "},
      {{"new", "fresh"}, "fresh", 3, "/fresh/fresh.tprj can't be written: "},
      {{"new", "fresh"}, "fresh/fresh.tprj", 3, "/fresh/fresh.tprj can't be written: "},
      {{"new", "fresh"}, "fresh/src/main.c", 3, "/fresh/src/main.c can't be written: "},
      {{"new", "fresh"}, ".git", 3, "/.git can't be examined: "},
      {{"import", "old/old.prj", "--yes"}, "old/old.tprj", 3, "/old.tprj can't be written: "},
      {{"import", "old/old.prj", "--yes"}, "old/old.tprj", 3, "/old.tprj: ", "perl"},
      {{"import", "old/old.prj", "--yes"}, "old/old.prj", 3, "/old.prj: ", "perl"},
      {{"import", "old/old.prj", "--yes"}, "old/old.tapp", 3, "/old.tapp: ", "perl"},
      {{"undo"}, "demo.tprj", 3, "/demo.tprj can't be read: "},
  };
  CliProject project;
  project.Trust();
  project.Out({"options", "set", "Compiler.Defines", "X"});
  project.Out({"build"});
  project.Edit("old/old.prj", "[Project]\nForm = 1\nName = old\nTarget = HOST\n");
  project.Edit("old/old.tprj", "mine");
  const std::string before = project.Read("app.tapp");
  for (const auto& row : rows) {
    for (const int error : {EIO, EACCES}) {
      const auto environment = project.environment;
      project.environment.insert(
          project.environment.end(),
          {{"LD_PRELOAD", TARN_FAULTS},
           {"FAULT_PROGRAM", row.program},
           {"FAULT_BELOW", fs::canonical(project.PathOf("")).string()},
           {"FAULT_ON", fs::canonical(project.PathOf("")).string() + "/" + row.unknown},
           {"FAULT", std::to_string(error)}});
      const auto answer = project.Run(row.words);
      project.environment = environment;
      const std::string said = answer.out + answer.err;
      SCOPED_TRACE(row.words[0] + ", " + row.unknown + ": " + said);
      EXPECT_EQ(answer.code, row.code);
      EXPECT_TRUE(Has(said, row.said));
      EXPECT_TRUE(Has(said, std::strerror(error)));
      for (const char* untrue : {"is missing", "already exists", "does not exist", "no file"}) {
        EXPECT_FALSE(Has(said, untrue)) << untrue;
      }
      EXPECT_EQ(project.Read("app.tapp"), before);
      EXPECT_EQ(project.Read("old/old.tprj"), "mine");
      if (row.words[0] != "new") continue;
      EXPECT_FALSE(project.Exists("fresh"));
      project.Out(row.words);
      EXPECT_TRUE(project.Exists("fresh/src/main.c"));
      fs::remove_all(project.PathOf("fresh"));
    }
  }
}

}  // namespace
}  // namespace tarn::host

#endif
