#include "platform/settings/Settings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "platform/settings/IniFile.h"
#include "support/MemoryFileSystem.h"

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
  struct Row {
    const char* section;
    const char* name;
    std::optional<std::string> value;
  };
  const Row rows[] = {
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
  for (const Row& row : rows) EXPECT_EQ(ini.Read(row.section, row.name), row.value) << row.name;
  EXPECT_EQ(ini.SectionNames(), (std::vector<std::string>{"First", "Second"}));
  EXPECT_EQ(ini.ValueNames("SECOND"), std::vector<std::string>{"x"});
  EXPECT_EQ(ini.ToText(), kText);
}

TEST(IniFile, WritingTouchesNothingButTheValue) {
  struct Row {
    const char* name;
    std::string before;
    std::function<bool(IniFile&)> change;
    bool done;
    std::string after;
  };
  const auto write = [](const char* section, const char* key, std::string value) {
    return [=](IniFile& ini) { return ini.Write(section, key, value); };
  };
  const Row rows[] = {
      {"empty text", "", write("S", "k", "v"), true, "[S]\nk=v\n"},
      {"in place", "; c\r\n[s]\r\n K = old \r\nz\r\n", write("S", "k", "v"), true,
       "; c\r\n[s]\r\n K =v\r\nz\r\n"},
      {"last line without an end", "[s]\nk=old", write("s", "k", "new"), true, "[s]\nk=new"},
      {"added to a text without an end", "[s]\r\nk=1", write("t", "k", "v"), true,
       "[s]\r\nk=1\r\n[t]\r\nk=v\r\n"},
      {"comments of the next section stay there", "[s]\na=1\n\n; t\n[t]\n", write("s", "b", "2"),
       true, "[s]\na=1\nb=2\n\n; t\n[t]\n"},
      {"section without a value", "[s]\n[t]\n", write("s", "b", "2"), true, "[s]\nb=2\n[t]\n"},
      {"where it is read from", "[s]\na=1\n[t]\n[S]\nb=1\n", write("s", "b", "2"), true,
       "[s]\na=1\n[t]\n[S]\nb=2\n"},
      {"empty value", "[s]\na=1\n", write("s", "a", ""), true, "[s]\na=\n"},
      {"line break in the value", "[s]\n", write("s", "a", "1\n[t]"), false, "[s]\n"},
      {"zero in the value", "[s]\n", write("s", "a", std::string("1\0", 2)), false, "[s]\n"},
      {"line break in the name", "[s]\n", write("s", "a\rb", "1"), false, "[s]\n"},
      {"a name that would be a comment", "[s]\n", write("s", ";a", "1"), false, "[s]\n"},
      {"a name that would be cut", "[s]\n", write("s", "a=b", "1"), false, "[s]\n"},
      {"a section that would be cut", "", write("a]b", "a", "1"), false, ""},
      {"value removed everywhere", "[s]\na=1\n;\nA=2\nb=3\n",
       [](IniFile& ini) { return ini.Remove("S", "a"); }, true, "[s]\n;\nb=3\n"},
      {"nothing to remove", "[s]\n", [](IniFile& ini) { return ini.Remove("s", "a"); }, false,
       "[s]\n"},
      {"section removed everywhere", "x\n[s]\na=1\n[t]\n[S]\nb\n",
       [](IniFile& ini) { return ini.RemoveSection("s"); }, true, "x\n[t]\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    IniFile ini(row.before);
    EXPECT_EQ(row.change(ini), row.done);
    EXPECT_EQ(ini.ToText(), row.after);
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
  struct Row {
    const char* name;
    const char* root;
    const char* config;
    SettingsFolders folders;
  };
  const std::string here = FileSystem::Native().CurrentFolder();
  const Row rows[] = {
      {"other root", "/r", "/c", {"/r/machine", "/r/user", "/r/data"}},
      {"relative root", "r", nullptr, {here + "/r/machine", here + "/r/user", here + "/r/data"}},
      {"base folder", nullptr, "/c", {"/etc/tarn", "/c/tarn", "/h/.local/share/tarn"}},
      {"relative base folder does not count",
       nullptr,
       "c",
       {"/etc/tarn", "/h/.config/tarn", "/h/.local/share/tarn"}},
  };
  const char* names[] = {"TARN_SETTINGS", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "HOME"};
  std::vector<std::optional<std::string>> saved;
  for (const char* name : names) {
    const char* value = std::getenv(name);
    saved.push_back(value == nullptr ? std::nullopt : std::optional<std::string>(value));
  }
  const auto set = [](const char* name, const char* value) {
    value == nullptr ? unsetenv(name) : setenv(name, value, 1);
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    set("TARN_SETTINGS", row.root);
    set("XDG_CONFIG_HOME", row.config);
    set("XDG_DATA_HOME", nullptr);
    set("HOME", "/h");
    const SettingsFolders folders = SettingsFolders::FromEnvironment();
    EXPECT_EQ(folders.machine, row.folders.machine);
    EXPECT_EQ(folders.user, row.folders.user);
    EXPECT_EQ(folders.userData, row.folders.userData);
  }
  for (std::size_t i = 0; i < saved.size(); ++i) {
    set(names[i], saved[i] ? saved[i]->c_str() : nullptr);
  }
}

}  // namespace
}  // namespace tarn
