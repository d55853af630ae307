#include "platform/paths/Paths.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

TEST(Paths, AbsoluteOnlyByLeadingSeparatorOrDrive) {
  const std::pair<const char*, bool> rows[] = {{"", true},     {"a", true},      {".\\a", true},
                                               {"../a", true}, {"\\x", false},   {"/x", false},
                                               {"D:x", false}, {"d:\\x", false}, {"1:\\x", true},
                                               {":\\x", true}, {"\xC4:x", true}, {"D", true}};
  for (const auto& [path, relative] : rows) EXPECT_EQ(IsRelativePath(path), relative) << path;
}

TEST(Paths, CanonicalFormStaysAtTheRootAndKeepsItsStyle) {
  const std::pair<const char*, const char*> rows[] = {
      {"", ""},
      {"/", "/"},
      {"/../../a", "/a"},
      {"/p\\.\\src\\main.c", "/p/src/main.c"},
      {"/p//a\\\\/b", "/p/a/b"},
      {"/p/..\\lib/./x.c", "/lib/x.c"},
      {"/p/a/.", "/p/a"},
      {"/p/a/", "/p/a/"},
      {"/p/a/..", "/p"},
      {"/p/...", "/p/..."},
      {"\\\\server\\share", "\\\\server\\share"},
      {"\\\\server\\share\\..\\a/./b", "\\\\server\\share\\a\\b"},
      {"//server/share/a/../../b/", "//server/share/b/"},
      {"///a//b", "/a/b"},
      {"c:/a/../../b", "c:\\b"},
      {"C:\\..", "C:\\"},
      {"C:", "C:"},
      {"C:a/./b", "C:a\\b"},
      {".\\a", "a"},
      {"a/../..\\b", "../b"},
      {"..\\..", "../.."},
      {"a\\..", "."},
  };
  for (const auto& [path, canonical] : rows) {
    EXPECT_EQ(CanonicalPath(path), canonical) << path;
    EXPECT_EQ(CanonicalPath(canonical), canonical) << "again, " << path;
  }
}

TEST(Paths, RelativeFormOnDiskLeadsBack) {
  // Name of the case, folder, path, and expected relative path.
  const char* const rows[][4] = {
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
      {"on a share", "\\\\Server\\p\\app", "\\\\server\\P\\lib\\x.c", "..\\lib\\x.c"},
      {"the top of a share", "//server/p", "//server/p/x.c", ".\\x.c"},
      {"a share from a folder", "/p", "//server/share/x.c", ""},
      {"another share", "\\\\server\\a", "\\\\server\\b\\x.c", ""},
      {"other drive", "C:\\p", "D:\\p\\a", ""},
      {"none and drive", "D:\\p", "/p/a", ""},
      {"already relative", "/p", ".\\a", ""},
      {"from a relative folder", "p", "/p/a", ""},
  };
  for (const auto& [name, folder, path, expected] : rows) {
    const std::string relative = RelativeDiskPath(folder, path);
    EXPECT_EQ(relative, expected) << name;
    if (relative.empty() || HasDrive(path) || IsNetworkPath(path)) continue;
    EXPECT_EQ(CanonicalPath(JoinPath(folder, relative)), CanonicalPath(path)) << name;
  }
}

TEST(Paths, PartsLookAtTheLastComponentOnlyAndJoinBack) {
  const struct {
    PathParts parts;
    const char* folder;
    const char* stem;
  } rows[] = {
      {{"", "/p/", "app-Globals.Debug", ".xml"}, "/p", "/p/app-Globals.Debug"},
      {{"", "/p.d/", "name", ""}, "/p.d", "/p.d/name"},
      {{"C:", "\\a.b\\", "c", ".d"}, "C:\\a.b", "C:\\a.b\\c"},
      {{"C:", "", "name", ".x"}, "C:", "C:name"},
      {{"C:", "\\", "", ""}, "C:\\", "C:\\"},
      {{"C:", "\\", "x", ""}, "C:\\", "C:\\x"},
      {{"", ".\\src/", "a", ".c"}, ".\\src", ".\\src/a"},
      {{"", "", "a", ".c"}, "", "a"},
      {{"", "/", "x", ""}, "/", "/x"},
      {{"", "/a//", "", ""}, "/a", "/a//"},
      {{"", "", "..", ""}, "", ".."},
      {{"", "", "a", "."}, "", "a"},
      {{"", "", "", ""}, "", ""},
  };
  for (const auto& [wanted, folder, stem] : rows) {
    const std::string path = wanted.drive + wanted.folder + wanted.title + wanted.extension;
    const PathParts parts = SplitPath(path);
    EXPECT_EQ(parts.drive + "|" + parts.folder + "|" + parts.title + "|" + parts.extension,
              wanted.drive + "|" + wanted.folder + "|" + wanted.title + "|" + wanted.extension);
    EXPECT_EQ(FileNameOf(path), wanted.title + wanted.extension) << path;
    EXPECT_EQ(FolderOf(path), folder) << path;
    EXPECT_EQ(WithoutExtension(path), stem) << path;
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
