#include "components/tools/CommandBuilder.h"

#include <algorithm>
#include <utility>

#include "components/tools/CommandHash.h"
#include "components/tools/FileList.h"
#include "components/tools/GivenArguments.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// Returns true if a shell would use the argument unchanged.
bool IsPlain(std::string_view argument) {
  return argument.find_first_of(" \t\r\n'\"\\$`;&|<>(){}[]*?!#~") == std::string_view::npos;
}

// Returns true if a pattern matches the word; a trailing "*" matches any suffix.
bool IsAmong(const std::vector<std::string>& patterns, std::string_view word) {
  return std::any_of(patterns.begin(), patterns.end(), [word](std::string_view pattern) {
    if (!pattern.ends_with('*')) return word == pattern;
    return word.starts_with(pattern.substr(0, pattern.size() - 1));
  });
}

class PlanBuilder : public TemplateValues {
 public:
  PlanBuilder(const ToolDefinition& toolDefinition, const ToolInvocation& toolJob)
      : tool_(toolDefinition), job_(toolJob), folder_(toolJob.baseFolder) {}

  ToolPlan Make() {
    spelledBase_ = SpelledPath(job_.disk, folder_);
    spelledFolder_ = spelledBase_;
    const bool isAction = !tool_.action.empty();
    plan_.output = isAction ? BuiltFile() : Path(tool_.output);
    plan_.outputOnDisk = Spelled(plan_.output);
    plan_.listing = Spelled(Path(tool_.listing));
    plan_.rules = Spelled(Path(tool_.rules));
    plan_.furtherRules = Spelled(Path(tool_.furtherRules));
    plan_.sizeFile = Path(tool_.size.file);
    plan_.mapFile = Path(tool_.size.map);
    for (const auto& [total, max] : tool_.size.bounds) {
      plan_.sizeBounds.push_back({total.Fill(*this), max.Fill(*this)});
    }
    plan_.globals = Spelled(Path(tool_.globals.file));
    for (const ProductRule& rule : tool_.products) AddProducts(rule);
    for (const RandomNameRule& rule : tool_.randomNames) {
      for (const std::string& path : Paths({rule.file})) {
        plan_.randomNames.emplace_back(Spelled(path), rule.patterns);
      }
    }
    plan_.depends = Paths(tool_.depends);
    for (const Template& each : tool_.watchedFolders) AddWatchedFolder(each.Fill(*this));
    plan_.variables = tool_.variables;
    plan_.helpers = tool_.helpers.programs;
    plan_.helperFiles = Pieces(tool_.helpers.files, SplitOptionList);
    for (const LibraryRule& rule : tool_.libraries) {
      for (std::string& name : Pieces(rule.implicit, SplitOptionList)) {
        plan_.implicitLibraries.push_back(std::move(name));
      }
    }
    plan_.respelled = job_.respelled;
    for (const StepRule& step : tool_.steps) {
      folder_ = job_.baseFolder;
      relative_ = step.relativePaths;
      if (!Holds(step.conditions)) continue;
      if (step.hasCommandLines) {
        AddCommandLines(step);
      } else {
        plan_.commands.push_back(MakeCommand(step));
      }
    }
    folder_ = job_.baseFolder;
    for (const ByProductRule& rule : tool_.byProducts) AddByProducts(rule);
    if (isAction) plan_.output = plan_.outputOnDisk = "";  // an action doesn't make it
    return std::move(plan_);
  }

  bool Holds(const Conditions& conditions) const {
    return std::all_of(conditions.begin(), conditions.end(),
                       [this](const Condition& each) { return Holds(each); });
  }

  std::vector<std::string> FindUnset(const Conditions& conditions) const {
    std::vector<std::string> unset;
    bool isChosen = false;
    for (const Condition& each : conditions) {
      const bool holds = Holds(each);
      isChosen = isChosen || (holds && each.test == Condition::Test::Equal);
      if (holds) continue;
      if (each.test != Condition::Test::Filled) return {};
      for (const std::string& macro : each.value.GetOptionMacros()) {
        unset.push_back(macro.substr(2, macro.size() - 3));
      }
    }
    return isChosen ? unset : std::vector<std::string>();
  }

  std::string Own(OwnName name) const override {
    return isSplitLater_ ? ProtectSeparators(OwnValue(name)) : OwnValue(name);
  }

  std::string Option(const std::string& macro) const override {
    std::string circle;
    std::string missing;
    std::string value = isSplitLater_ ? job_.values->ResolveUnsplit(macro, &circle, &missing)
                                      : job_.values->Resolve(macro, &circle, &missing);
    if (!circle.empty()) AddProblem(circle);
    if (!missing.empty()) {
      AddProblem("the option " + missing + " is not set in the configuration " +
                 job_.values->GetConfig() + ", and it has no default; `tarn options set " +
                 missing + " VALUE -c " + job_.values->GetConfig() + "` sets it");
    }
    return value;
  }

 private:
  // The output of the node, which an action works on.
  std::string BuiltFile() const {
    return AbsolutePath(job_.disk, folder_, Option("$(Build.OutputFile)"));
  }

  std::string OwnValue(OwnName name) const {
    switch (name) {
      case OwnName::File:
        return job_.files.empty() ? std::string() : Shown(job_.files.front(), true);
      case OwnName::Output:
        return Shown(plan_.outputOnDisk);
      case OwnName::OutputBase:
        return Shown(WithoutExtension(plan_.outputOnDisk));
      case OwnName::Listing:
        return Shown(plan_.listing);
      case OwnName::Rules:
        return Shown(plan_.rules);
      case OwnName::Folder:
        return spelledFolder_;
      case OwnName::Item:
        return item_;
      case OwnName::ItemName:
        return FileNameOf(item_);
      case OwnName::LinkTime:
        return isLinkTime_ ? "Yes" : "";
    }
    return {};
  }

  void AddWatchedFolder(const std::string& name) {
    plan_.hasInexactNames = true;  // the commands' hash covers its entries
    for (std::string folder = job_.baseFolder; job_.disk != nullptr && !folder.empty();) {
      const std::string path = AbsolutePath(job_.disk, folder, name);
      if (job_.disk->IsFolder(path)) return plan_.watchedFolders.push_back(path);
      std::string above = FolderOf(folder);
      if (above == folder) return;
      folder = std::move(above);
    }
  }

  void AddProducts(const ProductRule& rule) {
    if (!Holds(rule.conditions)) return;
    for (const std::string& path : Paths({rule.file})) {
      std::string product = Spelled(path);
      if (rule.isRequired) plan_.requiredProducts.push_back(product);
      if (rule.isKept) plan_.keptProducts.push_back(product);
      plan_.products.push_back(std::move(product));
    }
  }

  void AddByProducts(const ByProductRule& rule) {
    const auto asks = [&rule](const std::string& argument) {
      return FindFlag(rule.with, argument) != nullptr;
    };
    bool isMade = rule.with.empty() && !rule.isForArguments;
    for (const ToolCommand& command : plan_.commands) {
      if (isMade) break;
      const std::vector<std::string> words = ExpandArguments(command, job_.disk).words;
      isMade = std::any_of(words.begin(), words.end(), asks);
      if (!rule.isForArguments) continue;
      if (isMade || rule.with.empty()) AddByProductsOf(rule, command.folder, words);
      isMade = false;
    }
    if (!isMade) return;
    for (const std::string& path : Paths({rule.file})) AddByProduct(path);
  }

  void AddByProductsOf(const ByProductRule& rule, const std::string& workingFolder,
                       const std::vector<std::string>& words) {
    for (const std::string& word : words) {
      if (word.empty() || word.front() == '-') continue;
      item_ = WithoutExtension(AbsolutePath(job_.disk, workingFolder, word));
      for (const std::string& path : Paths({rule.file})) AddByProduct(path);
    }
    item_.clear();
  }

  void AddByProduct(const std::string& path) {
    if (!path.ends_with('*')) {
      plan_.byProducts.push_back(Spelled(path));
      return;
    }
    plan_.byProductStarts.push_back(Spelled(path.substr(0, path.size() - 1)));
    if (job_.disk == nullptr) return;
    for (std::string& each : FindFilesThatStart(*job_.disk, plan_.byProductStarts.back())) {
      plan_.byProducts.push_back(std::move(each));
    }
  }

  void AddProblem(const std::string& problem) const {
    auto& problems = plan_.problems;
    const bool isKnown = std::find(problems.begin(), problems.end(), problem) != problems.end();
    if (!isKnown) problems.push_back(problem);
  }

  std::string Path(const Template& text) const {
    return AbsolutePath(job_.disk, folder_, text.Fill(*this));
  }

  // Returns the name of an output file as the tool gets it.
  std::string Spelled(const std::string& path) const {
    return SpelledOutput(job_.disk, path, job_.baseFolder, spelledBase_);
  }

  // Returns a `path` argument as the step gets it.
  std::string SpelledArgument(const std::string& path, bool isSource) const {
    // The files of the run are spelled as on disk already.
    if (isSource && path == item_) return path;
    const std::string output = Spelled(path);
    const auto& made = plan_.products;
    if (std::find(made.begin(), made.end(), output) != made.end()) return output;
    bool isExact = true;
    std::string name = SpelledPath(job_.disk, path, &isExact);
    plan_.hasInexactNames |= !isExact && !isSource;
    return name;
  }

  std::vector<std::string> Paths(const std::vector<Template>& texts) const {
    std::vector<std::string> paths;
    for (const Template& text : texts) {
      for (const std::string& entry : Pieces(text, SplitOptionList)) {
        paths.push_back(AbsolutePath(job_.disk, folder_, entry));
      }
    }
    return paths;
  }

  // Splits the expanded text with `split`, but never in the middle of a name.
  std::vector<std::string> Pieces(const Template& text,
                                  std::vector<std::string> (*split)(std::string_view),
                                  const Template::Change& change = nullptr) const {
    isSplitLater_ = true;
    std::vector<std::string> parts = split(text.Fill(*this, change));
    isSplitLater_ = false;
    for (std::string& part : parts) part = RestoreSeparators(part);
    return parts;
  }

  // Returns an absolute path as the step writes it. `mayClimb`: the project has it as a path
  // relative to itself, so it moves with the project even if it is outside the working folder.
  std::string Shown(const std::string& path, bool mayClimb = false) const {
    if (!relative_ || path.empty()) return path;
    if (path == spelledFolder_) return ".";
    const std::string way = RelativeTo(path);
    const std::size_t levels = LevelsUp(way);
    if (way.empty() || (levels > 0 && !(mayClimb && CanClimb(levels)))) return path;
    // A name must not be mistaken for an option, a response file or a folder of the compiler.
    return std::string_view("-@=").find(way.front()) == std::string_view::npos ? way : "./" + way;
  }

  std::string RelativeTo(const std::string& path) const {
    const std::string prefix = AddSeparator(spelledFolder_);
    // A remaining ".." follows a symbolic link.
    if (FindParentStep(path) != std::string::npos) {
      return path.starts_with(prefix) ? path.substr(prefix.size()) : std::string();
    }
    std::string way = ToNativeSeparators(RelativeDiskPath(spelledFolder_, path));
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

  // Returns true if the working folder is more than `levels` deep and ".." can be resolved
  // textually there; after a symbolic link it would lead elsewhere.
  bool CanClimb(std::size_t levels) const {
    std::string above = spelledFolder_;
    for (std::size_t i = 0; i < levels; ++i) above = FolderOf(above);
    if (above.empty() || FolderOf(above) == above || FolderOf(above).empty()) return false;
    if (job_.disk == nullptr) return true;
    return job_.disk->ResolveLinks(spelledFolder_) ==
           job_.disk->ResolveLinks(above) + spelledFolder_.substr(above.size());
  }

  static bool IsOneOf(std::string_view value, const std::vector<std::string>& expected) {
    return std::ranges::any_of(expected,
                               [&](const std::string& each) { return EqualNoCase(value, each); });
  }

  bool Holds(const Condition& condition) const {
    const std::string value = condition.value.Fill(*this);
    switch (condition.test) {
      case Condition::Test::Filled:
        return !value.empty();
      case Condition::Test::Empty:
        return value.empty();
      case Condition::Test::Equal:
        return IsOneOf(value, condition.expected);
      case Condition::Test::Different:
        return !IsOneOf(value, condition.expected);
    }
    return false;
  }

  ToolCommand MakeCommand(const StepRule& step) {
    ToolCommand command;
    command.rule = &step;
    if (!step.folder.IsEmpty()) folder_ = Path(step.folder);
    spelledFolder_ = SpelledPath(job_.disk, folder_);
    command.folder = spelledFolder_;
    if (!step.hasCommandLines) command.program = step.program.Fill(*this);
    isLinkTime_ = false;
    AddAllArguments(step, command);
    if (!tool_.linkTime.empty()) {
      isLinkTime_ = LeavesCodeToTheLink(tool_, ExpandArguments(command, job_.disk).words);
      if (isLinkTime_) AddAllArguments(step, command);
    }
    command.moves = std::exchange(moves_, {});
    if (step.plainArguments) RefuseSpecial(command);
    if (step.hasLauncher) AddLauncher(step, command);
    for (const EnvironmentRule& rule : step.environment) {
      command.environment.emplace_back(rule.name, rule.value.Fill(*this));
    }
    return command;
  }

  // Adds a command for each command line that the options of the step contain.
  void AddCommandLines(const StepRule& step) {
    isSplitLater_ = true;
    const std::string lines = step.program.Fill(*this);
    isSplitLater_ = false;
    for (const std::string& line : SplitOptionList(lines)) {
      std::vector<std::string> words = SplitWords(line);
      if (words.empty()) continue;
      for (std::string& word : words) word = RestoreSeparators(word);
      ToolCommand command = MakeCommand(step);
      command.program = ToNativeSeparators(words.front());
      if (HasNativeSeparator(command.program)) {
        command.program = AbsolutePath(job_.disk, command.folder, command.program);
      }
      command.arguments.insert(command.arguments.begin(), words.begin() + 1, words.end());
      plan_.commands.push_back(std::move(command));
    }
  }

  void AddAllArguments(const StepRule& step, ToolCommand& command) {
    command.arguments.clear();
    moves_.clear();
    for (const ArgumentRule& rule : step.arguments) AddArguments(rule, command.arguments);
  }

  void AddArguments(const ArgumentRule& rule, std::vector<std::string>& arguments) {
    if (!Holds(rule.conditions)) return;
    if (rule.source == ArgumentRule::Source::Once) {
      AddArgument(rule, arguments);
      return;
    }
    const bool isFiles = rule.source == ArgumentRule::Source::Files;
    for (std::string& entry :
         isFiles ? std::vector<std::string>(job_.files) : Pieces(rule.list, SplitOptionList)) {
      item_ = std::move(entry);
      AddArgument(rule, arguments);
    }
    item_.clear();
  }

  // Refuses values of options that the program could interpret as something else.
  void CheckAllowed(const ArgumentRule& rule) const {
    if (rule.allowed == AllowedValue::Any) return;
    for (const std::string& macro : rule.value.GetOptionMacros()) {
      RefuseOther(rule, Option(macro), "the option " + macro.substr(2, macro.size() - 3));
    }
    if (!item_.empty()) RefuseOther(rule, item_, "an argument");
  }

  void RefuseOther(const ArgumentRule& rule, const std::string& value,
                   const std::string& what) const {
    if (IsAllowed(rule.allowed, value)) return;
    AddProblem(what + " can't be \"" + value +
               "\"; allowed: " + std::string(DescribeAllowed(rule.allowed)));
  }

  // Refuses an output without a name: the tool would complain about an argument, which the project
  // doesn't have.
  void RefuseUnnamedOutput() const {
    if (!plan_.problems.empty()) return;
    for (const std::string& macro : tool_.output.GetOptionMacros()) {
      AddProblem("the option " + macro.substr(2, macro.size() - 3) +
                 " is empty; it has to name the output file");
    }
  }

  void AddArgument(const ArgumentRule& rule, std::vector<std::string>& arguments) {
    CheckAllowed(rule);
    if (plan_.output.empty() && rule.value.Has(OwnName::Output)) RefuseUnnamedOutput();
    const bool isFile = rule.source == ArgumentRule::Source::Files;
    const auto asPath = [this, isFile, &rule](const std::string& value) {
      const std::string path = isSplitLater_ ? RestoreSeparators(value) : value;
      const bool isOwn = isFile || IsRelativePath(ToNativeSeparators(path)) ||
                         path.starts_with(AddSeparator(job_.baseFolder));
      const std::string full = AbsolutePath(job_.disk, job_.baseFolder, path);
      std::string name = Shown(SpelledArgument(full, isFile), isOwn);
      if (rule.allowed == AllowedValue::Text) RefuseOther(rule, name, "the path");
      if (name.find_first_of(rule.avoided) != std::string::npos) name = StandIn(name, full);
      return isSplitLater_ ? ProtectSeparators(name) : name;
    };
    const bool wasRelative = std::exchange(relative_, relative_ || rule.isRelative);
    const Template::Change change = rule.isPath ? Template::Change(asPath) : nullptr;
    if (rule.isWords) {
      for (std::string& word : Pieces(rule.value, SplitWords, change)) {
        if (IsAmong(rule.without, word)) continue;
        arguments.push_back(std::move(word));
      }
    } else {
      arguments.push_back(rule.value.Fill(*this, change));
    }
    relative_ = wasRelative;
  }

  // Returns the name of a temporary file in the working folder that the program writes instead of
  // `path`.
  std::string StandIn(const std::string& name, const std::string& path) {
    std::string scratch = ".tarn-" + HexText(HashBytes(name)) + ".tmp";
    moves_.emplace_back(JoinPath(spelledFolder_, scratch), Spelled(path));
    return scratch;
  }

  void RefuseSpecial(const ToolCommand& command) const {
    for (const std::string& argument : command.arguments) {
      if (IsPlain(argument)) continue;
      AddProblem(command.program + " can't handle spaces or special characters: " + argument);
    }
  }

  // Makes the launcher the program, and the actual program its first argument.
  void AddLauncher(const StepRule& step, ToolCommand& command) const {
    auto words = SplitWords(step.launcher.Fill(*this));
    if (words.empty()) words = SplitWords(job_.environmentLauncher);
    if (words.empty()) return;
    words.push_back(command.program);
    command.program = words.front();
    command.launched = words.size() - 1;
    command.arguments.insert(command.arguments.begin(), words.begin() + 1, words.end());
  }

  const ToolDefinition& tool_;
  const ToolInvocation& job_;
  mutable ToolPlan plan_;
  std::string spelledBase_;    // the base folder as spelled on disk
  std::string folder_;         // working folder of the current step
  std::string spelledFolder_;  // `folder` as spelled on disk
  mutable bool isSplitLater_ = false;
  bool isLinkTime_ = false;  // the current step enables link-time optimization
  bool relative_ = false;    // of the current step
  std::string item_;         // of the current list
  std::vector<std::pair<std::string, std::string>> moves_;  // of the current step
};

// Values of unknown options.
class NoValues : public TemplateValues {
 public:
  std::string Own(OwnName) const override { return {}; }
  std::string Option(const std::string&) const override { return {}; }
};

}  // namespace

ToolPlan MakePlan(const ToolDefinition& tool, const ToolInvocation& job) {
  return PlanBuilder(tool, job).Make();
}

bool Holds(const ToolDefinition& tool, const ToolInvocation& job) {
  return PlanBuilder(tool, job).Holds(tool.conditions);
}

std::vector<std::string> FindUnsetOptions(const ToolDefinition& tool, const ToolInvocation& job) {
  return PlanBuilder(tool, job).FindUnset(tool.conditions);
}

std::vector<std::string> FindFilesThatStart(FileSystem& disk, const std::string& start) {
  std::vector<std::string> paths;
  const std::string folder = FolderOf(start);
  const auto list = disk.ListFolder(folder);
  if (!list) return paths;
  for (const FolderEntry& entry : *list) {
    std::string path = JoinPath(folder, entry.name);
    if (!entry.isFolder && path.starts_with(start)) paths.push_back(std::move(path));
  }
  return paths;
}

std::string BaseFolderOf(const OptionValues& values, const std::string& fallback,
                         FileSystem* disk) {
  std::string folder = values.Get("Application", "General", "ApplicationDir");
  if (folder.empty()) folder = values.Get("", "General", "ApplicationDir");
  if (folder.empty()) folder = fallback;
  folder = AbsolutePath(disk, fallback, folder);
  if (folder.size() > 1 && IsSeparator(folder.back())) folder.pop_back();
  return folder;
}

std::vector<ToolProgram> ProgramsOf(const ToolDefinition& tool) {
  std::vector<ToolProgram> programs;
  for (const StepRule& step : tool.steps) {
    if (step.hasCommandLines || !step.program.GetOptionMacros().empty()) continue;
    ToolProgram program{step.program.Fill(NoValues()), step.isOptional};
    if (!program.name.empty()) programs.push_back(std::move(program));
  }
  return programs;
}

}  // namespace tarn::tools
