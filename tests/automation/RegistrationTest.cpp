// Settings that the registration of the server writes, and the description of the server.

#include "automation/Registration.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "automation/ProjectManager.h"
#include "support/MemoryFileSystem.h"
#include "xml/XmlNode.h"

namespace tarn::test {
namespace {

constexpr const char* kLibrary = "/opt/lib/libTarnProjectManager.so";
constexpr const char* kUserFile = "/home/me/.config/tarn/registry.ini";
constexpr const char* kMachineFile = "/etc/tarn/registry.ini";

const std::string kTypeLibraryText =
    "[Software\\Classes\\TypeLib\\{E8E835AB-D2A1-42C2-B4CC-4E62A03378AE}\\1.0]\n"
    "@=TarnProjectManager\n"
    "Library=/opt/lib/libTarnProjectManager.so\n"
    "[Software\\Classes\\Interface\\{F9C0223E-22A5-40A4-BEDE-46BF952B9F48}]\n"
    "@=IProjectManager\n"
    "TypeLib={E8E835AB-D2A1-42C2-B4CC-4E62A03378AE}\n"
    "Version=1.0\n";
const std::string kClassText =
    "[Software\\Classes\\TarnProjectManager.ProjectManager]\n"
    "@=ProjectManager\n"
    "CLSID={D9B8CA9D-D21F-48A2-8AC1-31865478798D}\n"
    "[Software\\Classes\\CLSID\\{D9B8CA9D-D21F-48A2-8AC1-31865478798D}]\n"
    "@=ProjectManager\n"
    "ProgID=TarnProjectManager.ProjectManager\n"
    "TypeLib={E8E835AB-D2A1-42C2-B4CC-4E62A03378AE}\n"
    "InprocServer=/opt/lib/libTarnProjectManager.so\n"
    "ThreadingModel=Apartment\n";

class RegistrationTest : public ::testing::Test {
 protected:
  testing::MemoryFileSystem disk;
  ClassStore store{disk, {"/etc/tarn", "/home/me/.config/tarn", "/home/me/data"}};
};

TEST_F(RegistrationTest, GoesWhereItIsToldAndComesBackWithoutATrace) {
  for (const char* file : {kUserFile, kMachineFile}) {
    store.SetScope(file == kUserFile ? ClassScope::User : ClassScope::Machine);
    const std::string others = "; mine\r\n[Software\\Corvane\\Tarn7\\Targets\\A]\r\nName=a\r\n";
    disk.AddFile(file, others);
    EXPECT_EQ(RegisterServer(store, "/old/lib.so"), 0);
    EXPECT_EQ(RegisterServer(store, kLibrary), 0);
    std::string text = *disk.BytesOf(file);
    std::erase(text, '\r');
    EXPECT_EQ(text, "; mine\n[Software\\Corvane\\Tarn7\\Targets\\A]\nName=a\n" + kTypeLibraryText +
                        kClassText);
    EXPECT_EQ(UnregisterServer(store), 0);
    EXPECT_EQ(disk.BytesOf(file), others);
  }
}

TEST_F(RegistrationTest, DoneAgainNothingIsWritten) {
  EXPECT_EQ(UnregisterServer(store), 0);
  EXPECT_EQ(disk.AllFiles().size(), 0u);
  EXPECT_EQ(RegisterServer(store, kLibrary), 0);
  disk.SetReadOnly(kUserFile);
  EXPECT_EQ(RegisterServer(store, kLibrary), 0);
}

TEST_F(RegistrationTest, TheStepThatFailsGivesItsNumberAndWhatWasDoneStays) {
  const auto add = [&] { return RegisterServer(store, kLibrary); };
  const auto remove = [&] { return UnregisterServer(store); };
  const auto typeLibrary = static_cast<std::int32_t>(0x80040200u);
  const auto serverClass = static_cast<std::int32_t>(0x80040201u);
  const struct {
    const char* name;
    std::string before;
    std::size_t failingWrite;
    std::function<std::int32_t()> call;
    std::int32_t code;
    std::string after;
  } rows[] = {
      {"first", "", 1, add, typeLibrary, ""},
      {"second", "", 2, add, serverClass, kTypeLibraryText},
      {"first back", kTypeLibraryText + kClassText, 1, remove, typeLibrary,
       kTypeLibraryText + kClassText},
      {"second back", kTypeLibraryText + kClassText, 2, remove, serverClass, kClassText},
      {"a path that says nothing", "", 0, [&] { return RegisterServer(store, "lib.so"); },
       typeLibrary, ""},
      {"a path that no line holds", "", 0, [&] { return RegisterServer(store, "/a\nb.so"); },
       typeLibrary, ""},
  };
  for (const auto& row : rows) {
    disk.AddFile(kUserFile, row.before);
    if (row.failingWrite > 0) {
      disk.FailOn("write", kUserFile, ErrorCode::NoSpace, row.failingWrite - 1);
    }
    EXPECT_EQ(row.call(), row.code) << row.name;
    EXPECT_EQ(disk.BytesOf(kUserFile), row.after) << row.name;
    EXPECT_EQ(store.LastFailure().place, kUserFile) << row.name;
    disk.ClearFailures();
  }
  disk.FailOn("read", kUserFile, ErrorCode::Io);  // existing contents unknown
  EXPECT_EQ(add(), typeLibrary);
}

TEST(TypeLibrary, TellsEveryMethodWithItsTypes) {
  const std::string& text = TypeLibraryText();
  std::size_t methods = 0;
  for (std::size_t at = 0; (at = text.find("<Method ", at)) != text.npos; ++at) ++methods;
  EXPECT_EQ(methods, CProjectManager::Table().Methods().size());
  for (const char* part : {
           "<TypeLibrary Header=\"TarnProjectManager\" "
           "Id=\"{E8E835AB-D2A1-42C2-B4CC-4E62A03378AE}\" Version=\"1.0\">\n"
           "  <Class Header=\"ProjectManager\" Id=\"{D9B8CA9D-D21F-48A2-8AC1-31865478798D}\" "
           "ProgID=\"TarnProjectManager.ProjectManager\" />\n"
           "  <Interface Header=\"IProjectManager\" "
           "Id=\"{F9C0223E-22A5-40A4-BEDE-46BF952B9F48}\">\n",
           "    <Method Header=\"ProjectClose\" Id=\"2\" Result=\"long\" />\n",
           "    <Method Header=\"Init\" Id=\"8\" Result=\"long\">\n"
           "      <Argument Header=\"applicationPath\" Type=\"text\" />\n"
           "      <Argument Header=\"dataPath\" Type=\"text\" />\n"
           "      <Argument Header=\"mainframeHandle\" Type=\"long\" />\n"
           "    </Method>\n",
           "<Argument Header=\"toolmanager\" Type=\"object\" />\n",
           "    <Method Header=\"GetDynamicCommands\" Id=\"35\" Result=\"text\">\n"
           "      <Argument Header=\"commandId\" Type=\"unsigned long\" />\n",
           "    <Method Header=\"ReportMessage\" Id=\"37\" Result=\"none\">\n",
       }) {
    EXPECT_NE(text.find(part), text.npos) << part << "\nis not in\n" << text;
  }
}

TEST(EmbeddingDocument, HasARowForEveryMethod) {
  const std::string path = std::string(std::getenv("TARN_SOURCE_DIR")) + "/docs/embedding.md";
  const auto text = FileSystem::Native().ReadWholeFile(path);
  ASSERT_TRUE(text) << path;
  for (const auto& method : CProjectManager::Table().Methods()) {
    std::string row =
        "\n| " + std::to_string(method.info.id) + " | `" + std::string(method.info.name) + "(";
    for (std::size_t i = 0; i < method.info.arguments.size(); ++i) {
      row.append(i == 0 ? "" : ", ").append(method.info.arguments[i]);
    }
    EXPECT_NE(text->find(row + ")` | "), text->npos) << row;
  }
}

}  // namespace
}  // namespace tarn::test
