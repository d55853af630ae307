// Commands with insufficient resources, or without a folder for their own files.

#include <gtest/gtest.h>

#include <filesystem>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;
using std::chrono::seconds;

CliProject::Answer RunLimited(CliProject& project, const std::string& limit) {
  return project.RunProgram("/bin/sh",
                            {"-c", limit + "; exec \"$0\" build demo.tprj -j8", TARN_PROGRAM});
}

// The program exits normally, reports the reason, and its records are correct.
TEST(CliLimits, TooLittleOfSomethingIsAnErrorAndNothingElse) {
  std::vector<std::string> limits;
  for (const int files : {4, 6, 8, 10, 12, 16, 20, 24, 32, 64}) {
    limits.push_back("ulimit -n " + std::to_string(files));
  }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  for (const int megabytes : {16, 24, 32, 40, 48, 60, 64, 96, 128, 192}) {
    limits.push_back("ulimit -v " + std::to_string(megabytes * 1024));
  }
#endif
  for (const int blocks : {0, 1, 2, 4, 8, 16}) {
    limits.push_back("ulimit -f " + std::to_string(blocks));
  }
  for (const std::string& limit : limits) {
    SCOPED_TRACE(limit);
    CliProject project;
    const auto limited = RunLimited(project, limit);
    EXPECT_LT(limited.time, seconds(20));
    EXPECT_TRUE(limited.code >= 0 && limited.code < 128) << limited.code;
    EXPECT_TRUE(limited.code == 0 || !(limited.out + limited.err).empty());
    const auto next = project.Run({"build"});
    EXPECT_EQ(next.code, 0) << next.out << next.err;
    EXPECT_TRUE(limited.code != 0 || Has(next.out, "Nothing to do")) << next.out;
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do"));
  }
}

// The compiler uses a different temporary folder.
TEST(CliLimits, WithoutAPlaceForTemporaryFilesTheLogIsWholeAnyway) {
  CliProject project;
  for (const char* name : {"gcc", "g++"}) {
    project.AddProgram(name,
                       "#!/bin/sh\nTMPDIR=/tmp exec /usr/bin/" + std::string(name) + " \"$@\"\n");
  }
  project.Write("src/c.c", "#warning watch out\nint c(void) { return 3; }\n");
  for (auto& [name, value] : project.environment) {
    if (name == "TMPDIR") value = "/proc";
  }
  EXPECT_EQ(project.Run({"build"}).code, 0);
  EXPECT_TRUE(Has(project.Out({"log"}), "watch out"));
  for (const auto& each : fs::directory_iterator(project.PathOf("../settings/data"))) {
    EXPECT_FALSE(Has(each.path().string(), "opj")) << "the log is removed at the end";
  }
  // There is no folder in the user's data either.
  fs::remove_all(project.PathOf("../settings/data"));
  project.Write("../settings/data", "");
  const auto nowhere = project.Run({"rebuild"});
  EXPECT_EQ(nowhere.code, 1);
  EXPECT_TRUE(Has(nowhere.out, "The log can't be written to ")) << nowhere.out;
}

// Viewing, building and creating a project don't require any user folder.
TEST(CliLimits, AnUnusableHomeIsNoReasonToFail) {
  for (const char* home : {"/dev/null", "/proc/self/none"}) {
    SCOPED_TRACE(home);
    CliProject project;
    std::erase_if(project.environment, [](const auto& each) {
      return each.first == "TARN_SETTINGS" || each.first == "XDG_DATA_HOME";
    });
    project.environment.emplace_back("HOME", home);
    EXPECT_TRUE(Has(project.Out({"tree"}), "a.c"));
    EXPECT_TRUE(Has(project.Out({"new", "made"}), "created made/made.tprj"));
    EXPECT_EQ(project.Run({"build"}).code, 0);
  }
}

}  // namespace
}  // namespace tarn::host
