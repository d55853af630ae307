// Import of projects in older formats. A conversion script writes a project in the current format
// next to the old file, and the result is opened.

#include "project/Importer.h"

#include <vector>

#include "output/MessageTable.h"
#include "platform/paths/Paths.h"
#include "platform/process/RunAndWait.h"
#include "platform/text/Text.h"
#include "widgets/Dialogs.h"

namespace tarn {

namespace {

constexpr ImportFormat kFormats[] = {{"*.prj", kRowFilterPrj}, {"*.stw", kRowFilterStw}};

constexpr const char* kInterpreter = "perl";

// Exit codes of the script.
constexpr int kTimeIsUp = -1;
constexpr int kDone = 0;
constexpr int kFileMissing = 2;
constexpr int kLastExitCode = 7;  // the last one with a meaning

// Escapes quotes for a quoted command line argument.
std::string Protected(const std::string& path) {
  std::string text;
  for (const char c : path) {
    if (c == '"') text += '\\';
    text += c;
  }
  return text;
}

std::string FailureText(std::int32_t exitCode, const std::string& path) {
  const struct {
    std::int32_t exitCode;
    int row;
  } rows[] = {{kFileMissing, kRowFileMissing},
              {3, kRowImportExit3},
              {4, kRowMalformedXml},
              {5, kRowImportExit5},
              {6, kRowImportExit6},
              {7, kRowImportExit7}};
  if (exitCode == 1) return {};
  for (const auto& each : rows) {
    if (each.exitCode == exitCode) {
      return FormatMessageText(GetMessageText(each.row), std::vector<std::string>{path});
    }
  }
  return "Unknown error";
}

}  // namespace

std::span<const ImportFormat> ImportFormats() {
  return kFormats;
}

bool Importer::Convert(const std::string& path, std::string& newFile) {
  const std::string oldFile = paths_.FullProjectPath(path);
  newFile = WithExtension(oldFile, ".tprj");
  const std::uint64_t opened = state_.projectGeneration;
  const std::string caption = GetMessageText(kRowProjectWord);
  bool converts = true;
  const Result<bool> exists = files_.CheckExists(newFile);
  if (!exists) {
    ShowMessage(services_.mainframeHandle, newFile + " can't be written: " + exists.GetError().text,
                caption);
    return false;
  }
  if (*exists) {
    converts = protection_.MayOverwrite(newFile);
    if (state_.projectGeneration != opened) return false;
  }
  if (!converts) return true;
  std::string blamed = oldFile;
  const std::int32_t exitCode = RunConversion(oldFile, blamed);
  if (state_.projectGeneration != opened) return false;
  if (exitCode == kDone) return true;
  ShowMessage(services_.mainframeHandle, FailureText(exitCode, blamed), caption);
  return false;
}

// Returns the interpreter: the one the user configured, else the one bundled with the installation,
// else the one found in PATH. One that can't be examined could not be started either.
std::string Importer::FindImportProgram() const {
  if (!services_.importProgram.empty()) return FindProgram(services_.importProgram);
  const std::string own = JoinPath(services_.applicationPath, "bin/k418/perl.exe");
  const Result<bool> exists = files_.CheckExists(own);
  return exists && *exists ? own : FindProgram(kInterpreter);
}

std::string Importer::MissingImportProgram() const {
  if (!FindImportProgram().empty()) return {};
  return services_.importProgram.empty() ? kInterpreter : services_.importProgram;
}

// Returns kDone also if nothing could be started.
std::int32_t Importer::RunConversion(const std::string& oldFile, std::string& blamed) {
  const std::string folder = JoinPath(services_.applicationPath, "bin/k418");
  const std::string script = JoinPath(folder, "k418.pl");
  const std::string interpreter = FindImportProgram();
  if (interpreter.empty()) {
    host_.AddLogLine("Old projects are converted by a script that needs " + MissingImportProgram() +
                     ", which was not found.");
    return kDone;
  }
  // The interpreter returns the same exit code for a missing script, and the old project would be
  // blamed.
  if (!files_.Exists(script)) {
    blamed = script;
    return kFileMissing;
  }
  const std::string commandLine =
      FormatMessageText(R"("%s" -I"%s" -w "%s" "%s")",
                        std::vector<std::string>{Protected(interpreter), Protected(folder),
                                                 Protected(script), Protected(oldFile)});
  std::string written;
  const std::int32_t exitCode =
      RunAndWait(*services_.launcher, commandLine, services_.importSeconds, written);
  for (const std::string_view line : Split(written, '\n')) {
    if (!Trim(line).empty()) host_.AddLogLine(std::string(line));
  }
  if (exitCode == kTimeIsUp) {
    host_.AddLogLine("The conversion takes longer than " + std::to_string(services_.importSeconds) +
                     " s. It continues in the background.");
  } else if (exitCode < 0 || exitCode > kLastExitCode) {
    host_.AddLogLine("The conversion ended with the exit code " + std::to_string(exitCode) + ".");
  }
  return exitCode;
}

}  // namespace tarn
