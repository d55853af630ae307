#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/core/TargetEntry.h"
#include "platform/text/Suggest.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct TargetsOptions {
  std::string text;  // to search for
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

// An exact match with the full name of a target or a family takes precedence over partial matches.
bool KeepMatching(std::vector<TargetEntry>& targets, const std::string& text) {
  const std::string wanted = FoldCase(text);
  const auto isNamed = [&](const TargetEntry& each) { return EqualNoCase(each.name, text); };
  const auto isOf = [&](const TargetEntry& each) { return IsOf(each, text); };
  const auto tells = [&](const TargetEntry& each) {
    const std::string all = FoldCase(each.name + "\n" + each.description);
    return all.find(wanted) != all.npos;
  };
  return KeepThoseThat(targets, isNamed) || KeepThoseThat(targets, isOf) ||
         KeepThoseThat(targets, tells);
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

nlohmann::json ToJson(const std::vector<TargetEntry>& targets) {
  nlohmann::json list = nlohmann::json::array();
  for (const TargetEntry& each : targets) {
    list.push_back({{"name", each.name},
                    {"families", each.families},
                    {"description", each.description},
                    {"datasheet", each.datasheet},
                    {"configuration", each.configuration}});
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

// Keeps only the requested targets. Returns 0, or an exit code after printing the error.
int Choose(CommandContext& context, std::vector<TargetEntry>& targets) {
  const std::string& family = context.Own<TargetsOptions>().family;
  const std::string& text = context.Own<TargetsOptions>().text;
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
  if (!text.empty() && !KeepMatching(targets, text)) {
    const std::string of = family.empty() ? "" : " of the family \"" + family + "\"";
    context.Complain("No target" + of + " has \"" + text + "\" in its name or description." +
                     TargetHint(text, targets));
    return kExitUsage;
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
                   {"tarn targets usb", "targets that mention it"}},
      .declare =
          [](CommandArguments& arguments) {
            TargetsOptions& own = arguments.Own<TargetsOptions>();
            arguments.Positional("TEXT", own.text,
                                 "Text to search for in target, family or description");
            arguments.Option("--family", own.family, "FAMILY", "Only this family, e.g. AVR")
                .NotEmpty();
          },
      .run = RunTargets,
  };
}

}  // namespace tarn::host
