#include "platform/settings/Settings.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/settings/IniFile.h"
#include "support/MemoryFileSystem.h"
#include "support/TestEnvironment.h"

namespace tarn {
namespace {

constexpr const char* kText =
    "\xEF\xBB\xBF[First]\r\n"
    "; Name=comment\r\n"
    " Name = value \r\n"
    "stray line\r\n"
    "Quoted=\"  two words \"\r\n"
    "Single='it''s'\r\n"
    "One=\"\r\n"
    "Mixed=\"x'\r\n"
    "Empty=\r\n"
    "Equals=a=b;c\r\n"
    "name=second\r\n"
    "\r\n"
    "; about the next\r\n"
    "[ Second ] tail\r\n"
    "[broken\r\n"
    "x=1\r\n"
    "[FIRST]\r\n"
    "Late=2\r\n"
    "=nameless\r\n";

TEST(IniFile, ReadsWithTheProfileStringRules) {
  const struct {
    const char* section;
    const char* name;
    std::optional<std::string> value;
  } rows[] = {
      {"first", "NAME", "value"},   {"First", "Quoted", "  two words "},
      {"First", "Single", "it''s"}, {"First", "One", "\""},
      {"First", "Mixed", "\"x'"},   {"First", "Empty", ""},
      {"First", "Equals", "a=b;c"}, {"First", "stray line", {}},
      {"First", "; Name", {}},      {" SECOND ", " X ", "1"},
      {"first", "late", "2"},       {"First", "", {}},
      {"Third", "Name", {}},        {"", "Name", {}},
      {"broken", "x", {}},
  };
  const IniFile ini{kText};
  for (const auto& row : rows) EXPECT_EQ(ini.Read(row.section, row.name), row.value) << row.name;
  EXPECT_EQ(ini.SectionNames(), (std::vector<std::string>{"First", "Second"}));
  EXPECT_EQ(ini.ValueNames("SECOND"), std::vector<std::string>{"x"});
  EXPECT_EQ(ini.ToText(), kText);
}

TEST(IniFile, WritingTouchesNothingButTheValue) {
  const auto write = [](const char* section, const char* key, const std::string& value) {
    return [=](IniFile& ini) { return ini.Write(section, key, value); };
  };
  const auto remove = [](IniFile& ini) { return ini.Remove("S", "a"); };
  const struct {
    const char* name;
    const char* before;
    std::function<bool(IniFile&)> change;
    const char* after;  // null: refused, and nothing changed
  } rows[] = {
      {"empty text", "", write("S", "k", "v"), "[S]\nk=v\n"},
      {"in place", "; c\r\n[s]\r\n K = old \r\nz\r\n", write("S", "k", "v"),
       "; c\r\n[s]\r\n K =v\r\nz\r\n"},
      {"last line without an end", "[s]\nk=old", write("s", "k", "new"), "[s]\nk=new"},
      {"added to a text without an end", "[s]\r\nk=1", write("t", "k", "v"),
       "[s]\r\nk=1\r\n[t]\r\nk=v\r\n"},
      {"comments of the next section stay there", "[s]\na=1\n\n; t\n[t]\n", write("s", "b", "2"),
       "[s]\na=1\nb=2\n\n; t\n[t]\n"},
      {"section without a value", "[s]\n[t]\n", write("s", "b", "2"), "[s]\nb=2\n[t]\n"},
      {"where it is read from", "[s]\na=1\n[t]\n[S]\nb=1\n", write("s", "b", "2"),
       "[s]\na=1\n[t]\n[S]\nb=2\n"},
      {"line break in the value", "[s]\n", write("s", "a", "1\n[t]"), nullptr},
      {"zero in the value", "[s]\n", write("s", "a", std::string("1\0", 2)), nullptr},
      {"line break in the name", "[s]\n", write("s", "a\rb", "1"), nullptr},
      {"a name that would be a comment", "[s]\n", write("s", ";a", "1"), nullptr},
      {"a name that would be cut", "[s]\n", write("s", "a=b", "1"), nullptr},
      {"a section that would be cut", "", write("a]b", "a", "1"), nullptr},
      {"value removed everywhere", "[s]\na=1\n;\nA=2\nb=3\n", remove, "[s]\n;\nb=3\n"},
      {"nothing to remove", "[s]\n", remove, nullptr},
      {"section removed everywhere", "x\n[s]\na=1\n[t]\n[S]\nb\n",
       [](IniFile& ini) { return ini.RemoveSection("s"); }, "x\n[t]\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    IniFile ini(row.before);
    EXPECT_EQ(row.change(ini), row.after != nullptr);
    EXPECT_EQ(ini.ToText(), row.after ? row.after : row.before);
  }
}

TEST(IniFile, QuotedValuesComeBackAsTheyWere) {
  for (const std::string value :
       {"", "a", " a ", "\"a\"", "'a'", "\"", "\"\"", "a\"", "\t", "\"a'", "' '"}) {
    IniFile ini;
    ASSERT_TRUE(ini.Write("s", "k", IniFile::Quoted(value)));
    EXPECT_EQ(ini.Read("s", "k"), value);
    EXPECT_EQ(IniFile(ini.ToText()).Read("s", "k"), value);
  }
}

class SettingsTest : public ::testing::Test {
 protected:
  testing::MemoryFileSystem files;
  Settings settings{files, {"/etc/tarn", "/home/me/.config/tarn", "/home/me/data"}};
};

TEST_F(SettingsTest, RegistryValuesBeyondTheLimitAreNone) {
  files.AddFile("/etc/tarn/registry.ini",
                "[Software\\Corvane\\Tarn7\\Targets\\B]\nName=b\n"
                "[Software\\Corvane\\Tarn7\\Targets\\a\\Deep]\n"
                "[Software\\Corvane\\Tarn7\\Targets\\A]\nLong=" +
                    std::string(260, 'x') + "\nLongest=" + std::string(259, 'x') +
                    "\nSpaced=' x'\n"
                    "[Software\\Corvane\\Tarn7\\TargetsOther\\C]\n");
  const std::string key = "software\\corvane\\TARN7\\targets";
  EXPECT_EQ(settings.ReadRegistry(key + "\\b\\", "NAME"), "b");
  EXPECT_EQ(settings.ReadRegistry(key + "\\A", "Long"), std::nullopt);
  EXPECT_EQ(settings.ReadRegistry(key + "\\A", "Longest"), std::string(259, 'x'));
  EXPECT_EQ(settings.ReadRegistry(key + "\\A", "None"), std::nullopt);
  EXPECT_EQ(settings.RegistrySubkeys(key), (std::vector<std::string>{"B", "a"}));
  const std::vector<std::pair<std::string, std::string>> values = {
      {"Longest", std::string(259, 'x')}, {"Spaced", " x"}};
  EXPECT_EQ(settings.RegistryValues("\\" + key + "\\A"), values);
  EXPECT_TRUE(settings.RegistrySubkeys("none").empty());
}

TEST_F(SettingsTest, TheUsersRegistryCountsInFrontOfTheMachines) {
  files.AddFile("/etc/tarn/registry.ini", "[K\\All]\nv=all\n[K\\Both]\nV=all\nw=all\n");
  files.AddFile("/home/me/.config/tarn/registry.ini",
                "[k\\both]\nv=mine\nw=" + std::string(260, 'x') + "\n[K\\Mine]\nv=mine\n");
  EXPECT_EQ(settings.RegistrySubkeys("K"), (std::vector<std::string>{"both", "Mine", "All"}));
  EXPECT_EQ(settings.ReadRegistry("K\\All", "v"), "all");
  EXPECT_EQ(settings.ReadRegistry("K\\Both", "v"), "mine");
  EXPECT_EQ(settings.ReadRegistry("K\\Both", "w"), std::nullopt);
  const std::vector<std::pair<std::string, std::string>> values = {{"v", "mine"}};
  EXPECT_EQ(settings.RegistryValues("K\\Both"), values);
}

TEST_F(SettingsTest, ProfileIsWrittenAtOnceAndForeignLinesStay) {
  const std::string path = "/home/me/.config/tarn/profile.ini";
  EXPECT_EQ(settings.ReadProfile("Project", "Folder", "none"), "none");
  EXPECT_TRUE(settings.WriteProfile("Project", "Folder", " /p "));
  EXPECT_EQ(files.BytesOf(path), "[Corvane\\Tarn\\Project]\nFolder=\" /p \"\n");
  files.AddFile(path, "; mine\n" + *files.BytesOf(path));
  settings.SetProfileKey("Corvane\\Demo\\");
  EXPECT_EQ(settings.ReadProfile("Project", "Folder", "none"), "none");
  EXPECT_TRUE(settings.WriteProfile("Project", "Folder", "/q"));
  EXPECT_EQ(settings.ReadProfile("PROJECT", "FOLDER", ""), "/q");
  EXPECT_EQ(files.BytesOf(path),
            "; mine\n[Corvane\\Tarn\\Project]\nFolder=\" /p \"\n"
            "[Corvane\\Demo\\Project]\nFolder=/q\n");
}

TEST_F(SettingsTest, AProfileThatCannotBeReadIsNotOverwritten) {
  const std::string path = "/home/me/.config/tarn/profile.ini";
  files.AddFile(path, "[a]\nb=c\n");
  files.FailOn("read", path, ErrorCode::Io);
  EXPECT_FALSE(settings.WriteProfile("Project", "Folder", "/q"));
  files.ClearFailures();
  files.FailOn("write", path, ErrorCode::NoSpace);
  EXPECT_FALSE(settings.WriteProfile("Project", "Folder", "/q"));
  files.ClearFailures();
  EXPECT_FALSE(settings.WriteProfile("Project", "Folder", "two\nlines"));
  EXPECT_EQ(files.BytesOf(path), "[a]\nb=c\n");
}

TEST(SettingsFolders, FollowTheEnvironment) {
  const std::string here = FileSystem::Native().CurrentFolder();
  const struct {
    const char* name;
    const char* root;
    const char* config;
    std::string folders;
  } rows[] = {
      {"other root", "/r", "/c", "/r/machine /r/user /r/data /r/state"},
      {"relative root", "r", nullptr,
       here + "/r/machine " + here + "/r/user " + here + "/r/data " + here + "/r/state"},
      {"base folder", nullptr, "/c", "/etc/tarn /c/tarn /h/.local/share/tarn /h/.local/state/tarn"},
      {"relative base folder does not count", nullptr, "c",
       "/etc/tarn /h/.config/tarn /h/.local/share/tarn /h/.local/state/tarn"},
  };
  const testing::ScopedVariable data("XDG_DATA_HOME", nullptr);
  const testing::ScopedVariable state("XDG_STATE_HOME", nullptr);
  const testing::ScopedVariable home("HOME", "/h");
  for (const auto& row : rows) {
    const testing::ScopedVariable root("TARN_SETTINGS", row.root);
    const testing::ScopedVariable config("XDG_CONFIG_HOME", row.config);
    const auto [machine, user, userData, userState] = SettingsFolders::FromEnvironment();
    EXPECT_EQ(machine + " " + user + " " + userData + " " + userState, row.folders) << row.name;
  }
}

}  // namespace
}  // namespace tarn
