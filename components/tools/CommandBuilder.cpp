#include "components/tools/CommandBuilder.h"

#include <algorithm>

#include "components/tools/FileList.h"
#include "components/tools/UsedFiles.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// What a shell would not take as it stands.
bool IsPlain(std::string_view argument) {
  return argument.find_first_of(" \t\r\n'\"\\$`;&|<>(){}[]*?!#~") == std::string_view::npos;
}

class PlanMaker : public TemplateValues {
 public:
  PlanMaker(const ToolDefinition& toolDefinition, const ToolJob& toolJob)
      : tool(toolDefinition), job(toolJob), folder(toolJob.baseFolder) {}

  ToolPlan Make() {
    plan.output = Path(tool.output);
    plan.listing = Path(tool.listing);
    plan.rules = Path(tool.rules);
    plan.sizeFile = Path(tool.size.file);
    plan.globals = Path(tool.globals.file);
    plan.products = Paths(tool.products);
    plan.depends = Paths(tool.depends);
    for (const StepRule& step : tool.steps) {
      folder = job.baseFolder;
      relative = step.relativePaths;
      if (!Holds(step.conditions)) continue;
      plan.commands.push_back(MakeCommand(step));
      for (LibraryPlaces& places : FindLibraryPlaces(tool.libraries, plan.commands.back())) {
        plan.libraries.push_back(std::move(places));
      }
    }
    return std::move(plan);
  }

  std::string Own(OwnName name) const override {
    switch (name) {
      case OwnName::File:
        return job.files.empty() ? std::string() : Shown(job.files.front(), true);
      case OwnName::Output:
        return Shown(plan.output);
      case OwnName::OutputBase:
        return plan.output.empty() ? std::string() : Shown(WithoutExtension(plan.output));
      case OwnName::Listing:
        return Shown(plan.listing);
      case OwnName::Rules:
        return Shown(plan.rules);
      case OwnName::Folder:
        return folder;
      case OwnName::Item:
        return item;
    }
    return {};
  }

  std::string Option(const std::string& macro) const override {
    std::string circle;
    std::string missing;
    std::string value = job.values->Resolve(macro, &circle, &missing);
    if (!circle.empty()) AddProblem(circle);
    if (!missing.empty()) {
      AddProblem("the option " + missing + " is not set in the configuration " +
                 job.values->GetConfig() + ", and it has no default");
    }
    return value;
  }

 private:
  void AddProblem(const std::string& problem) const {
    auto& problems = plan.problems;
    const bool isKnown = std::find(problems.begin(), problems.end(), problem) != problems.end();
    if (!isKnown) problems.push_back(problem);
  }

  std::string Path(const Template& text) const { return AbsolutePath(folder, text.Fill(*this)); }

  std::vector<std::string> Paths(const std::vector<Template>& texts) const {
    std::vector<std::string> paths;
    for (const Template& text : texts) {
      for (const std::string& entry : SplitOptionList(text.Fill(*this))) {
        paths.push_back(AbsolutePath(folder, entry));
      }
    }
    return paths;
  }

  // An absolute path as the step writes it. `mayClimb`: the project names it relative to its own
  // place, so it moves with the project also outside the working folder.
  std::string Shown(const std::string& path, bool mayClimb = false) const {
    if (!relative || path.empty()) return path;
    if (path == folder) return ".";
    const std::string way = RelativeTo(path);
    const std::size_t levels = LevelsUp(way);
    if (way.empty() || (levels > 0 && !(mayClimb && CanClimb(levels)))) return path;
    // A name must not pass for an option, a response file or a folder of the compiler.
    return std::string_view("-@=").find(way.front()) == std::string_view::npos ? way : "./" + way;
  }

  std::string RelativeTo(const std::string& path) const {
    std::string way = ToNativeSeparators(RelativeDiskPath(folder, path));
    const std::string here = {'.', kSeparator};
    if (way.starts_with(here)) way.erase(0, here.size());
    return way;
  }

  static std::size_t LevelsUp(std::string_view way) {
    std::size_t levels = 0;
    for (const std::string_view component : Split(way, kSeparator)) {
      if (component != "..") break;
      ++levels;
    }
    return levels;
  }

  // The working folder lies deeper than that, and ".." means there what it means in names: behind a
  // symbolic link it leads elsewhere.
  bool CanClimb(std::size_t levels) const {
    std::string above = folder;
    for (std::size_t i = 0; i < levels; ++i) above = FolderOf(above);
    if (above.empty() || FolderOf(above) == above || FolderOf(above).empty()) return false;
    if (job.disk == nullptr) return true;
    return job.disk->ResolveLinks(folder) ==
           job.disk->ResolveLinks(above) + folder.substr(above.size());
  }

  bool Holds(const Condition& condition) const {
    const std::string value = condition.value.Fill(*this);
    switch (condition.test) {
      case Condition::Test::Filled:
        return !value.empty();
      case Condition::Test::Empty:
        return value.empty();
      case Condition::Test::Equal:
        return EqualNoCase(value, condition.expected);
      case Condition::Test::Different:
        return !EqualNoCase(value, condition.expected);
    }
    return false;
  }

  bool Holds(const Conditions& conditions) const {
    return std::all_of(conditions.begin(), conditions.end(),
                       [this](const Condition& each) { return Holds(each); });
  }

  ToolCommand MakeCommand(const StepRule& step) {
    ToolCommand command;
    command.rule = &step;
    if (!step.folder.IsEmpty()) folder = Path(step.folder);
    command.folder = folder;
    command.program = step.program.Fill(*this);
    for (const ArgumentRule& rule : step.arguments) AddArguments(rule, command.arguments);
    if (step.plainArguments) RefuseSpecial(command);
    if (step.hasLauncher) AddLauncher(step, command);
    for (const EnvironmentRule& rule : step.environment) {
      command.environment.emplace_back(rule.name, rule.value.Fill(*this));
    }
    return command;
  }

  void AddArguments(const ArgumentRule& rule, std::vector<std::string>& arguments) {
    if (!Holds(rule.conditions)) return;
    if (rule.source == ArgumentRule::Source::Once) {
      AddArgument(rule, arguments);
      return;
    }
    const bool isFiles = rule.source == ArgumentRule::Source::Files;
    for (std::string& entry :
         isFiles ? std::vector<std::string>(job.files) : SplitOptionList(rule.list.Fill(*this))) {
      item = std::move(entry);
      AddArgument(rule, arguments);
    }
    item.clear();
  }

  void AddArgument(const ArgumentRule& rule, std::vector<std::string>& arguments) {
    const bool isFile = rule.source == ArgumentRule::Source::Files;
    const auto asPath = [this, isFile](const std::string& value) {
      const bool isOwn = isFile || IsRelativePath(ToNativeSeparators(value)) ||
                         value.starts_with(AddSeparator(job.baseFolder));
      return Shown(AbsolutePath(job.baseFolder, value), isOwn);
    };
    std::string text = rule.isPath ? rule.value.Fill(*this, asPath) : rule.value.Fill(*this);
    if (rule.isWords) {
      for (std::string& word : SplitWords(text)) arguments.push_back(std::move(word));
    } else {
      arguments.push_back(std::move(text));
    }
  }

  void RefuseSpecial(const ToolCommand& command) const {
    for (const std::string& argument : command.arguments) {
      if (IsPlain(argument)) continue;
      AddProblem(command.program + " can't work with blanks or special characters: " + argument);
    }
  }

  // The launcher becomes the program and gets the real one as its first argument.
  void AddLauncher(const StepRule& step, ToolCommand& command) const {
    auto words = SplitWords(step.launcher.Fill(*this));
    if (words.empty()) words = SplitWords(job.environmentLauncher);
    if (words.empty()) return;
    words.push_back(command.program);
    command.program = words.front();
    command.launched = words.size() - 1;
    command.arguments.insert(command.arguments.begin(), words.begin() + 1, words.end());
  }

  const ToolDefinition& tool;
  const ToolJob& job;
  mutable ToolPlan plan;
  std::string folder;     // working folder of the step in hand
  bool relative = false;  // of the step in hand
  std::string item;       // of the list in hand
};

// Stands for options of which nothing is known.
class NoValues : public TemplateValues {
 public:
  std::string Own(OwnName) const override { return {}; }
  std::string Option(const std::string&) const override { return {}; }
};

}  // namespace

ToolPlan MakePlan(const ToolDefinition& tool, const ToolJob& job) {
  return PlanMaker(tool, job).Make();
}

std::string AbsolutePath(const std::string& folder, std::string_view path) {
  if (path.empty()) return {};
  const std::string native = ToNativeSeparators(path);
  return CanonicalPath(IsRelativePath(native) ? JoinPath(folder, native) : native);
}

std::string BaseFolderOf(const OptionValues& values, const std::string& fallback) {
  std::string folder = values.Get("Application", "General", "ApplicationDir");
  if (folder.empty()) folder = values.Get("", "General", "ApplicationDir");
  if (folder.empty()) folder = fallback;
  folder = AbsolutePath(fallback, folder);
  if (folder.size() > 1 && IsSeparator(folder.back())) folder.pop_back();
  return folder;
}

std::vector<ToolProgram> ProgramsOf(const ToolDefinition& tool) {
  std::vector<ToolProgram> programs;
  for (const StepRule& step : tool.steps) {
    ToolProgram program{step.program.Fill(NoValues()), step.isOptional};
    if (!program.name.empty()) programs.push_back(std::move(program));
  }
  return programs;
}

}  // namespace tarn::tools
