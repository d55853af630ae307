#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/core/import/CompilerCommand.h"
#include "hosts/core/import/ImportedProject.h"
#include "hosts/core/import/SourceOptions.h"

namespace tarn::host {

struct ImportRequest {
  std::string path;    // the foreign file or folder, absolute
  std::string folder;  // where the project is created, absolute; empty: where it belongs
  std::string board;   // for sketches
};

// A compilation database.
Result<ImportedProject> ImportCompileCommands(const ImportRequest& request,
                                              const ImportContext& context);
// The environments of a platformio.ini.
Result<ImportedProject> ImportPlatformIo(const ImportRequest& request,
                                         const ImportContext& context);
// A sketch: a folder with *.ino files, or one of these.
Result<ImportedProject> ImportSketch(const ImportRequest& request, const ImportContext& context);
// Returns the C++ source that a sketch stands for: with the header of the core, and with prototypes
// of its functions.
std::string SketchToCpp(const std::string& text);
// A .cproject file.
Result<ImportedProject> ImportCProject(const ImportRequest& request, const ImportContext& context);
// The output of a dry run of make, started in the Makefile's folder.
Result<ImportedProject> ImportMakeOutput(const ImportRequest& request, const std::string& output,
                                         const ImportContext& context);

// A link command, or the command that makes an archive, of a foreign build.
struct ForeignLink {
  CompilerCommand command;
  bool isArchive = false;
  bool isShared = false;
};

struct ForeignBuild {
  std::vector<CompiledSource> sources;
  std::vector<ForeignLink> links;
  std::vector<std::string> remarks;
};

// Sets the folder and the name of the project: the one that was requested, or else an existing
// folder, which is `place` or, if sources are elsewhere, the folder that contains all of them.
// Reports the sources that don't exist, which don't determine the folder.
void ChooseFolder(const ImportRequest& request, const std::string& place,
                  const std::vector<CompiledSource>& sources, const ImportContext& context,
                  ImportedProject& project);

// Takes a link command or the creation of an archive; nullopt if it is neither.
std::optional<ForeignLink> ParseLink(const std::vector<std::string>& words,
                                     const std::string& folder);

// Divides the sources into applications, one for each link. Without links each file with a main
// function becomes a program, and the other files a library for all of them.
void DivideIntoApplications(const ForeignBuild& build, const ImportContext& context,
                            ImportedProject& project);

}  // namespace tarn::host
