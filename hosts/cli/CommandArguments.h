#pragma once

#include <any>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/cli/Invocation.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tarn::host {

// A declared argument or option, to set its further properties. Valid as long as its parser.
class Argument {
 public:
  explicit Argument(CLI::Option& declared) : option_(&declared) {}

  Argument Required() const;
  // Describes the argument as required, for a command that checks it itself because the meaning of
  // its arguments depends on their values.
  Argument RequiredByCommand() const;
  // Rejects an empty value, which a script may pass from an unset variable.
  Argument NotEmpty() const;
  Argument OneOf(const std::vector<std::string>& values) const;
  // Accepts only a number in this range.
  Argument Between(int least, int most) const;
  // Accepts only values for which the function returns true; `wanted` describes them.
  Argument Valid(bool (*isValid)(const std::string&), const char* wanted) const;
  Argument Excludes(Argument other) const;
  Argument Needs(Argument other) const;

 private:
  CLI::Option* option_;
};

// Declares the arguments and options of one command. Parsing stores their values in the variables
// that are passed, which must live as long as the parser.
class CommandArguments {
 public:
  CommandArguments(CLI::App& command, Invocation& invocation)
      : app_(command), asked_(invocation), own_(std::make_shared<std::any>()) {}

  // The values that several commands have.
  Invocation& Common() { return asked_; }
  // The values that only this command has, in a struct of its file. Created by the first call; a
  // command has one such struct.
  template <class Options>
  Options& Own() {
    if (!own_->has_value()) own_->emplace<Options>();
    return std::any_cast<Options&>(*own_);
  }
  // The same values, for the invocation.
  std::shared_ptr<const std::any> ShareOwn() const { return own_; }

  Argument Positional(const std::string& name, std::string& value, const std::string& help);
  // A positional argument that may be repeated.
  Argument Positional(const std::string& name, std::vector<std::string>& values,
                      const std::string& help);
  // `names` like "-c,--config"; `type` is the placeholder for the value, which also determines how
  // shells complete it.
  Argument Option(const std::string& names, std::string& value, const std::string& type,
                  const std::string& help);
  // An option that may be repeated, with one value each time.
  Argument Option(const std::string& names, std::vector<std::string>& values,
                  const std::string& type, const std::string& help);
  Argument Flag(const std::string& names, bool& value, const std::string& help);
  // Returns an option that is already declared, such as "--json".
  Argument Find(const std::string& name);

  // Arguments and options that several commands have.
  void AddDisplay();  // --quiet, --json, --no-color
  void AddProject();
  void AddProjectAndApp(const char* help = "Use only this application");
  void AddConfiguration();
  void AddNode();
  void AddJobs();
  void AddKeepGoing();
  void AddLoadLimits();
  void AddVerbose(const char* help);
  // For commands that build, clean, change the project's files, or export the whole project.
  void AddDamagedOk();
  void AddTrust();
  void AddOutsideOk();  // with --trust
  // For commands that write the project's files: --no-wait, --trust, --outside-ok.
  void AddWriting();
  // For commands that open the project and change its files: AddDamagedOk() and AddWriting().
  void AddEditing();

 private:
  CLI::App& app_;
  Invocation& asked_;
  std::shared_ptr<std::any> own_;
};

// Returns true if almost every command has this option, so that it is listed after a command's own
// ones.
bool IsCommonFlag(std::string_view name);

}  // namespace tarn::host
