#include "hosts/cli/CommandEntry.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "hosts/cli/CommandArguments.h"
#include "hosts/cli/CommandList.h"
#include "hosts/cli/ProgramNotes.h"

namespace tarn::host {

namespace {

// The names of value types, mainly those for which a shell can offer completions.
struct ValueWord {
  const char* word;
  ValueKind kind;
};

constexpr ValueWord kValueWords[] = {
    {"PROJECT", ValueKind::Project}, {"CONFIG", ValueKind::Configuration},
    {"APP", ValueKind::Application}, {"NODE", ValueKind::Node},
    {"OPTION", ValueKind::Option},   {"FILE", ValueKind::File},
    {"TARGET", ValueKind::Node},     {"OLD", ValueKind::File},
    {"TEXT", ValueKind::Target},     {"MCU", ValueKind::Target},
    {"FAMILY", ValueKind::Family},   {"DIR", ValueKind::File},
    {"NEW", ValueKind::File},
};

ValueKind KindOf(const std::string& word) {
  for (const ValueWord& each : kValueWords) {
    if (word == each.word) return each.kind;
  }
  return ValueKind::None;
}

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  return text;
}

// Returns the placeholder for an option's value: its type name, or the option's own name.
std::string ValueWordOf(const CLI::Option& option) {
  if (option.get_items_expected_max() == 0) return {};
  std::string type = option.get_type_name();
  const bool isGeneral = type.empty() || type == "TEXT" || type == "INT" || type == "UINT";
  if (!isGeneral) return type;
  return option.get_lnames().empty() ? "VALUE" : Upper(option.get_lnames().front());
}

void AddOption(CommandEntry& entry, const CLI::Option& option) {
  if (option.get_group().empty()) return;  // hidden
  if (option.get_positional()) {
    const std::string name = option.get_name(true);
    entry.arguments.push_back({name, option.get_description(), KindOf(name),
                               option.get_required() || option.get_group() == kRequiredGroup,
                               option.get_items_expected_max() > 1});
    return;
  }
  FlagEntry& flag = entry.flags.emplace_back();
  for (const std::string& name : option.get_snames()) flag.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) flag.names.push_back("--" + name);
  flag.value = ValueWordOf(option);
  flag.help = option.get_description();
  flag.kind = KindOf(flag.value);
}

}  // namespace

std::string CommandEntry::Title(const std::string& separator) const {
  std::string text = "tarn";
  for (const std::string& word : words) text += separator + word;
  return text;
}

std::string CommandEntry::Name() const {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string CommandEntry::Usage() const {
  std::string text = Title();
  if (!children.empty()) text += words.empty() ? " COMMAND [PROJECT]" : " COMMAND";
  for (const ArgumentEntry& each : arguments) {
    const std::string name = each.name + (each.repeated ? "..." : "");
    text += each.required ? " " + name : " [" + name + "]";
  }
  return text + " [options]";
}

CommandEntry DescribeCommand(const CLI::App& app) {
  CommandEntry entry;
  for (const CLI::App* each = &app; each->get_parent() != nullptr; each = each->get_parent()) {
    entry.words.insert(entry.words.begin(), each->get_name());
  }
  entry.help = app.get_description();
  for (const CLI::Option* option : app.get_options()) AddOption(entry, *option);
  // Options that every command has are listed last.
  std::stable_partition(entry.flags.begin(), entry.flags.end(),
                        [](const FlagEntry& each) { return !IsCommonFlag(each.names.back()); });
  for (const CLI::App* child : app.get_subcommands({})) {
    if (!child->get_group().empty()) entry.children.push_back(DescribeCommand(*child));
  }
  const CommandSpec* const spec = FindCommand(entry.Name());
  entry.group = spec == nullptr ? CommandGroup::None : spec->group;
  entry.examples = spec == nullptr ? ProgramExamples() : spec->examples;
  return entry;
}

}  // namespace tarn::host
