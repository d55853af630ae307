#include "sizes/LinkerMap.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "sizes/TextScan.h"

namespace tarn::sizes {

namespace {

std::optional<std::uint64_t> PrefixedHex(std::string_view token) {
  if (!token.starts_with("0x")) return std::nullopt;
  return ParseWhole<std::uint64_t>(token.substr(2), 16);
}

// Collects what the readers of both formats find.
class MapBuilder {
 public:
  MapBuilder() { map_.files.emplace_back(); }

  void BeginSection(const MapSection& section) { map_.sections.push_back(section); }
  void AddPiece(std::string_view input, std::uint64_t address, std::uint64_t size,
                std::string_view file) {
    if (map_.sections.empty() || size == 0) return;
    map_.pieces.push_back({input, address, size,
                           static_cast<std::uint32_t>(map_.sections.size() - 1), NumberOf(file)});
  }
  void AddRegion(MapRegion region) { map_.regions.push_back(std::move(region)); }
  LinkerMap Take() { return std::move(map_); }

 private:
  std::uint32_t NumberOf(std::string_view file) {
    if (file.empty()) return 0;
    const auto [found, isNew] =
        numbers_.try_emplace(file, static_cast<std::uint32_t>(map_.files.size()));
    if (isNew) map_.files.push_back(file);
    return found->second;
  }

  LinkerMap map_;
  std::unordered_map<std::string_view, std::uint32_t> numbers_;
};

// Reads the rows of a table of GNU ld, up to the title of the next part.
void ReadRegions(std::string_view& text, MapBuilder& builder) {
  while (!text.empty()) {
    std::string_view line = TakeLine(text);
    if (line.starts_with("Linker script and memory map")) return;
    const std::string_view name = TakeToken(line);
    const auto origin = PrefixedHex(TakeToken(line));
    const auto length = PrefixedHex(TakeToken(line));
    if (!origin || !length || name == "*default*") continue;
    builder.AddRegion({std::string(name), *origin, *length});
  }
}

// Reads the placement of sections by GNU ld. Output sections begin in the first column, sections of
// files in the second one. A long name is followed by its numbers on the next line.
class GnuReader {
 public:
  explicit GnuReader(MapBuilder& builder) : builder_(builder) {}

  void Add(std::string_view line) {
    if (line.empty() || line.front() == '\r') return;
    if (line.front() != ' ') {
      pending_ = {};
      BeginSection(line);
      return;
    }
    if (line.size() > 1 && line[1] != ' ') {
      std::string_view rest = line;
      const std::string_view name = TakeToken(rest);
      pending_ = {};
      if (name.find('(') != name.npos) return;  // a pattern of the script
      if (Trimmed(rest).empty()) {
        pending_ = name;
      } else {
        AddNumbers(name, rest);
      }
      return;
    }
    if (!pending_.empty()) AddNumbers(pending_, line);
    pending_ = {};
  }

 private:
  // Parses ".data  0x20000000  0x4 load address 0x08000d34"; the load address follows if it
  // differs.
  void BeginSection(std::string_view line) {
    const std::string_view name = TakeToken(line);
    if (name.find('(') != name.npos) return;
    const bool isAlone = Trimmed(line).empty();
    const auto address = PrefixedHex(TakeToken(line));
    if (!isAlone && !address) return;
    TakeToken(line);
    constexpr std::string_view kLoadTitle = "load address ";
    const std::size_t at = line.find(kLoadTitle);
    const auto load =
        at == line.npos ? address : PrefixedHex(Trimmed(line.substr(at + kLoadTitle.size())));
    builder_.BeginSection({name, address.value_or(0), load.value_or(address.value_or(0))});
  }

  void AddNumbers(std::string_view name, std::string_view rest) {
    const auto address = PrefixedHex(TakeToken(rest));
    const auto size = PrefixedHex(TakeToken(rest));
    if (!address || !size) return;
    // A gap is followed by the bytes that fill it.
    builder_.AddPiece(name, *address, *size, name == "*fill*" ? std::string_view() : Trimmed(rest));
  }

  MapBuilder& builder_;
  std::string_view pending_;  // name whose numbers follow
};

// Reads rows of lld: address, load address, size and alignment, then a name whose indentation
// distinguishes output sections, sections of files and symbols.
void ReadLldLine(std::string_view line, MapBuilder& builder) {
  const auto address = ParseWhole<std::uint64_t>(TakeToken(line), 16);
  const auto load = ParseWhole<std::uint64_t>(TakeToken(line), 16);
  const auto size = ParseWhole<std::uint64_t>(TakeToken(line), 16);
  const auto alignment = ParseWhole<std::uint64_t>(TakeToken(line));
  if (!address || !load || !size || !alignment || line.empty()) return;
  constexpr std::size_t kColumns = 8;
  const std::size_t level = line.find_first_not_of(' ') / kColumns;
  const std::string_view name = Trimmed(line);
  if (level == 0) {
    builder.BeginSection({name, *address, *load});
  } else if (level == 1) {
    const std::size_t colon = name.rfind(":(");
    if (colon == name.npos || !name.ends_with(')')) return;
    const std::string_view file = name.substr(0, colon);
    builder.AddPiece(name.substr(colon + 2, name.size() - colon - 3), *address, *size,
                     file == "<internal>" ? std::string_view() : file);
  }
}

// Returns the text between quotes after a word; GNU ld begins a quotation with a backquote, or has
// the quotes of UTF-8.
std::string_view QuotedAfter(std::string_view text, std::string_view word) {
  const std::size_t at = text.find(word);
  if (at == text.npos) return {};
  text.remove_prefix(at + word.size());
  constexpr std::string_view kQuotes = "`'\"\xe2\x80\x98\x99";
  const std::size_t start = text.find_first_not_of(kQuotes);
  if (start == text.npos) return {};
  return text.substr(start, text.find_first_of(kQuotes, start) - start);
}

}  // namespace

LinkerMap ReadLinkerMap(std::string_view text) {
  MapBuilder builder;
  const std::string_view first = Trimmed(text.substr(0, text.find('\n')));
  if (first.starts_with("VMA") && first.ends_with("Symbol")) {
    while (!text.empty()) ReadLldLine(TakeLine(text), builder);
    return builder.Take();
  }
  while (!text.empty()) {
    if (!TakeLine(text).starts_with("Memory Configuration")) continue;
    ReadRegions(text, builder);
    GnuReader reader(builder);
    while (!text.empty()) {
      const std::string_view line = TakeLine(text);
      // Tables that some links append.
      if (line.starts_with("Cross Reference Table")) break;
      reader.Add(line);
    }
  }
  return builder.Take();
}

bool IsForDevice(std::string_view section) {
  constexpr std::string_view kOthers[] = {
      ".debug", ".stab",    ".comment",        ".note",
      ".line",  ".gnu.lto", ".ARM.attributes", ".riscv.attributes"};
  for (const std::string_view each : kOthers) {
    if (section.starts_with(each)) return false;
  }
  return true;
}

RegionOverflow ReadOverflow(std::string_view message) {
  constexpr std::string_view kOverflow = "overflowed by ";
  const std::size_t at = message.find(kOverflow);
  const std::string_view region = QuotedAfter(message, "region ");
  if (at == message.npos || region.empty()) return {};
  std::string_view rest = message.substr(at + kOverflow.size());
  const auto bytes = ParseWhole<std::uint64_t>(TakeToken(rest));
  if (!bytes) return {};
  return {std::string(region), *bytes};
}

}  // namespace tarn::sizes
