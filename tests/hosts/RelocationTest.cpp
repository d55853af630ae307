// Locating moved files, and correcting the files of a project.

#include "hosts/core/Relocation.h"

#include <gtest/gtest.h>

#include "platform/text/Text.h"
#include "support/MemoryFileSystem.h"

namespace tarn::host {
namespace {

using Lines = std::vector<std::string>;

// The application in /p with these nodes, and the files on disk.
struct World {
  testing::MemoryFileSystem files;

  explicit World(const std::vector<std::string>& disk, const std::string& nodes,
                 const std::string& application = "app.tapp") {
    files.AddFile("/p/demo.tprj",
                  "\r\n<Project Header=\"demo\" >\r\n\t<Application Header=\"app\" "
                  "Extern=\".\\app.tapp\" Path=\".\\app.tapp\" />\r\n</Project>");
    files.AddFile("/p/" + application,
                  "\r\n<Application Header=\"app\" Extern=\".\\app.tapp\" Path=\".\\app.tapp\" >" +
                      nodes + "\r\n</Application>");
    for (const std::string& path : disk) files.AddFile(path, "");
  }
};

std::string Nodes(const Lines& paths) {
  std::string nodes;
  for (const std::string& path : paths) nodes += "\r\n\t<C Header=\"x\" Path=\"" + path + "\" />";
  return nodes;
}

// Returns "old -> new", and "old ? candidate candidate" for unresolved paths.
Lines Found(const Relocation& relocation) {
  Lines lines;
  for (const MovedPath& each : relocation.GetFound()) {
    std::string line = each.oldPath + (each.newPath.empty() ? " ?" : " -> " + each.newPath);
    for (const std::string& path : each.candidates) {
      if (each.newPath.empty()) line += " " + path;
    }
    lines.push_back(line);
  }
  return lines;
}

TEST(Relocation, MissingFilesAreFoundByTheirNames) {
  const struct {
    const char *name, *disk, *paths, *found;
  } rows[] = {
      {"all are there", "/p/src/a.c", ".\\src\\a.c", ""},
      {"one place", "/p/lib/a.c", ".\\src\\a.c", "/p/src/a.c -> /p/lib/a.c"},
      {"nowhere", "", ".\\src\\a.c", "/p/src/a.c ?"},
      {"another letter case", "/p/lib/A.C", ".\\a.c", "/p/a.c -> /p/lib/A.C"},
      {"the exact name goes first", "/p/lib/A.c\n/p/old/a.c", ".\\a.c", "/p/a.c -> /p/old/a.c"},
      {"more of the folders agree", "/p/x/drv/uart/a.c\n/p/x/uart/a.c\n/p/a.c", ".\\drv\\uart\\a.c",
       "/p/drv/uart/a.c -> /p/x/drv/uart/a.c"},
      {"several agree equally", "/p/x/a.c\n/p/y/a.c", ".\\src\\a.c",
       "/p/src/a.c ? /p/x/a.c /p/y/a.c"},
      {"a neighbour decides", "/p/x/a.c\n/p/y/a.c\n/p/y/b.c", ".\\src\\a.c\n.\\src\\b.c",
       "/p/src/a.c -> /p/y/a.c\n/p/src/b.c -> /p/y/b.c"},
      {"a file that the application has already", "/p/x/a.c", ".\\x\\a.c\n.\\src\\a.c",
       "/p/src/a.c ?"},
      {"two that want one file", "/p/new/a.c", ".\\x\\a.c\n.\\y\\a.c",
       "/p/x/a.c ? /p/new/a.c\n/p/y/a.c ? /p/new/a.c"},
      {"two that want one file, which is more like one of them", "/p/new/y/a.c",
       ".\\x\\a.c\n.\\y\\a.c", "/p/x/a.c ? /p/new/y/a.c\n/p/y/a.c -> /p/new/y/a.c"},
      {"folders that aren't searched", "/p/.git/a.c\n/p/build/a.c\n/p/.cache/x/a.c", ".\\src\\a.c",
       "/p/src/a.c ?"},
  };
  for (const auto& row : rows) {
    World world(SplitLines(row.disk), Nodes(SplitLines(row.paths)));
    Relocation relocation(world.files, "/p/demo.tprj");
    ASSERT_TRUE(relocation.Search("/p")) << row.name;
    EXPECT_EQ(Found(relocation), SplitLines(row.found)) << row.name;
  }
}

// Expects the text of the application with these nodes and no other difference.
void ExpectNodes(World& world, Relocation& relocation, const std::string& file,
                 const std::string& nodes) {
  const auto texts = relocation.MakeTexts();
  ASSERT_TRUE(texts) << texts.GetError().text;
  for (const FileText& each : *texts) {
    if (each.path != file) continue;
    EXPECT_TRUE(each.text.find(nodes) != std::string::npos) << each.text;
  }
  EXPECT_TRUE(world.files.WriteFiles(AsBytes(*texts)));
  Relocation again(world.files, "/p/demo.tprj");
  EXPECT_TRUE(again.Search("/p"));
  EXPECT_EQ(Found(again), Lines());
}

TEST(Relocation, AFolderMovesWithAllThatIsInIt) {
  World world({"/p/fw/src/a.c", "/p/fw/src/sub/b.c", "/p/other/c.c"},
              Nodes({".\\src\\a.c", "src/sub/b.c", ".\\other\\c.c"}));
  Relocation relocation(world.files, "/p/demo.tprj");
  ASSERT_TRUE(relocation.Move("/p/src", "/p/fw/src"));
  EXPECT_EQ(Found(relocation),
            (Lines{"/p/src/a.c -> /p/fw/src/a.c", "/p/src/sub/b.c -> /p/fw/src/sub/b.c"}));
  ExpectNodes(world, relocation, "/p/app.tapp",
              Nodes({".\\fw\\src\\a.c", ".\\fw\\src\\sub\\b.c", ".\\other\\c.c"}));
}

TEST(Relocation, AnApplicationIsFoundAndItsSourcesWithIt) {
  // Only the file has moved; then together with one of its sources.
  World world({"/p/src/a.c", "/p/apps/src/b.c"}, Nodes({".\\src\\a.c", ".\\src\\b.c"}),
              "apps/app.tapp");
  Relocation relocation(world.files, "/p/demo.tprj");
  ASSERT_TRUE(relocation.Search("/p"));
  EXPECT_EQ(Found(relocation),
            (Lines{"/p/app.tapp -> /p/apps/app.tapp", "/p/apps/src/a.c -> /p/src/a.c"}));
  ExpectNodes(world, relocation, "/p/apps/app.tapp", Nodes({"..\\src\\a.c", ".\\src\\b.c"}));
  EXPECT_EQ(*world.files.BytesOf("/p/demo.tprj"),
            "\r\n<Project Header=\"demo\" >\r\n\t<Application Header=\"app\" "
            "Extern=\".\\apps\\app.tapp\" Path=\".\\apps\\app.tapp\" />\r\n</Project>");
}

TEST(Relocation, OptionsFollowTheFolders) {
  const struct {
    const char* name;
    Lines disk;
    const char *value, *corrected;
    Lines found;
  } rows[] = {
      {"each as it was written",
       {"/p/lib/inc/a.h", "/p/keep/k.h"},
       "src/inc;keep;$(X)/src;src\\inc",
       "lib/inc;keep;$(X)/src;lib\\inc",
       {"/p/src/inc -> /p/lib/inc"}},
      {"several of one option",
       {"/p/lib/inc/sub/b.h"},
       "src/inc;/p/src/inc/sub",
       "lib/inc;/p/lib/inc/sub",
       {"/p/src/inc -> /p/lib/inc", "/p/src/inc/sub -> /p/lib/inc/sub"}},
      {"with macros",
       {"/p/lib/inc/a.h"},
       "src/inc/$(Config.Name)/a.h;$(General.ApplicationDir)src/inc;src/x$(X)",
       "lib/inc/$(Config.Name)/a.h;$(General.ApplicationDir)lib/inc;lib/x$(X)",
       {"/p/src/inc -> /p/lib/inc", "/p/src -> /p/lib"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto option = [](const std::string& value) {
      return "\r\n\t<Options><Property Header=\"Include\" Value=\"" + value + "\" /></Options>";
    };
    World world(row.disk, Nodes({".\\src\\a.c"}) + option(row.value));
    world.files.AddFile("/p/lib/a.c", "");
    Relocation relocation(world.files, "/p/demo.tprj");
    ASSERT_TRUE(relocation.Search("/p"));
    Lines found = {"/p/src/a.c -> /p/lib/a.c"};
    found.insert(found.end(), row.found.begin(), row.found.end());
    EXPECT_EQ(Found(relocation), found);
    ExpectNodes(world, relocation, "/p/app.tapp", option(row.corrected));
  }
}

TEST(Relocation, AFolderThatCanNotBeReadIsNamed) {
  World world({"/p/lib/a.c", "/p/shut/b.c"}, Nodes({".\\a.c", ".\\b.c"}));
  world.files.FailOn("list", "/p/shut", ErrorCode::CannotOpen);
  Relocation relocation(world.files, "/p/demo.tprj");
  ASSERT_TRUE(relocation.Search("/p"));
  EXPECT_EQ(Found(relocation), (Lines{"/p/a.c -> /p/lib/a.c", "/p/b.c ?"}));
  ASSERT_EQ(relocation.GetUnread().size(), 1U);
  EXPECT_EQ(relocation.GetUnread().front().place, "/p/shut");
}

TEST(Relocation, TheUsersChoiceCounts) {
  World world({"/p/x/a.c", "/p/y/a.c", "/p/b.c"}, Nodes({".\\src\\a.c", ".\\src\\b.c"}));
  Relocation relocation(world.files, "/p/demo.tprj");
  relocation.Choose("/p/src/a.c", "/p/y/a.c");
  relocation.Choose("/p/src/b.c", "");
  ASSERT_TRUE(relocation.Search("/p"));
  EXPECT_EQ(Found(relocation), (Lines{"/p/src/a.c -> /p/y/a.c", "/p/src/b.c ? /p/b.c"}));
}

TEST(Relocation, WhatCanNotBeReadOrReplacedIsAnError) {
  const struct {
    const char* text;  // content of the application
    const char* error;
  } rows[] = {
      {"<Application><C Path=\".\\src\\a.c\" /><Application>", "it is damaged: /p/app.tapp:1: "},
      {"<Application><C Path='.\\src\\a.c' /></Application>", "can't be replaced"},
  };
  for (const auto& row : rows) {
    World world({"/p/lib/a.c"}, "");
    world.files.AddFile("/p/app.tapp", row.text);
    Relocation relocation(world.files, "/p/demo.tprj");
    const Status searched = relocation.Search("/p");
    const auto texts = relocation.MakeTexts();
    const Error error = searched ? (texts ? Error() : texts.GetError()) : searched.GetError();
    EXPECT_EQ(error.place, "/p/app.tapp") << row.text;
    EXPECT_TRUE(error.text.find(row.error) != std::string::npos) << row.text << ": " << error.text;
  }
  World world({"/p/lib/a.c"}, Nodes({".\\src\\a.c"}));
  Relocation relocation(world.files, "/p/demo.tprj");
  EXPECT_EQ(relocation.Search("/none").GetError().code, ErrorCode::NotFound);
}

}  // namespace
}  // namespace tarn::host
