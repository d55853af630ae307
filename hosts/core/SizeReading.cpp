#include "hosts/core/SizeReading.h"

#include <algorithm>
#include <unordered_map>

#include "components/values/OptionValues.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "sizes/SizeLimit.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

Result<std::string> ReadBounded(FileSystem& files, const std::string& path, std::uint64_t most) {
  const auto status = files.ExamineExactly(path);
  if (status && status->size > most) return Error{ErrorCode::CannotOpen, "too large", {}};
  return files.ReadWholeFile(path);
}

std::string Absolute(const std::string& folder, const std::string& path) {
  return IsRelativePath(path) ? JoinPath(folder, path) : path;
}

// Each object file has its own. Members of libraries have none.
void AddStack(FileSystem& files, const SizeSource& source, const sizes::LinkerMap& map,
              std::uint64_t most, sizes::ProgramSizes& sizes) {
  for (const std::string_view object : map.files) {
    if (object.empty() || object.ends_with(')')) continue;
    const std::string path = WithExtension(Absolute(source.folder, std::string(object)), ".su");
    if (!files.ExamineExactly(path)) continue;
    const auto text = ReadBounded(files, path, most);
    if (!text) continue;
    for (sizes::FunctionStack& each : sizes::ReadStackUsage(*text)) {
      sizes.stack.push_back(std::move(each));
    }
  }
  sizes::SortStack(sizes);
}

}  // namespace

std::optional<SizeSource> FindSizeSource(InspectorDriver& inspector,
                                         const ApplicationEntry& application) {
  if (application.output.empty()) return std::nullopt;
  SizeSource source{application.output, {}, FolderOf(application.path), {}, false};
  const auto input = ParseXml(inspector.GetToolInput(application.path, application.output));
  const CXmlNode* const text = input == nullptr ? nullptr : input->FindChild("#CDATA");
  if (text == nullptr) return source;
  const OptionValues values = OptionValues::FromText(text->GetValue());
  const auto bytesOf = [&values](const char* option) {
    return sizes::ReadByteCount(values.Resolve(option));
  };
  source.device = {bytesOf("$(Target.FlashStart)"), bytesOf("$(Target.FlashSize)"),
                   bytesOf("$(Target.RamStart)"), bytesOf("$(Target.RamSize)"),
                   bytesOf("$(Target.EepromSize)")};
  source.isPacked = values.Resolve("$(Build.TranslateTool)") == "pack";
  const std::string map(Trim(values.Resolve("$(Linker.MapFile)")));
  if (!map.empty()) source.map = Absolute(source.folder, map);
  return source;
}

SizeReading ReadSizes(FileSystem& files, const SizeSource& source, std::uint64_t most) {
  SizeReading reading;
  if (source.isPacked) {
    reading.isNoProgram = true;
    reading.problem = source.output + ": made by commands of the project, not by a linker";
    return reading;
  }
  const auto bytes = ReadBounded(files, source.output, most);
  if (!bytes) {
    reading.problem = source.output + ": " + bytes.GetError().text;
    return reading;
  }
  reading.isNoProgram = bytes->starts_with("!<arch>\n") || bytes->starts_with("!<thin>\n");
  if (reading.isNoProgram) {
    reading.problem = source.output + ": a library, whose code counts in the programs that link it";
    return reading;
  }
  auto mapText = source.map.empty() ? Result<std::string>(std::string())
                                    : ReadBounded(files, source.map, most);
  if (!mapText) reading.remark = source.map + ": " + mapText.GetError().text;
  const std::string text = mapText ? std::move(*mapText) : std::string();
  const auto program = sizes::ReadElf(*bytes);
  if (program) {
    const sizes::LinkerMap map = sizes::ReadLinkerMap(text);
    if (map.pieces.empty() && mapText && !source.map.empty()) {
      reading.remark = source.map + ": not a map file that can be read";
    }
    reading.sizes = sizes::MeasureProgram(*program, map, source.device);
    AddStack(files, source, map, most, reading.sizes);
    return reading;
  }
  // sdcc's linker writes its map next to the image.
  const std::string place = WithExtension(source.output, ".map");
  const auto sdcc = ReadBounded(files, place, most);
  const auto memories = ReadBounded(files, WithExtension(source.output, ".mem"), most);
  if (sdcc) {
    reading.sizes = sizes::MeasureSdcc(*sdcc, source.device, memories ? *memories : std::string());
  }
  reading.remark.clear();
  if (reading.sizes.sections.empty()) {
    reading.problem = source.output + ": neither a whole ELF file nor an image with a map of sdcc";
  }
  return reading;
}

void AddPositions(ToolManagerDriver& tools, const SizeSource& source, sizes::ProgramSizes& sizes) {
  struct Position {
    std::string file;
    int line = 0;
  };
  std::unordered_map<std::uint64_t, Position> positions;
  for (const std::string& line :
       SplitLines(tools.ListSymbolPositions(source.output, source.folder))) {
    const std::size_t first = std::min(line.find(' '), line.size());
    const std::size_t second = line.find(' ', first + 1);
    if (second == std::string::npos) continue;
    positions.try_emplace(
        sizes::ReadByteCount(line.substr(0, first)),
        Position{line.substr(second + 1),
                 ParseDecimal(line.substr(first + 1, second - first - 1).c_str())});
  }
  // Compilers write only the names of the sources with the stack usage.
  std::unordered_map<std::string, std::string> paths;
  const auto keyOf = [](const std::string& file, int line) {
    return FileNameOf(file) + ':' + std::to_string(line);
  };
  for (sizes::SymbolSize& symbol : sizes.symbols) {
    const auto found = positions.find(symbol.address);
    if (found == positions.end()) continue;
    symbol.source = found->second.file;
    symbol.line = found->second.line;
    paths.try_emplace(keyOf(symbol.source, symbol.line), symbol.source);
  }
  for (sizes::FunctionStack& each : sizes.stack) {
    const auto found = paths.find(keyOf(each.file, each.line));
    if (found != paths.end()) each.file = found->second;
  }
}

}  // namespace tarn::host
