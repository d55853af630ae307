// Projects of older forms. A conversion script makes a project of today's form beside the old file,
// and that one is opened.

#include <vector>

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/process/RunAndWait.h"
#include "platform/text/Text.h"
#include "platform/windowing/Dialogs.h"
#include "project/ProjectModel.h"

namespace tarn {

namespace {

// Quotes in the text are the command line's own from here on.
std::string Protected(const std::string& path) {
  std::string text;
  for (const char c : path) {
    if (c == '"') text += '\\';
    text += c;
  }
  return text;
}

// The interpreter that came with the installation, or else the machine's own.
std::string FindInterpreter(FileSystem& files, const std::string& folder) {
  const std::string own = folder + "perl.exe";
  return files.Exists(own) ? own : FindProgram("perl");
}

std::string FailureText(std::int32_t exitCode, const std::string& path) {
  const struct {
    std::int32_t exitCode;
    int row;
  } rows[] = {{2, kRowFileMissing}, {3, kRowImportExit3}, {4, kRowMalformedXml},
              {5, kRowImportExit5}, {6, kRowImportExit6}, {7, kRowImportExit7}};
  if (exitCode == 1) return {};
  for (const auto& each : rows) {
    if (each.exitCode == exitCode) {
      return FormatMessageText(GetMessageText(each.row), std::vector<std::string>{path});
    }
  }
  return "Unknown error";
}

}  // namespace

// 1 also when the open of what the script left failed.
std::int32_t CProjectModel::ImportOldProject(const std::string& path) {
  const std::string oldFile = FullProjectPath(path);
  const std::string newFile = WithExtension(oldFile, ".tprj");
  const std::uint64_t opened = projectEpoch;
  const std::string caption = GetMessageText(kRowProjectWord);
  bool converts = true;
  if (files.ReadWholeFile(newFile)) {
    converts = MayOverwrite(newFile);
    if (projectEpoch != opened) return 0;
  }
  if (converts) {
    const std::int32_t exitCode = RunConversion(oldFile);
    if (exitCode != 0) {
      ShowMessage(mainframeHandle, FailureText(exitCode, oldFile), caption);
      return 0;
    }
  }
  OpenProject(newFile.c_str(), 0);
  return 1;
}

std::int32_t CProjectModel::RunConversion(const std::string& oldFile) {
  const std::string folder = JoinPath(applicationPath, "bin/k418");
  const std::string interpreter = FindInterpreter(files, AddSeparator(folder));
  if (interpreter.empty()) {
    output->AddOutput("Older projects are converted by a Perl script, and there is no Perl here.");
    return 0;
  }
  const std::string commandLine = FormatMessageText(
      R"("%s" -I"%s" -w "%s" "%s")",
      std::vector<std::string>{Protected(interpreter), Protected(folder),
                               Protected(JoinPath(folder, "k418.pl")), Protected(oldFile)});
  std::string written;
  const std::int32_t exitCode = RunAndWait(*launcher, commandLine, importSeconds, written);
  for (const std::string_view line : Split(written, '\n')) {
    if (!Trim(line).empty()) output->AddOutput(std::string(line));
  }
  return exitCode;
}

}  // namespace tarn
