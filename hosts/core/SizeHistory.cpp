#include "hosts/core/SizeHistory.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "hosts/core/ProjectFile.h"
#include "platform/paths/Paths.h"

namespace tarn::host {

namespace {

using SizesJson = nlohmann::json;

constexpr int kVersion = 1;
constexpr std::size_t kMostSymbols = 20000;
constexpr std::uint64_t kLargestFile = 64 << 20;

using SizeTable = std::map<std::string, std::uint64_t>;

SizesJson ToJson(const SizeSnapshot& snapshot) {
  return {{"regions", snapshot.regions},
          {"sections", snapshot.sections},
          {"files", snapshot.files},
          {"symbols", snapshot.symbols}};
}

// Skips everything that isn't a size.
SizeTable ReadTable(const SizesJson& snapshot, const char* name) {
  SizeTable sizes;
  const auto table = snapshot.find(name);
  if (table == snapshot.end() || !table->is_object()) return sizes;
  for (const auto& [key, value] : table->items()) {
    if (value.is_number_unsigned()) sizes[key] = value.get<std::uint64_t>();
  }
  return sizes;
}

std::optional<SizeSnapshot> ReadSnapshot(const SizesJson& parent, const std::string& name) {
  const auto found = parent.find(name);
  if (found == parent.end() || !found->is_object()) return std::nullopt;
  return SizeSnapshot{ReadTable(*found, "regions"), ReadTable(*found, "sections"),
                      ReadTable(*found, "files"), ReadTable(*found, "symbols")};
}

std::string VersionOf(const FileStatus& output) {
  return std::to_string(output.modifiedSeconds) + '.' + std::to_string(output.modifiedNanoseconds) +
         ' ' + std::to_string(output.size);
}

}  // namespace

std::string SymbolKey(const sizes::SymbolSize& symbol) {
  return symbol.file.empty() ? symbol.name : symbol.name + " (" + symbol.file + ")";
}

SizeSnapshot TakeSnapshot(const sizes::ProgramSizes& sizes) {
  SizeSnapshot snapshot;
  for (const auto& each : sizes.regions) snapshot.regions[each.name] += each.used;
  for (const auto& each : sizes.sections) {
    if (!each.regions.empty()) snapshot.sections[each.name] += each.size;
  }
  for (const auto& file : sizes.files) {
    for (const std::uint64_t each : file.byRegion) snapshot.files[file.name] += each;
  }
  for (std::size_t i = 0; i < std::min(sizes.symbols.size(), kMostSymbols); ++i) {
    snapshot.symbols[SymbolKey(sizes.symbols[i])] += sizes.symbols[i].size;
  }
  return snapshot;
}

struct SizeHistory::Document {
  SizesJson root = SizesJson::object();
};

SizeHistory::SizeHistory(FileSystem& fileSystem, const std::string& projectPath)
    : files_(fileSystem),
      path_(SizesPathOf(projectPath)),
      folder_(FolderOf(projectPath)),
      document_(std::make_unique<Document>()) {}

SizeHistory::~SizeHistory() = default;

std::string SizeHistory::KeyOf(const ApplicationEntry& application) const {
  return RelativeDiskPath(folder_, application.path) + '|' + application.configuration;
}

void SizeHistory::Load() {
  document_->root = SizesJson::object();
  const auto status = files_.ExamineExactly(path_);
  if (!status || status->size > kLargestFile) return;
  const auto text = files_.ReadWholeFile(path_);
  if (!text) return;
  SizesJson read = SizesJson::parse(*text, nullptr, false);
  const bool isKnown = read.is_object() && read.value("version", SizesJson()) == kVersion &&
                       read.contains("programs") && read["programs"].is_object();
  if (!isKnown) return;
  for (const auto& [key, program] : read["programs"].items()) {
    if (program.is_object()) document_->root[key] = program;
  }
}

Status SizeHistory::Save() const {
  const SizesJson document = {{"version", kVersion}, {"programs", document_->root}};
  return files_.WriteOwnFile(
      path_, document.dump(-1, ' ', false, SizesJson::error_handler_t::replace) + "\n");
}

void SizeHistory::RecordBuild(const ApplicationEntry& application, const FileStatus& output,
                              const SizeSnapshot& snapshot) {
  SizesJson& program = document_->root[KeyOf(application)];
  if (!program.is_object()) program = SizesJson::object();
  const std::string version = VersionOf(output);
  if (program.value("output", SizesJson()) == version) return;
  if (program.contains("last")) program["before"] = std::move(program["last"]);
  program["last"] = ToJson(snapshot);
  program["output"] = version;
}

std::optional<SizeSnapshot> SizeHistory::FindEarlier(const ApplicationEntry& application,
                                                     const FileStatus& output) const {
  const auto program = document_->root.find(KeyOf(application));
  if (program == document_->root.end()) return std::nullopt;
  const bool isLast = program->value("output", SizesJson()) == VersionOf(output);
  return ReadSnapshot(*program, isLast ? "before" : "last");
}

void SizeHistory::SaveBaseline(const ApplicationEntry& application, const std::string& name,
                               const SizeSnapshot& snapshot) {
  SizesJson& baselines = document_->root[KeyOf(application)]["baselines"];
  if (!baselines.is_object()) baselines = SizesJson::object();
  baselines[name] = ToJson(snapshot);
}

std::optional<SizeSnapshot> SizeHistory::FindBaseline(const ApplicationEntry& application,
                                                      const std::string& name) const {
  const auto program = document_->root.find(KeyOf(application));
  if (program == document_->root.end()) return std::nullopt;
  const SizesJson baselines = program->value("baselines", SizesJson::object());
  return baselines.is_object() ? ReadSnapshot(baselines, name) : std::nullopt;
}

std::vector<std::string> SizeHistory::ListBaselines(const ApplicationEntry& application) const {
  std::vector<std::string> names;
  const auto program = document_->root.find(KeyOf(application));
  if (program == document_->root.end()) return names;
  const SizesJson baselines = program->value("baselines", SizesJson::object());
  if (!baselines.is_object()) return names;
  for (const auto& [name, unused] : baselines.items()) names.push_back(name);
  return names;
}

}  // namespace tarn::host
