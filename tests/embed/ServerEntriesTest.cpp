// The functions exported by the server's library, called as the OS would.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/automation/ClassRegistry.h"
#include "platform/automation/ServerLibrary.h"
#include "support/TestEnvironment.h"

namespace tarn::test {
namespace {

constexpr const char* kProgId = "TarnProjectManager.ProjectManager";
constexpr const char* kClassId = "{D9B8CA9D-D21F-48A2-8AC1-31865478798D}";

// The settings folder must be set before the first access.
const testing::ScratchFolder& Settings() {
  static const testing::ScratchFolder folder;
  static const int isSet = setenv("TARN_SETTINGS", folder.Path().c_str(), 1);
  EXPECT_EQ(isSet, 0);
  return folder;
}

class ServerEntries : public ::testing::Test {
 protected:
  ServerEntries() { Settings(); }

  static std::int32_t Call(const char* entry) {
    const auto code = CallServerEntry(TARN_SERVER, entry);
    EXPECT_TRUE(code) << code.GetError().text;
    return code ? *code : -1;
  }
  static std::int32_t GetClassObject(const char* classId, IClassFactory** factory) {
    const auto entry = FindClassObjectEntry(TARN_SERVER);
    EXPECT_TRUE(entry) << entry.GetError().text;
    return entry ? (*entry)(classId, factory) : -1;
  }
};

TEST_F(ServerEntries, TheClassIsFoundByBothItsNamesAndNoOtherIs) {
  const auto notThere = static_cast<std::int32_t>(0x80040111u);
  const struct {
    const char* classId;
    std::int32_t code;
  } rows[] = {
      {kProgId, 0},
      {"{d9b8ca9d-d21f-48a2-8ac1-31865478798d}", 0},
      {"TarnProjectManager.Other", notThere},
      {"", notThere},
      {nullptr, notThere},
  };
  IClassFactory* manager = nullptr;
  EXPECT_EQ(GetClassObject(kProgId, &manager), 0);
  for (const auto& row : rows) {
    IClassFactory* factory = manager;
    EXPECT_EQ(GetClassObject(row.classId, &factory), row.code);
    EXPECT_EQ(factory, row.code == 0 ? manager : nullptr);
  }
  EXPECT_EQ(GetClassObject(kProgId, nullptr), static_cast<std::int32_t>(0x80004003u));
}

TEST_F(ServerEntries, TheLibraryMayGoWhenNoObjectAndNoLockIsLeft) {
  IClassFactory* factory = nullptr;
  ASSERT_EQ(GetClassObject(kProgId, &factory), 0);
  EXPECT_EQ(Call("DllCanUnloadNow"), 0);
  DispatchPtr manager = factory->CreateInstance();
  EXPECT_EQ(Call("DllCanUnloadNow"), 1);
  factory->LockServer(true);
  manager.Reset();
  EXPECT_EQ(Call("DllCanUnloadNow"), 1);
  factory->LockServer(false);
  EXPECT_EQ(Call("DllCanUnloadNow"), 0);
  const DispatchPtr inspector =
      ClassRegistry::Native().CreateInstance("TarnProjectManager.ProjectInspector");
  EXPECT_EQ(Call("DllCanUnloadNow"), 1);
}

TEST_F(ServerEntries, RegistersItselfAndSaysWhenItCannot) {
  const std::string folder = Settings() / "user";
  EXPECT_EQ(Call("DllRegisterServer"), 0);
  EXPECT_EQ(ClassStore::Native().FindLibrary(kClassId),
            std::filesystem::canonical(TARN_SERVER).string());
  EXPECT_EQ(Call("DllUnregisterServer"), 0);
  EXPECT_EQ(Call("DllUnregisterServer"), 0);
  EXPECT_EQ(ClassStore::Native().FindLibrary(kProgId), std::nullopt);
  std::filesystem::remove_all(folder);
  std::ofstream(folder) << "in the way";
  EXPECT_EQ(Call("DllRegisterServer"), static_cast<std::int32_t>(0x80040200u));
  EXPECT_NE(ClassStore::Native().LastFailure().text, "");
  std::filesystem::remove_all(folder);
}

TEST_F(ServerEntries, ALibraryThatIsNoneSaysSo) {
  const auto failed = [](const std::string& path, const char* entry) {
    const auto code = CallServerEntry(path, entry);
    return code ? "called" : code.GetError().text;
  };
  EXPECT_NE(failed("/nowhere.so", "DllRegisterServer").find("/nowhere.so"), std::string::npos);
  EXPECT_NE(failed(TARN_SERVER, "DllOther").find("DllOther"), std::string::npos);
}

}  // namespace
}  // namespace tarn::test
