#include "hosts/cli/CommandArguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "hosts/cli/CommandEntry.h"
#include "hosts/core/Jobs.h"

namespace tarn::host {

Argument Argument::Required() const {
  option_->required();
  return *this;
}

Argument Argument::RequiredByCommand() const {
  option_->group(kRequiredGroup);
  return *this;
}

Argument Argument::NotEmpty() const {
  option_->check(CLI::Validator(
      [](std::string& text) { return text.empty() ? "needs a name" : std::string(); }, ""));
  return *this;
}

Argument Argument::OneOf(const std::vector<std::string>& values) const {
  option_->check(CLI::IsMember(values));
  return *this;
}

Argument Argument::Between(int least, int most) const {
  option_->check(CLI::Validator(
      [least, most](std::string& text) {
        int number = 0;
        const char* const end = text.data() + text.size();
        const auto read = std::from_chars(text.data(), end, number);
        const bool isNumber = read.ec == std::errc() && read.ptr == end;
        if (isNumber && number >= least && number <= most) return std::string();
        return "must be a number from " + std::to_string(least) + " to " + std::to_string(most);
      },
      ""));
  return *this;
}

Argument Argument::Valid(bool (*isValid)(const std::string&), const char* wanted) const {
  option_->check(CLI::Validator(
      [isValid, wanted](std::string& text) {
        return isValid(text) ? std::string() : std::string("must be ") + wanted;
      },
      ""));
  return *this;
}

Argument Argument::Excludes(Argument other) const {
  option_->excludes(other.option_);
  return *this;
}

Argument Argument::Needs(Argument other) const {
  option_->needs(other.option_);
  return *this;
}

Argument CommandArguments::Positional(const std::string& name, std::string& value,
                                      const std::string& help) {
  return Argument(*app_.add_option(name, value, help));
}

Argument CommandArguments::Positional(const std::string& name, std::vector<std::string>& values,
                                      const std::string& help) {
  return Argument(*app_.add_option(name, values, help));
}

Argument CommandArguments::Option(const std::string& names, std::string& value,
                                  const std::string& type, const std::string& help) {
  return Argument(*app_.add_option(names, value, help)->type_name(type));
}

Argument CommandArguments::Option(const std::string& names, std::vector<std::string>& values,
                                  const std::string& type, const std::string& help) {
  return Argument(*app_.add_option(names, values, help)->type_name(type)->allow_extra_args(false));
}

Argument CommandArguments::Flag(const std::string& names, bool& value, const std::string& help) {
  return Argument(*app_.add_flag(names, value, help));
}

Argument CommandArguments::Find(const std::string& name) {
  return Argument(*app_.get_option(name));
}

void CommandArguments::AddDisplay() {
  Flag("-q,--quiet", asked_.quiet, "Print errors only");
  Flag("--json", asked_.json, "Print JSON");
  Flag("--no-color", asked_.noColor, "Disable colours (same as NO_COLOR)");
}

void CommandArguments::AddProject() {
  Positional("PROJECT", asked_.project, "Project file (*.tprj), or a folder that contains one")
      .NotEmpty();
}

void CommandArguments::AddProjectAndApp(const char* help) {
  AddProject();
  Option("-a,--app", asked_.application, "APP", help).NotEmpty();
}

void CommandArguments::AddConfiguration() {
  Option("-c,--config", asked_.configuration, "CONFIG", "Use this configuration for this run only")
      .NotEmpty();
}

void CommandArguments::AddNode() {
  Option("-n,--node", asked_.node, "NODE", "File, group or application, by path or label")
      .NotEmpty();
}

void CommandArguments::AddJobs() {
  Option("-j,--jobs", asked_.limits.jobs, "N", "Run up to N tools at the same time")
      .Between(1, kMaxJobs);
}

void CommandArguments::AddKeepGoing() {
  Option("-k,--keep-going", asked_.limits.failures, "N",
         "Stop after N failures (0: never), not the first")
      .Between(0, kMaxFailures);
}

void CommandArguments::AddLoadLimits() {
  Option("-l,--load", asked_.limits.load, "LOAD",
         "Start no further tool while the load average is LOAD or more")
      .Valid([](const std::string& text) { return ParseLoad(text) >= 0; }, kLoadText);
  Option("--memfree", asked_.limits.memory, "SIZE",
         "Start no further tool with less than SIZE (2G, 10%) of memory available")
      .Valid([](const std::string& text) { return IsMemory(text); }, kMemoryText);
}

void CommandArguments::AddVerbose(const char* help) {
  Flag("-v,--verbose", asked_.verbose, help).Excludes(Find("--quiet"));
}

void CommandArguments::AddDamagedOk() {
  Flag("--damaged-ok", asked_.damagedOk, "Continue with a project that could only be read in part");
}

void CommandArguments::AddTrust() {
  Flag("--trust", asked_.trust, "Trust the project for this run only; see `tarn help trust`");
}

void CommandArguments::AddOutsideOk() {
  AddTrust();
  Flag("--outside-ok", asked_.outsideOk, "Also write applications outside the project's folder");
}

void CommandArguments::AddWriting() {
  Flag("--no-wait", asked_.noWait, "Fail (exit code 3) if another program is changing the project");
  AddOutsideOk();
}

void CommandArguments::AddEditing() {
  AddDamagedOk();
  AddWriting();
}

bool IsCommonFlag(std::string_view name) {
  constexpr std::array<std::string_view, 4> kCommon = {"--quiet", "--json", "--no-color", "--help"};
  return std::find(kCommon.begin(), kCommon.end(), name) != kCommon.end();
}

}  // namespace tarn::host
