// Builds with launchers that run the compiler on other machines, or not at all: real daemons of
// distcc on the loopback interface, and a real cache of ccache.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <thread>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

// Two daemons that compile for this machine only.
class CliLaunchers : public ::testing::Test {
 protected:
  static constexpr int kDaemons = 2;

  void SetUp() override {
    for (const char* program : {"distcc", "distccd", "ccache"}) {
      if (FindProgram(program).empty()) GTEST_SKIP() << program << " is not installed";
    }
    std::string hosts;
    for (int i = 0; i < kDaemons; ++i) hosts += StartDaemon(i) + "/3 ";
    project.environment.emplace_back("DISTCC_HOSTS", hosts);
    project.environment.emplace_back("DISTCC_BACKOFF_PERIOD", "0");
    std::filesystem::create_directory(project.PathOf("../distcc"));
    project.Point("DISTCC_DIR", "../distcc");
    project.Point("CCACHE_DIR", "../ccache");
  }
  void TearDown() override {
    for (const auto& daemon : daemons_) daemon->Stop(std::chrono::seconds(1));
  }

  // Returns the address of a daemon that accepts compilations.
  std::string StartDaemon(int number) {
    const std::string log = LogOf(number);
    for (int attempt = 0; attempt < 20; ++attempt) {
      const int port = 20'000 + std::rand() % 20'000;
      const std::string command =
          "exec distccd --daemon --no-detach --allow 127.0.0.1 --listen 127.0.0.1 --port " +
          std::to_string(port) + " --jobs 3 --log-stderr --log-level=info 2>\"$1\"";
      auto process = ProcessLauncher::Native().Start({"sh", {"-c", command, "sh", log}, {}, "/"});
      if (!process) break;
      for (int i = 0; i < 200 && !Has(project.Read(NameOfLog(number)), "failed"); ++i) {
        if (Has(project.Read(NameOfLog(number)), "daemon started")) {
          daemons_.push_back(std::move(*process));
          return "127.0.0.1:" + std::to_string(port);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
      }
    }
    ADD_FAILURE() << "no daemon starts: " << project.Read(NameOfLog(number));
    return "127.0.0.1";
  }
  static std::string NameOfLog(int number) { return "../daemon" + std::to_string(number); }
  std::string LogOf(int number) const { return project.PathOf(NameOfLog(number)); }

  // Returns the number of files that the daemons have compiled.
  int CountCompiled() const {
    std::size_t count = 0;
    for (int i = 0; i < kDaemons; ++i) {
      const std::vector<std::string> lines = SplitLines(project.Read(NameOfLog(i)));
      count += static_cast<std::size_t>(std::ranges::count_if(
          lines, [](const std::string& line) { return Has(line, "COMPILE_OK"); }));
    }
    return static_cast<int>(count);
  }

  CliProject project;

 private:
  std::vector<std::unique_ptr<Process>> daemons_;
};

TEST_F(CliLaunchers, EachBuildsWhatTheCompilerAloneWouldAndNoticesChanges) {
  const struct {
    const char* name;
    std::vector<std::pair<std::string, std::string>> environment;
    const char* option;
    int compiled;  // by the daemons in the first build
    int again;     // after the outputs were deleted
  } rows[] = {
      {"distcc", {{"TARN_LAUNCHER", "distcc"}}, "", 3, 3},
      {"distcc by option", {}, "distcc", 3, 3},
      {"ccache", {{"TARN_LAUNCHER", "ccache"}}, "", 0, 0},
      {"ccache before distcc",
       {{"TARN_LAUNCHER", "ccache"}, {"CCACHE_PREFIX", "distcc"}, {"CCACHE_NAMESPACE", "2"}},
       "",
       3,
       0},
  };
  project.Out({"build"});
  const int code = project.RunProgram(project.PathOf("build/Standard/app"), {}).code;
  const std::string plain = project.Read("build/Standard/app.obj/src/a.c.o");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto before = project.environment;
    project.environment.insert(project.environment.end(), row.environment.begin(),
                               row.environment.end());
    const bool isOption = row.option[0] != '\0';
    if (isOption) project.Out({"options", "set", "Build.Launcher", row.option});
    project.Out({"clean"});
    int count = CountCompiled();
    const std::string first = project.Out({"build"});
    EXPECT_EQ(Built(first), "a.c b.c c.c app");
    EXPECT_FALSE(Has(first, "warning")) << first;
    EXPECT_EQ(CountCompiled() - count, row.compiled);
    EXPECT_EQ(project.RunProgram(project.PathOf("build/Standard/app"), {}).code, code);
    // An object that was made remotely contains the name of a temporary file.
    if (row.compiled == 0) {
      EXPECT_TRUE(project.Read("build/Standard/app.obj/src/a.c.o") == plain);
    }
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));

    project.Out({"clean"});
    count = CountCompiled();
    EXPECT_EQ(Built(project.Out({"build"})), "a.c b.c c.c app");
    EXPECT_EQ(CountCompiled() - count, row.again);

    const std::string header = project.Read("src/a.h");
    project.Edit("src/a.h", header + "\n/* " + row.name + " */\n");
    EXPECT_EQ(Built(project.Out({"build"})), "a.c b.c app");
    project.Edit("src/b.c", "int main(void) { return nothing; }\n");
    const auto failed = project.Run({"build"});
    EXPECT_EQ(failed.code, 1);
    EXPECT_TRUE(Has(failed.out, "src/b.c:1")) << failed.out;
    project.Edit("src/b.c", "#include \"a.h\"\nint main(void) { return 0; }\n");
    project.Edit("src/a.h", header);
    project.Out({"build"});
    if (isOption) project.Out({"options", "reset", "Build.Launcher"});
    project.environment = before;
  }
}

TEST_F(CliLaunchers, TheJobsAreThoseOfTheHosts) {
  project.environment.emplace_back("TARN_LAUNCHER", "distcc");
  const std::string timing = project.Out({"status", "--timing", "--json"});
  EXPECT_TRUE(Has(timing, "\"jobs\": 6") || std::thread::hardware_concurrency() > 6) << timing;
}

}  // namespace
}  // namespace tarn::host
