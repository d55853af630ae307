#include "components/tools/DebugSymbols.h"

#include <gelf.h>
#include <libelf.h>

#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "components/tools/CommandBuilder.h"
#include "components/tools/libdw/DebugEntry.h"
#include "components/tools/libdw/DeclarationText.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::tools {

namespace {

using Kind = GlobalSymbol::Kind;

constexpr int kMaxScopes = 50;  // nesting limit

bool IsC(Dwarf_Die& unit) {
  switch (dwarf_srclang(&unit)) {
    case DW_LANG_C:
    case DW_LANG_C89:
    case DW_LANG_C99:
    case DW_LANG_C11:
      return true;
    default:
      return false;
  }
}

using NameSet = std::unordered_set<std::string>;

void AddNamesAtZero(Elf* elf, Elf_Scn* section, const GElf_Shdr& header, NameSet& names) {
  Elf_Data* data = elf_getdata(section, nullptr);
  GElf_Sym symbol;
  for (int i = 0; data != nullptr && gelf_getsym(data, i, &symbol) != nullptr; ++i) {
    if (symbol.st_value != 0 || symbol.st_shndx == SHN_UNDEF) continue;
    names.insert(OrEmpty(elf_strptr(elf, header.sh_link, symbol.st_name)));
  }
}

// Returns the names of the program's symbols at address 0.
NameSet NamesAtZero(Elf* elf) {
  NameSet names;
  Elf_Scn* section = nullptr;
  while ((section = elf_nextscn(elf, section)) != nullptr) {
    GElf_Shdr header;
    if (gelf_getshdr(section, &header) != nullptr && header.sh_type == SHT_SYMTAB) {
      AddNamesAtZero(elf, section, header, names);
    }
  }
  return names;
}

bool IsFunctionAtZero(Dwarf_Die& function) {
  Dwarf_Addr address = 0;
  return HasAttribute(function, DW_AT_low_pc) && dwarf_lowpc(&function, &address) == 0 &&
         address == 0;
}

// Returns the address of a variable that has a fixed one.
std::optional<std::uint64_t> AddressOfVariable(Dwarf_Die& variable) {
  Dwarf_Attribute attribute;
  Dwarf_Op* steps = nullptr;
  std::size_t count = 0;
  const bool isFixed = dwarf_attr(&variable, DW_AT_location, &attribute) != nullptr &&
                       dwarf_getlocation(&attribute, &steps, &count) == 0 && count == 1 &&
                       steps[0].atom == DW_OP_addr;
  return isFixed ? std::optional<std::uint64_t>(steps[0].number) : std::nullopt;
}

bool IsVariableAtZero(Dwarf_Die& variable) {
  return AddressOfVariable(variable) == 0;
}

// Returns the address of a function or variable. One that is always inlined has none.
std::optional<std::uint64_t> AddressOf(Dwarf_Die& entry, Kind kind) {
  Dwarf_Addr address = 0;
  if (kind == Kind::Variable) return AddressOfVariable(entry);
  const bool hasStart = kind == Kind::Function && HasAttribute(entry, DW_AT_low_pc);
  if (!hasStart || dwarf_lowpc(&entry, &address) != 0) return std::nullopt;
  return address;
}

// The library converts sections of other types when it loads them, which bypasses its check that
// their strings are terminated.
bool HasPlainDebugSections(Elf* elf) {
  std::size_t names = 0;
  if (elf_getshdrstrndx(elf, &names) != 0) return true;
  Elf_Scn* section = nullptr;
  while ((section = elf_nextscn(elf, section)) != nullptr) {
    GElf_Shdr header;
    if (gelf_getshdr(section, &header) == nullptr) return false;
    const bool isPlain = header.sh_type == SHT_PROGBITS || header.sh_type == SHT_MIPS_DWARF;
    const std::string name = OrEmpty(elf_strptr(elf, names, header.sh_name));
    if (!isPlain && (name.starts_with(".debug_") || name.starts_with(".zdebug_"))) return false;
  }
  return true;
}

// Returns the number of functions and variables of the unit whose names are in the lines of `text`
// that declare them.
int CountDeclarations(Dwarf_Die& unit, std::string_view text) {
  constexpr int kMostLooked = 16;
  const std::vector<std::string_view> lines = Split(text, '\n');
  const std::string source = TextAttribute(unit, DW_AT_name);
  int looked = 0;
  int count = 0;
  ForEachChild(unit, [&](Dwarf_Die& entry) {
    const int tag = dwarf_tag(&entry);
    if (tag != DW_TAG_subprogram && tag != DW_TAG_variable) return;
    const std::string name = NameOf(entry);
    int line = 0;
    const bool isPlaced = !name.empty() && dwarf_decl_line(&entry, &line) == 0 && line > 0 &&
                          FileNameOf(OrEmpty(dwarf_decl_file(&entry))) == FileNameOf(source);
    if (!isPlaced || ++looked > kMostLooked) return;
    const auto index = static_cast<std::size_t>(line) - 1;
    if (index < lines.size() && lines[index].find(name) != std::string_view::npos) ++count;
  });
  return count;
}

// Returns the folder to which the names in a unit are relative.
std::string FindBaseFolder(Dwarf_Die& unit, const std::vector<std::string>& folders) {
  FileSystem& files = FileSystem::Native();
  const std::string source = TextAttribute(unit, DW_AT_name);
  std::vector<std::string> holding;
  for (const std::string& each : folders) {
    if (files.Examine(AbsolutePath(&files, each, source))) holding.push_back(each);
  }
  if (holding.empty()) return folders.front();
  std::string best = holding.front();
  int most = -1;
  for (const std::string& each : holding) {
    if (holding.size() == 1) break;
    const auto text = files.ReadWholeFile(AbsolutePath(&files, each, source));
    const int count = text ? CountDeclarations(unit, *text) : 0;
    if (count <= most) continue;
    most = count;
    best = each;
  }
  return best;
}

class SymbolCollector {
 public:
  SymbolCollector(GlobalSymbols& into, NameSet zeroNames, std::vector<std::string> bases)
      : found_(into), namesAtZero_(std::move(zeroNames)), baseFolders_(std::move(bases)) {}

  void AddUnit(Dwarf_Die& unit) {
    if (!IsWhole(unit)) {
      isDamaged_ = true;
      return;
    }
    isC_ = IsC(unit);
    folder_ = TextAttribute(unit, DW_AT_comp_dir);
    // Compilers that hide the project's location store a folder that is already part of the names.
    if (IsRelativePath(folder_)) folder_ = FindBaseFolder(unit, baseFolders_);
    scopes_.clear();
    paths_.clear();
    AddChildren(unit, "", 0);
  }

  bool IsDamaged() const { return isDamaged_; }

 private:
  // `scope` is the qualifier of the names, ending in "::".
  void AddChildren(Dwarf_Die& parent, const std::string& scope, int depth) {
    if (depth > kMaxScopes ||
        !ForEachChild(parent, [&](Dwarf_Die& child) { AddEntry(child, scope, depth); })) {
      isDamaged_ = true;
    }
  }

  void AddEntry(Dwarf_Die& entry, const std::string& scope, int depth) {
    // A definition outside the scope finds it through its declaration.
    if (!scope.empty() && HasAttribute(entry, DW_AT_declaration)) {
      scopes_[dwarf_dieoffset(&entry)] = scope;
    }
    switch (dwarf_tag(&entry)) {
      case DW_TAG_subprogram:
        // Copies of a function refer to the entry that describes it.
        if (HasAttribute(entry, DW_AT_abstract_origin)) return;
        if (!IsFunctionAtZero(entry) || IsKept(entry)) Add(entry, Kind::Function, scope);
        return;
      case DW_TAG_variable:
        if (!IsVariableAtZero(entry) || IsKept(entry)) Add(entry, Kind::Variable, scope);
        return;
      case DW_TAG_structure_type:
      case DW_TAG_class_type:
      case DW_TAG_union_type:
        Add(entry, Kind::Type, scope);
        if (!isC_) AddChildren(entry, Inside(entry, scope), depth + 1);
        return;
      case DW_TAG_enumeration_type:
      case DW_TAG_typedef:
        Add(entry, Kind::Type, scope);
        return;
      case DW_TAG_namespace:
        AddChildren(entry, Inside(entry, scope), depth + 1);
        return;
      default:
        return;
    }
  }

  // Code that the linker discards keeps its debug information, with address 0.
  bool IsKept(Dwarf_Die& entryAtZero) const {
    const std::string linked = TextAttribute(entryAtZero, DW_AT_linkage_name);
    return namesAtZero_.count(linked.empty() ? NameOf(entryAtZero) : linked) != 0;
  }

  static std::string Inside(Dwarf_Die& entry, const std::string& scope) {
    const std::string name = NameOf(entry);
    return scope + (name.empty() ? "(anonymous)" : name) + "::";
  }

  std::string ScopeOf(Dwarf_Die& entry, const std::string& scope) const {
    if (!HasAttribute(entry, DW_AT_specification)) return scope;
    auto declaration = EntryOf(entry, DW_AT_specification);
    if (!declaration) return scope;
    const auto place = scopes_.find(dwarf_dieoffset(&*declaration));
    return place == scopes_.end() ? scope : place->second;
  }

  void Add(Dwarf_Die& entry, Kind kind, const std::string& scope) {
    if (HasAttribute(entry, DW_AT_declaration) || HasFlag(entry, DW_AT_artificial)) return;
    const std::string name = NameOf(entry);
    if (name.empty()) return;
    GlobalSymbol symbol{kind, ScopeOf(entry, scope) + name, {}, FileOf(entry),
                        0,    AddressOf(entry, kind)};
    // Types that are built in or belong to libraries have no file to show.
    if (symbol.file.empty()) return;
    if (dwarf_decl_line(&entry, &symbol.line) != 0) symbol.line = 0;
    if (!IsNew(symbol)) return;
    symbol.definition = Describe(entry, symbol);
    found_.symbols.push_back(std::move(symbol));
  }

  // A header contributes its symbols to every file that includes it.
  bool IsNew(const GlobalSymbol& symbol) {
    return seen_
        .insert(std::to_string(static_cast<int>(symbol.kind)) + '\n' + symbol.name + '\n' +
                symbol.file + '\n' + std::to_string(symbol.line))
        .second;
  }

  std::string Describe(Dwarf_Die& entry, const GlobalSymbol& symbol) const {
    DeclarationText text(isC_);
    switch (symbol.kind) {
      case Kind::Function:
        return text.OfFunction(entry, symbol.name);
      case Kind::Variable:
        return text.OfVariable(entry, symbol.name);
      case Kind::Type:
        return text.OfType(entry, symbol.name);
    }
    return {};
  }

  const std::string& FileOf(Dwarf_Die& entry) {
    const char* name = dwarf_decl_file(&entry);
    const auto [place, isFirst] = paths_.try_emplace(name);
    if (isFirst) place->second = AbsolutePath(&FileSystem::Native(), folder_, OrEmpty(name));
    return place->second;
  }

  GlobalSymbols& found_;
  const NameSet namesAtZero_;
  const std::vector<std::string> baseFolders_;
  NameSet seen_;
  bool isDamaged_ = false;

  // State of the current compilation unit.
  bool isC_ = true;
  std::string folder_;
  std::unordered_map<Dwarf_Off, std::string> scopes_;   // of declarations, by offset
  std::unordered_map<const char*, std::string> paths_;  // absolute paths, by the library's string
                                                        // pointers
};

struct Closer {
  void operator()(Elf* elf) const { elf_end(elf); }
  void operator()(Dwarf* dwarf) const { dwarf_end(dwarf); }
};

constexpr const char* kDamaged = "parts are missing, the debug information is damaged";

}  // namespace

GlobalSymbols ReadDebugSymbols(std::string& program, const std::string& baseFolder,
                               const std::vector<std::string>& otherFolders) {
  GlobalSymbols found;
  elf_version(EV_CURRENT);
  const std::unique_ptr<Elf, Closer> elf(elf_memory(program.data(), program.size()));
  if (!elf) return found;
  if (!HasPlainDebugSections(elf.get())) {
    found.problem = kDamaged;
    return found;
  }
  const std::unique_ptr<Dwarf, Closer> dwarf(dwarf_begin_elf(elf.get(), DWARF_C_READ, nullptr));
  if (!dwarf) return found;
  std::vector<std::string> folders{baseFolder};
  folders.insert(folders.end(), otherFolders.begin(), otherFolders.end());
  SymbolCollector collector(found, NamesAtZero(elf.get()), std::move(folders));
  Dwarf_CU* unit = nullptr;
  Dwarf_Die top;
  int answer = 0;
  while ((answer = dwarf_get_units(dwarf.get(), unit, &unit, nullptr, nullptr, &top, nullptr)) ==
         0) {
    collector.AddUnit(top);
  }
  if (answer < 0 || collector.IsDamaged()) found.problem = kDamaged;
  return found;
}

}  // namespace tarn::tools
