// Tests that registered classes are found by both readers: the one in the platform library and the
// one in the header for C programs.

#include "platform/automation/ClassStore.h"

#include <gtest/gtest.h>
#include <tarn/load.h>

#include "support/TestEnvironment.h"

namespace tarn::test {
namespace {

constexpr const char* kProgId = "A.B";
constexpr const char* kClassId = "{0123}";

std::string ProgIdText(const std::string& classId) {
  return "[Software\\Classes\\A.B]\n@=b\nCLSID=" + classId + "\n";
}

std::string ClassText(const std::string& path) {
  return "[Software\\Classes\\CLSID\\{0123}]\nThreadingModel=Apartment\nInprocServer=" + path +
         "\n";
}

std::string FindInC(const char* name) {
  char path[TARN_PATH_SIZE];
  return TarnFindLibrary(name, path, sizeof path) ? path : "";
}

TEST(ClassStore, BothReadersFindTheSameLibrary) {
  const testing::ScratchFolder scratch;
  const testing::ScopedVariable settings("TARN_SETTINGS", scratch.Path().c_str());
  const struct {
    const char* row;
    std::string user, machine;
    const char* name;
    const char* expected;
  } rows[] = {
      {"nothing registered", "", "", kProgId, ""},
      {"by ProgID", ProgIdText(kClassId) + ClassText("/l.so"), "", kProgId, "/l.so"},
      {"by class id", ClassText("/l.so"), "", kClassId, "/l.so"},
      {"in any case", ProgIdText(kClassId) + ClassText("/l.so"), "", "a.b", "/l.so"},
      {"for all users", "", ProgIdText(kClassId) + ClassText("/l.so"), kProgId, "/l.so"},
      {"the user's own first", ClassText("/u.so"), ProgIdText(kClassId) + ClassText("/m.so"),
       kProgId, "/u.so"},
      {"another name", ProgIdText(kClassId) + ClassText("/l.so"), "", "A.C", ""},
      {"a ProgID without a class", ProgIdText("{4567}"), "", kProgId, ""},
      {"a path that depends on the folder", ClassText("./l.so"), "", kClassId, ""},
      {"a path that only the loader understands", ClassText("l.so"), "", kClassId, ""},
      {"written by hand",
       "; mine\r\n[ software\\classes\\clsid\\{0123} ]\r\n;InprocServer=/a\r\nx\r\n"
       " inprocserver = \t/b c.so \r\nInprocServer=/d.so\r\n",
       "", kClassId, "/b c.so"},
      {"a section that never ends", "[Software\\Classes\\CLSID\\{0123}\nInprocServer=/l.so\n", "",
       kClassId, ""},
      {"the value of another section",
       "InprocServer=/a\n[x]\nInprocServer=/b\n" + ClassText("/l.so"), "", kClassId, "/l.so"},
      {"a section that goes on further down",
       "[Software\\Classes\\CLSID\\{0123}]\n@=x\n[y]\n" + ClassText("/l.so"), "", kClassId,
       "/l.so"},
  };
  const ClassStore store(FileSystem::Native(), SettingsFolders::FromEnvironment());
  for (const auto& row : rows) {
    scratch.Write("user/registry.ini", row.user);
    scratch.Write("machine/registry.ini", row.machine);
    EXPECT_EQ(store.FindLibrary(row.name).value_or(""), row.expected) << row.row;
    EXPECT_EQ(FindInC(row.name), row.expected) << row.row;
  }
}

TEST(ClassStore, BothReadersLookIntoTheSameFiles) {
  // Name of the case, then root, base folder and home of the environment.
  const char* const rows[][4] = {
      {"another root", "/r", "/c", "/h"},
      {"base folder", nullptr, "/c", "/h"},
      {"a relative base folder doesn't count", nullptr, "c", "/h"},
      {"no base folder", nullptr, nullptr, "/h"},
      {"no home in the environment", nullptr, nullptr, nullptr},
      {"empty ones", "", "", ""},
  };
  for (const auto& [name, root, config, home] : rows) {
    const testing::ScopedVariable variables[] = {
        {"TARN_SETTINGS", root}, {"XDG_CONFIG_HOME", config}, {"HOME", home}};
    ClassStore store(FileSystem::Native(), SettingsFolders::FromEnvironment());
    for (const int ofMachine : {0, 1}) {
      store.SetScope(ofMachine != 0 ? ClassScope::Machine : ClassScope::User);
      char file[TARN_PATH_SIZE];
      TarnRegistryFile(ofMachine, file, sizeof file);
      EXPECT_EQ(file, store.GetPath()) << name;
    }
  }
}

}  // namespace
}  // namespace tarn::test
