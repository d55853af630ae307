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

// Splits a command line at spaces.
std::vector<std::string> Words(std::string_view line);

// Returns the names of the files that were built, in order: "a.c app".
std::string Built(const std::string& out);

// A small project in a temporary folder, built with the installed compiler, and the program that
// works on it. The application "app" consists of src/a.c and src/b.c, which both include src/a.h,
// and src/c.c, which includes nothing. All sources are one hour old.
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
  // Runs the program in the project's folder. `onOutput` is called each time output arrives, with
  // all of it so far.
  Answer Run(std::vector<std::string> arguments,
             const std::function<void(Process&, const std::string& out)>& onOutput = {});

  // Runs the program and returns its output; it must succeed.
  std::string Out(std::vector<std::string> arguments);
  // Runs the program, which must fail with this exit code and print this text on the error stream.
  void ExpectRefusal(std::vector<std::string> arguments, int code, const std::string& said);

  // Like Run(), for a different program.
  Answer RunProgram(const std::string& program, std::vector<std::string> arguments,
                    const std::function<void(Process&, const std::string& out)>& onOutput = {});

  // Replaces the project by one with these applications and their sources in src. The first one is
  // active.
  void WriteProject(
      const std::vector<std::pair<std::string, std::vector<std::string>>>& applications);
  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }
  bool Exists(const std::string& name) const { return std::filesystem::exists(folder_ / name); }
  // Writes a file that is older than all outputs.
  void Write(const std::string& name, const std::string& text);
  std::string Read(const std::string& name) const;
  // Replaces the content of a file with the current time, or creates it with its folder.
  void Edit(const std::string& name, const std::string& text);
  // Makes a file newer than all existing outputs.
  void Touch(const std::string& name);
  // Marks the project as trusted.
  void Trust();
  // Adds a program at the front of the tools' PATH.
  void AddProgram(const std::string& name, const std::string& script);

  // Sets an environment variable of the program to a path in the project's folder.
  void Point(const std::string& variable, const std::string& name);

  std::vector<std::pair<std::string, std::string>> environment;

 private:
  std::filesystem::path root_;    // contains everything
  std::filesystem::path folder_;  // project folder
};

}  // namespace tarn::host
