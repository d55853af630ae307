#include <algorithm>
#include <optional>
#include <set>
#include <span>

#include "hosts/core/PathPattern.h"
#include "hosts/core/import/ArduinoCore.h"
#include "hosts/core/import/CompilerCommand.h"
#include "hosts/core/import/Converters.h"
#include "hosts/core/import/IniFile.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr std::size_t kLargestIni = std::size_t{4} << 20;

// Keys that are carried over or say nothing about the build.
constexpr std::string_view kKnownKeys[] = {
    "platform",        "board",           "framework",         "build_flags", "src_build_flags",
    "build_type",      "extends",         "lib_extra_dirs",    "lib_deps",    "build_src_filter",
    "src_filter",      "board_build.mcu", "board_build.f_cpu", "upload_port", "upload_speed",
    "upload_protocol", "description",     "monitor_speed",     "monitor_port"};

// Those of the section [platformio].
constexpr std::string_view kKnownCommonKeys[] = {"src_dir",      "include_dir", "lib_dir",
                                                 "default_envs", "name",        "description"};

// Keys that become an option with the same value.
constexpr std::pair<const char*, const char*> kSameValues[] = {
    {"upload_port", "Application.Upload.Port"},
    {"upload_speed", "Application.Upload.Speed"},
    {"monitor_port", "Application.Monitor.Port"},
    {"monitor_speed", "Application.Monitor.Speed"}};

// Protocols by the names of the programmers for the programs that upload.
struct Protocol {
  std::string_view name, tool;
  const char* programmer;
};
constexpr Protocol kProtocols[] = {
    {"stlink", "openocd", "stlink"},       {"jlink", "openocd", "jlink"},
    {"cmsis-dap", "openocd", "cmsis-dap"}, {"arduino", "avrdude", "arduino"},
    {"wiring", "avrdude", "wiring"},       {"avr109", "avrdude", "avr109"},
    {"usbasp", "avrdude", "usbasp"},       {"usbtiny", "avrdude", "usbtiny"},
    {"stk500v1", "avrdude", "stk500v1"},   {"stk500v2", "avrdude", "stk500v2"}};

bool IsAmong(std::span<const std::string_view> keys, const std::string& key) {
  return std::find(keys.begin(), keys.end(), key) != keys.end();
}

// Returns true if the word has a variable, such as ${sysenv.HOME} or $BUILD_DIR.
bool HasVariable(const std::string& word) {
  const std::size_t at = word.find('$');
  if (at == std::string::npos || at + 1 == word.size()) return false;
  return word[at + 1] == '{' || (word[at + 1] >= 'A' && word[at + 1] <= 'Z');
}

std::vector<std::string> IniEntries(const std::string& value) {
  std::vector<std::string> entries;
  for (const std::string& line : SplitLines(ReplaceAll(value, ",", "\n"))) {
    entries.push_back(line);
  }
  return entries;
}

// Decides which files of the source folder an environment builds: "+<*> -<test/>".
class SourceFilter {
 public:
  explicit SourceFilter(const std::string& text) {
    for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
      const std::size_t end = text.find('>', at);
      if (end == std::string::npos) break;
      rules_.push_back({at == 0 || text[at - 1] != '-', text.substr(at + 1, end - at - 1)});
    }
  }
  bool Takes(const std::string& path) const {
    if (rules_.empty()) return true;
    bool takes = false;
    for (const Rule& each : rules_) {
      const std::string& pattern = each.pattern;
      if (pattern == "*" || FitsPathPattern(path, "/" + pattern)) takes = each.adds;
    }
    return takes;
  }

 private:
  struct Rule {
    bool adds;
    std::string pattern;
  };
  std::vector<Rule> rules_;
};

class PlatformIo {
 public:
  PlatformIo(const ImportRequest& request, const ImportContext& context, const IniFile& ini)
      : request_(request), context_(context), ini_(ini), core_(context.files) {}

  Result<ImportedProject> Run();

 private:
  struct Environment {
    std::string name, section;
    ImportedOptions options;
    std::optional<CoreBoard> board;  // of the core, if it is used
    std::set<std::string> files;     // that it builds
    std::vector<ImportedFile> libraries;
  };

  std::string Folder(const char* key, const char* fallback) const;
  void ChooseEnvironments();
  void FillEnvironment(Environment& environment);
  void ChooseTarget(Environment& environment);
  void AddFlags(Environment& environment);
  void AddLibraries(Environment& environment);
  void AddConnections(Environment& environment);
  void ReportKeys(const Environment& environment);
  void AddFiles(ImportedApplication& application);
  void Remark(const Environment& environment, const std::string& text) {
    project_.remarks.push_back("[" + environment.section + "] " + text);
  }

  const ImportRequest& request_;
  const ImportContext& context_;
  const IniFile& ini_;
  const ArduinoCore core_;
  std::string root_;     // folder of the file
  std::string sources_;  // folder of the sources
  std::vector<Environment> environments_;
  ImportedProject project_;
};

std::string PlatformIo::Folder(const char* key, const char* fallback) const {
  const std::string value = ini_.Get("platformio", key);
  const std::string path = value.empty() || value.find('$') != std::string::npos ? fallback : value;
  return CanonicalPath(IsRelativePath(path) ? JoinPath(root_, path) : path);
}

// Those that are built by default come first, because the first one becomes active.
void PlatformIo::ChooseEnvironments() {
  std::set<std::string> names;
  for (const std::string& section : ini_.GetSections()) {
    if (!section.starts_with("env:")) continue;
    Environment environment;
    environment.section = section;
    environment.name = UniqueName(SafeName(section.substr(4), "environment"), names);
    environments_.push_back(std::move(environment));
  }
  const std::vector<std::string> first = IniEntries(ini_.Get("platformio", "default_envs"));
  std::stable_partition(environments_.begin(), environments_.end(), [&](const Environment& each) {
    return !first.empty() && each.section == "env:" + first.front();
  });
}

void PlatformIo::ChooseTarget(Environment& environment) {
  const std::string& section = environment.section;
  const std::string board = ini_.Get(section, "board");
  const std::string device = ini_.Get(section, "board_build.mcu");
  const std::string clock = ini_.Get(section, "board_build.f_cpu");
  const std::string platform = ini_.Get(section, "platform");
  const std::string framework = ini_.Get(section, "framework");
  const bool isAvr = platform.find("atmelavr") != std::string::npos;
  ImportedOptions& options = environment.options;
  for (const std::string& name : {board, device}) {
    if (options.empty() && !name.empty()) options = context_.target(name);
  }
  if (isAvr && !board.empty()) {
    if (const Result<CoreBoard> known = core_.FindBoard(board)) {
      if (framework == "arduino") environment.board = *known;
      if (!device.empty() && environment.board) environment.board->device = device;
      options["Application.Target.Toolchain"] = "avr-gcc";
      options["Application.Target.Device"] = known->device;
      options["Application.Target.Clock"] = known->clock;
    } else if (framework == "arduino") {
      Remark(environment, "the framework was not imported: " + known.GetError().text);
    }
  }
  if (environment.board) options = core_.ApplicationOptions(*environment.board, context_);
  if (!framework.empty() && framework != "arduino") {
    Remark(environment, "framework = " + framework + " was not imported");
  } else if (framework == "arduino" && !isAvr) {
    Remark(environment, "framework = arduino was not imported for " + platform);
  }
  if (!device.empty() && isAvr) options["Application.Target.Device"] = device;
  if (!clock.empty()) {
    options["Application.Target.Clock"] = clock.substr(0, clock.find_first_not_of("0123456789"));
  }
  if (platform == "native") options["Application.Target.Toolchain"] = "host-gcc";
  if (options.contains("Application.Target.Toolchain") ||
      options.contains("Application.Target.Device")) {
    return;
  }
  const std::string& unknown = board.empty() ? device : board;
  Remark(environment, unknown.empty() ? "it names no board; set Target.Toolchain and Target.Device"
                                      : "the board " + context_.describeUnknown(unknown));
}

// Appends to a list or to a command line.
void Append(ImportedOptions& options, const std::string& key, const std::string& value,
            const char* separator) {
  if (value.empty()) return;
  std::string& stored = options[key];
  stored += (stored.empty() ? "" : separator) + value;
}

void PlatformIo::AddFlags(Environment& environment) {
  ImportedOptions& options = environment.options;
  std::vector<std::string> words = {CompilerOf(options["Application.Target.Toolchain"])};
  for (const char* key : {"build_flags", "src_build_flags"}) {
    for (const std::string& line : SplitLines(ini_.Get(environment.section, key))) {
      if (line[0] == '!') {
        Remark(environment, "the program " + line.substr(1) + " was not run");
        continue;
      }
      for (std::string& word : SplitShellWords(line)) {
        word = ReplaceAll(ReplaceAll(word, "${PROJECT_DIR}", root_), "$PROJECT_DIR", root_);
        if (!HasVariable(word)) {
          words.push_back(std::move(word));
          continue;
        }
        if (TakesNextArgument(words.back())) {
          word = words.back() + " " + word;
          words.pop_back();
        }
        Remark(environment, "the flag " + word + " was not imported");
      }
    }
  }
  CompilerCommand flags = ParseCompilerCommand(words, root_);
  for (const auto& [name, value] : flags.target) {
    if (context_.accepts("Application.Target." + name, value)) {
      options["Application.Target." + name] = value;
    }
  }
  const bool hasOptimization = std::any_of(
      words.begin(), words.end(), [](const std::string& each) { return each.starts_with("-O"); });
  const bool isDebug = ini_.Get(environment.section, "build_type") == "debug";
  if (hasOptimization) options["Application.Compiler.Optimize"] = flags.optimize;
  if (isDebug && !hasOptimization) {
    options["Application.Compiler.Optimize"] = "0";
    options["Application.Compiler.Debug"] = "Yes";
  }
  if (flags.warnings != "default") options["Application.Compiler.Warnings"] = flags.warnings;
  Append(options, "Application.Compiler.Defines", LiteralValue(ListValue(flags.defines)), ";");
  for (const std::string& each : flags.includes) {
    Append(options, "Application.Directories.Include",
           LiteralValue(PathInOption(project_.folder, each)), ";");
  }
  Append(options, "Application.Linker.Libraries", LiteralValue(ListValue(flags.libraries)), ";");
  if (!flags.script.empty()) {
    options["Application.Linker.Script"] =
        LiteralValue(PathInOption(project_.folder, flags.script));
  }
  if (!flags.standard.empty()) {
    const char* set = flags.standard.find("++") == std::string::npos ? "C" : "Cpp";
    options[std::string(set) + ".Compiler.Standard"] = flags.standard;
  }
  std::vector<std::string> compile, link;
  for (const FurtherArgument& each : flags.further) {
    const std::string word =
        each.text + (each.path.empty() ? "" : PathInOption(project_.folder, each.path));
    (word.starts_with("-Wl,") ? link : compile).push_back(word);
  }
  for (const char* set : {"C", "Cpp"}) {
    Append(options, std::string(set) + ".Compiler.Extra", LiteralValue(WordsValue(compile)), " ");
  }
  if (!flags.systemCalls.empty()) link.push_back(flags.systemCalls);
  Append(options, "Application.Linker.Extra", LiteralValue(WordsValue(link)), " ");
  for (const std::string& each : flags.dropped) {
    Remark(environment, "the flag " + each + " was not imported");
  }
}

void PlatformIo::AddLibraries(Environment& environment) {
  const std::string& section = environment.section;
  std::vector<std::string> roots = {Folder("lib_dir", "lib")};
  for (const std::string& each : IniEntries(ini_.Get(section, "lib_extra_dirs"))) {
    if (each.find('$') != std::string::npos) {
      Remark(environment, "the folder " + each + " was not imported");
    } else {
      roots.push_back(CanonicalPath(IsRelativePath(each) ? JoinPath(root_, each) : each));
    }
  }
  roots.push_back(JoinPath(root_, ".pio/libdeps/" + section.substr(4)));
  for (const std::string& each : IniEntries(ini_.Get(section, "lib_deps"))) {
    std::string name = each.substr(0, each.find('@'));
    name = Trim(name.substr(name.rfind('/') + 1));
    const bool isThere = std::any_of(roots.begin(), roots.end(), [&](const std::string& root) {
      return context_.files.IsFolder(JoinPath(root, name));
    });
    if (!isThere) Remark(environment, "the library " + each + " was not imported: it is not here");
  }
  if (environment.board) roots.push_back(JoinPath(core_.GetFolder(), "libraries"));
  LibraryFinder finder(context_, roots);
  finder.AddUsed({environment.files.begin(), environment.files.end()});
  environment.libraries = finder.GetFiles();
  for (const std::string& each : finder.GetIncludeFolders()) {
    Append(environment.options, "Application.Directories.Include",
           LiteralValue(PathInOption(project_.folder, each)), ";");
  }
}

// The ports of the programmer and of the serial monitor.
void PlatformIo::AddConnections(Environment& environment) {
  ImportedOptions& options = environment.options;
  const auto value = [&](const char* key) { return ini_.Get(environment.section, key); };
  const auto report = [&](const char* key) {
    Remark(environment, std::string(key) + " = " + value(key) + " was not imported");
  };
  for (const auto& [key, option] : kSameValues) {
    const std::string text = value(key);
    if (text.empty()) continue;
    if (!HasVariable(text) && context_.accepts(option, text)) {
      options[option] = LiteralValue(text);
    } else {
      report(key);
    }
  }
  const std::string protocol = value("upload_protocol");
  if (protocol.empty()) return;
  std::string tool = options["Application.Upload.Tool"];
  if (tool.empty()) {
    options.erase("Application.Upload.Tool");
    tool = options["Application.Target.Toolchain"] == "avr-gcc" ? "avrdude" : "";
  }
  for (const Protocol& each : kProtocols) {
    if (each.name != protocol || each.tool != tool) continue;
    std::string& programmer = options["Application.Upload.Programmer"];
    // There are several files for the same kind of probe.
    if (!programmer.starts_with(each.programmer)) programmer = each.programmer;
    return;
  }
  report("upload_protocol");
}

void PlatformIo::ReportKeys(const Environment& environment) {
  std::vector<std::string> keys = ini_.GetKeys(environment.section);
  for (std::string& each : ini_.GetKeys("env")) keys.push_back(std::move(each));
  std::set<std::string> seen;
  for (const std::string& key : keys) {
    if (!IsAmong(kKnownKeys, key) && seen.insert(key).second) {
      Remark(environment, key + " was not imported");
    }
  }
}

void PlatformIo::FillEnvironment(Environment& environment) {
  ChooseTarget(environment);
  for (const char* each : {"include_dir", "src_dir"}) {
    const std::string folder = Folder(each, each[0] == 's' ? "src" : "include");
    if (context_.files.IsFolder(folder)) {
      Append(environment.options, "Application.Directories.Include",
             LiteralValue(PathInOption(project_.folder, folder)), ";");
    }
  }
  AddFlags(environment);
  std::string filter = ini_.Get(environment.section, "build_src_filter");
  if (filter.empty()) filter = ini_.Get(environment.section, "src_filter");
  const SourceFilter takes(filter);
  for (const std::string& each : ListSources(context_.files, sources_)) {
    const std::string type = context_.typeOf(each);
    const bool isUsed = type == "Header" || IsSourceType(type);
    if (isUsed && takes.Takes(each.substr(sources_.size() + 1))) environment.files.insert(each);
  }
  AddLibraries(environment);
  AddConnections(environment);
  ReportKeys(environment);
  std::erase_if(environment.options, [](const auto& each) {
    return each.second.empty() && each.first == "Application.Target.Toolchain";
  });
}

// A file that only some environments build is excluded from the configurations of the others.
void PlatformIo::AddFiles(ImportedApplication& application) {
  std::map<std::string, ImportedFile> files;
  std::map<std::string, std::set<std::string>> users;
  for (const Environment& each : environments_) {
    for (const std::string& path : each.files) {
      files.insert({path, {path, GroupsBelow(root_, path), context_.typeOf(path), {}}});
      users[path].insert(each.name);
    }
    for (const ImportedFile& library : each.libraries) {
      files.insert({library.path, library});
      users[library.path].insert(each.name);
    }
  }
  for (auto& [path, file] : files) {
    for (const Environment& each : environments_) {
      if (!IsSourceType(file.type) || users[path].contains(each.name)) continue;
      file.options[each.name][file.type + ".Build.Exclude"] = "Yes";
    }
    // The configuration that is added has the options of the first environment.
    const auto first = file.options.find(environments_.front().name);
    if (first != file.options.end()) file.options["Standard"] = first->second;
    application.files.push_back(std::move(file));
  }
}

Result<ImportedProject> PlatformIo::Run() {
  root_ = FolderOf(request_.path);
  project_.folder = request_.folder.empty() ? root_ : request_.folder;
  project_.name = SafeName(FileNameOf(root_), "imported");
  sources_ = Folder("src_dir", "src");
  ChooseEnvironments();
  if (environments_.empty()) {
    return Error{ErrorCode::Unsupported, "it has no section [env:NAME]", request_.path};
  }
  for (const std::string& fault : ini_.GetFaults()) {
    project_.remarks.push_back(request_.path + ":" + fault + " was not imported");
  }
  for (const std::string& key : ini_.GetKeys("platformio")) {
    const std::string value = ini_.Get("platformio", key);
    const bool isFolder = key.ends_with("_dir");
    if (!IsAmong(kKnownCommonKeys, key) || (isFolder && value.find('$') != std::string::npos)) {
      project_.remarks.push_back("[platformio] " + key + " was not imported");
    }
  }
  std::vector<std::pair<std::string, CoreBoard>> boards;
  ImportedApplication application{project_.name, {}, {}};
  for (Environment& each : environments_) {
    FillEnvironment(each);
    if (each.board) boards.emplace_back(each.name, *each.board);
    application.configurations.push_back({each.name, each.options});
  }
  AddFiles(application);
  if (application.files.empty()) {
    return Error{ErrorCode::NotFound, "there are no sources", sources_};
  }
  project_.applications.push_back(std::move(application));
  if (!boards.empty()) {
    project_.applications.push_back(
        core_.CoreApplication(project_.applications.front(), boards, context_));
  }
  return std::move(project_);
}

}  // namespace

Result<ImportedProject> ImportPlatformIo(const ImportRequest& request,
                                         const ImportContext& context) {
  const auto text = ReadForImport(context.files, request.path, kLargestIni);
  if (!text) return text.GetError();
  const IniFile ini(ReplaceAll(*text, "\r\n", "\n"));
  return PlatformIo(request, context, ini).Run();
}

}  // namespace tarn::host
