#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include "hosts/CliProject.h"

namespace tarn::host {
namespace {

// Returns true if a build with nothing to do was answered without opening the project: a normal one
// keeps its answers anew.
bool IsAnsweredAtOnce(CliProject& project, const std::filesystem::path& kept) {
  const auto before = std::filesystem::last_write_time(kept);
  EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do ("));
  return std::filesystem::last_write_time(kept) == before;
}

// Returns the file of the kept answers; empty if there is none.
std::filesystem::path FindKept(const CliProject& project) {
  const std::filesystem::path folder = project.PathOf("../settings/state/idle");
  if (!std::filesystem::exists(folder)) return {};
  for (const auto& each : std::filesystem::directory_iterator(folder)) return each.path();
  return {};
}

TEST(CliIdle, NothingIsKeptOfABuildThatDidSomething) {
  CliProject project;
  for (const std::vector<std::string>& words : {std::vector<std::string>{"build"},
                                                {"build", "-v"},
                                                {"build", "--json"},
                                                {"build", "--trace", "trace.json"}}) {
    project.Out(words);
    EXPECT_EQ(FindKept(project), "") << words.back();
  }
}

// What changes what is built is in the tables of CliCurrent, whose builds are repeated as here.
TEST(CliIdle, ANewQuestionIsAnsweredByANormalBuild) {
  const struct {
    const char* what;
    std::function<void(CliProject& project, const std::filesystem::path& kept)> change;
  } rows[] = {
      {"environment",
       [](auto& at, auto&) { at.environment.emplace_back("SOME_FOLDER", at.PathOf("more")); }},
      {"user's settings",
       [](auto& at, auto&) { at.Edit("../settings/user/profile.ini", "[a]\nb=c\n"); }},
      {"cut answers",
       [](auto&, auto& kept) {
         std::filesystem::resize_file(kept, std::filesystem::file_size(kept) / 2);
       }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    CliProject project;
    project.Out({"build"});
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_TRUE(Has(project.Out({"build"}), "Nothing to do ("));
    const std::filesystem::path kept = FindKept(project);
    ASSERT_NE(kept, "");
    ASSERT_TRUE(IsAnsweredAtOnce(project, kept));
    row.change(project, kept);
    // Answers about a file that may still change in this tick of the clock aren't kept.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(IsAnsweredAtOnce(project, kept));
    EXPECT_TRUE(IsAnsweredAtOnce(project, kept));
  }
}

}  // namespace
}  // namespace tarn::host
