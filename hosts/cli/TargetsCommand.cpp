#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "hosts/cli/Commands.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/Suggest.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

struct Target {
  std::string name;
  std::vector<std::string> families;  // from the outermost
  std::string description;            // lines
  std::string datasheet;
  std::string configuration;
};

void Collect(const CXmlNode& family, std::vector<std::string>& families,
             std::vector<Target>& targets) {
  for (const CXmlNode* child : family.GetChildren()) {
    const std::string name = AttributeOf(child, "Header");
    if (child->NameView() == "Target") {
      targets.push_back({name, families, AttributeOf(child, "Description"),
                         AttributeOf(child, "Datasheet"), AttributeOf(child, "Config")});
    } else {
      families.push_back(name);
      Collect(*child, families, targets);
      families.pop_back();
    }
  }
}

bool IsOf(const Target& target, const std::string& family) {
  return std::any_of(target.families.begin(), target.families.end(),
                     [&family](const std::string& each) { return EqualNoCase(each, family); });
}

// What was asked for by a name in full is nothing else, even if other names begin with it.
void KeepMatching(std::vector<Target>& targets, const std::string& text) {
  const auto isNamed = [&text](const Target& target) { return EqualNoCase(target.name, text); };
  if (std::any_of(targets.begin(), targets.end(), isNamed)) {
    std::erase_if(targets, [&isNamed](const Target& target) { return !isNamed(target); });
    return;
  }
  const std::string wanted = FoldCase(text);
  std::erase_if(targets, [&wanted](const Target& target) {
    const std::string all = FoldCase(target.name + "\n" + target.description);
    return all.find(wanted) == all.npos;
  });
}

std::string JoinedFamilies(const Target& target) {
  std::string text;
  for (const std::string& each : target.families) text += (text.empty() ? "" : ", ") + each;
  return Printable(text);
}

// All that is known of a target.
void PrintTarget(CommandContext& context, const Target& target) {
  Console& out = context.Out();
  out.PrintLine(out.Dye(Paint::Bold, Printable(target.name)) + "  " + JoinedFamilies(target));
  for (const std::string_view line : Split(target.description, '\n')) {
    out.PrintLine("  " + Printable(line));
  }
  if (!target.datasheet.empty()) out.PrintLine("  Data sheet     " + Printable(target.datasheet));
  out.PrintLine("  Configuration  " + Printable(target.configuration));
}

void PrintList(CommandContext& context, const std::vector<Target>& targets) {
  Console& out = context.Out();
  std::size_t width = 0;
  for (const Target& each : targets) width = std::max(width, each.name.size());
  const std::vector<std::string>* families = nullptr;
  for (const Target& each : targets) {
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

nlohmann::json ToJson(const std::vector<Target>& targets) {
  nlohmann::json list = nlohmann::json::array();
  for (const Target& each : targets) {
    list.push_back({{"name", each.name},
                    {"families", each.families},
                    {"description", each.description},
                    {"datasheet", each.datasheet},
                    {"configuration", each.configuration}});
  }
  return list;
}

std::vector<std::string> NamesOf(const std::vector<Target>& targets) {
  std::vector<std::string> names;
  for (const Target& each : targets) names.push_back(each.name);
  return names;
}

std::vector<std::string> FamiliesOf(const std::vector<Target>& targets) {
  std::set<std::string> names;
  for (const Target& each : targets) names.insert(each.families.begin(), each.families.end());
  return {names.begin(), names.end()};
}

// Leaves those that were asked for. 0, or an exit code with everything said.
int Choose(CommandContext& context, std::vector<Target>& targets) {
  const std::string& family = context.Asked().family;
  const std::string& text = context.Asked().text;
  const std::vector<Target> all = targets;
  if (!family.empty()) {
    std::erase_if(targets, [&](const Target& each) { return !IsOf(each, family); });
    if (targets.empty()) {
      context.Complain("There is no family \"" + family + "\"." +
                       SuggestionText(family, FamiliesOf(all)));
      return kExitUsage;
    }
  }
  if (!text.empty()) {
    KeepMatching(targets, text);
    if (targets.empty()) {
      context.Complain("No target has \"" + text + "\" in its name or description." +
                       SuggestionText(text, NamesOf(all)));
      return kExitUsage;
    }
  }
  return kExitDone;
}

}  // namespace

int RunTargets(CommandContext& context) {
  if (const int code = context.StartSession(); code != kExitDone) return code;
  std::vector<Target> targets;
  std::vector<std::string> families;
  const auto root = ParseXml(context.Session().Inspector().GetTargets());
  if (root != nullptr) Collect(*root, families, targets);
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
