#include "hosts/core/ChangeLabel.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "hosts/core/LogEntry.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

// A line of a project or application file.
struct Line {
  std::string_view text;  // trimmed
  std::string_view key;   // independent of whether the element has content
  std::size_t depth = 0;  // tabs before it
};

using Lines = std::vector<Line>;

// An element that only one version has.
struct Item {
  std::string type;
  std::string label;
  std::string file;
  std::string section;        // of an option
  std::string configuration;  // of an application
  std::string active;         // application of a project
};

using Items = std::vector<Item>;

constexpr std::array<std::string_view, 6> kStoredOptions = {"Options", "Config",  "Set",
                                                            "Section", "Configs", "Property"};

bool IsNode(const Item& item) {
  return !item.type.empty() && item.type != "Project" &&
         std::find(kStoredOptions.begin(), kStoredOptions.end(), item.type) == kStoredOptions.end();
}

Lines LinesOf(std::string_view text) {
  Lines lines;
  for (const std::string_view each : Split(text, '\n')) {
    const std::string_view line = Trim(each);
    if (line.empty()) continue;
    const std::string_view key = line.substr(0, line.find_last_not_of("/> ") + 1);
    lines.push_back({line, key, std::min(each.find_first_not_of('\t'), each.size())});
  }
  return lines;
}

// Labels may contain any character, but the label of a step must be a single line.
std::string OnOneLine(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  return text;
}

Item ReadItem(const Line& line, const std::string& section) {
  const auto element = ParseXml(std::string(line.text));
  if (element == nullptr) return {};
  const auto get = [&element](const char* name) {
    return OnOneLine(GetAttribute(element.get(), name));
  };
  return {element->GetName(), get("Header"), get("Path"), section, get("Config"), get("ActiveApp")};
}

// The lines of both versions between their common prefix and common suffix.
struct Region {
  Lines before, after;
  std::string section;  // option section in which the region begins
};

bool IsSame(const Line& one, const Line& other) {
  return one.depth == other.depth && one.text == other.text;
}

bool IsEnd(const Line& line) {
  return line.text.starts_with("</");
}

bool HasContent(const Line& line) {
  return !line.text.ends_with("/>");
}

bool IsSection(const Line& line) {
  return line.text.starts_with("<Section ");
}

Region FindRegion(const FileChange& change) {
  const Lines before = LinesOf(*change.before);
  const Lines after = LinesOf(*change.after);
  const std::size_t most = std::min(before.size(), after.size());
  std::size_t head = 0;
  while (head < most && IsSame(before[head], after[head])) ++head;
  std::size_t tail = 0;
  while (tail < most - head &&
         IsSame(before[before.size() - 1 - tail], after[after.size() - 1 - tail])) {
    ++tail;
  }
  Region region;
  const auto middle = [head, tail](const Lines& lines) {
    return Lines(lines.begin() + static_cast<std::ptrdiff_t>(head),
                 lines.end() - static_cast<std::ptrdiff_t>(tail));
  };
  region.before = middle(before);
  region.after = middle(after);
  for (std::size_t i = head; i-- > 0;) {
    if (!IsSection(before[i])) continue;
    region.section = ReadItem(before[i], {}).label;
    break;
  }
  return region;
}

// Returns the elements of `lines` that are missing in `others` (a multiset difference), without the
// descendants of such a node. A `Config` with content only encloses stored options.
Items FindOwn(const Lines& lines, const Lines& others, std::string section) {
  std::map<std::string_view, int> counts;
  for (const Line& each : others) ++counts[each.key];
  Items items;
  std::size_t inside = std::string_view::npos;  // depth of the skipped node
  for (const Line& line : lines) {
    if (line.depth <= inside) inside = std::string_view::npos;
    if (IsSection(line)) section = ReadItem(line, {}).label;
    if (--counts[line.key] >= 0 || IsEnd(line) || inside != std::string_view::npos) continue;
    Item item = ReadItem(line, section);
    if (item.type == "Config" && HasContent(line)) continue;
    if (IsNode(item) && HasContent(line) && line.depth > 0) inside = line.depth;
    items.push_back(std::move(item));
  }
  return items;
}

// The changes found in all files.
struct Summary {
  Items added, removed;             // nodes
  std::string formerName, newName;  // of a node that was renamed
  std::string configuration;        // newly selected
  std::string active;               // newly selected application
  Items addedConfigurations, removedConfigurations;
  std::set<std::string> set, reset;  // options
  std::string moved;
};

Items Take(Items& items, std::string_view type) {
  Items taken;
  std::erase_if(items, [&](Item& each) {
    if (each.type != type) return false;
    taken.push_back(std::move(each));
    return true;
  });
  return taken;
}

// Compares the attributes of an element that exists in both versions; groups and the like have no
// file.
void CompareNode(const Item& before, const Item& after, Summary& found) {
  if (before.label != after.label) {
    found.formerName = before.label;
    found.newName = after.label;
  }
  if (before.configuration != after.configuration) found.configuration = after.configuration;
}

void PairNodes(Items& removed, Items& added, Summary& found) {
  for (Item& each : removed) {
    const auto isSameFile = [&each](const Item& other) {
      return other.type == each.type && other.file == each.file && !each.file.empty();
    };
    auto partner = std::find_if(added.begin(), added.end(), isSameFile);
    const bool isAlone = removed.size() == 1 && added.size() == 1;
    if (isAlone && added.front().type == each.type && each.file.empty()) partner = added.begin();
    if (partner == added.end()) {
      found.removed.push_back(std::move(each));
    } else {
      CompareNode(each, *partner, found);
      added.erase(partner);
    }
  }
  std::move(added.begin(), added.end(), std::back_inserter(found.added));
}

// Returns the index of the line regardless of its depth.
std::size_t IndexOf(const Lines& lines, const Line& line) {
  const auto found = std::find_if(lines.begin(), lines.end(),
                                  [&line](const Line& each) { return each.key == line.key; });
  return static_cast<std::size_t>(found - lines.begin());
}

bool HasMovedIn(const Lines& lines, const Line& line) {
  const std::size_t index = IndexOf(lines, line);
  return index < lines.size() && lines[index].depth != line.depth;
}

// Returns the element that was moved, if all others are unchanged: the one that went into a
// different group, else the first of the shorter of the two blocks that were swapped.
std::string FindMoved(Region region) {
  Lines& before = region.before;
  Lines& after = region.after;
  const auto start = std::ranges::mismatch(before, after, [](const Line& one, const Line& other) {
    return one.key == other.key && one.depth == other.depth;
  });
  before.erase(before.begin(), start.in1);
  after.erase(after.begin(), start.in2);
  if (before.empty() || after.empty()) return {};
  const Line& gone = before.front();
  const Line& here = after.front();
  const bool isShorter = IndexOf(before, here) <= IndexOf(after, gone);
  const bool isDown = HasMovedIn(after, gone) || (isShorter && !HasMovedIn(before, here));
  const bool isFirst = IsEnd(here) || (isDown && !IsEnd(gone));
  return ReadItem(isFirst ? gone : here, {}).label;
}

void Examine(const FileChange& change, Summary& found) {
  const Region region = FindRegion(change);
  Items removed = FindOwn(region.before, region.after, region.section);
  Items added = FindOwn(region.after, region.before, region.section);
  if (removed.empty() && added.empty()) found.moved = FindMoved(region);
  for (Items* items : {&added, &removed}) {
    const bool isAdded = items == &added;
    for (const Item& each : Take(*items, "Property")) {
      (isAdded ? found.set : found.reset).insert(each.section + "." + each.label);
    }
    Items& configurations = isAdded ? found.addedConfigurations : found.removedConfigurations;
    for (Item& each : Take(*items, "Config")) configurations.push_back(std::move(each));
    for (const Item& each : Take(*items, "Project")) {
      if (isAdded) found.active = each.active;
    }
    std::erase_if(*items, [](const Item& each) { return !IsNode(each); });
  }
  PairNodes(removed, added, found);
}

ChangeLabel LabelOf(ChangeKind kind, const Items& items) {
  ChangeLabel label;
  label.kind = kind;
  label.count = items.size();
  if (items.size() == 1) label.name = items.front().label;
  const auto areAll = [&items](auto isOfKind) {
    return std::all_of(items.begin(), items.end(), isOfKind);
  };
  if (areAll([](const Item& each) { return each.type == "Application"; })) {
    label.nodes = NodeKind::Application;
  } else if (areAll([](const Item& each) { return each.type == "Group"; })) {
    label.nodes = NodeKind::Group;
  } else if (areAll([](const Item& each) { return !each.file.empty(); })) {
    label.nodes = NodeKind::File;
  }
  return label;
}

ChangeLabel LabelOf(ChangeKind kind, std::string name) {
  ChangeLabel label;
  label.kind = kind;
  label.name = std::move(name);
  label.count = 1;
  return label;
}

bool HaveSameLabels(const Items& one, const Items& other) {
  return std::is_permutation(one.begin(), one.end(), other.begin(), other.end(),
                             [](const Item& a, const Item& b) { return a.label == b.label; });
}

std::optional<ChangeLabel> LabelOfNodes(const Summary& found) {
  const bool isBoth = !found.added.empty() && !found.removed.empty();
  if (isBoth && HaveSameLabels(found.added, found.removed)) {
    return LabelOf(ChangeKind::Move, found.added);
  }
  if (isBoth) return LabelOf(ChangeKind::Replace, found.removed);
  if (!found.added.empty()) return LabelOf(ChangeKind::Add, found.added);
  if (!found.removed.empty()) return LabelOf(ChangeKind::Remove, found.removed);
  if (found.newName.empty()) return {};
  ChangeLabel label = LabelOf(ChangeKind::Rename, found.formerName);
  label.newName = found.newName;
  return label;
}

std::optional<ChangeLabel> LabelOfOptions(const Summary& found) {
  std::set<std::string> all = found.set;
  all.insert(found.reset.begin(), found.reset.end());
  if (all.empty()) return {};
  if (all.size() == 1) {
    return LabelOf(found.set.empty() ? ChangeKind::ResetOption : ChangeKind::SetOption,
                   *all.begin());
  }
  ChangeLabel label;
  label.kind = ChangeKind::ChangeOptions;
  label.count = all.size();
  return label;
}

// English phrases per kind; "%" is replaced by the name or the number.
constexpr std::array<const char*, 13> kWords = {"Add %",
                                                "Remove %",
                                                "Move %",
                                                "Replace %",
                                                "Rename %",
                                                "Add configuration %",
                                                "Remove configuration %",
                                                "Select configuration %",
                                                "Set %",
                                                "Reset %",
                                                "Change %",
                                                "Select application %",
                                                "Change the project"};
constexpr std::array<const char*, 4> kNodeWords = {" items", " files", " groups", " applications"};

}  // namespace

ChangeLabel SummarizeChanges(const FileChanges& changes) {
  Summary found;
  for (const FileChange& each : changes) {
    // An added or removed file also shows up as a change of the project file.
    if (each.before && each.after) Examine(each, found);
  }
  if (const auto label = LabelOfNodes(found)) return *label;
  const auto& added = found.addedConfigurations;
  const auto& removed = found.removedConfigurations;
  if (!added.empty() && removed.empty()) {
    return LabelOf(ChangeKind::AddConfiguration, added.front().label);
  }
  if (!removed.empty() && added.empty()) {
    return LabelOf(ChangeKind::RemoveConfiguration, removed.front().label);
  }
  if (!found.configuration.empty()) {
    return LabelOf(ChangeKind::SelectConfiguration, found.configuration);
  }
  if (const auto label = LabelOfOptions(found)) return *label;
  if (!found.active.empty()) return LabelOf(ChangeKind::SelectApplication, found.active);
  return found.moved.empty() ? ChangeLabel() : LabelOf(ChangeKind::Move, found.moved);
}

std::string DescribeChanges(const FileChanges& changes) {
  const ChangeLabel label = SummarizeChanges(changes);
  std::string subject = label.name;
  if (label.count > 1) {
    const bool isOptions = label.kind == ChangeKind::ChangeOptions;
    subject = std::to_string(label.count) +
              (isOptions ? " options" : kNodeWords[static_cast<std::size_t>(label.nodes)]);
  }
  if (!label.newName.empty()) subject += " to " + label.newName;
  std::string text = kWords[static_cast<std::size_t>(label.kind)];
  const std::size_t at = text.find('%');
  return at == text.npos ? text : text.replace(at, 1, subject);
}

}  // namespace tarn::host
