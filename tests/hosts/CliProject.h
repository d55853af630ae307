#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/process/Process.h"

namespace tarn::host {

bool Has(const std::string& text, const std::string& part);

// The words of a command line, with blanks between them.
std::vector<std::string> Words(std::string_view line);

// Names of what a build has built, in order: "a.c app".
std::string Built(const std::string& out);

// A small project in a temporary folder, built with this machine's compiler, and the program that
// works on it. The application "app" is made of src/a.c and src/b.c, which both include src/a.h,
// and src/c.c, which includes nothing. All sources are an hour old.
class CliProject {
 public:
  CliProject();
  CliProject(const CliProject&) = delete;
  CliProject& operator=(const CliProject&) = delete;
  ~CliProject();

  struct Answer {
    int code = -1;
    std::string out, err;
    std::chrono::milliseconds time{0};
  };
  // Runs the program in the project's folder. `onOutput` is called as its output comes, with all
  // of it so far.
  Answer Run(std::vector<std::string> arguments,
             const std::function<void(Process&, const std::string& out)>& onOutput = {});

  // Runs the program and gives its output; it has to end well.
  std::string Out(std::vector<std::string> arguments);
  // Runs the program, which has to refuse, with that exit code and these words among its errors.
  void ExpectRefusal(std::vector<std::string> arguments, int code, const std::string& said);

  // Runs another program in the same way.
  Answer RunProgram(const std::string& program, std::vector<std::string> arguments,
                    const std::function<void(Process&, const std::string& out)>& onOutput = {});

  // Replaces the project by one with these applications, each with its sources in src. The first
  // one is active.
  void WriteProject(
      const std::vector<std::pair<std::string, std::vector<std::string>>>& applications);
  std::string PathOf(const std::string& name) const { return (folder / name).string(); }
  bool Exists(const std::string& name) const { return std::filesystem::exists(folder / name); }
  // Writes a file that is older than everything that is built.
  void Write(const std::string& name, const std::string& text);
  std::string Read(const std::string& name) const;
  // Replaces the text of a file, now, or makes it and its folder.
  void Edit(const std::string& name, const std::string& text);
  // Makes a file newer than everything that was built until now.
  void Touch(const std::string& name);
  // The user trusts the project.
  void Trust();
  // Puts a program in front of all others that the project's tools can see.
  void AddProgram(const std::string& name, const std::string& script);

  // Makes a variable of the program's surroundings the path of something in the project's folder.
  void Point(const std::string& variable, const std::string& name);

  std::vector<std::pair<std::string, std::string>> environment;

 private:
  std::filesystem::path root;    // of everything
  std::filesystem::path folder;  // of the project
};

}  // namespace tarn::host
