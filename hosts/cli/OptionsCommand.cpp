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
      : context_(commandContext),
        session_(context_.Session()),
        table_(session_.Options().ListProperties("")),
        values_(OptionValues::FromText(session_.Options().GetValuesAsText())) {
    sets_.push_back(values_.GetOwnSet());
    for (const std::string& outer : values_.GetOuterSets()) sets_.push_back(outer);
  }

  int Get();
  int Set();
  int Reset();
  int Explain();
  int List();

 private:
  int Identify();
  std::string ValueText() {
    return session_.Manager().GetPropertyValue(key_.set, key_.section, key_.name);
  }
  // Returns the set that receives a new value: the one in the key, else the one that defines the
  // option.
  std::string SetToChange() const { return definition_ ? definition_->set : key_.set; }
  std::string RawText() const;
  std::vector<StoredValue> CollectStored();
  void PrintExplanation(const std::vector<StoredValue>& stored);
  bool NeedsValue(const OptionDefinition& option, const std::string& value);
  nlohmann::json Describe(const OptionDefinition& option);

  CommandContext& context_;
  BuildSession& session_;
  const OptionTable table_;
  const OptionValues values_;
  std::vector<std::string> sets_;  // the node's own, then those of its ancestors
  OptionKey key_;
  std::optional<OptionDefinition> definition_;
};

// Finds the requested option. Returns 0, or an exit code after printing the error.
int OptionQuery::Identify() {
  const std::string& asked = context_.Own<OptionArguments>().key;
  if (!ParseOptionKey(asked, key_)) {
    context_.Complain("\"" + asked + "\" is not an option name. Use SECTION.NAME, e.g. " +
                      "Build.OutputFile, or SET.SECTION.NAME.");
    return kExitUsage;
  }
  definition_ = table_.Find(key_, key_.set.empty() ? sets_ : std::vector<std::string>{key_.set});
  const bool isKnown = definition_ || values_.Find(key_.set, key_.section, key_.name) != nullptr;
  if (isKnown) return kExitDone;
  context_.Complain("Unknown option \"" + asked + "\"." +
                    SuggestionText(asked, table_.GetNames(sets_)) + " See `tarn options list`.");
  return kExitUsage;
}

int OptionQuery::Get() {
  if (const int code = Identify(); code != kExitDone) return code;
  if (!context_.Asked().json) {
    context_.Out().PrintDocument(ValueText(), DocumentFormat::Lines);
    return kExitDone;
  }
  PrintJson(context_,
            {{"option", context_.Own<OptionArguments>().key},
             {"value", ValueText()},
             {"raw", RawText()},
             {"origin", session_.Options().GetOrigin(key_.set, key_.section, key_.name)}});
  return kExitDone;
}

int OptionQuery::Set() {
  if (const int code = Identify(); code != kExitDone) return code;
  const std::string set = SetToChange();
  const std::string& value = context_.Own<OptionArguments>().value;
  const std::string problem = session_.Options().CheckValue(set, key_.section, key_.name, value);
  if (!problem.empty()) {
    context_.Complain(context_.Own<OptionArguments>().key + ": " + problem);
    return kExitUsage;
  }
  if (session_.Manager().SavePropertyValue(set, key_.section, key_.name, value) == 0) {
    context_.Complain(context_.Own<OptionArguments>().key + " can't be stored.");
    return kExitUsage;
  }
  return context_.SaveProject();
}

int OptionQuery::Reset() {
  if (const int code = Identify(); code != kExitDone) return code;
  const std::string set = SetToChange();
  if (definition_ && !definition_->removable) {
    context_.Complain(context_.Own<OptionArguments>().key +
                      " always has its own value; set a different one.");
    return kExitUsage;
  }
  if (session_.Options().GetOrigin(set, key_.section, key_.name) != "own") {
    context_.Remark(context_.Own<OptionArguments>().key +
                    " isn't set here, so there is nothing to reset.");
    return kExitDone;
  }
  session_.Manager().ResetPropertyValue(set, key_.section, key_.name);
  return context_.SaveProject();
}

std::string OptionQuery::RawText() const {
  const std::string* raw = values_.Find(key_.set, key_.section, key_.name);
  return raw == nullptr ? std::string() : *raw;
}

// Returns the values in order of increasing precedence: from the outermost set to the node's own,
// each from the outermost level inwards.
std::vector<StoredValue> OptionQuery::CollectStored() {
  std::vector<StoredValue> stored;
  std::vector<std::string> asked = key_.set.empty() ? sets_ : std::vector<std::string>{key_.set};
  std::reverse(asked.begin(), asked.end());
  for (const std::string& set : asked) {
    const std::vector<StoredValue> found =
        ReadStoredValues(set, session_.Inspector().ExplainOption(set, key_.section, key_.name));
    stored.insert(stored.end(), found.begin(), found.end());
  }
  return stored;
}

int OptionQuery::Explain() {
  if (const int code = Identify(); code != kExitDone) return code;
  const std::vector<StoredValue> stored = CollectStored();
  if (!context_.Asked().json) {
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
  nlohmann::json document = {{"option", context_.Own<OptionArguments>().key},
                             {"value", ValueText()},
                             {"raw", RawText()},
                             {"stored", levels}};
  if (definition_) {
    document["default"] = definition_->defaultValue;
    document["definedIn"] = definition_->file;
  }
  PrintJson(context_, document);
  return kExitDone;
}

void OptionQuery::PrintExplanation(const std::vector<StoredValue>& stored) {
  Console& out = context_.Out();
  out.PrintLine(out.Dye(Paint::Bold, context_.Own<OptionArguments>().key) + " = " +
                Printable(ValueText()));
  if (RawText() != ValueText()) out.PrintLine("  written as " + Printable(RawText()));
  const auto last = std::find_if(stored.rbegin(), stored.rend(),
                                 [](const StoredValue& each) { return each.counts; });
  if (definition_) {
    out.PrintLine("  default: " + Printable(definition_->defaultValue) + "  (" +
                  context_.Show(definition_->file) + ")" +
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
         !session_.Options().CheckValue(option.set, option.section, option.name, value).empty();
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
      {"value", session_.Manager().GetPropertyValue(option.set, option.section, option.name)},
      {"origin", session_.Options().GetOrigin(option.set, option.section, option.name)}};
  if (!choices.empty()) entry["choices"] = choices;
  return entry;
}

int OptionQuery::List() {
  nlohmann::json document = nlohmann::json::array();
  std::string section;
  for (const OptionDefinition& option : table_.GetOf(sets_.front())) {
    if (!option.shown) continue;
    const nlohmann::json entry = Describe(option);
    if (context_.Asked().json) {
      document.push_back(entry);
      continue;
    }
    if (section != option.section) {
      section = option.section;
      context_.Out().PrintLine(context_.Out().Dye(Paint::Bold, section));
    }
    const std::string origin = entry["origin"];
    const bool isOwn = origin == "own";
    const std::string remark = isOwn                                ? "  (set here)"
                               : origin == "inherited"              ? "  (inherited)"
                               : NeedsValue(option, entry["value"]) ? "  (needs a value)"
                                                                    : "";
    std::string name = option.GetKey();
    if (name.size() < 26) name.resize(26, ' ');
    context_.Out().PrintLine("  " + name + "  " + Printable(std::string(entry["value"])) +
                             context_.Out().Dye(Paint::Dim, remark));
  }
  if (context_.Asked().json) PrintJson(context_, document);
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
