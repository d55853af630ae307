#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Suggest.h"
#include "hosts/frame/TargetEntry.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

bool IsOf(const TargetEntry& target, const std::string& family) {
  return std::any_of(target.families.begin(), target.families.end(),
                     [&family](const std::string& each) { return EqualNoCase(each, family); });
}

// What was asked for by a name in full is nothing else, even if other names begin with it.
void KeepMatching(std::vector<TargetEntry>& targets, const std::string& text) {
  const auto isNamed = [&text](const TargetEntry& target) {
    return EqualNoCase(target.name, text);
  };
  if (std::any_of(targets.begin(), targets.end(), isNamed)) {
    std::erase_if(targets, [&isNamed](const TargetEntry& target) { return !isNamed(target); });
    return;
  }
  const std::string wanted = FoldCase(text);
  std::erase_if(targets, [&wanted](const TargetEntry& target) {
    const std::string all = FoldCase(target.name + "\n" + target.description);
    return all.find(wanted) == all.npos;
  });
}

std::string JoinedFamilies(const TargetEntry& target) {
  std::string text;
  for (const std::string& each : target.families) text += (text.empty() ? "" : ", ") + each;
  return Printable(text);
}

// All that is known of a target.
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
  for (const TargetEntry& each : targets) width = std::max(width, each.name.size());
  const std::vector<std::string>* families = nullptr;
  for (const TargetEntry& each : targets) {
    if (families == nullptr || *families != each.families) {
      out.PrintLine(out.Dye(Paint::Bold, JoinedFamilies(each)));
    }
    families = &each.families;
    const std::string gap(width - each.name.size() + 2, ' ');
    const std::string first(Split(each.description + "\n", '\n').front());
    const bool isUsual = each.configuration == "Standard";
    out.PrintLine("  " + Printable(each.name) + gap + Printable(first) +
                  (isUsual ? "" : "  [" + Printable(each.configuration) + "]"));
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

// Leaves those that were asked for. 0, or an exit code with everything said.
int Choose(CommandContext& context, std::vector<TargetEntry>& targets) {
  const std::string& family = context.Asked().family;
  const std::string& text = context.Asked().text;
  const std::vector<TargetEntry> all = targets;
  if (!family.empty()) {
    std::erase_if(targets, [&](const TargetEntry& each) { return !IsOf(each, family); });
    if (targets.empty()) {
      context.Complain("There is no family \"" + family + "\"." +
                       SuggestionText(family, FamilyNames(all)));
      return kExitUsage;
    }
  }
  if (!text.empty()) {
    KeepMatching(targets, text);
    if (targets.empty()) {
      context.Complain("No target has \"" + text + "\" in its name or description." +
                       SuggestionText(text, TargetNames(all)));
      return kExitUsage;
    }
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

int RunTargets(CommandContext& context) {
  if (const int code = context.StartSession(); code != kExitDone) return code;
  std::vector<TargetEntry> targets = ReadTargets(context.Session().Inspector().GetTargets());
  if (const int code = Choose(context, targets); code != kExitDone) return code;
  if (context.Asked().json) {
    PrintJson(context, ToJson(targets));
  } else if (targets.size() == 1) {
    PrintTarget(context, targets.front());
  } else {
    PrintList(context, targets);
  }
  return kExitDone;
}

}  // namespace tarn::host
