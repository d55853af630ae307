#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/TargetEntry.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct TargetsOptions {
  std::vector<std::string> words;  // to search for
  std::string family;
};

bool IsOf(const TargetEntry& target, const std::string& family) {
  return std::any_of(target.families.begin(), target.families.end(),
                     [&family](const std::string& each) { return EqualNoCase(each, family); });
}

template <class Predicate>
bool KeepThoseThat(std::vector<TargetEntry>& targets, Predicate&& matches) {
  if (std::none_of(targets.begin(), targets.end(), matches)) return false;
  std::erase_if(targets, [&matches](const TargetEntry& each) { return !matches(each); });
  return true;
}

// The text that is searched: everything that is not a number.
std::string AllTextOf(const TargetEntry& target) {
  std::string text = target.name + "\n" + target.description;
  for (const auto& [name, value] : target.facts) {
    if (!IsNumericFact(name)) text += "\n" + value;
  }
  return text;
}

// An exact match with the full name of a target or a family takes precedence over partial matches.
bool KeepMatching(std::vector<TargetEntry>& targets, const std::string& text) {
  const std::string wanted = FoldCase(text);
  const auto isNamed = [&](const TargetEntry& each) { return EqualNoCase(each.name, text); };
  const auto isOf = [&](const TargetEntry& each) { return IsOf(each, text); };
  const auto mentions = [&](const TargetEntry& each) {
    return FoldCase(AllTextOf(each)).find(wanted) != std::string::npos;
  };
  return KeepThoseThat(targets, isNamed) || KeepThoseThat(targets, isOf) ||
         KeepThoseThat(targets, mentions);
}

bool KeepMeeting(std::vector<TargetEntry>& targets, const std::string& word) {
  const std::optional<TargetCondition> condition = TargetCondition::Parse(word);
  if (!condition) return KeepMatching(targets, word);
  return KeepThoseThat(targets, [&](const TargetEntry& each) { return condition->IsMetBy(each); });
}

std::string JoinedFamilies(const TargetEntry& target) {
  std::string text;
  for (const std::string& each : target.families) text += (text.empty() ? "" : ", ") + each;
  return Printable(text);
}

// Prints all details of a target.
void PrintTarget(CommandContext& context, const TargetEntry& target) {
  Console& out = context.Out();
  out.PrintLine(out.Dye(Paint::Bold, Printable(target.name)) + "  " + JoinedFamilies(target));
  for (const std::string_view line : Split(target.description, '\n')) {
    out.PrintLine("  " + Printable(line));
  }
  constexpr struct {
    const char* label;
    const char* fact;
  } kShown[] = {{"Maker", "maker"},         {"Device", "mcu"},          {"Core", "core"},
                {"Toolchain", "toolchain"}, {"Simulator", "simulator"}, {"Upload", "upload"}};
  for (const auto& each : kShown) {
    const std::string value = target.GetFact(each.fact);
    if (!value.empty()) out.PrintLine("  " + Padded(each.label, 15) + Printable(value));
  }
  if (!target.datasheet.empty()) out.PrintLine("  Data sheet     " + Printable(target.datasheet));
  out.PrintLine("  Configuration  " + Printable(target.configuration));
}

void PrintList(CommandContext& context, const std::vector<TargetEntry>& targets) {
  Console& out = context.Out();
  std::size_t width = 0;
  for (const TargetEntry& each : targets) width = std::max(width, ColumnsOf(Printable(each.name)));
  const std::vector<std::string>* families = nullptr;
  for (const TargetEntry& each : targets) {
    if (families == nullptr || *families != each.families) {
      out.PrintLine(out.Dye(Paint::Bold, JoinedFamilies(each)));
    }
    families = &each.families;
    const std::string first(Split(each.description + "\n", '\n').front());
    std::string line = Padded(Printable(each.name), width) + "  " + Printable(first);
    if (each.configuration != "Standard") line += "  [" + Printable(each.configuration) + "]";
    line.erase(line.find_last_not_of(' ') + 1);
    out.PrintLine("  " + line);
  }
}

nlohmann::json ToJson(const TargetEntry& target) {
  nlohmann::json object = {{"name", target.name},
                           {"families", target.families},
                           {"description", target.description},
                           {"datasheet", target.datasheet},
                           {"configuration", target.configuration}};
  for (const auto& [name, value] : target.facts) {
    // Several packages are a list of numbers of pins, which stays a string.
    const bool isNumber = IsNumericFact(name) && !value.empty() && value.size() < 16 &&
                          value.find_first_not_of("0123456789") == std::string::npos;
    object.emplace(name, isNumber ? nlohmann::json(std::stoll(value)) : nlohmann::json(value));
  }
  return object;
}

nlohmann::json ToJson(const std::vector<TargetEntry>& targets) {
  nlohmann::json list = nlohmann::json::array();
  for (const TargetEntry& each : targets) {
    list.push_back(ToJson(each));
  }
  return list;
}

void ComplainOfFamily(CommandContext& context, const std::string& family,
                      const std::vector<TargetEntry>& targets) {
  std::vector<std::string> known = FamilyNames(targets);
  std::string hint = SuggestionText(family, known);
  if (hint.empty()) {
    hint = " There are:";
    for (std::string& each : known) each.insert(0, "  ");
  } else {
    known.clear();
  }
  context.Complain("Unknown family \"" + family + "\"." + hint, known);
}

std::string TargetHint(const std::string& name, const std::vector<TargetEntry>& targets) {
  const std::string text = Printable(SuggestionText(name, TargetNames(targets)));
  return text.empty() ? " See `tarn targets`." : text;
}

// Returns the end of the message that no target has this.
std::string DescribeMissing(const std::string& word, const std::vector<TargetEntry>& targets) {
  if (TargetCondition::Parse(word)) return " has " + word + ".";
  const std::string text = " has \"" + word + "\" in its name or description";
  const bool isMeantAsCondition = word.find_first_of("<>=") != std::string::npos;
  return isMeantAsCondition ? text + ", and it is not a condition such as 'flash>=64K'."
                            : text + "." + TargetHint(word, targets);
}

// Keeps only the requested targets. Returns 0, or an exit code after printing the error.
int Choose(CommandContext& context, std::vector<TargetEntry>& targets) {
  const std::string& family = context.Own<TargetsOptions>().family;
  if (targets.empty()) {
    context.Complain(
        "No targets are registered. Run `tarn register` to register those of this installation.");
    return kExitCannotOpen;
  }
  const auto isOf = [&](const TargetEntry& each) { return IsOf(each, family); };
  if (!family.empty() && !KeepThoseThat(targets, isOf)) {
    ComplainOfFamily(context, family, targets);
    return kExitUsage;
  }
  std::string found = family.empty() ? "" : " of the family \"" + family + "\"";
  for (const std::string& word : context.Own<TargetsOptions>().words) {
    if (!word.empty() && !KeepMeeting(targets, word)) {
      context.Complain("No target" + found + DescribeMissing(word, targets));
      return kExitUsage;
    }
    found += (found.empty() ? " with \"" : " and \"") + word + '"';
  }
  return kExitDone;
}

}  // namespace

std::vector<std::string> TargetNames(const std::vector<TargetEntry>& targets) {
  std::vector<std::string> names;
  for (const TargetEntry& each : targets) names.push_back(each.name);
  return names;
}

std::vector<std::string> FamilyNames(const std::vector<TargetEntry>& targets) {
  std::set<std::string> names;
  for (const TargetEntry& each : targets) names.insert(each.families.begin(), each.families.end());
  return {names.begin(), names.end()};
}

int CheckTargetFiles(CommandContext& context, const std::string& list) {
  const std::string problem = ReadTargetProblem(list);
  if (problem.empty()) return kExitDone;
  context.Complain("A target file was not read, or only in part: " + Printable(problem) + ".");
  return kExitCannotOpen;
}

namespace {

int RunTargets(CommandContext& context) {
  if (const int code = context.StartSession(); code != kExitDone) return code;
  const std::string list = context.Session().Inspector().GetTargets();
  const int problem = CheckTargetFiles(context, list);
  std::vector<TargetEntry> targets = ReadTargets(list);
  if (const int code = Choose(context, targets); code != kExitDone) return code;
  if (context.Asked().json) {
    PrintJson(context, ToJson(targets));
  } else if (targets.size() == 1) {
    PrintTarget(context, targets.front());
  } else {
    PrintList(context, targets);
  }
  return problem;
}

}  // namespace

CommandSpec TargetsCommand() {
  return {
      .name = "targets",
      .group = CommandGroup::Settings,
      .help = "List the available microcontrollers",
      .examples = {{"tarn targets --family AVR", "all targets of a family"},
                   {"tarn targets ATmega328P", "details of one target"},
                   {"tarn targets usb", "targets that mention it"},
                   {"tarn targets cortex-m4 'flash>=512K'", "targets with this core and memory"}},
      .declare =
          [](CommandArguments& arguments) {
            TargetsOptions& own = arguments.Own<TargetsOptions>();
            arguments.Positional("TEXT", own.words,
                                 "Text to search for in target, family or description; or a "
                                 "condition like 'flash>=64K', core=cortex-m3 or maker=NXP");
            arguments.Option("--family", own.family, "FAMILY", "Only this family, e.g. AVR")
                .NotEmpty();
          },
      .run = RunTargets,
  };
}

}  // namespace tarn::host
