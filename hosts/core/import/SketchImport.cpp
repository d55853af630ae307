#include <algorithm>
#include <cstdlib>
#include <set>

#include "hosts/core/import/ArduinoCore.h"
#include "hosts/core/import/Converters.h"
#include "hosts/core/import/SourceScan.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kLargestSketch = std::size_t{8} << 20;
constexpr std::string_view kGenerated = ".ino.cpp";

// Joins the prototypes of all functions, each within the conditions that its function has.
std::string Prototypes(const ScannedSource& scanned) {
  std::string text;
  std::set<std::string> seen;
  for (const FoundFunction& each : scanned.functions) {
    if (each.prototype.empty()) continue;
    std::string block;
    std::size_t open = 0;
    for (const std::string& condition : each.conditions) {
      block += condition + "\n";
      if (condition.find("if") != std::string::npos &&
          condition.find("elif") == std::string::npos) {
        ++open;
      }
    }
    block += each.prototype + ";\n";
    for (std::size_t i = 0; i < open; ++i) block += "#endif\n";
    if (seen.insert(block).second) text += block;
  }
  return text;
}

bool IsSketchFile(const std::string& path) {
  return EqualNoCase(ExtensionOf(path), ".ino") || EqualNoCase(ExtensionOf(path), ".pde");
}

struct Sketch {
  std::string folder;
  std::string main;                  // the file that gives the sketch its name
  std::vector<std::string> parts;    // all files *.ino, the main one first
  std::vector<std::string> sources;  // other files of the folder and of src below it
};

Result<Sketch> FindSketch(FileSystem& files, const std::string& path) {
  Sketch sketch;
  sketch.folder = files.IsFolder(path) ? path : FolderOf(path);
  sketch.main = files.IsFolder(path) ? JoinPath(path, FileNameOf(path) + ".ino") : path;
  std::vector<std::string> all = ListSources(files, sketch.folder, 0);
  for (std::string& each : ListSources(files, JoinPath(sketch.folder, "src"))) {
    all.push_back(std::move(each));
  }
  for (const std::string& each : all) {
    if (EndsWithNoCase(each, kGenerated)) continue;
    (IsSketchFile(each) ? sketch.parts : sketch.sources).push_back(each);
  }
  if (sketch.parts.empty()) {
    return Error{ErrorCode::NotFound, "there is no *.ino file", sketch.folder};
  }
  const auto main = std::find(sketch.parts.begin(), sketch.parts.end(), sketch.main);
  if (main == sketch.parts.end()) {
    sketch.main = sketch.parts.front();
  } else {
    std::rotate(sketch.parts.begin(), main, main + 1);
  }
  return sketch;
}

}  // namespace

// The prototypes come before the first function, so that they may use the types declared before it.
std::string SketchToCpp(const std::string& text) {
  const ScannedSource scanned = ScanSource(text);
  std::string source = text;
  const std::string prototypes = Prototypes(scanned);
  if (!prototypes.empty()) {
    std::size_t at = scanned.functions.front().outermost;
    at = at == 0 ? 0 : source.rfind('\n', at - 1) + 1;
    source.insert(at, prototypes + "\n");
  }
  return "#include <Arduino.h>\n\n" + source;
}

Result<ImportedProject> ImportSketch(const ImportRequest& request, const ImportContext& context) {
  const Result<Sketch> sketch = FindSketch(context.files, request.path);
  if (!sketch) return sketch.GetError();
  const ArduinoCore core(context.files);
  const Result<CoreBoard> board = core.FindBoard(request.board);
  if (!board) return board.GetError();
  std::string joined;
  ImportedProject project;
  for (const std::string& each : sketch->parts) {
    const auto text = ReadForImport(context.files, each, kLargestSketch);
    if (!text) return text.GetError();
    joined += ReplaceAll(*text, "\r\n", "\n");
    if (!joined.ends_with('\n')) joined += '\n';
  }
  project.folder = request.folder.empty() ? sketch->folder : request.folder;
  project.name = SafeName(WithoutExtension(FileNameOf(sketch->main)), "sketch");
  const std::string generated = JoinPath(project.folder, project.name + std::string(kGenerated));
  project.sources.push_back({generated, SketchToCpp(joined)});
  for (const std::string& each : sketch->parts) {
    project.remarks.push_back(each + " was copied to " + FileNameOf(generated) +
                              ", which is built from now on");
  }
  ImportedApplication application{
      project.name, {{"Standard", core.ApplicationOptions(*board, context)}}, {}};
  application.files.push_back({generated, {}, "Cpp", {}});
  std::vector<std::string> scanned = sketch->parts;
  for (const std::string& each : sketch->sources) {
    const std::string type = context.typeOf(each);
    if (!IsSourceType(type) && type != "Header") continue;
    application.files.push_back({each, GroupsBelow(sketch->folder, each), type, {}});
    scanned.push_back(each);
  }
  std::vector<std::string> roots = {JoinPath(sketch->folder, "libraries")};
  if (const char* home = std::getenv("HOME")) {
    roots.push_back(JoinPath(home, "Arduino/libraries"));
  }
  roots.push_back(JoinPath(core.GetFolder(), "libraries"));
  LibraryFinder libraries(context, roots);
  libraries.AddUsed(scanned);
  for (const ImportedFile& each : libraries.GetFiles()) application.files.push_back(each);
  std::vector<std::string> includes = {
      application.configurations[0].options["Application.Directories.Include"]};
  includes.push_back(PathInOption(project.folder, sketch->folder));
  for (const std::string& each : libraries.GetIncludeFolders()) {
    includes.push_back(LiteralValue(PathInOption(project.folder, each)));
  }
  application.configurations[0].options["Application.Directories.Include"] = ListValue(includes);
  project.applications.push_back(std::move(application));
  project.applications.push_back(
      core.CoreApplication(project.applications.front(), {{"Standard", *board}}, context));
  return project;
}

}  // namespace tarn::host
