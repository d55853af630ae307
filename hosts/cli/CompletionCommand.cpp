#include <iostream>

#include "components/values/OptionValues.h"
#include "hosts/cli/CommandLine.h"
#include "hosts/cli/Commands.h"
#include "hosts/cli/CompletionScript.h"
#include "hosts/cli/DisplayText.h"
#include "hosts/cli/ShellText.h"
#include "hosts/core/OptionTable.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

struct CompleteOptions {
  std::string kind;  // of the names
};

struct KindWord {
  ValueKind kind;
  const char* word;
  bool isAsked;  // completed by this program; else by the shell
};

constexpr KindWord kKindWords[] = {
    {ValueKind::Project, "project", false},
    {ValueKind::File, "file", false},
    {ValueKind::Configuration, "configurations", true},
    {ValueKind::Application, "applications", true},
    {ValueKind::Node, "nodes", true},
    {ValueKind::Option, "options", true},
    {ValueKind::Target, "targets", true},
    {ValueKind::Family, "families", true},
};

std::vector<std::string> OptionNames(CommandContext& context) {
  if (context.ChooseNode() != kExitDone) return {};
  OptionsDriver& options = context.Session().Options();
  const OptionValues values = OptionValues::FromText(options.GetValuesAsText());
  return OptionTable(options.ListProperties("")).GetNames({values.GetOwnSet()});
}

// Adds the values accepted by --node: labels of groups and applications, paths of files.
void AddNodes(CommandContext& context, const CXmlNode& node, std::vector<std::string>& names) {
  for (const CXmlNode* child : node.GetChildren()) {
    if (!ProjectTree::IsShown(*child)) continue;
    const std::string path = GetAttribute(child, "Path");
    const bool isFile = !path.empty() && GetAttribute(child, "Extern").empty();
    names.push_back(isFile ? context.Show(path) : Printable(GetAttribute(child, "Header")));
    AddNodes(context, *child, names);
  }
}

std::vector<std::string> NamesOf(CommandContext& context, ValueKind kind) {
  std::vector<std::string> names;
  if (kind == ValueKind::Option) return OptionNames(context);
  // Publishing makes paths absolute.
  if (kind == ValueKind::Node) context.Session().Inspector().PublishAll();
  const ProjectTree tree(context.Session().Inspector().GetTree());
  if (kind == ValueKind::Node && tree.GetRoot() != nullptr) {
    AddNodes(context, *tree.GetRoot(), names);
  }
  for (const ApplicationEntry& each : tree.GetApplications()) {
    if (kind == ValueKind::Application) names.push_back(each.label);
    if (kind == ValueKind::Configuration) {
      names.insert(names.end(), each.configurations.begin(), each.configurations.end());
    }
  }
  return names;
}

std::vector<std::string> CatalogueNames(CommandContext& context, ValueKind kind) {
  const std::vector<TargetEntry> targets = ReadTargets(context.Session().Inspector().GetTargets());
  return kind == ValueKind::Target ? TargetNames(targets) : FamilyNames(targets);
}

}  // namespace

std::string ScriptWord(ValueKind kind) {
  for (const KindWord& each : kKindWords) {
    if (each.kind == kind) return each.word;
  }
  return "nothing";
}

std::optional<ValueKind> KindOfWord(const std::string& word) {
  for (const KindWord& each : kKindWords) {
    if (each.isAsked && word == each.word) return each.kind;
  }
  return std::nullopt;
}

namespace {

int PrintScript(CommandContext& context, std::string (*make)(const CommandEntry&)) {
  context.Out().PrintDocument(make(DescribeCommandLine()), DocumentFormat::Lines);
  return kExitDone;
}

int RunComplete(CommandContext& context) {
  const auto kind = KindOfWord(context.Own<CompleteOptions>().kind);
  if (!kind) return kExitUsage;
  const bool isOfProject = *kind != ValueKind::Target && *kind != ValueKind::Family;
  const int code = isOfProject ? context.OpenProject() : context.StartSession();
  if (code != kExitDone) return code;
  for (const std::string& name :
       isOfProject ? NamesOf(context, *kind) : CatalogueNames(context, *kind))
    context.Out().PrintLine(name);
  return kExitDone;
}

}  // namespace

CommandSpec CompletionCommand() {
  return {
      .name = "completion",
      .group = CommandGroup::Integration,
      .help = "Print a shell completion script",
  };
}

CommandSpec CompletionBashCommand() {
  return {
      .name = "completion bash",
      .help = "A script for bash",
      .examples = {{". <(tarn completion bash)", "for this shell"}},
      .hasDisplayOptions = false,
      .run = [](CommandContext& context) { return PrintScript(context, MakeBashCompletion); },
  };
}

CommandSpec CompletionZshCommand() {
  return {
      .name = "completion zsh",
      .help = "A script for zsh",
      .examples = {{"tarn completion zsh > ~/.zfunc/_tarn",
                    "into a folder in fpath, before compinit"}},
      .hasDisplayOptions = false,
      .run = [](CommandContext& context) { return PrintScript(context, MakeZshCompletion); },
  };
}

CommandSpec CompletionFishCommand() {
  return {
      .name = "completion fish",
      .help = "A script for fish",
      .examples = {{"tarn completion fish | source", "for this shell"}},
      .hasDisplayOptions = false,
      .run = [](CommandContext& context) { return PrintScript(context, MakeFishCompletion); },
  };
}

// For the completion scripts; hidden from users.
CommandSpec CompleteCommand() {
  return {
      .name = "complete",
      .group = CommandGroup::Hidden,
      .help = "List names that a shell can complete",
      .access = ProjectAccess::Complete,
      .declare =
          [](CommandArguments& arguments) {
            CompleteOptions& own = arguments.Own<CompleteOptions>();
            arguments.Positional("KIND", own.kind, "").Required();
            arguments.AddProjectAndApp();
          },
      .run = RunComplete,
  };
}

}  // namespace tarn::host
