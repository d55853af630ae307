#include "sizes/SdccMap.h"

#include <algorithm>
#include <unordered_map>

#include "sizes/TextScan.h"

namespace tarn::sizes {

namespace {

std::vector<std::string_view> FirstTokens(std::string_view line) {
  constexpr std::size_t kMost = 12;
  std::vector<std::string_view> tokens;
  while (tokens.size() < kMost) {
    const std::string_view token = TakeToken(line);
    if (token.empty()) break;
    tokens.push_back(token);
  }
  return tokens;
}

// Returns true for labels of the debug information that mark a line ("A$main$45", "C$main.c$3$1$5")
// or the end of a function ("XG$main$0$0", "XFmain$f$0$0"). Names of C start with an underscore.
bool IsPosition(std::string_view name) {
  if (name.starts_with("A$") || name.starts_with("C$")) return true;
  return name.starts_with('X') && name.find('$') != name.npos;
}

// Sets the sizes, and removes symbols that share an address with another one: the compiler adds
// names for its debugger, which have a dollar sign.
void MeasureSymbols(SdccArea& area) {
  std::ranges::stable_sort(area.symbols, [](const SdccSymbol& a, const SdccSymbol& b) {
    const auto key = [](const SdccSymbol& each) {
      return std::pair(each.address, each.name.find('$') != each.name.npos);
    };
    return key(a) < key(b);
  });
  const auto isSame = [](const SdccSymbol& a, const SdccSymbol& b) {
    return a.address == b.address;
  };
  area.symbols.erase(std::unique(area.symbols.begin(), area.symbols.end(), isSame),
                     area.symbols.end());
  const std::uint64_t end = area.address + area.size;
  for (std::size_t i = 0; i < area.symbols.size(); ++i) {
    const bool isLast = i + 1 == area.symbols.size();
    const std::uint64_t next = isLast ? end : std::min(area.symbols[i + 1].address, end);
    area.symbols[i].size = next > area.symbols[i].address ? next - area.symbols[i].address : 0;
  }
  std::erase_if(area.symbols, [](const SdccSymbol& each) { return each.size == 0; });
}

}  // namespace

std::vector<SdccArea> ReadSdccMap(std::string_view text) {
  std::vector<SdccArea> areas;
  std::unordered_map<std::string_view, std::size_t> numbers;
  SdccArea* current = nullptr;
  while (!text.empty()) {
    const std::vector<std::string_view> tokens = FirstTokens(TakeLine(text));
    // "NAME  00008024  00000010 =  16. bytes (REL,CON)", repeated on each page that an area spans.
    if (tokens.size() >= 7 && tokens[3] == "=" && tokens[5] == "bytes") {
      const auto address = ParseWhole<std::uint64_t>(tokens[1], 16);
      const auto size = ParseWhole<std::uint64_t>(tokens[2], 16);
      if (!address || !size) continue;
      const auto [place, isNew] = numbers.try_emplace(tokens[0], areas.size());
      if (isNew) areas.push_back({tokens[0], *address, *size, tokens[6], {}});
      current = &areas[place->second];
      continue;
    }
    if (current == nullptr) continue;
    // "[C:]  00000008  _counter  module"; labels without a module are the linker's.
    const std::size_t first = !tokens.empty() && tokens[0].ends_with(':') ? 1 : 0;
    if (tokens.size() != first + 3) continue;
    const auto address = ParseWhole<std::uint64_t>(tokens[first], 16);
    if (address && !IsPosition(tokens[first + 1])) {
      current->symbols.push_back({tokens[first + 1], tokens[first + 2], *address, 0});
    }
  }
  std::erase_if(areas, [](const SdccArea& area) { return area.size == 0; });
  for (SdccArea& area : areas) MeasureSymbols(area);
  return areas;
}

std::uint64_t CountDataCells(std::string_view memories) {
  std::uint64_t count = 0;
  while (!memories.empty()) {
    const std::string_view line = TakeLine(memories);
    const std::size_t cells = line.find(":|");
    if (!line.starts_with("0x") || cells == line.npos) continue;
    count += static_cast<std::uint64_t>(
        std::ranges::count_if(line.substr(cells), [](char c) { return c >= 'a' && c <= 'z'; }));
  }
  return count;
}

std::string_view MemoryOf(const SdccArea& area) {
  constexpr std::string_view kFlash[] = {"HOME",        "GSINIT",   "GSFINAL",     "CODE",  "CONST",
                                         "INITIALIZER", "XINIT",    "CSEG",        "_CODE", "_HOME",
                                         "_GSINIT",     "_GSFINAL", "_INITIALIZER"};
  constexpr std::string_view kRam[] = {"DATA", "INITIALIZED", "DSEG",  "OSEG",         "ISEG",
                                       "BSEG", "BSEG_BYTES",  "_DATA", "_INITIALIZED", "BSS",
                                       "XSEG", "XISEG",       "PREG2"};
  const auto isName = [&area](std::string_view name) { return area.name == name; };
  if (area.attributes.find("XDATA") != area.attributes.npos) return "XRAM";
  if (area.attributes.find("CODE") != area.attributes.npos) return "flash";
  if (std::ranges::any_of(kFlash, isName)) return "flash";
  // Vectors and start-up code at fixed addresses.
  constexpr std::string_view kFixed[] = {"_HEADER", "HEADER", "CODEIVT"};
  const auto begins = [&area](std::string_view name) { return area.name.starts_with(name); };
  if (std::ranges::any_of(kFixed, begins)) return "flash";
  const bool isBank = area.name.starts_with("REG_BANK_");
  return isBank || std::ranges::any_of(kRam, isName) ? "RAM" : "";
}

}  // namespace tarn::sizes
