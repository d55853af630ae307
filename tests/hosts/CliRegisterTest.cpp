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
  project.Point("TARN_ROOT", "root");
  std::filesystem::create_directories(project.PathOf("root/targets"));
  project.Write("root/targets/a.xml", "<Targets Header='A' />");
  const std::string name = "  TarnProjectManager.ProjectManager";
  const std::string whole = name + "  " + LibraryPath() + "\n";
  const std::string targets = "  targets  " + project.PathOf("root/targets") + "\n";
  const auto reported = [&](const std::string& what, const std::string& done) {
    return done + what + whole + done + what + targets;
  };
  const std::string left = "tarn: It is still registered for all users, as " + LibraryPath() + "\n";
  const struct {
    std::vector<std::string> arguments;
    std::string out, err;
  } steps[] = {
      {{"unregister"}, "wasn't registered for this user" + name + "\n", ""},
      {{"register"}, reported(" for this user", "registered"), ""},
      {{"register"}, reported(" for this user", "already registered"), ""},
      {{"register", "--system", "-q"}, "", ""},
      {{"unregister"}, reported(" for this user", "unregistered"), left},
      {{"unregister", "-q"}, "", ""},
      {{"unregister", "--system"}, reported(" for all users", "unregistered"), ""},
      {{"register", "--json"},
       "{\n  \"changed\": true,\n  \"class\": \"TarnProjectManager.ProjectManager\",\n"
       "  \"library\": \"" +
           LibraryPath() +
           "\",\n  \"registered\": true,\n"
           "  \"scope\": \"user\",\n  \"targets\": [\n    \"" +
           project.PathOf("root/targets/a.xml") + "\"\n  ]\n}\n",
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
  project.Point("TARN_SETTINGS", "in the way");
  const auto answer = project.Run({"register", "--system"});
  EXPECT_EQ(answer.code, 3);
  EXPECT_EQ(answer.out, "");
  EXPECT_TRUE(answer.err.starts_with("tarn: The server can't be registered: " +
                                     project.PathOf("in the way")))
      << answer.err;
  EXPECT_TRUE(answer.err.ends_with("--system requires root privileges.\n")) << answer.err;
}

}  // namespace
}  // namespace tarn::host
