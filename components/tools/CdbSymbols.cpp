#include "components/tools/CdbSymbols.h"

#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "components/tools/DepFile.h"
#include "components/tools/SourceDeclarations.h"
#include "components/tools/ToolPaths.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

using Kind = GlobalSymbol::Kind;

constexpr std::string_view kUnnamedType = "__0";  // names that sdcc invents begin with it

// One symbol of the program.
struct Entry {
  Kind kind = Kind::Variable;
  std::string name;
  std::vector<std::string> modules;  // in which it is declared, in order of the link
  std::optional<std::uint64_t> address;
};

// The parts of "S:Fmain$ticks$0_0$0({1}SC:U),E,0,0" up to the type: scope "Fmain", name "ticks".
struct SymbolName {
  std::string_view scope, name;
};

SymbolName SplitName(std::string_view text) {
  const std::size_t dollar = text.find('$');
  if (dollar == std::string_view::npos) return {};
  const std::size_t end = text.find_first_of("$([:", dollar + 1);
  return {text.substr(0, dollar), text.substr(dollar + 1, end - dollar - 1)};
}

std::optional<std::uint64_t> AddressOf(std::string_view text) {
  const std::string_view digits = Trim(text.substr(text.rfind(':') + 1));
  std::uint64_t value = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  const bool isWhole = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
  return isWhole && !digits.empty() ? std::optional(value) : std::nullopt;
}

// The records of a .cdb file.
class Records {
 public:
  explicit Records(std::string_view text) {
    for (const std::string_view line : Split(text, '\n')) Read(line);
  }

  const std::map<std::string, Entry, std::less<>>& Entries() const { return entries_; }
  // Lines of C sources whose code starts at the address.
  bool StartsAt(std::uint64_t address, const std::string& fileName, int line) const {
    return lines_.contains({address, fileName, line});
  }

 private:
  void Read(std::string_view line) {
    if (line.size() < 3 || line[1] != ':') return;
    const std::string_view text = Trim(line.substr(2));
    switch (line[0]) {
      case 'M':
        module_ = text;
        break;
      case 'F':
        if (Entry* const entry = Declared(text)) entry->kind = Kind::Function;
        break;
      case 'S':
        // Other modules declare the functions that they call in this way.
        if (text.find("DF,") == std::string_view::npos || IsPointer(text)) Declared(text);
        break;
      case 'T':
        if (Entry* const entry = Declared(text, "type ")) entry->kind = Kind::Type;
        break;
      case 'L':
        ReadPlace(text);
        break;
      default:
        break;
    }
  }

  // The type of a pointer to a function, or of an array of them, begins with that of the pointer.
  static bool IsPointer(std::string_view text) {
    const std::size_t type = text.find('}');
    return type != std::string_view::npos && !text.substr(type + 1).starts_with("DF,");
  }

  // Returns null for what isn't at file level.
  Entry* Declared(std::string_view text, const std::string& prefix = "") {
    const auto [scope, name] = SplitName(text);
    if (name.empty() || scope.empty() || scope.front() == 'L') return nullptr;
    Entry& entry = entries_[prefix + std::string(scope) + '$' + std::string(name)];
    entry.name = name;
    if (entry.modules.empty() || entry.modules.back() != module_) entry.modules.push_back(module_);
    return &entry;
  }

  void ReadPlace(std::string_view text) {
    const auto address = AddressOf(text);
    if (!address) return;
    const auto [scope, name] = SplitName(text);
    if (scope == "C") {
      const std::size_t after = text.find('$', 2);
      if (after == std::string_view::npos) return;
      const int line = ParseDecimal(std::string(text.substr(after + 1)).c_str());
      lines_.insert({*address, std::string(name), line});
    } else if (const auto found = entries_.find(std::string(scope) + '$' + std::string(name));
               found != entries_.end()) {
      found->second.address = *address;
    }
  }

  std::string module_;
  std::map<std::string, Entry, std::less<>> entries_;
  std::set<std::tuple<std::uint64_t, std::string, int>> lines_;
};

// The definitions in the sources of a program, read when they are asked for.
class Sources {
 public:
  Sources(FileSystem& files, const std::vector<std::string>& objects, std::string baseFolder)
      : files_(files), baseFolder_(std::move(baseFolder)) {
    for (const std::string& each : objects) AddModule(each);
  }

  // Calls `take(file, declaration)` for each definition of the name in the module, and returns true
  // if there is one. Headers are only searched if the source has none.
  template <class Take>
  bool ForEachDefinition(const std::string& module, const std::string& name, const Take& take) {
    const auto [first, last] = modules_.equal_range(module);
    bool isFound = false;
    for (auto each = first; each != last; ++each) {
      bool isHere = false;
      for (const std::string& file : each->second) {
        const auto& declarations = DeclarationsOf(file);
        const auto [begin, end] = declarations.equal_range(name);
        for (auto found = begin; found != end; ++found) {
          isHere = true;
          take(file, found->second);
        }
        if (isHere) break;
      }
      isFound = isFound || isHere;
    }
    return isFound;
  }

 private:
  using Declarations = std::multimap<std::string, SourceDeclaration, std::less<>>;

  void AddModule(const std::string& object) {
    const auto debug = files_.ReadWholeFile(WithExtension(object, ".adb"));
    const auto rules = files_.ReadWholeFile(WithExtension(object, ".d"));
    if (!debug || !rules || !debug->starts_with("M:")) return;
    const std::string module(Trim(std::string_view(*debug).substr(2, debug->find('\n') - 2)));
    std::vector<std::string> names = ReadDepFile(*rules).names;
    for (std::string& each : names) each = AbsolutePath(&files_, baseFolder_, each);
    modules_.emplace(module, std::move(names));
  }

  const Declarations& DeclarationsOf(const std::string& file) {
    const auto [place, isNew] = declarations_.try_emplace(file);
    if (isNew) {
      const auto text = files_.ReadWholeFile(file);
      for (SourceDeclaration& each : FindDeclarations(text ? *text : std::string())) {
        std::string name = each.name;
        place->second.emplace(std::move(name), std::move(each));
      }
    }
    return place->second;
  }

  FileSystem& files_;
  const std::string baseFolder_;
  std::multimap<std::string, std::vector<std::string>> modules_;  // their source and headers
  std::map<std::string, Declarations> declarations_;              // by file
};

// Several definitions are alternatives of conditional sections, or belong to modules of the same
// name: the line at the address of a function decides, else the first one is taken.
std::optional<GlobalSymbol> Find(const Records& records, Sources& sources, const Entry& entry) {
  std::optional<GlobalSymbol> best;
  bool isSure = false;
  const auto take = [&](const std::string& file, const SourceDeclaration& found) {
    if (found.kind != entry.kind || isSure) return;
    isSure = entry.kind == Kind::Function && entry.address &&
             records.StartsAt(*entry.address, FileNameOf(file), found.line);
    if (best && !isSure) return;
    best = GlobalSymbol{found.kind, found.name, found.text, file, found.line, entry.address};
  };
  for (const std::string& module : entry.modules) {
    if (sources.ForEachDefinition(module, entry.name, take) && best && isSure) break;
  }
  return best;
}

}  // namespace

GlobalSymbols ReadCdbSymbols(FileSystem& files, const std::string& cdb,
                             const std::vector<std::string>& objects,
                             const std::string& baseFolder) {
  GlobalSymbols found;
  const auto text = files.ReadWholeFile(cdb);
  if (!text) {
    if (text.GetError().code != ErrorCode::NotFound) {
      found.problem = cdb + ": " + text.GetError().text;
    }
    return found;
  }
  const Records records(*text);
  Sources sources(files, objects, baseFolder);
  std::set<std::tuple<Kind, std::string, std::string, int>> seen;
  for (const auto& [key, entry] : records.Entries()) {
    const bool isLinked = entry.kind == Kind::Type || entry.address.has_value();
    if (!isLinked || entry.name.starts_with(kUnnamedType)) continue;
    std::optional<GlobalSymbol> symbol = Find(records, sources, entry);
    if (!symbol) continue;
    // A type of a header is one of each module that includes it.
    if (!seen.insert({symbol->kind, symbol->name, symbol->file, symbol->line}).second) continue;
    found.symbols.push_back(std::move(*symbol));
  }
  return found;
}

}  // namespace tarn::tools
