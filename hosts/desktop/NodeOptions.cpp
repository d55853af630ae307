#include "hosts/desktop/NodeOptions.h"

#include <tarn/commands.h>

#include <algorithm>
#include <array>

#include "hosts/core/NewConfiguration.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

constexpr const char* kGeneral = "General";
constexpr const char* kInternal = "Internal";
constexpr const char* kStandard = "Standard";

OptionKind KindOf(std::string_view type) {
  struct Row {
    std::string_view name;
    OptionKind kind;
  };
  constexpr std::array<Row, 7> rows = {{{"number", OptionKind::Number},
                                        {"yesno", OptionKind::YesNo},
                                        {"choice", OptionKind::Choice},
                                        {"file", OptionKind::File},
                                        {"folder", OptionKind::Folder},
                                        {"paths", OptionKind::Paths},
                                        {"list", OptionKind::List}}};
  for (const Row& row : rows) {
    if (EqualNoCase(row.name, type)) return row.kind;
  }
  return OptionKind::Text;
}

// The node's name and kind come first, the section about the project window last.
int RankOf(const std::string& section) {
  if (EqualNoCase(section, kGeneral)) return 0;
  return IsInternalSection(section) ? 2 : 1;
}

std::vector<OptionSection> InSections(std::vector<OptionRow> rows) {
  std::vector<OptionSection> sections;
  for (OptionRow& row : rows) {
    const std::string& name = row.definition.section;
    if (sections.empty() || !EqualNoCase(sections.back().name, name)) {
      sections.push_back({name, row.definition.sectionLabel, {}});
    }
    sections.back().rows.push_back(std::move(row));
  }
  std::stable_sort(sections.begin(), sections.end(),
                   [](const auto& a, const auto& b) { return RankOf(a.name) < RankOf(b.name); });
  return sections;
}

// Returns true if the value consists only of $(Set.Section.Property).
bool IsReference(const std::string& written, OptionKey& key) {
  const std::string_view text = written;
  if (!text.starts_with("$(") || !text.ends_with(")")) return false;
  const std::string inner(text.substr(2, text.size() - 3));
  return inner.find_first_of("$()?:") == inner.npos && ParseOptionKey(inner, key);
}

bool HasName(const std::vector<std::string>& names, const std::string& name) {
  return std::any_of(names.begin(), names.end(),
                     [&name](const std::string& each) { return EqualNoCase(each, name); });
}

// Returns the kinds of nodes that have a tool, because only their options are worth setting at an
// outer level.
std::vector<OptionSet> SetsWithTools(const OptionTable& table) {
  std::vector<OptionSet> found;
  for (const OptionSet& set : table.GetSets()) {
    if (set.name != "*" && table.Names(set.name, "Build", "TranslateTool")) found.push_back(set);
  }
  return found;
}

}  // namespace

bool IsInternalSection(std::string_view name) {
  return EqualNoCase(name, kInternal);
}

bool IsNodeType(const OptionDefinition& option) {
  return EqualNoCase(option.section, kGeneral) && EqualNoCase(option.name, "Type");
}

std::vector<OptionSection> FilterSections(const std::vector<OptionSection>& sections,
                                          std::string_view filter) {
  const std::vector<std::string_view> words = Split(filter, ' ');
  std::vector<OptionSection> found;
  for (const OptionSection& section : sections) {
    OptionSection rest{section.name, section.label, {}};
    for (const OptionRow& row : section.rows) {
      const OptionDefinition& option = row.definition;
      const std::string text = FoldCase(section.label + "\n" + option.label + "\n" +
                                        option.GetKey() + "\n" + option.help);
      const bool isWanted = std::all_of(words.begin(), words.end(), [&text](std::string_view word) {
        return text.find(FoldCase(word)) != text.npos;
      });
      if (isWanted) rest.rows.push_back(row);
    }
    if (!rest.rows.empty()) found.push_back(std::move(rest));
  }
  return found;
}

std::vector<std::string> SplitList(std::string_view value) {
  std::vector<std::string> entries;
  for (const std::string_view part : Split(value, ';')) {
    const std::string_view entry = Trim(part);
    if (!entry.empty()) entries.emplace_back(entry);
  }
  return entries;
}

std::string JoinList(const std::vector<std::string>& entries) {
  std::string value;
  for (const std::string& entry : entries) {
    if (!value.empty()) value += ';';
    value += entry;
  }
  return value;
}

std::string NodeOptions::ReadMark() {
  OptionsDriver& options = session_.Options();
  const std::string project = session_.HasProject() ? session_.GetProjectPath() : std::string();
  return project + "\n" + options.GetValuesAsText() + "\n" + options.ListConfigurations() + "\n" +
         options.GetUndoProperty() + "\n" + options.GetRedoProperty() + "\n" +
         std::to_string(options.GetSwitchCount());
}

// The placeholder project's options are not shown.
bool NodeOptions::HasNode(const OptionValues& values) {
  return session_.HasProject() && !values.GetOwnSet().empty();
}

std::string NodeOptions::GetKind() {
  const OptionValues values = OptionValues::FromText(session_.Options().GetValuesAsText());
  return HasNode(values) ? values.GetOwnSet() : std::string();
}

ConfigurationList NodeOptions::ReadConfigurations() {
  const OptionValues values = OptionValues::FromText(session_.Options().GetValuesAsText());
  return HasNode(values) ? ReadConfigurations(values) : ConfigurationList();
}

ConfigurationList NodeOptions::ReadConfigurations(const OptionValues& values) {
  ConfigurationList list{values.GetConfig(), {}};
  const std::string lines = session_.Options().ListConfigurations();
  for (const std::string_view line : Split(lines, '\n')) {
    if (!line.empty()) list.names.emplace_back(line);
  }
  // The standard configuration and the active one need not be listed.
  for (const std::string& name : {list.current, std::string(kStandard)}) {
    if (!name.empty() && !HasName(list.names, name)) list.names.insert(list.names.begin(), name);
  }
  return list;
}

OptionSheet NodeOptions::Read(const std::string& set) {
  const OptionValues values = OptionValues::FromText(session_.Options().GetValuesAsText());
  OptionSheet sheet;
  if (!HasNode(values)) return sheet;
  sheet.ownSet = values.GetOwnSet();
  sheet.path = values.Get(sheet.ownSet, kGeneral, "Path");
  sheet.node = values.Get(sheet.ownSet, kGeneral, "Header");
  sheet.folder = values.Get("", kGeneral, "ApplicationDir");
  sheet.configurations = ReadConfigurations(values);

  const OptionTable all(session_.Options().ListProperties(""));
  // Values set at a project are not inherited by its applications.
  const bool isFile = !values.Get(sheet.ownSet, kGeneral, "NodePath").empty();
  const bool isProject = !values.Get(sheet.ownSet, kGeneral, "ProjectPath").empty();
  for (const OptionSet& each : SetsWithTools(all)) {
    const bool isOuter =
        EqualNoCase(each.name, sheet.ownSet) || HasName(values.GetOuterSets(), each.name);
    if (!isFile && !isProject && !isOuter) sheet.innerSets.push_back(each);
  }
  const bool isInner = std::any_of(sheet.innerSets.begin(), sheet.innerSets.end(),
                                   [&set](const auto& each) { return each.name == set; });
  sheet.set = isInner ? set : sheet.ownSet;

  const OptionTable table(session_.Options().ListProperties(sheet.set));
  std::vector<OptionRow> rows;
  for (const OptionDefinition& option : table.GetOf(sheet.set)) {
    // Only nodes have a name, not a kind of node.
    if (!option.shown || (isInner && EqualNoCase(option.section, kGeneral))) continue;
    rows.push_back(ReadRow(option, values, sheet.folder));
  }
  sheet.sections = InSections(std::move(rows));
  sheet.undo = LabelOf(session_.Options().GetUndoProperty());
  sheet.redo = LabelOf(session_.Options().GetRedoProperty());
  return sheet;
}

OptionRow NodeOptions::ReadRow(const OptionDefinition& definition, const OptionValues& values,
                               const std::string& folder) {
  const std::string& set = definition.set;
  OptionRow row;
  row.definition = definition;
  row.kind = KindOf(definition.type);
  row.value = session_.Manager().GetPropertyValue(set, definition.section, definition.name);
  row.shown = session_.Options().GetPropertyStringValue(set, definition.section, definition.name);
  const bool isPath = row.kind == OptionKind::File || row.kind == OptionKind::Folder;
  if (isPath && !folder.empty() && row.shown.starts_with(folder)) row.shown.erase(0, folder.size());
  const std::string* const raw = values.Find(set, definition.section, definition.name);
  row.written = raw != nullptr ? *raw : definition.defaultValue;
  FindSource(row);
  // Defaults to the element name until it is changed.
  if (IsNodeType(definition) && row.value.empty()) row.written = row.value = row.shown = set;
  return row;
}

void NodeOptions::FindSource(OptionRow& row) {
  const OptionDefinition& option = row.definition;
  const std::string origin = session_.Options().GetOrigin(option.set, option.section, option.name);
  OptionKey referred;
  if (origin == "own") {
    row.source = OptionSource::Own;
  } else if (origin == "inherited") {
    row.source = OptionSource::Inherited;
    for (const StoredValue& stored : Explain(option)) {
      if (!stored.counts) continue;
      row.sourceKind = stored.kind;
      row.sourceLabel = stored.label;
    }
  } else if (!row.value.empty() && IsReference(row.written, referred)) {
    row.source = OptionSource::Reference;
    row.sourceLabel = session_.Manager().GetPropertyValue(referred.set, kGeneral, "Header");
    row.sourceKind = referred.set;
    if (referred.set.empty() || row.sourceLabel.empty()) row.source = OptionSource::Definition;
  } else if (!row.value.empty()) {
    row.source = OptionSource::Definition;
  }
}

std::vector<StoredValue> NodeOptions::Explain(const OptionDefinition& option) {
  return ReadStoredValues(
      option.set, session_.Inspector().ExplainOption(option.set, option.section, option.name));
}

std::string NodeOptions::Check(const OptionDefinition& option, const std::string& value) {
  return session_.Options().CheckValue(option.set, option.section, option.name, value);
}

std::vector<std::string> NodeOptions::ListTypes() {
  const OptionTable table(session_.Options().ListProperties(""));
  std::vector<std::string> names;
  for (const OptionSet& set : table.GetSets()) {
    if (set.name != "*") names.push_back(set.name);
  }
  return names;
}

// Makes a change while values are locked. They are locked while the options of all nodes are being
// published in the background; between two steps of that, the current node is the user's. A build
// started elsewhere locks them too, but then any node may be current, so the change is refused.
bool NodeOptions::Unheld(const std::function<bool()>& change) {
  if (change()) return true;
  if (session_.Manager().EnableCommand(TARN_CMD_STOP) != 0) return false;
  session_.Options().EndUpdate();
  const bool isDone = change();
  session_.Options().BeginUpdate();
  return isDone;
}

bool NodeOptions::Set(const OptionDefinition& option, const std::string& value) {
  const bool isTaken = Unheld([&] {
    return session_.Options().SetChangedProperty(option.set, option.section, option.name, value) !=
           0;
  });
  if (isTaken) session_.Manager().Command(option.command);
  return isTaken;
}

bool NodeOptions::Reset(const OptionDefinition& option) {
  const bool isTaken = Unheld([&] {
    return session_.Options().ResetChangedProperty(option.set, option.section, option.name) != 0;
  });
  if (isTaken) session_.Manager().Command(TARN_CMD_RESET_OPTION);
  return isTaken;
}

bool NodeOptions::Undo() {
  std::string key = session_.Options().GetUndoProperty();
  if (key.empty()) return false;
  Unheld([&] { return !(key = session_.Options().Undo()).empty(); });
  return Follow(key);
}

bool NodeOptions::Redo() {
  std::string key = session_.Options().GetRedoProperty();
  if (key.empty()) return false;
  Unheld([&] { return !(key = session_.Options().Redo()).empty(); });
  return Follow(key);
}

namespace {

// Returns the option for a full key; nullopt if it is not defined.
std::optional<OptionDefinition> FindByKey(OptionsDriver& options, const std::string& text) {
  OptionKey key;
  if (!ParseOptionKey(text, key)) return {};
  return OptionTable(options.ListProperties(key.set)).Find(key, {key.set});
}

}  // namespace

// Makes the project store what the options component has changed.
bool NodeOptions::Follow(const std::string& key) {
  const std::optional<OptionDefinition> option = FindByKey(session_.Options(), key);
  if (!option) return false;
  const bool isOwn =
      session_.Options().GetOrigin(option->set, option->section, option->name) == "own";
  session_.Manager().Command(isOwn ? option->command : std::uint32_t{TARN_CMD_RESET_OPTION});
  return true;
}

std::string NodeOptions::LabelOf(const std::string& key) {
  const std::optional<OptionDefinition> option = FindByKey(session_.Options(), key);
  return option ? option->label : std::string();
}

void NodeOptions::ResetAll() {
  session_.Manager().Command(TARN_CMD_RESET_NODE_OPTIONS);
}

// The name is set for this command only: a later command without a name must not reuse it.
void NodeOptions::SelectConfiguration(const std::string& name) {
  session_.Options().SetNewConfigName(name);
  session_.Manager().Command(TARN_CMD_SELECT_CONFIGURATION);
  session_.Options().SetNewConfigName({});
}

std::string NodeOptions::AddConfiguration(const std::string& name) {
  const Status added = tarn::host::AddConfiguration(session_, {name, {}});
  if (!added) return added.GetError().text;
  SelectConfiguration(name);
  return {};
}

}  // namespace tarn::host
