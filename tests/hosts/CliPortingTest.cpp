#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "hosts/CliProject.h"
#include "platform/text/Text.h"

namespace tarn::host {
namespace {

// Follows docs/porting-a-toolchain.md: a paragraph with nothing but `a path`: and the code block
// after it are a file; indented lines that start with "$ " are commands, and those after a command
// are lines of its output.
class Walkthrough {
 public:
  explicit Walkthrough(CliProject& project) : project_(project) {
    for (const auto& [name, value] : project.environment) {
      if (name == "TARN_SETTINGS") settings_ = value + "/user";
    }
  }

  void Follow(const std::string& page) {
    std::istringstream lines(page);
    std::string file;
    for (std::string line; std::getline(lines, line);) {
      const bool isPath = line.size() > 3 && line.front() == '`' && line.ends_with("`:");
      if (isPath) file = line.substr(1, line.size() - 3);
      if (line.starts_with("```") && !file.empty()) {
        WriteBlock(file, lines);
        file.clear();
      }
      if (line.starts_with("    $ ")) {
        RunCommand(Words(line.substr(6)));
      } else if (line.starts_with("    ") && !output_.empty()) {
        EXPECT_TRUE(Has(output_, line.substr(4) + "\n")) << line << "\n" << output_;
      }
    }
  }

  int files = 0, commands = 0;

 private:
  void WriteBlock(const std::string& name, std::istringstream& lines) {
    const std::string path = ReplaceAll(name, "~/.config/tarn", settings_);
    const std::string full = path == name ? project_.PathOf(name) : path;
    std::filesystem::create_directories(std::filesystem::path(full).parent_path());
    std::ofstream out(full);
    for (std::string line; std::getline(lines, line) && !line.starts_with("```");) {
      out << line << "\n";
    }
    ++files;
  }

  void RunCommand(std::vector<std::string> words) {
    const bool isOwn = words.front() == "tarn";
    if (isOwn) {
      words.erase(words.begin());
    } else {
      words.insert(words.begin(), "20");
    }
    const auto answer =
        isOwn ? project_.Run(words) : project_.RunProgram("/usr/bin/timeout", words);
    EXPECT_EQ(answer.code, 0) << answer.out << answer.err;
    output_ = answer.out;
    ++commands;
  }

  CliProject& project_;
  std::string settings_;
  std::string output_;  // of the last command
};

TEST(ToolchainPorting, TheFilesAndCommandsOfThePageWork) {
  for (const char* program : {"or1k-elf-gcc", "qemu-system-or1k"}) {
    if (!FindProgram(program).empty()) continue;
    GTEST_SKIP() << "not installed: " << program << " (scripts/setup toolchains)";
  }
  CliProject project;
  std::ifstream page(std::string(TARN_SHARE) + "/../docs/porting-a-toolchain.md");
  std::stringstream text;
  text << page.rdbuf();
  Walkthrough walkthrough(project);
  walkthrough.Follow(text.str());
  EXPECT_EQ(walkthrough.files, 6);
  EXPECT_EQ(walkthrough.commands, 4);
}

}  // namespace
}  // namespace tarn::host
