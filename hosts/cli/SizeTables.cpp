#include "hosts/cli/SizeTables.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "hosts/cli/DisplayText.h"
#include "hosts/core/SymbolName.h"
#include "platform/paths/Paths.h"
#include "sizes/SizeLimit.h"

namespace tarn::host {

namespace {

using SizesJson = nlohmann::json;
using SizeTable = std::map<std::string, std::uint64_t>;

// Difference to an earlier size; an entry that did not exist counts as 0.
std::int64_t ChangeOf(const SizeTable& earlier, const std::string& name, std::uint64_t size) {
  const auto found = earlier.find(name);
  return static_cast<std::int64_t>(size - (found == earlier.end() ? 0 : found->second));
}

std::string ChangeText(std::int64_t change) {
  if (change == 0) return "=";
  return (change > 0 ? "+" : "") + std::to_string(change);
}

// A table whose columns are as wide as their cells. Text is on the left, numbers on the right.
class Table {
 public:
  // A title that begins with a space is that of a text.
  explicit Table(std::vector<std::string> titles) {
    for (const std::string& title : titles) isText_.push_back(title.starts_with(' '));
    for (std::string& title : titles) {
      if (title.starts_with(' ')) title.erase(0, 1);
    }
    rows_.push_back(std::move(titles));
  }
  void Add(std::vector<std::string> cells) {
    for (std::string& cell : cells) cell = Printable(cell);
    rows_.push_back(std::move(cells));
  }
  void Print(Console& out) const {
    std::vector<std::size_t> widths(isText_.size());
    for (const auto& row : rows_) {
      for (std::size_t i = 0; i < row.size(); ++i)
        widths[i] = std::max(widths[i], ColumnsOf(row[i]));
    }
    for (const auto& row : rows_) {
      std::string line;
      for (std::size_t i = 0; i < row.size(); ++i) {
        const std::size_t space = widths[i] - ColumnsOf(row[i]);
        line += "  " +
                (isText_[i] ? row[i] + std::string(space, ' ') : std::string(space, ' ') + row[i]);
      }
      line.erase(line.find_last_not_of(' ') + 1);
      out.PrintLine(&row == &rows_.front() ? out.Dye(Paint::Dim, line) : ConsoleText(line));
    }
  }

 private:
  std::vector<bool> isText_;
  std::vector<std::vector<std::string>> rows_;
};

// Names in a map are relative to the application's folder.
std::string FilePath(const SizeReport& report, const std::string& name) {
  if (name.empty() || !IsRelativePath(name)) return name;
  return CanonicalPath(JoinPath(FolderOf(report.application.path), name));
}

std::string ShowFile(CommandContext& context, const SizeReport& report, const std::string& name) {
  return name.empty() ? "(gaps)" : context.Show(FilePath(report, name));
}

std::uint64_t TotalOf(const sizes::FileSize& file) {
  std::uint64_t total = 0;
  for (const std::uint64_t each : file.byRegion) total += each;
  return total;
}

std::string Position(CommandContext& context, const SizeReport& report,
                     const sizes::SymbolSize& symbol) {
  if (symbol.source.empty()) return ShowFile(context, report, symbol.file);
  return context.Show(symbol.source) + (symbol.line > 0 ? ":" + std::to_string(symbol.line) : "");
}

// Appends the change, if the report has one.
void AddChange(const SizeReport& report, const SizeTable SizeSnapshot::*table,
               const std::string& name, std::uint64_t size, std::vector<std::string>& cells) {
  cells.push_back(report.earlier ? ChangeText(ChangeOf((*report.earlier).*table, name, size)) : "");
}

std::string Title(const SizeReport& report) {
  return report.earlier ? "Change" : "";
}

// Bytes of a memory that are neither used nor reserved; negative if it is too small.
std::int64_t FreeOf(const sizes::MemoryRegion& region) {
  return static_cast<std::int64_t>(region.length - region.used - region.reserved);
}

void PrintRegions(CommandContext& context, const SizeReport& report) {
  const bool hasReserve = std::ranges::any_of(report.sizes.regions, &sizes::MemoryRegion::reserved);
  std::vector<std::string> titles{" Memory", "Used", "Free", "Size", "", Title(report)};
  if (hasReserve) titles.insert(titles.begin() + 2, "Reserved");
  Table table(std::move(titles));
  for (const sizes::MemoryRegion& each : report.sizes.regions) {
    const bool isKnown = each.length != 0;
    std::vector<std::string> cells{
        each.name, std::to_string(each.used), isKnown ? std::to_string(FreeOf(each)) : "",
        isKnown ? std::to_string(each.length) : "", sizes::PercentText(each.used, each.length)};
    if (hasReserve) {
      cells.insert(cells.begin() + 2, each.reserved == 0 ? "" : std::to_string(each.reserved));
    }
    AddChange(report, &SizeSnapshot::regions, each.name, each.used, cells);
    table.Add(std::move(cells));
  }
  table.Print(context.Out());
}

std::string RegionNames(const SizeReport& report, const std::vector<std::size_t>& regions) {
  std::string names;
  for (const std::size_t each : regions) {
    names += (names.empty() ? "" : ", ") + report.sizes.regions[each].name;
  }
  return names;
}

void PrintSections(CommandContext& context, const SizeReport& report) {
  Table table({" Section", "Size", "Address", Title(report), " Memory"});
  for (const sizes::SectionSize& each : report.sizes.sections) {
    if (each.size == 0 || each.regions.empty()) continue;
    char address[24];
    std::snprintf(address, sizeof address, "0x%llx", static_cast<unsigned long long>(each.address));
    std::vector<std::string> cells{each.name, std::to_string(each.size), address};
    AddChange(report, &SizeSnapshot::sections, each.name, each.size, cells);
    cells.push_back(RegionNames(report, each.regions));
    table.Add(std::move(cells));
  }
  table.Print(context.Out());
}

void PrintFiles(CommandContext& context, const SizeReport& report, std::size_t most) {
  std::vector<std::string> titles;
  for (const sizes::MemoryRegion& each : report.sizes.regions) titles.push_back(each.name);
  titles.push_back(Title(report));
  titles.emplace_back(" File");
  Table table(std::move(titles));
  for (std::size_t i = 0; i < std::min(report.sizes.files.size(), most); ++i) {
    const sizes::FileSize& file = report.sizes.files[i];
    std::vector<std::string> cells;
    for (const std::uint64_t each : file.byRegion) cells.push_back(std::to_string(each));
    AddChange(report, &SizeSnapshot::files, file.name, TotalOf(file), cells);
    cells.push_back(ShowFile(context, report, file.name));
    table.Add(std::move(cells));
  }
  table.Print(context.Out());
}

void PrintSymbols(CommandContext& context, const SizeReport& report, std::size_t most) {
  Table table({"Size", Title(report), " Section", " Symbol", " Where"});
  for (std::size_t i = 0; i < std::min(report.sizes.symbols.size(), most); ++i) {
    const sizes::SymbolSize& each = report.sizes.symbols[i];
    std::vector<std::string> cells{std::to_string(each.size)};
    AddChange(report, &SizeSnapshot::symbols, SymbolKey(each), each.size, cells);
    cells.push_back(each.section);
    cells.push_back(ReadableSymbol(each.name));
    cells.push_back(Position(context, report, each));
    table.Add(std::move(cells));
  }
  table.Print(context.Out());
}

void PrintStack(CommandContext& context, const SizeReport& report, std::size_t most) {
  Table table({"Stack", " Kind", " Function", " Where"});
  for (std::size_t i = 0; i < std::min(report.sizes.stack.size(), most); ++i) {
    const sizes::FunctionStack& each = report.sizes.stack[i];
    table.Add({std::to_string(each.bytes), each.kind, ReadableSymbol(each.function),
               ShowFile(context, report, each.file) + ":" + std::to_string(each.line)});
  }
  table.Print(context.Out());
}

SizesJson Change(const SizeReport& report, const SizeTable SizeSnapshot::*table,
                 const std::string& name, std::uint64_t size) {
  if (!report.earlier) return nullptr;
  return ChangeOf((*report.earlier).*table, name, size);
}

SizesJson RegionsToJson(const SizeReport& report) {
  SizesJson list = SizesJson::array();
  for (const sizes::MemoryRegion& each : report.sizes.regions) {
    SizesJson row = {{"name", each.name},
                     {"used", each.used},
                     {"reserved", each.reserved},
                     {"change", Change(report, &SizeSnapshot::regions, each.name, each.used)}};
    if (each.length != 0) {
      row["size"] = each.length;
      row["free"] = FreeOf(each);
      row["percent"] = 100.0 * static_cast<double>(each.used) / static_cast<double>(each.length);
    }
    list.push_back(std::move(row));
  }
  return list;
}

SizesJson SectionsToJson(const SizeReport& report) {
  SizesJson list = SizesJson::array();
  for (const sizes::SectionSize& each : report.sizes.sections) {
    SizesJson regions = SizesJson::array();
    for (const std::size_t region : each.regions) {
      regions.push_back(report.sizes.regions[region].name);
    }
    const bool isCompared = !each.regions.empty();
    list.push_back(
        {{"name", each.name},
         {"address", each.address},
         {"size", each.size},
         {"memories", regions},
         {"change", isCompared ? Change(report, &SizeSnapshot::sections, each.name, each.size)
                               : SizesJson()}});
  }
  return list;
}

SizesJson FilesToJson(const SizeReport& report) {
  SizesJson list = SizesJson::array();
  for (const sizes::FileSize& file : report.sizes.files) {
    SizesJson sizes = SizesJson::object();
    for (std::size_t i = 0; i < file.byRegion.size(); ++i) {
      sizes[report.sizes.regions[i].name] = file.byRegion[i];
    }
    list.push_back({{"file", FilePath(report, file.name)},
                    {"sizes", sizes},
                    {"change", Change(report, &SizeSnapshot::files, file.name, TotalOf(file))}});
  }
  return list;
}

SizesJson SymbolsToJson(const SizeReport& report) {
  SizesJson list = SizesJson::array();
  for (const sizes::SymbolSize& each : report.sizes.symbols) {
    list.push_back(
        {{"name", ReadableSymbol(each.name)},
         {"linkageName", each.name},
         {"size", each.size},
         {"address", each.address},
         {"section", each.section},
         {"memory", report.sizes.regions[each.region].name},
         {"object", FilePath(report, each.file)},
         {"file", each.source},
         {"line", each.line},
         {"change", Change(report, &SizeSnapshot::symbols, SymbolKey(each), each.size)}});
  }
  return list;
}

}  // namespace

void PrintSizes(CommandContext& context, const SizeReport& report, const std::string& by,
                std::size_t most) {
  if (most == 0) most = static_cast<std::size_t>(-1);
  if (by == "region") return PrintRegions(context, report);
  if (by == "section") return PrintSections(context, report);
  if (by == "file") return PrintFiles(context, report, most);
  if (by == "stack") return PrintStack(context, report, most);
  PrintSymbols(context, report, most);
}

SizesJson ToJson(CommandContext&, const SizeReport& report) {
  SizesJson stack = SizesJson::array();
  for (const sizes::FunctionStack& each : report.sizes.stack) {
    stack.push_back({{"function", ReadableSymbol(each.function)},
                     {"file", FilePath(report, each.file)},
                     {"line", each.line},
                     {"bytes", each.bytes},
                     {"kind", each.kind}});
  }
  return {
      {"application", report.application.label},
      {"configuration", report.application.configuration},
      {"output", report.application.output},
      {"comparedWith", report.comparedWith.empty() ? SizesJson() : SizesJson(report.comparedWith)},
      {"memories", RegionsToJson(report)},
      {"sections", SectionsToJson(report)},
      {"files", FilesToJson(report)},
      {"symbols", SymbolsToJson(report)},
      {"stack", stack}};
}

void AddTreemaps(CommandContext& context, const SizeReport& report, sizes::TreemapPage& page) {
  const sizes::ProgramSizes& sizes = report.sizes;
  std::unordered_map<std::string_view, const sizes::SectionSize*> sections;
  for (const sizes::SectionSize& each : sizes.sections) sections.try_emplace(each.name, &each);
  for (std::size_t region = 0; region < sizes.regions.size(); ++region) {
    const sizes::MemoryRegion& memory = sizes.regions[region];
    if (memory.used == 0) continue;
    sizes::TreemapNode root{memory.name, memory.used};
    std::unordered_map<std::string, std::size_t> numbers;
    for (const sizes::FileSize& file : sizes.files) {
      if (file.byRegion[region] == 0) continue;
      numbers[file.name] = root.children.size();
      root.children.push_back({ShowFile(context, report, file.name), file.byRegion[region]});
    }
    std::uint64_t address = 0;  // of the last symbol; several may be the same
    for (const sizes::SymbolSize& each : sizes.symbols) {
      const auto found = sections.find(each.section);
      if (found == sections.end()) continue;
      const std::vector<std::size_t>& regions = found->second->regions;
      const bool isHere = std::ranges::find(regions, region) != regions.end();
      if (!isHere || (each.address == address && address != 0)) continue;
      address = each.address;
      sizes::TreemapNode node{ReadableSymbol(each.name), each.size};
      const auto file = numbers.find(each.file);
      auto& siblings = file == numbers.end() ? root.children : root.children[file->second].children;
      siblings.push_back(std::move(node));
    }
    std::string heading =
        report.application.label + ": " + memory.name + ", " + std::to_string(memory.used) + " B";
    if (memory.length != 0) {
      heading += " of " + std::to_string(memory.length) + " B (" +
                 sizes::PercentText(memory.used, memory.length) + ")";
    }
    if (memory.reserved != 0) {
      heading += ", " + std::to_string(memory.reserved) + " B reserved";
    }
    page.parts.push_back({std::move(heading), std::move(root)});
  }
}

}  // namespace tarn::host
