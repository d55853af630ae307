// Projects written by earlier versions, with derived attributes and growing indentation.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

namespace fs = std::filesystem;

// Returns the non-empty lines.
std::multiset<std::string> LinesOf(const std::string& text) {
  std::multiset<std::string> lines;
  for (const std::string_view line : Split(text, '\n')) {
    if (!Trim(line).empty()) lines.emplace(line);
  }
  return lines;
}

std::size_t CountMissing(const std::string& from, const std::string& in) {
  const auto a = LinesOf(from);
  const auto b = LinesOf(in);
  std::vector<std::string> rest;
  std::ranges::set_difference(a, b, std::back_inserter(rest));
  return rest.size();
}

struct EarlierProject {
  const char* name;
  std::vector<std::string> files;  // files of the project
  const char* built;
};

const EarlierProject kProjects[] = {
    {"fresh", {"fresh.tprj", "fresh.tapp"}, "Built 2 files"},
    {"grown", {"grown.tprj", "grown.tapp", "boot/boot.tapp"}, "Built 5 files"},
};

class CliEarlier : public ::testing::TestWithParam<bool> {};

TEST_P(CliEarlier, AProjectIsOpenedBuiltAndSavedWithFewChanges) {
  for (const EarlierProject& row : kProjects) {
    SCOPED_TRACE(row.name);
    CliProject project;
    const std::string name = row.name;
    fs::copy(fs::path(TARN_EARLIER) / name, project.PathOf(name), fs::copy_options::recursive);
    const auto texts = [&] {
      std::vector<std::string> all;
      for (const std::string& file : row.files) all.push_back(project.Read(name + "/" + file));
      return all;
    };
    for (const std::string& file : row.files) {
      std::string text = project.Read(name + "/" + file);
      if (GetParam()) std::erase(text, '\r');
      project.Write(name + "/" + file, text);
    }
    const auto earlier = texts();
    const auto tree = project.Run({"tree", name});
    EXPECT_EQ(tree.err, "");
    EXPECT_TRUE(Has(project.Out({"build", name}), row.built));
    EXPECT_TRUE(Has(project.Out({"build", name}), "Nothing to do"));
    EXPECT_EQ(project.Out({"check", name}), "No findings\n");
    EXPECT_EQ(texts(), earlier) << "a build changes nothing";

    const std::string source = name + "/src/more.c";
    project.Write(source, "");
    project.Out({"add", name, source});
    const auto added = texts();
    std::size_t more = 0;
    for (std::size_t i = 0; i < added.size(); ++i) {
      more += CountMissing(added[i], earlier[i]);
      EXPECT_EQ(CountMissing(earlier[i], added[i]), 0U) << added[i];
      EXPECT_EQ(added[i].find('\r') == std::string::npos, GetParam());
    }
    EXPECT_EQ(more, 1U) << "one file is one line";
    project.Out({"remove", name, source});
    const auto removed = texts();
    project.Out({"add", name, source});
    EXPECT_EQ(texts(), added) << "from the first save on it is the same";
    project.Out({"remove", name, source});
    EXPECT_EQ(texts(), removed);
    EXPECT_EQ(project.Out({"tree", name}), tree.out);
  }
}

INSTANTIATE_TEST_SUITE_P(LineEnds, CliEarlier, ::testing::Bool());

}  // namespace
}  // namespace tarn::host
