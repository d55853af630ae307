#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

std::string LibraryPath() {
  const auto bin = std::filesystem::canonical(TARN_PROGRAM).parent_path();
  return (bin.parent_path() / "lib/libTarnProjectManager.so").string();
}

TEST(CliRegister, SaysWhatItDidForWhomAndWhatIsLeft) {
  CliProject project;
  const std::string name = "  TarnProjectManager.ProjectManager";
  const std::string whole = name + "  " + LibraryPath() + "\n";
  const std::string left = "tarn: It is still registered for all users, as " + LibraryPath() + "\n";
  const struct {
    std::vector<std::string> arguments;
    std::string out, err;
  } steps[] = {
      {{"unregister"}, "wasn't registered for this user" + name + "\n", ""},
      {{"register"}, "registered for this user" + whole, ""},
      {{"register"}, "already registered for this user" + whole, ""},
      {{"register", "--system", "-q"}, "", ""},
      {{"unregister"}, "unregistered for this user" + whole, left},
      {{"unregister", "-q"}, "", ""},
      {{"unregister", "--system"}, "unregistered for all users" + whole, ""},
      {{"register", "--json"},
       "{\n  \"changed\": true,\n  \"class\": \"TarnProjectManager.ProjectManager\",\n"
       "  \"library\": \"" +
           LibraryPath() +
           "\",\n  \"registered\": true,\n"
           "  \"scope\": \"user\"\n}\n",
       ""},
  };
  for (const auto& step : steps) {
    const auto answer = project.Run(step.arguments);
    EXPECT_EQ(answer.code, 0) << step.arguments[0];
    EXPECT_EQ(answer.out, step.out);
    EXPECT_EQ(answer.err, step.err);
  }
}

TEST(CliRegister, ASettingsFolderThatCannotBeWrittenIsThree) {
  CliProject project;
  project.Write("in the way", "");
  for (auto& [name, value] : project.environment) {
    if (name == "TARN_SETTINGS") value = project.PathOf("in the way");
  }
  const auto answer = project.Run({"register", "--system"});
  EXPECT_EQ(answer.code, 3);
  EXPECT_EQ(answer.out, "");
  EXPECT_TRUE(answer.err.starts_with("tarn: The server can't be registered: " +
                                     project.PathOf("in the way")))
      << answer.err;
  EXPECT_TRUE(answer.err.ends_with("--system needs the rights of root.\n")) << answer.err;
}

}  // namespace
}  // namespace tarn::host
