// Projects whose files were moved.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "hosts/CliProject.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

TEST(CliRelocate, AMovedFolderIsFoundAndTheProjectIsBuilt) {
  CliProject project;
  const std::string before = project.Read("app.tapp");
  fs::create_directories(project.PathOf("fw"));
  fs::rename(project.PathOf("src"), project.PathOf("fw/code"));
  const std::string moves =
      "src/a.c -> fw/code/a.c\nsrc/b.c -> fw/code/b.c\nsrc/c.c -> fw/code/c.c\n";
  EXPECT_EQ(project.Out({"relocate", "--dry-run"}), moves);
  EXPECT_EQ(project.Read("app.tapp"), before);
  EXPECT_EQ(project.Out({"relocate"}), moves);
  EXPECT_EQ(project.Out({"relocate"}), "Nothing is missing\n");
  EXPECT_EQ(project.Run({"build"}).code, 0);
  const std::string after = project.Read("app.tapp");
  fs::rename(project.PathOf("fw/code"), project.PathOf("src"));
  EXPECT_TRUE(Has(project.Out({"relocate", "--json", "fw/code", "src"}), "\"complete\": true"));
  EXPECT_EQ(project.Read("app.tapp"), before);
  EXPECT_NE(after, before);
  project.Out({"undo"});
  EXPECT_TRUE(Has(project.Read("app.tapp"), ".\\fw\\code\\a.c"));
}

TEST(CliRelocate, AMovedApplicationIsFoundAndItsSourcesStay) {
  CliProject project;
  const auto setAndReset = [&project] {
    project.Out({"options", "set", "Compiler.Defines", "X"});
    project.Out({"options", "reset", "Compiler.Defines"});
  };
  setAndReset();
  fs::create_directories(project.PathOf("apps"));
  fs::rename(project.PathOf("app.tapp"), project.PathOf("apps/app.tapp"));
  project.ExpectRefusal({"build"}, 3, "can't be opened");
  EXPECT_TRUE(Has(project.Out({"relocate"}), "app.tapp -> apps/app.tapp\n"));
  EXPECT_EQ(project.Run({"build"}).code, 0);
  for (const char* command : {"undo", "redo"}) {
    const bool isBack = command == std::string("undo");
    fs::rename(project.PathOf(isBack ? "apps/app.tapp" : "app.tapp"),
               project.PathOf(isBack ? "app.tapp" : "apps/app.tapp"));
    project.Out({command});
    EXPECT_EQ(project.Run({"build"}).code, 0) << command;
  }
  const std::string text = project.Read("demo.tprj") + project.Read("apps/app.tapp");
  setAndReset();
  EXPECT_EQ(project.Read("demo.tprj") + project.Read("apps/app.tapp"), text)
      << "as a save writes it";
  EXPECT_FALSE(project.Exists("app.tapp"));
}

// Links are not followed, and files outside don't belong to the project.
TEST(CliRelocate, AFileThatANamedFolderLacksIsNamedThere) {
  CliProject project;
  fs::rename(project.PathOf("src"), project.PathOf("lib"));
  fs::remove(project.PathOf("lib/b.c"));
  const auto answer = project.Run({"relocate", "src", "lib"});
  EXPECT_EQ(answer.code, 1);
  EXPECT_TRUE(Has(answer.err, "lib/b.c was not found")) << answer.err;
  EXPECT_FALSE(Has(answer.err, "src/b.c")) << answer.err;
}

TEST(CliRelocate, APipeIsNoPlaceOfAFile) {
  CliProject project;
  fs::create_directory(project.PathOf("moved"));
  fs::rename(project.PathOf("src/a.c"), project.PathOf("../a.c"));
  ASSERT_EQ(mkfifo(project.PathOf("moved/a.c").c_str(), 0666), 0);
  project.ExpectRefusal({"relocate"}, 1, "src/a.c was not found");
}

TEST(CliRelocate, LinksAreNotFollowed) {
  CliProject project;
  const CliProject other;
  fs::create_directories(project.PathOf("fw"));
  fs::rename(project.PathOf("src/a.c"), project.PathOf("fw/a.c"));
  fs::create_directory(project.PathOf("aa"));
  fs::create_symlink(project.PathOf("fw/a.c"), project.PathOf("aa/a.c"));
  fs::create_directory_symlink(project.PathOf("fw"), project.PathOf("src/fw"));
  fs::remove(project.PathOf("src/b.c"));
  fs::create_directory_symlink(other.PathOf("src"), project.PathOf("other"));
  const auto answer = project.Run({"relocate"});
  EXPECT_EQ(answer.out, "src/a.c -> fw/a.c\n");
  EXPECT_TRUE(Has(answer.err, "src/b.c was not found")) << answer.err;
}

TEST(CliRelocate, WhatIsOpenIsLeftToTheUser) {
  CliProject project;
  for (const char* folder : {"x", "y"}) {
    fs::create_directories(project.PathOf(folder));
    project.Write(folder + std::string("/a.c"), "");
  }
  fs::rename(project.PathOf("src/b.c"), project.PathOf("x/b2.c"));
  fs::remove(project.PathOf("src/a.c"));
  const std::string before = project.Read("app.tapp");
  const auto answer = project.Run({"relocate"});
  EXPECT_EQ(answer.code, 1);
  EXPECT_EQ(answer.err,
            "tarn: src/a.c could be one of several files:\n  x/a.c\n  y/a.c\n"
            "tarn: src/b.c was not found\n"
            "tarn: Use `tarn relocate OLD NEW` to specify where a file or folder is.\n");
  EXPECT_EQ(project.Read("app.tapp"), before);
  EXPECT_EQ(project.Out({"relocate", "src/b.c", "x/b2.c"}), "src/b.c -> x/b2.c\n");
  EXPECT_EQ(project.Out({"relocate", "src/a.c", "y/a.c"}), "src/a.c -> y/a.c\n");
  EXPECT_EQ(project.Out({"relocate", "none", "x"}), "None of it is in the project\n");
}

TEST(CliRelocate, WhatANodeCanNotBecomeIsRefused) {
  CliProject project;
  project.Write("src/a.txt", "");
  project.Write("other.tapp", "<Application Header=\"other\" />");
  fs::create_directories(project.PathOf("src/sub/sub"));
  project.Write("src/sub/a.c", "");
  project.Out({"add", "src/sub/a.c"});
  const std::string before = project.Read("demo.tprj") + project.Read("app.tapp");
  const struct {
    const char *from, *to, *said;
  } rows[] = {
      {"src/a.c", "demo.tprj", "demo.tprj is a different kind of file"},
      {"src/a.c", "other.tapp", "other.tapp is a different kind of file"},
      {"src/a.c", "src/a.txt", "src/a.txt is a different kind of file"},
      {"src/a.c", "src/sub", "src/sub is a folder, not a file"},
      {"src/a.c", "src/b.c", "src/b.c is already in the project"},
      {"src", "src/a.c", "src/a.c is not a folder"},
      {"src", "src/sub", "src/sub/a.c is already in the project"},
      {"app.tapp", "src/a.c", "src/a.c is a different kind of file"},
      {"app.tapp", "src", "src is a folder, not a file"},
      {"src/a.c", "pipe.c", "pipe.c is not a regular file"},
  };
  ASSERT_EQ(mkfifo(project.PathOf("pipe.c").c_str(), 0666), 0);
  for (const auto& row : rows) {
    project.ExpectRefusal({"relocate", row.from, row.to}, 2,
                          row.said + std::string("; nothing was changed."));
    EXPECT_EQ(project.Read("demo.tprj") + project.Read("app.tapp"), before) << row.to;
  }
}

TEST(CliRelocate, NothingIsWrittenWhereNothingMayBe) {
  CliProject project;
  fs::rename(project.PathOf("src"), project.PathOf("code"));
  const std::string before = project.Read("app.tapp");
  project.ExpectRefusal({"relocate", "src", "none"}, 2, "none does not exist.");
  project.ExpectRefusal({"relocate", "--below", "none"}, 3, "none: No such file or directory");
  project.ExpectRefusal({"relocate", "--below", ".", "src", "code"}, 2, "--below is for a search");
  auto lock = FileSystem::Native().TryLock(project.PathOf("demo.tlock"), LockPurpose::Edit);
  ASSERT_TRUE(lock);
  project.ExpectRefusal({"relocate", "--no-wait"}, 3, "Another program is changing");
  lock->reset();
  ASSERT_EQ(chmod(project.PathOf("app.tapp").c_str(), 0444), 0);
  project.ExpectRefusal({"relocate"}, 3,
                        "app.tapp can't be saved, and nothing was changed: the file is read-only");
  ASSERT_EQ(chmod(project.PathOf("app.tapp").c_str(), 0644), 0);
  project.Write("app.tapp", before + "<");
  project.ExpectRefusal({"relocate"}, 3, "app.tapp: it is damaged: ");
  EXPECT_EQ(project.Read("app.tapp"), before + "<");
}

TEST(CliRelocate, AnApplicationOutsideIsChangedOnlyIfTheUserSaysSo) {
  CliProject project;
  fs::create_directories(project.PathOf("inner"));
  fs::rename(project.PathOf("demo.tprj"), project.PathOf("inner/demo.tprj"));
  EXPECT_EQ(project.Out({"relocate", "inner", "app.tapp", "app.tapp"}),
            "None of it is in the project\n");
  EXPECT_TRUE(Has(project.Out({"relocate", "inner", "inner/app.tapp", "app.tapp", "--outside-ok"}),
                  "inner/app.tapp -> app.tapp\n"));
  fs::rename(project.PathOf("src"), project.PathOf("code"));
  project.ExpectRefusal(
      {"relocate", "inner", "src", "code"}, 3,
      "app.tapp is not changed because it is outside the folder of the project. Use --outside-ok");
  EXPECT_TRUE(Has(project.Out({"relocate", "inner", "--below", ".", "--outside-ok"}),
                  "src/a.c -> code/a.c\n"));
  EXPECT_EQ(project.Run({"build", "inner", "--trust"}).code, 0);
}

}  // namespace
}  // namespace tarn::host
