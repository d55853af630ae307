#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "components/values/OptionValues.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/OptionArguments.h"
#include "hosts/core/OptionTable.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// The options of the current node, and the one that the user requested.
class OptionQuery {
 public:
  explicit OptionQuery(CommandContext& commandContext)
      : context(commandContext),
        session(context.Session()),
        table(session.Options().ListProperties("")),
        values(OptionValues::FromText(session.Options().GetValuesAsText())) {
    sets.push_back(values.GetOwnSet());
    for (const std::string& outer : values.GetOuterSets()) sets.push_back(outer);
  }

  int Get();
  int Set();
  int Reset();
  int Explain();
  int List();

 private:
  int Identify();
  std::string ValueText() {
    return session.Manager().GetPropertyValue(key.set, key.section, key.name);
  }
  // Returns the set that receives a new value: the one in the key, else the one that defines the
  // option.
  std::string SetToChange() const { return definition ? definition->set : key.set; }
  std::string RawText() const;
  std::vector<StoredValue> CollectStored();
  void PrintExplanation(const std::vector<StoredValue>& stored);
  bool NeedsValue(const OptionDefinition& option, const std::string& value);
  nlohmann::json Describe(const OptionDefinition& option);

  CommandContext& context;
  BuildSession& session;
  const OptionTable table;
  const OptionValues values;
  std::vector<std::string> sets;  // the node's own, then those of its ancestors
  OptionKey key;
  std::optional<OptionDefinition> definition;
};

// Finds the requested option. Returns 0, or an exit code after printing the error.
int OptionQuery::Identify() {
  const std::string& asked = context.Own<OptionArguments>().key;
  if (!ParseOptionKey(asked, key)) {
    context.Complain("\"" + asked + "\" is not an option name. Use SECTION.NAME, e.g. " +
                     "Build.OutputFile, or SET.SECTION.NAME.");
    return kExitUsage;
  }
  definition = table.Find(key, key.set.empty() ? sets : std::vector<std::string>{key.set});
  const bool isKnown = definition || values.Find(key.set, key.section, key.name) != nullptr;
  if (isKnown) return kExitDone;
  context.Complain("Unknown option \"" + asked + "\"." +
                   SuggestionText(asked, table.GetNames(sets)) + " See `tarn options list`.");
  return kExitUsage;
}

int OptionQuery::Get() {
  if (const int code = Identify(); code != kExitDone) return code;
  if (!context.Asked().json) {
    context.Out().PrintDocument(ValueText(), DocumentFormat::Lines);
    return kExitDone;
  }
  PrintJson(context, {{"option", context.Own<OptionArguments>().key},
                      {"value", ValueText()},
                      {"raw", RawText()},
                      {"origin", session.Options().GetOrigin(key.set, key.section, key.name)}});
  return kExitDone;
}

int OptionQuery::Set() {
  if (const int code = Identify(); code != kExitDone) return code;
  const std::string set = SetToChange();
  const std::string& value = context.Own<OptionArguments>().value;
  const std::string problem = session.Options().CheckValue(set, key.section, key.name, value);
  if (!problem.empty()) {
    context.Complain(context.Own<OptionArguments>().key + ": " + problem);
    return kExitUsage;
  }
  if (session.Manager().SavePropertyValue(set, key.section, key.name, value) == 0) {
    context.Complain(context.Own<OptionArguments>().key + " can't be stored.");
    return kExitUsage;
  }
  return context.SaveProject();
}

int OptionQuery::Reset() {
  if (const int code = Identify(); code != kExitDone) return code;
  const std::string set = SetToChange();
  if (definition && !definition->removable) {
    context.Complain(context.Own<OptionArguments>().key +
                     " always has its own value; set a different one.");
    return kExitUsage;
  }
  if (session.Options().GetOrigin(set, key.section, key.name) != "own") {
    context.Remark(context.Own<OptionArguments>().key +
                   " isn't set here, so there is nothing to reset.");
    return kExitDone;
  }
  session.Manager().ResetPropertyValue(set, key.section, key.name);
  return context.SaveProject();
}

std::string OptionQuery::RawText() const {
  const std::string* raw = values.Find(key.set, key.section, key.name);
  return raw == nullptr ? std::string() : *raw;
}

// Returns the values in order of increasing precedence: from the outermost set to the node's own,
// each from the outermost level inwards.
std::vector<StoredValue> OptionQuery::CollectStored() {
  std::vector<StoredValue> stored;
  std::vector<std::string> asked = key.set.empty() ? sets : std::vector<std::string>{key.set};
  std::reverse(asked.begin(), asked.end());
  for (const std::string& set : asked) {
    const std::vector<StoredValue> found =
        ReadStoredValues(set, session.Inspector().ExplainOption(set, key.section, key.name));
    stored.insert(stored.end(), found.begin(), found.end());
  }
  return stored;
}

int OptionQuery::Explain() {
  if (const int code = Identify(); code != kExitDone) return code;
  const std::vector<StoredValue> stored = CollectStored();
  if (!context.Asked().json) {
    PrintExplanation(stored);
    return kExitDone;
  }
  nlohmann::json levels = nlohmann::json::array();
  for (const StoredValue& each : stored) {
    levels.push_back({{"set", each.set},
                      {"kind", each.kind},
                      {"label", each.label},
                      {"configuration", each.configuration},
                      {"counts", each.counts},
                      {"value", each.value}});
  }
  nlohmann::json document = {{"option", context.Own<OptionArguments>().key},
                             {"value", ValueText()},
                             {"raw", RawText()},
                             {"stored", levels}};
  if (definition) {
    document["default"] = definition->defaultValue;
    document["definedIn"] = definition->file;
  }
  PrintJson(context, document);
  return kExitDone;
}

void OptionQuery::PrintExplanation(const std::vector<StoredValue>& stored) {
  Console& out = context.Out();
  out.PrintLine(out.Dye(Paint::Bold, context.Own<OptionArguments>().key) + " = " +
                Printable(ValueText()));
  if (RawText() != ValueText()) out.PrintLine("  written as " + Printable(RawText()));
  const auto last = std::find_if(stored.rbegin(), stored.rend(),
                                 [](const StoredValue& each) { return each.counts; });
  if (definition) {
    out.PrintLine("  default: " + Printable(definition->defaultValue) + "  (" +
                  context.Show(definition->file) + ")" +
                  (last == stored.rend() ? "  <- effective" : ""));
  }
  for (const StoredValue& each : stored) {
    const bool isInForce = last != stored.rend() && &each == &*last;
    out.PrintLine("  set at the " + each.kind + " " + Printable(each.label) + " for " +
                  Printable(each.configuration) + ": " + Printable(each.value) +
                  (isInForce ? "  <- effective" : ""));
  }
}

bool OptionQuery::NeedsValue(const OptionDefinition& option, const std::string& value) {
  return value.empty() &&
         !session.Options().CheckValue(option.set, option.section, option.name, value).empty();
}

nlohmann::json OptionQuery::Describe(const OptionDefinition& option) {
  nlohmann::json choices = nlohmann::json::array();
  for (const auto& [value, label] : option.choices) {
    choices.push_back({{"value", value}, {"label", label}});
  }
  nlohmann::json entry = {
      {"option", option.GetKey()},
      {"set", option.set},
      {"type", option.type},
      {"label", option.label},
      {"help", option.help},
      {"default", option.defaultValue},
      {"value", session.Manager().GetPropertyValue(option.set, option.section, option.name)},
      {"origin", session.Options().GetOrigin(option.set, option.section, option.name)}};
  if (!choices.empty()) entry["choices"] = choices;
  return entry;
}

int OptionQuery::List() {
  nlohmann::json document = nlohmann::json::array();
  std::string section;
  for (const OptionDefinition& option : table.GetOf(sets.front())) {
    if (!option.shown) continue;
    const nlohmann::json entry = Describe(option);
    if (context.Asked().json) {
      document.push_back(entry);
      continue;
    }
    if (section != option.section) {
      section = option.section;
      context.Out().PrintLine(context.Out().Dye(Paint::Bold, section));
    }
    const std::string origin = entry["origin"];
    const bool isOwn = origin == "own";
    const std::string remark = isOwn                                ? "  (set here)"
                               : origin == "inherited"              ? "  (inherited)"
                               : NeedsValue(option, entry["value"]) ? "  (needs a value)"
                                                                    : "";
    std::string name = option.GetKey();
    if (name.size() < 26) name.resize(26, ' ');
    context.Out().PrintLine("  " + name + "  " + Printable(std::string(entry["value"])) +
                            context.Out().Dye(Paint::Dim, remark));
  }
  if (context.Asked().json) PrintJson(context, document);
  return kExitDone;
}

int RunQuery(CommandContext& context, int (OptionQuery::*query)()) {
  if (const int code = context.OpenProject(); code != kExitDone) return code;
  if (const int code = context.ChooseNode(); code != kExitDone) return code;
  OptionQuery of(context);
  return (of.*query)();
}

void DeclareOption(CommandArguments& arguments) {
  std::string& key = arguments.Own<OptionArguments>().key;
  arguments.Positional("OPTION", key, "SECTION.NAME or SET.SECTION.NAME").Required();
}

void DeclareNode(CommandArguments& arguments) {
  arguments.AddProjectAndApp();
  arguments.AddConfiguration();
  arguments.AddNode();
}

void DeclareQuery(CommandArguments& arguments) {
  DeclareOption(arguments);
  DeclareNode(arguments);
}

}  // namespace

CommandSpec OptionsCommand() {
  return {
      .name = "options",
      .group = CommandGroup::Settings,
      .help = "Read and change options",
  };
}

CommandSpec OptionsListCommand() {
  return {
      .name = "options list",
      .help = "Show all options with their values",
      .examples = {{"tarn options list -n src/uart.c", "options of one file"}},
      .declare = DeclareNode,
      .run = [](CommandContext& context) { return RunQuery(context, &OptionQuery::List); },
  };
}

CommandSpec OptionsGetCommand() {
  return {
      .name = "options get",
      .help = "Print the value of an option",
      .examples = {{"tarn options get Build.OutputFile", "path of the program"}},
      .declare = DeclareQuery,
      .run = [](CommandContext& context) { return RunQuery(context, &OptionQuery::Get); },
  };
}

CommandSpec OptionsSetCommand() {
  return {
      .name = "options set",
      .help = "Set an option",
      .examples = {{"tarn options set Compiler.Defines 'FAST;LEVEL=2'", "for the application"},
                   {"tarn options set -n src/uart.c -- Compiler.Extra -O3",
                    "-- for a leading dash"}},
      .access = ProjectAccess::Edit,
      .declare =
          [](CommandArguments& arguments) {
            DeclareOption(arguments);
            arguments
                .Positional("VALUE", arguments.Own<OptionArguments>().value,
                            "The new value; may be empty")
                .Required();
            DeclareNode(arguments);
            arguments.AddEditing();
          },
      .run = [](CommandContext& context) { return RunQuery(context, &OptionQuery::Set); },
  };
}

CommandSpec OptionsResetCommand() {
  return {
      .name = "options reset",
      .help = "Reset an option to the inherited value",
      .access = ProjectAccess::Edit,
      .declare =
          [](CommandArguments& arguments) {
            DeclareQuery(arguments);
            arguments.AddEditing();
          },
      .run = [](CommandContext& context) { return RunQuery(context, &OptionQuery::Reset); },
  };
}

CommandSpec OptionsExplainCommand() {
  return {
      .name = "options explain",
      .help = "Explain where the value of an option comes from",
      .examples = {{"tarn options explain Compiler.Optimize -n src/uart.c",
                    "each place that sets it"}},
      .declare = DeclareQuery,
      .run = [](CommandContext& context) { return RunQuery(context, &OptionQuery::Explain); },
  };
}

}  // namespace tarn::host
