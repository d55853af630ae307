#include "hosts/core/import/ArduinoCore.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "hosts/core/import/SourceScan.h"
#include "platform/paths/Paths.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr const char* kCoreFolder = "/usr/share/arduino/hardware/arduino/avr";
constexpr std::size_t kLargestTable = std::size_t{4} << 20;
constexpr std::size_t kLargestScanned = std::size_t{8} << 20;
constexpr std::size_t kMostFiles = 100000;
constexpr std::size_t kMostFolders = 10000;

struct Table {
  std::map<std::string, std::string> values;
  std::vector<std::string> keys;  // in the order of the file
};

// A board of the table, with the processor that its menu offers for the name.
struct ChosenBoard {
  std::string id;
  std::string processor;  // empty if the board has no menu
};

Table ReadTable(FileSystem& files, const std::string& path) {
  Table table;
  const auto text = ReadForImport(files, path, kLargestTable);
  for (const std::string& line : text ? SplitLines(*text) : std::vector<std::string>()) {
    const std::size_t equals = line.find('=');
    if (line[0] != '#' && equals != std::string::npos) {
      const auto [place, isNew] =
          table.values.emplace(line.substr(0, equals), line.substr(equals + 1));
      if (isNew) table.keys.push_back(place->first);
    }
  }
  return table;
}

// Finds a board by its identifier, for the first processor in its menu, or by the identifier with
// that of a processor appended, such as "megaatmega1280".
std::optional<ChosenBoard> ChooseBoard(const Table& table, const std::string& name) {
  constexpr std::string_view kMenu = ".menu.cpu.";
  const bool isBoard = table.values.contains(name + ".name");
  ChosenBoard best{isBoard ? name : std::string(), {}};
  for (const std::string& key : table.keys) {
    const std::size_t menu = key.find(kMenu);
    const std::size_t first = menu + kMenu.size();
    if (menu == std::string::npos || key.find('.', first) != std::string::npos) continue;
    const ChosenBoard each{key.substr(0, menu), key.substr(first)};
    if (isBoard && each.id == name) return each;
    const bool isLonger =
        each.id.size() + each.processor.size() > best.id.size() + best.processor.size();
    if (!isBoard && isLonger && name.starts_with(each.id + each.processor)) best = each;
  }
  return best.id.empty() ? std::nullopt : std::optional(best);
}

// Returns a value of a board; that of its processor takes precedence.
std::string ValueOf(const Table& table, const ChosenBoard& board, const std::string& key) {
  const std::string menu = board.id + ".menu.cpu." + board.processor + "." + key;
  for (const std::string& each : {menu, board.id + "." + key}) {
    const auto found = table.values.find(each);
    if (found != table.values.end()) return found->second;
  }
  return {};
}

void Merge(ImportedOptions& options, const ImportContext& context, const std::string& key,
           const std::string& value) {
  if (!value.empty() && context.accepts(key, value)) options[key] = LiteralValue(value);
}

// Appends the files in a folder and, down to `depth`, below it. `folders` counts those that were
// read.
void ListBelow(FileSystem& files, const std::string& folder, int depth, std::size_t& folders,
               std::vector<std::string>& found) {
  if (++folders > kMostFolders) return;
  const auto entries = files.ListFolder(folder);
  if (!entries) return;
  for (const FolderEntry& each : *entries) {
    const std::string path = JoinPath(folder, each.name);
    if (each.name.starts_with(".") || found.size() >= kMostFiles) continue;
    if (!each.isFolder) {
      found.push_back(path);
    } else if (depth > 0 && !files.ExamineLink(path)) {
      ListBelow(files, path, depth - 1, folders, found);
    }
  }
}

}  // namespace

bool IsSourceType(const std::string& type) {
  return type == "C" || type == "Cpp" || type == "Assembler";
}

std::vector<std::string> ListSources(FileSystem& files, const std::string& folder, int depth) {
  std::vector<std::string> found;
  std::size_t folders = 0;
  ListBelow(files, folder, depth, folders, found);
  return found;
}

ArduinoCore::ArduinoCore(FileSystem& fileSystem) : files_(fileSystem), folder_(kCoreFolder) {}

Result<CoreBoard> ArduinoCore::FindBoard(const std::string& id) const {
  const std::string path = JoinPath(folder_, "boards.txt");
  if (!files_.Exists(path)) {
    return Error{ErrorCode::NotFound,
                 "the core is not installed (on Debian and Ubuntu: apt install arduino-core-avr)",
                 folder_};
  }
  const Table table = ReadTable(files_, path);
  const std::optional<ChosenBoard> chosen = ChooseBoard(table, id);
  if (!chosen) {
    std::vector<std::string> known;
    std::string listed;
    for (const auto& [key, value] : table.values) {
      if (!key.ends_with(".name") || key.find('.') + 5 != key.size()) continue;
      known.push_back(key.substr(0, key.size() - 5));
      listed += (listed.empty() ? " There are " : ", ") + known.back();
    }
    return Error{ErrorCode::NotFound,
                 "unknown board \"" + id + "\"." + SuggestionText(id, known) + listed, path};
  }
  const auto value = [&](const char* key) { return ValueOf(table, *chosen, key); };
  CoreBoard board;
  board.name = value("name");
  board.device = value("build.mcu");
  const std::string clock = value("build.f_cpu");
  board.clock = clock.substr(0, clock.find_first_not_of("0123456789"));
  board.symbol = value("build.board");
  std::string core = value("build.core");
  core = core.substr(core.find(':') + 1);
  board.core = JoinPath(folder_, "cores/" + (core.empty() ? "arduino" : core));
  const std::string variant = value("build.variant");
  if (!variant.empty()) {
    board.variant = JoinPath(folder_, "variants/" + variant.substr(variant.find(':') + 1));
  }
  if (const std::string vid = value("build.vid"); !vid.empty()) {
    board.usb = WordsValue({"-DUSB_VID=" + vid, "-DUSB_PID=" + value("build.pid"),
                            "-DUSB_MANUFACTURER=\"Unknown\"",
                            "-DUSB_PRODUCT=" + value("build.usb_product")});
  }
  board.protocol = value("upload.protocol");
  board.speed = value("upload.speed");
  return board;
}

ImportedOptions ArduinoCore::ApplicationOptions(const CoreBoard& board,
                                                const ImportContext& context) const {
  ImportedOptions options = context.target(board.name);
  options["Application.Target.Toolchain"] = "avr-gcc";
  options["Application.Target.Device"] = board.device;
  options["Application.Target.Clock"] = board.clock;
  Merge(options, context, "Application.Upload.Tool", "avrdude");
  Merge(options, context, "Application.Upload.Part", board.device);
  Merge(options, context, "Application.Upload.Programmer", board.protocol);
  Merge(options, context, "Application.Upload.Speed", board.speed);
  options["Application.Compiler.Optimize"] = "s";
  options["Application.Compiler.Warnings"] = "default";
  options["Application.Compiler.Debug"] = "Yes";
  options["Application.Compiler.Defines"] =
      "ARDUINO=10819;ARDUINO_" + board.symbol + ";ARDUINO_ARCH_AVR";
  options["Application.Directories.Include"] = ListValue({board.core, board.variant});
  options["C.Compiler.Standard"] = "gnu11";
  options["Cpp.Compiler.Standard"] = "gnu++11";
  const std::string usb = board.usb.empty() ? "" : " " + board.usb;
  if (!usb.empty()) options["C.Compiler.Extra"] = board.usb;
  // Headers of older compilers define this macro only in C.
  options["Cpp.Compiler.Extra"] =
      "-fpermissive -fno-exceptions -fno-threadsafe-statics -Wno-error=narrowing "
      "-DDECIMAL_DIG=__DECIMAL_DIG__" +
      usb;
  options["Application.Linker.Extra"] = "build/$(Config.Name)/core.a -lm";
  return options;
}

ImportedApplication ArduinoCore::CoreApplication(
    const ImportedApplication& other, const std::vector<std::pair<std::string, CoreBoard>>& boards,
    const ImportContext& context) const {
  std::set<std::string> labels{FoldCase(other.label)};
  ImportedApplication core{UniqueName("core", labels), {}, {}};
  for (const auto& [configuration, board] : boards) {
    ImportedOptions options = ApplicationOptions(board, context);
    options.erase("Application.Linker.Extra");
    options["Application.Compiler.Warnings"] = "none";
    options["Application.Target.Product"] = "library";
    options["Application.Build.OutputFile"] = "build/$(Config.Name)/core.a";
    core.configurations.push_back({configuration, std::move(options)});
  }
  for (const std::string& each : ListSources(files_, boards.front().second.core)) {
    const std::string type = context.typeOf(each);
    if (IsSourceType(type)) core.files.push_back({each, {}, type, {}});
  }
  return core;
}

LibraryFinder::LibraryFinder(const ImportContext& context, const std::vector<std::string>& roots)
    : context_(context) {
  for (const std::string& root : roots) {
    const auto entries = context_.files.ListFolder(root);
    for (const FolderEntry& each : entries ? *entries : std::vector<FolderEntry>()) {
      if (!each.isFolder || each.name.starts_with(".")) continue;
      Library library{each.name, JoinPath(root, each.name), {}, false};
      library.sources = JoinPath(library.folder, "src");
      library.isFlat = !context_.files.IsFolder(library.sources);
      if (library.isFlat) library.sources = library.folder;
      libraries_.push_back(std::move(library));
    }
  }
}

void LibraryFinder::AddLibrary(const Library& library, std::vector<std::string>& open) {
  includes_.push_back(library.sources);
  const std::string separate = JoinPath(library.folder, "include");
  if (context_.files.IsFolder(separate)) includes_.push_back(separate);
  // A library without a folder src has its examples next to its sources.
  std::vector<std::string> list =
      ListSources(context_.files, library.sources, library.isFlat ? 0 : 32);
  if (library.isFlat) {
    const std::string utility = JoinPath(library.folder, "utility");
    if (context_.files.IsFolder(utility)) includes_.push_back(utility);
    for (std::string& each : ListSources(context_.files, utility)) list.push_back(std::move(each));
  }
  for (const std::string& each : list) {
    const std::string type = context_.typeOf(each);
    if (type == "Header" || IsSourceType(type)) open.push_back(each);
    if (IsSourceType(type)) files_.push_back({each, {"Libraries", library.name}, type, {}});
  }
}

void LibraryFinder::AddUsed(const std::vector<std::string>& sources) {
  std::vector<std::string> open = sources;
  while (!open.empty()) {
    const std::string path = std::move(open.back());
    open.pop_back();
    const auto text = ReadForImport(context_.files, path, kLargestScanned);
    if (!text) continue;
    for (const std::string& include : ScanSource(*text).includes) {
      if (context_.files.Exists(JoinPath(FolderOf(path), include))) continue;
      for (const Library& each : libraries_) {
        const bool has = context_.files.Exists(JoinPath(each.sources, include)) ||
                         context_.files.Exists(JoinPath(each.folder, "include/" + include));
        if (!has) continue;
        if (names_.insert(each.name).second) AddLibrary(each, open);
        break;
      }
    }
  }
}

}  // namespace tarn::host
