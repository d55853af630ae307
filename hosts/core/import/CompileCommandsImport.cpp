#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "hosts/core/import/Converters.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kLargestLink = std::size_t{4} << 20;
constexpr std::size_t kMostMissing = 5;  // sources that are reported one by one

std::string TextOf(const nlohmann::json& entry, const char* key) {
  const auto found = entry.find(key);
  return found != entry.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::string Absolute(const std::string& folder, const std::string& path) {
  return CanonicalPath(IsRelativePath(path) ? JoinPath(folder, path) : path);
}

std::vector<std::string> ArgumentsOf(const nlohmann::json& entry) {
  const auto list = entry.find("arguments");
  if (list == entry.end() || !list->is_array()) return SplitShellWords(TextOf(entry, "command"));
  std::vector<std::string> arguments;
  for (const nlohmann::json& each : *list) {
    if (each.is_string()) arguments.push_back(each.get<std::string>());
  }
  return arguments;
}

// Takes one entry; false if it is not one.
bool TakeEntry(const nlohmann::json& entry, const std::string& place, ForeignBuild& build) {
  if (!entry.is_object()) return false;
  const std::string folder = Absolute(place, TextOf(entry, "directory"));
  const std::string file = TextOf(entry, "file");
  const std::vector<std::string> arguments = ArgumentsOf(entry);
  if (file.empty() || arguments.size() < 2) return false;
  CompiledSource source{Absolute(folder, file), ParseCompilerCommand(arguments, folder)};
  const std::string output = TextOf(entry, "output");
  if (source.command.output.empty() && !output.empty()) {
    source.command.output = Absolute(folder, output);
  }
  build.sources.push_back(std::move(source));
  return true;
}

// The link commands that some generators write next to the objects, which are only read.
void ReadLinkFiles(const std::set<std::string>& folders, const ImportContext& context,
                   ForeignBuild& build) {
  for (const std::string& folder : folders) {
    const auto text = ReadForImport(context.files, JoinPath(folder, "link.txt"), kLargestLink);
    if (!text) continue;
    // The commands are started in the folder of the build, two levels up.
    const std::string start = FolderOf(FolderOf(folder));
    for (const std::string& line : SplitLines(*text)) {
      if (auto link = ParseLink(SplitShellWords(line), start)) {
        build.links.push_back(std::move(*link));
      }
    }
  }
}

// Returns the folder CMakeFiles/NAME.dir that contains an object; empty if there is none.
std::string TargetFolderOf(const std::string& object) {
  const std::size_t start = object.find("/CMakeFiles/");
  const std::size_t end = start == std::string::npos ? start : object.find(".dir/", start);
  return end == std::string::npos ? std::string() : object.substr(0, end + 4);
}

}  // namespace

std::optional<ForeignLink> ParseLink(const std::vector<std::string>& words,
                                     const std::string& folder) {
  const std::vector<std::string> arguments(
      words.begin() + static_cast<std::ptrdiff_t>(FindCompiler(words)), words.end());
  if (arguments.empty()) return std::nullopt;
  const std::string name = FileNameOf(arguments.front());
  ForeignLink link;
  if (name == "ar" || name.ends_with("-ar") || name == "sdar") {
    link.isArchive = true;
    link.command.program = "ar";
    for (std::size_t i = 1; i < arguments.size(); ++i) {
      const bool isFile = arguments[i].find('.') != std::string::npos && arguments[i][0] != '-';
      if (!isFile) continue;
      const std::string path = Absolute(folder, arguments[i]);
      if (link.command.output.empty()) {
        link.command.output = path;
      } else {
        link.command.inputs.push_back(path);
      }
    }
    return link.command.inputs.empty() ? std::nullopt : std::optional(link);
  }
  if (ToolchainOf(arguments.front(), arguments).empty()) return std::nullopt;
  link.command = ParseCompilerCommand(arguments, folder);
  const bool isLink = !link.command.isCompile && !link.command.makesText;
  if (!isLink || link.command.inputs.empty()) return std::nullopt;
  for (const char* each : {"-r", "-Wl,-r", "-Wl,-i", "-Wl,--relocatable"}) {
    for (const FurtherArgument& further : link.command.further) {
      if (further.text == each) return std::nullopt;  // it makes an object
    }
  }
  if (link.command.output.empty()) link.command.output = JoinPath(folder, "a.out");
  // A file *.la stands for the libraries that libtool makes.
  link.isShared = link.command.output.ends_with(".la") ||
                  std::find(arguments.begin(), arguments.end(), "-shared") != arguments.end();
  return link;
}

void ChooseFolder(const ImportRequest& request, const std::string& place,
                  const std::vector<CompiledSource>& sources, const ImportContext& context,
                  ImportedProject& project) {
  std::vector<std::string> existing, missing;
  bool isOutside = false;
  std::set<std::string> seen;
  for (const CompiledSource& each : sources) {
    if (!seen.insert(each.path).second) continue;
    const bool exists = context.files.Exists(each.path);
    (exists ? existing : missing).push_back(each.path);
    isOutside = isOutside || (exists && !each.path.starts_with(AddSeparator(place)));
  }
  project.folder = request.folder;
  if (project.folder.empty()) {
    const std::string common = isOutside ? CommonFolder(existing) : place;
    // Sources that have only the root in common don't determine a place.
    project.folder = FolderOf(common) == common ? place : common;
  }
  project.name = SafeName(FileNameOf(project.folder), "imported");
  if (missing.size() > kMostMissing) {
    project.remarks.push_back(ToDecimal(static_cast<std::int64_t>(missing.size())) +
                              " files were imported, but do not exist, such as " + missing.front());
    return;
  }
  for (const std::string& each : missing) {
    project.remarks.push_back(each + " was imported, but the file does not exist");
  }
}

Result<ImportedProject> ImportCompileCommands(const ImportRequest& request,
                                              const ImportContext& context) {
  const auto text = ReadForImport(context.files, request.path);
  if (!text) return text.GetError();
  const nlohmann::json list = nlohmann::json::parse(*text, nullptr, false);
  if (!list.is_array()) {
    return Error{ErrorCode::Unsupported, "it is not a compilation database", request.path};
  }
  ImportedProject project;
  ForeignBuild build;
  std::size_t ignored = 0;
  const std::string place = FolderOf(request.path);
  for (const nlohmann::json& entry : list) {
    if (!TakeEntry(entry, place, build)) ++ignored;
  }
  if (build.sources.empty()) {
    return Error{ErrorCode::Unsupported, "it contains no compiler commands", request.path};
  }
  if (ignored > 0) {
    project.remarks.push_back(ToDecimal(static_cast<std::int64_t>(ignored)) +
                              " entries without a file or command were not imported");
  }
  std::set<std::string> folders;
  for (const CompiledSource& each : build.sources) {
    if (const std::string folder = TargetFolderOf(each.command.output); !folder.empty()) {
      folders.insert(folder);
    }
  }
  ReadLinkFiles(folders, context, build);
  ChooseFolder(request, place, build.sources, context, project);
  DivideIntoApplications(build, context, project);
  return project;
}

}  // namespace tarn::host
