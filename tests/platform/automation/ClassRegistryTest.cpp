#include "platform/automation/ClassRegistry.h"

#include <gtest/gtest.h>

#include "TestObject.h"
#include "platform/automation/RunningObjects.h"
#include "platform/modules/Modules.h"
#include "support/MemoryFileSystem.h"

namespace tarn::test {
namespace {

std::int32_t NextOf(const DispatchPtr& counter) {
  Variant result;
  if (!counter || !counter->Invoke(1, {}, result)) return -1;
  return result.AsLong();
}

TEST(ClassRegistry, FindsFactoriesNamedLibrariesAndLibrariesOfTheModuleFolder) {
  ClassRegistry folder(TEST_MODULE_FOLDER);
  const DispatchPtr first = folder.CreateInstance("TarnTestServer.Counter");
  EXPECT_EQ(NextOf(first), 1);
  EXPECT_EQ(NextOf(first), 2);
  EXPECT_EQ(NextOf(folder.CreateInstance("TarnTestServer.Counter")), 1);

  ClassRegistry named("/nowhere");
  named.RegisterLibrary("TarnTestServer.Counter", TEST_MODULE_FOLDER "/libTarnTestServer.so");
  EXPECT_EQ(NextOf(named.CreateInstance("TarnTestServer.Counter")), 1);

  folder.RegisterFactory("tarntestserver.counter", [] { return DispatchPtr(); });
  folder.RegisterFactory("TarnTestServer.COUNTER",
                         [] { return DispatchPtr::Adopt(new TestObject); });
  DispatchId id = 0;
  EXPECT_TRUE(folder.CreateInstance("TarnTestServer.Counter")->GetIDsOfNames("Join", id));
}

TEST(ClassRegistry, RegisteredClassesComeAfterTheInstallationsOwn) {
  testing::MemoryFileSystem disk;
  const ServerIdentity identity = {
      "Elsewhere.Counter", "{E}", "Counter", "{T}", "T", "1.0", "{I}", "I"};
  ClassStore store(disk, {"/machine", "/user", "/data"});
  ASSERT_TRUE(store.AddServerClass(identity, TEST_MODULE_FOLDER "/libTarnTestServer.so"));
  ClassRegistry classes("/nowhere", &store);
  std::string error;
  // Both names lead to the library; it just does not have this class.
  for (const char* name : {"Elsewhere.Counter", "{e}"}) {
    EXPECT_FALSE(classes.CreateInstance(name, &error));
    EXPECT_NE(error.find("libTarnTestServer.so has no such class"), std::string::npos) << error;
  }
  EXPECT_EQ(classes.ClassIdOf("elsewhere.counter"), "{E}");
  EXPECT_EQ(classes.ClassIdOf("Unknown.Class"), "Unknown.Class");
  // A library next to the platform library takes precedence over the registered one.
  const ServerIdentity own = {
      "TarnTestServer.Counter", "{F}", "Counter", "{T}", "T", "1.0", "{I}", "I"};
  ASSERT_TRUE(store.AddServerClass(own, "/old/libTarnTestServer.so"));
  EXPECT_FALSE(classes.CreateInstance("TarnTestServer.Counter"));
  ClassRegistry installed(TEST_MODULE_FOLDER, &store);
  EXPECT_EQ(NextOf(installed.CreateInstance("TarnTestServer.Counter")), 1);
}

TEST(ClassRegistry, AClassThatCannotBeMadeSaysWhy) {
  ClassRegistry classes(TEST_MODULE_FOLDER);
  classes.RegisterFactory("Empty.Class", [] { return DispatchPtr(); });
  classes.RegisterFactory("Thrown.Class",
                          []() -> DispatchPtr { throw std::runtime_error("broken"); });
  const std::string platform = ModuleFolder() + "/libTarnPlatform.so";
  classes.RegisterLibrary("No.Entry", platform);
  // Class name, and expected part of the error message.
  const std::pair<const char*, const char*> rows[] = {
      {"Nameless", "Nameless: no such class"},
      {"", ": no such class"},
      {"../modules/libTarnTestServer.Counter", "no such class"},
      {"NotThere.Counter", "libNotThere.so: cannot open"},
      {"TarnTestServer.Other", "libTarnTestServer.so has no such class"},
      {"No.Entry", "DllGetClassObject"},
      {"Empty.Class", "Empty.Class: the class made no object"},
      {"Thrown.Class", "Thrown.Class: broken"},
  };
  for (const auto& [name, expected] : rows) {
    std::string error;
    EXPECT_FALSE(classes.CreateInstance(name, &error)) << name;
    EXPECT_NE(error.find(expected), std::string::npos) << name << ": " << error;
  }
  EXPECT_FALSE(classes.CreateInstance("Nameless"));
}

TEST(ClassRegistry, AFactoryMayUseTheRegistry) {
  ClassRegistry classes("/nowhere");
  classes.RegisterFactory("Inner.Class", [] { return DispatchPtr::Adopt(new TestObject); });
  classes.RegisterFactory("Outer.Class", [&classes] {
    classes.RegisterFactory("Outer.Class", [] { return DispatchPtr(); });
    return classes.CreateInstance("Inner.Class");
  });
  EXPECT_TRUE(classes.CreateInstance("Outer.Class"));
  EXPECT_FALSE(classes.CreateInstance("Outer.Class"));
}

TEST(RunningObjects, EntriesAreWeakAndTheLastOneCounts) {
  TestObject::alive = 0;
  RunningObjectTable table;
  DispatchPtr first = DispatchPtr::Adopt(new TestObject);
  const DispatchPtr second = DispatchPtr::Adopt(new TestObject);
  const std::uint32_t firstToken = table.RegisterActiveObject("{A}", first.Get());
  const std::uint32_t secondToken = table.RegisterActiveObject("{A}", second.Get());
  EXPECT_NE(firstToken, 0u);
  EXPECT_NE(firstToken, secondToken);
  EXPECT_EQ(table.GetActiveObject("{a}").Get(), second.Get());
  EXPECT_FALSE(table.GetActiveObject("{B}"));
  table.RevokeActiveObject(secondToken);
  EXPECT_EQ(table.GetActiveObject("{A}").Get(), first.Get());
  table.RevokeActiveObject(firstToken);
  first.Reset();
  EXPECT_EQ(TestObject::alive, 1);
  EXPECT_FALSE(table.GetActiveObject("{A}"));
  table.RevokeActiveObject(firstToken);  // repeated: no-op
}

}  // namespace
}  // namespace tarn::test
