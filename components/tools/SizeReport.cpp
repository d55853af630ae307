#include "components/tools/SizeReport.h"

#include <algorithm>
#include <array>

#include "platform/text/Text.h"
#include "sizes/SizeLimit.h"

namespace tarn::tools {

namespace {

using Sizes = std::map<std::string, std::uint64_t>;

// Splits a line at spaces.
std::vector<std::string_view> Columns(std::string_view line) {
  std::vector<std::string_view> columns;
  for (const std::string_view part : Split(line, ' ')) {
    if (!Trim(part).empty()) columns.push_back(Trim(part));
  }
  return columns;
}

bool ReadNumber(std::string_view text, std::uint64_t& number) {
  const bool isDecimal =
      !text.empty() && text.size() < 19 && text.find_first_not_of("0123456789") == text.npos;
  if (isDecimal) number = static_cast<std::uint64_t>(ParseInt64(text).value_or(0));
  return isDecimal;
}

Sizes ReadSections(std::string_view text) {
  Sizes sizes;
  for (const std::string_view line : Split(text, '\n')) {
    const auto columns = Columns(line);
    std::uint64_t size = 0;
    if (columns.size() == 3 && ReadNumber(columns[1], size)) sizes[std::string(columns[0])] += size;
  }
  return sizes;
}

struct Memory {
  std::string_view title;
  std::string_view name;
};
constexpr std::array<Memory, 3> kMemories{
    {{"PAGED EXT. RAM", "pram"}, {"EXTERNAL RAM", "xram"}, {"ROM/EPROM/FLASH", "flash"}}};

// Parses "0x10:|a|a|S| |": a cell with a letter or digit is used, one with an S belongs to the
// stack.
void CountCells(std::string_view line, Sizes& sizes) {
  for (const std::string_view cell : Split(line.substr(line.find(":|") + 2), '|')) {
    if (cell.size() != 1 || cell[0] == ' ' || cell[0] == '.') continue;
    ++sizes[cell[0] == 'S' ? "stack" : "iram"];
  }
}

// Parses "NAME  start  end  size  max"; start and end are missing if the memory is not used.
void ReadMemory(std::string_view line, Sizes& sizes) {
  for (const Memory& memory : kMemories) {
    if (line.substr(0, memory.title.size()) != memory.title) continue;
    const auto columns = Columns(line.substr(memory.title.size()));
    std::uint64_t size = 0;
    if (columns.size() >= 2 && ReadNumber(columns[columns.size() - 2], size)) {
      sizes[std::string(memory.name)] += size;
    }
  }
}

Sizes ReadSdccMap(std::string_view text) {
  Sizes sizes;
  for (const std::string_view line : Split(text, '\n')) {
    if (line.substr(0, 2) == "0x" && line.find(":|") != line.npos) {
      CountCells(line, sizes);
    } else {
      ReadMemory(Trim(line), sizes);
    }
  }
  return sizes;
}

// Parses "NAME  00008024  00000010 =  16. bytes (REL,CON)", which is repeated on each page that an
// area spans.
Sizes ReadSdccAreas(std::string_view text) {
  Sizes sizes;
  for (const std::string_view line : Split(text, '\n')) {
    const auto columns = Columns(line);
    if (columns.size() < 6 || columns[3] != "=" || columns[5] != "bytes") continue;
    std::uint64_t size = 0;
    if (ReadNumber(columns[4].substr(0, columns[4].size() - 1), size)) {
      sizes[std::string(columns[0])] = size;
    }
  }
  return sizes;
}

bool Matches(const std::string& name, const std::string& wanted) {
  if (wanted.empty() || wanted.back() != '*') return name == wanted;
  return name.compare(0, wanted.size() - 1, wanted, 0, wanted.size() - 1) == 0;
}

}  // namespace

bool IsInSections(const std::string& name, const std::vector<std::string>& sections) {
  return std::ranges::any_of(sections,
                             [&](const std::string& each) { return Matches(name, each); });
}

namespace {

std::uint64_t Add(const Sizes& sizes, const std::vector<std::string>& sections) {
  std::uint64_t sum = 0;
  for (const auto& [name, size] : sizes) {
    if (IsInSections(name, sections)) sum += size;
  }
  return sum;
}

}  // namespace

Sizes ReadSizes(SizeFormat format, std::string_view text) {
  switch (format) {
    case SizeFormat::Sections:
      return ReadSections(text);
    case SizeFormat::SdccMap:
      return ReadSdccMap(text);
    case SizeFormat::SdccAreas:
      return ReadSdccAreas(text);
    case SizeFormat::None:
      break;
  }
  return {};
}

std::string DescribeSizes(const Sizes& sizes, const std::vector<SizeSum>& sums,
                          const std::vector<SizeBound>& bounds) {
  std::string text;
  if (sizes.empty()) return text;
  for (std::size_t i = 0; i < sums.size(); ++i) {
    const std::uint64_t size = Add(sizes, sums[i].sections);
    if (size == 0 && sums[i].skipZero) continue;
    if (!text.empty()) text += ", ";
    text += sums[i].label + ' ' + std::to_string(size) + " B";
    const std::uint64_t total = i < bounds.size() ? sizes::ReadByteCount(bounds[i].total) : 0;
    if (total != 0) text += " (" + sizes::PercentText(size, total) + ")";
  }
  return text;
}

std::vector<ExceededSize> FindExceeded(const Sizes& sizes, const std::vector<SizeSum>& sums,
                                       const std::vector<SizeBound>& bounds) {
  std::vector<ExceededSize> found;
  for (std::size_t i = 0; i < sums.size() && i < bounds.size(); ++i) {
    if (bounds[i].max.empty()) continue;
    const std::string& label = sums[i].label;
    const std::string limit = sums[i].maxOption + " (" + bounds[i].max + ")";
    const std::uint64_t total = sizes::ReadByteCount(bounds[i].total);
    const sizes::SizeLimit most = sizes::ReadSizeLimit(bounds[i].max, total);
    const std::uint64_t size = Add(sizes, sums[i].sections);
    if (!most.most) {
      const bool isUnknown = total == 0 && !sums[i].totalOption.empty();
      found.push_back({i, limit + " " + most.problem +
                              (isUnknown ? "; see " + sums[i].totalOption : std::string())});
    } else if (sizes.empty()) {
      found.push_back({i, limit + " can't be checked, the size of the program is unknown"});
    } else if (size > *most.most) {
      const std::string share = total == 0 ? "" : ", " + sizes::PercentText(size, total);
      found.push_back({i, label + " is " + std::to_string(size - *most.most) +
                              " B too large: " + std::to_string(size) + " B" + share + ", but " +
                              limit + " allows " + std::to_string(*most.most) + " B"});
    }
  }
  return found;
}

}  // namespace tarn::tools
