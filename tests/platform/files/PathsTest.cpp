#include "platform/paths/Paths.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

TEST(Paths, AbsoluteOnlyByLeadingSeparatorOrDrive) {
  struct Row {
    const char* path;
    bool relative;
  };
  const Row rows[] = {{"", true},      {"a", true},    {".\\a", true},   {"../a", true},
                      {"\\x", false},  {"/x", false},  {"D:x", false},   {"d:\\x", false},
                      {"1:\\x", true}, {":\\x", true}, {"\xC4:x", true}, {"D", true}};
  for (const Row& row : rows) EXPECT_EQ(IsRelativePath(row.path), row.relative) << row.path;
}

TEST(Paths, CanonicalFormStaysAtTheRootAndKeepsItsStyle) {
  struct Row {
    const char* path;
    const char* canonical;
  };
  const Row rows[] = {
      {"", ""},
      {"/", "/"},
      {"\\", "/"},
      {"/..", "/"},
      {"/../../a", "/a"},
      {"/p\\.\\src\\main.c", "/p/src/main.c"},
      {"/p//a\\\\/b", "/p/a/b"},
      {"/p/..\\lib/./x.c", "/lib/x.c"},
      {"/p/a/.", "/p/a"},
      {"/p/a/", "/p/a/"},
      {"/p/a/..", "/p"},
      {"/p/...", "/p/..."},
      {"\\\\server\\share", "/server/share"},
      {"c:/a/../../b", "c:\\b"},
      {"C:\\", "C:\\"},
      {"C:\\..", "C:\\"},
      {"C:", "C:"},
      {"C:a/./b", "C:a\\b"},
      {".\\a", "a"},
      {"a/../..\\b", "../b"},
      {"..\\..", "../.."},
      {"a\\..", "."},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(CanonicalPath(row.path), row.canonical) << row.path;
    EXPECT_EQ(CanonicalPath(row.canonical), row.canonical) << "again, " << row.path;
  }
}

TEST(Paths, RelativeFormOnDiskLeadsBack) {
  struct Row {
    const char* name;
    const char* folder;
    const char* path;
    const char* relative;
  };
  const Row rows[] = {
      {"in the folder", "/p", "/p/demo.tprj", ".\\demo.tprj"},
      {"deeper", "/p/", "/p/src/main.c", ".\\src\\main.c"},
      {"one up", "/p/app", "/p/lib/x.c", "..\\lib\\x.c"},
      {"nothing shared but the root", "/a/b", "/c/d", "..\\..\\c\\d"},
      {"a name that only starts alike", "/p/app", "/p/apple/x", "..\\apple\\x"},
      {"other case is another folder here", "/p/App", "/p/app/x", "..\\app\\x"},
      {"other case is the same behind a drive", "C:\\P\\App", "c:/p/app/X.c", ".\\X.c"},
      {"from the root", "/", "/x", ".\\x"},
      {"the folder itself", "/p", "/p", "."},
      {"a folder above", "/p/a/b", "/p", "..\\.."},
      {"dots in between", "/p/x/..", "/p/./a", ".\\a"},
      {"a leading backslash is this machine's root", "/p", "\\p\\a", ".\\a"},
      {"other drive", "C:\\p", "D:\\p\\a", ""},
      {"drive and none", "/p", "D:\\p\\a", ""},
      {"none and drive", "D:\\p", "/p/a", ""},
      {"already relative", "/p", ".\\a", ""},
      {"from a relative folder", "p", "/p/a", ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const std::string relative = RelativeDiskPath(row.folder, row.path);
    EXPECT_EQ(relative, row.relative);
    if (relative.empty() || HasDrive(row.path)) continue;
    EXPECT_EQ(CanonicalPath(JoinPath(row.folder, relative)), CanonicalPath(row.path));
  }
}

TEST(Paths, PartsLookAtTheLastComponentOnlyAndJoinBack) {
  struct Row {
    const char* path;
    PathParts parts;
    const char* folder;
    const char* stem;
  };
  const Row rows[] = {
      {"/p/app-Globals.Debug.xml",
       {"", "/p/", "app-Globals.Debug", ".xml"},
       "/p",
       "/p/app-Globals.Debug"},
      {"/p.d/name", {"", "/p.d/", "name", ""}, "/p.d", "/p.d/name"},
      {"C:\\a.b\\c.d", {"C:", "\\a.b\\", "c", ".d"}, "C:\\a.b", "C:\\a.b\\c"},
      {"C:name.x", {"C:", "", "name", ".x"}, "C:", "C:name"},
      {"C:\\", {"C:", "\\", "", ""}, "C:\\", "C:\\"},
      {"C:\\x", {"C:", "\\", "x", ""}, "C:\\", "C:\\x"},
      {".\\src/a.c", {"", ".\\src/", "a", ".c"}, ".\\src", ".\\src/a"},
      {"a.c", {"", "", "a", ".c"}, "", "a"},
      {"/x", {"", "/", "x", ""}, "/", "/x"},
      {"/", {"", "/", "", ""}, "/", "/"},
      {"/a//", {"", "/a//", "", ""}, "/a", "/a//"},
      {"..", {"", "", "..", ""}, "", ".."},
      {"a.", {"", "", "a", "."}, "", "a"},
      {"", {"", "", "", ""}, "", ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.path);
    const PathParts parts = SplitPath(row.path);
    EXPECT_EQ(parts.drive, row.parts.drive);
    EXPECT_EQ(parts.folder, row.parts.folder);
    EXPECT_EQ(parts.title, row.parts.title);
    EXPECT_EQ(parts.extension, row.parts.extension);
    EXPECT_EQ(parts.drive + parts.folder + parts.title + parts.extension, row.path);
    EXPECT_EQ(FileNameOf(row.path), parts.title + parts.extension);
    EXPECT_EQ(FolderOf(row.path), row.folder);
    EXPECT_EQ(WithoutExtension(row.path), row.stem);
  }
}

TEST(Paths, JoiningAddsTheSeparatorOfTheFolder) {
  EXPECT_EQ(JoinPath("/p", "a"), "/p/a");
  EXPECT_EQ(JoinPath("/p/", "a"), "/p/a");
  EXPECT_EQ(JoinPath("p\\", "a"), "p\\a");
  EXPECT_EQ(JoinPath("C:\\p", "a"), "C:\\p\\a");
  EXPECT_EQ(JoinPath("", "a"), "a");
  EXPECT_EQ(WithExtension("/a.b/c.tprj", ".dbi"), "/a.b/c.dbi");
  EXPECT_EQ(ToNativeSeparators("..\\a\\b"), "../a/b");
  EXPECT_EQ(ToNativeSeparators("C:\\a"), "C:\\a");
}

}  // namespace
}  // namespace tarn
