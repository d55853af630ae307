// tarn-version: fills a template with what version control and the environment say about the
// sources.
//
//   tarn-version --git TEMPLATE OUTPUT STAMP DEPENDENCIES
//
// Replaces @GIT_DESCRIPTION@, @GIT_COMMIT@, @GIT_DATE@, @GIT_DIRTY@ and @BUILD_NUMBER@; other text
// remains. OUTPUT is left alone if it would not change, so that what includes it stays up to date;
// STAMP is always written. DEPENDENCIES is a makefile rule with the files that decide about the
// values: those in which git stores the current commit and, as modified files count, those that it
// tracks. --git says that git runs, which executes what the configuration of the repository names.
// Started by the tool "version"; exit code 0, or 1 after printing the reason.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "components/tools/StepProgram.h"
#include "components/tools/VersionText.h"
#include "platform/process/Process.h"

namespace {

using tarn::tools::ReadBytes;
using tarn::tools::VersionValues;
using tarn::tools::WriteBytes;
using Words = std::vector<std::string>;

int Fail(const std::string& file, const char* reason) {
  return tarn::tools::FailStep("tarn-version", file, reason);
}

// Returns what git prints, without the line feed at its end; nullopt if it fails. Without locks,
// the repository's folder doesn't change, so that the files in it certainly have not changed
// either.
std::optional<std::string> Git(const Words& arguments) {
  const tarn::ProcessRequest request{
      "git", arguments, {{"LC_ALL", "C"}, {"GIT_OPTIONAL_LOCKS", "0"}}};
  auto started = tarn::ProcessLauncher::Native().Start(request);
  if (!started) return std::nullopt;
  std::string text;
  const tarn::ProcessExit exit =
      (*started)->WaitWithOutput([&text](std::string_view part, bool fromErrorStream) {
        if (!fromErrorStream) text += part;
      });
  if (exit.code != 0) return std::nullopt;
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

// Returns the arguments with the paths of all tracked files after them, except those that every
// build writes, which don't count if a repository has them by mistake.
Words ForSources(Words arguments) {
  for (const char* each :
       {"--", ":/", ":(exclude,top)*.tlock", ":(exclude,top)*.tlog", ":(exclude,top)*.tstate"}) {
    arguments.emplace_back(each);
  }
  return arguments;
}

VersionValues ReadValues() {
  VersionValues values;
  // A fixed length of hashes: the default depends on the number of objects in the clone.
  const auto description = Git({"describe", "--tags", "--always", "--abbrev=12"});
  const char* const number = std::getenv("BUILD_NUMBER");
  const bool hasNumber = number != nullptr && *number != '\0';
  if (description) {
    values.isDirty =
        !Git(ForSources({"status", "--porcelain", "--untracked-files=no"})).value_or("").empty();
    values.description = *description + (values.isDirty ? "-dirty" : "");
    values.commit = Git({"rev-parse", "HEAD"}).value_or(values.commit);
    values.date = Git({"log", "-1", "--format=%cs"}).value_or(values.date);
    values.buildNumber = Git({"rev-list", "--count", "HEAD"}).value_or(values.buildNumber);
  } else {
    std::fputs("tarn-version: warning: git can't describe the sources\n", stderr);
  }
  if (hasNumber) values.buildNumber = number;
  return values;
}

void AddIfThere(const std::filesystem::path& path, Words& files) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) return;
  files.push_back(std::filesystem::absolute(path, ignored).string());
}

Words FindDependencies() {
  Words files;
  Words names{"HEAD", "logs/HEAD", "packed-refs"};
  if (const auto branch = Git({"symbolic-ref", "-q", "HEAD"})) names.push_back(*branch);
  for (const std::string& name : names) {
    if (const auto path = Git({"rev-parse", "--git-path", name})) AddIfThere(*path, files);
  }
  const auto top = Git({"rev-parse", "--show-toplevel"});
  const auto tracked = top ? Git(ForSources({"-C", *top, "ls-files", "-z"})) : std::nullopt;
  if (!tracked) return files;
  std::size_t count = 0;
  const std::size_t before = files.size();
  for (std::size_t at = 0; at < tracked->size(); ++count) {
    const std::string name = tracked->c_str() + at;
    at += name.size() + 1;
    AddIfThere(std::filesystem::path(*top) / name, files);
  }
  // The index changes if git restores a missing file.
  const bool isComplete = files.size() - before == count;
  if (const auto index = Git({"rev-parse", "--git-path", "index"}); index && !isComplete) {
    AddIfThere(*index, files);
  }
  return files;
}

}  // namespace

int main(int count, char** arguments) {
  const Words words(arguments + 1, arguments + count);
  if (words.size() != 5 || words[0] != "--git") {
    return Fail("usage", "tarn-version --git TEMPLATE OUTPUT STAMP DEPENDENCIES");
  }
  std::string text;
  if (!ReadBytes(words[1], text)) return Fail(words[1], "can't be read");
  // Before the values, so that a change in between is noticed.
  Words files = FindDependencies();
  files.insert(files.begin(), words[1]);
  const std::string filled = tarn::tools::FillVersion(text, ReadValues());
  if (!tarn::tools::WriteIfChanged(words[2], filled)) return Fail(words[2], "can't be written");
  if (!WriteBytes(words[3], "")) return Fail(words[3], "can't be written");
  const bool isDone = WriteBytes(words[4], tarn::tools::DependencyRule(words[3], files));
  return isDone ? 0 : Fail(words[4], "can't be written");
}
