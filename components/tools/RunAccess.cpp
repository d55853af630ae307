#include "components/tools/RunAccess.h"

#include <algorithm>
#include <unordered_map>

#include "components/tools/CarriedOptions.h"
#include "components/tools/CommandHash.h"
#include "components/tools/FileList.h"
#include "components/tools/GivenArguments.h"
#include "platform/files/FileTexts.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

// Launchers that only run the compiler given as an argument, locally or remotely.
constexpr std::string_view kPlainLaunchers[] = {"ccache", "sccache", "distcc",
                                                "icecc",  "env",     "nice"};

bool HasSeparator(std::string_view text) {
  return text.find('/') != text.npos || text.find('\\') != text.npos;
}

bool IsFlag(std::string_view word) {
  return word.size() > 1 && word.front() == '-';
}

// Returns true if options of the project are part of it. Those of the section Install are not the
// project's.
bool IsChosen(const Template& text) {
  const std::vector<std::string> macros = text.GetOptionMacros();
  return std::any_of(macros.begin(), macros.end(),
                     [](const std::string& each) { return !each.starts_with("$(Install."); });
}

// Returns the option macros in output names and arguments of the definition.
std::vector<std::string> OptionMacrosOf(const ToolDefinition& tool) {
  std::vector<const Template*> templates{&tool.output, &tool.listing};
  for (const ProductRule& each : tool.products) templates.push_back(&each.file);
  for (const StepRule& step : tool.steps) {
    for (const ArgumentRule& each : step.arguments) {
      templates.insert(templates.end(), {&each.value, &each.list});
    }
  }
  std::vector<std::string> macros;
  for (const Template* each : templates) {
    for (std::string& macro : each->GetOptionMacros()) macros.push_back(std::move(macro));
  }
  return macros;
}

// Returns "Section.Property" from "$(Section.Property)", even if alternatives follow it.
std::string NameOfMacro(const std::string& macro) {
  const std::size_t start = macro.find_first_not_of("$(");
  return start == macro.npos ? macro : macro.substr(start, macro.find_first_of("?:;)") - start);
}

class AccessFinder {
 public:
  AccessFinder(const ToolEnvironment& toolWorld, const ToolDefinition& definition,
               const ToolInvocation& toolJob, bool findsCode)
      : world_(toolWorld),
        tool_(definition),
        job_(toolJob),
        findsCode_(findsCode),
        reads_(definition.reads) {
    for (const auto* flags : {&tool_.search, &tool_.prefixedSearch, &tool_.searchPrefix}) {
      reads_.insert(reads_.end(), flags->begin(), flags->end());
    }
    for (const LibraryRule& each : tool_.libraries) {
      reads_.insert(reads_.end(), each.folderFlags.begin(), each.folderFlags.end());
      reads_.insert(reads_.end(), each.nameFlags.begin(), each.nameFlags.end());
    }
  }

  RunAccess Find(const ToolPlan& plan) {
    output_ = plan.outputOnDisk;
    for (const std::string& path :
         {plan.outputOnDisk, plan.listing, plan.rules, plan.furtherRules}) {
      AddWrite(path);
    }
    for (const auto* made : {&plan.products, &plan.byProducts}) {
      for (const std::string& path : *made) AddWrite(path);
    }
    // These files are written by Tarn itself, which replaces links or refuses to follow them.
    AddWrite(FolderOf(plan.globals), false);
    AddWrite(FolderOf(plan.outputOnDisk), false);
    if (tool_.isProgram) AddRequest(TrustRequestKind::Tool, tool_.name);
    access_.reads = plan.depends;
    if (findsCode_) AddCarried(plan);
    for (const ToolCommand& command : plan.commands) AddCommand(command);
    for (const std::string& each : tool_.helpers.programs) AddProgram(each);
    NameOptions();
    access_.writesNothingElse = tool_.isEarly && !runsOthers_ && !access_.writesUnknownFiles &&
                                plan.byProductStarts.empty();
    return std::move(access_);
  }

 private:
  void AddWrite(const std::string& path, bool isCertain = true, const std::string& argument = {}) {
    if (path.empty()) return;
    const auto [found, isNew] = writes_.try_emplace(path, access_.writes.size());
    if (isNew) access_.writes.push_back({path, {}, argument, false});
    access_.writes[found->second].isCertain |= isCertain;
  }

  // An option whose value is exactly the path takes precedence over one whose value only contains
  // its name, as in arguments.
  void NameOptions() {
    struct Value {
      std::string option, text, path;
    };
    std::vector<Value> values;
    for (const std::string& macro : OptionMacrosOf(tool_)) {
      std::string name = NameOfMacro(macro);
      if (name.starts_with("General.")) continue;
      std::string value = job_.values->Resolve(macro);
      if (value.empty()) continue;
      std::string path = AbsolutePath(world_.files, job_.baseFolder, value);
      values.push_back({std::move(name), std::move(value), std::move(path)});
    }
    for (FileWrite& each : access_.writes) {
      const std::string name = FileNameOf(each.path);
      for (const auto& [option, value, path] : values) {
        const bool isPath = path == each.path;
        const bool isPart = each.option.empty() && value.find(name) != value.npos;
        if (isPath || isPart) each.option = option;
        if (isPath) break;
      }
    }
  }

  void AddValue(std::string_view value, bool isCertain, const std::string& argument) {
    if (value.empty()) return;
    AddWrite(AbsolutePath(world_.files, folder_, value), isCertain, argument);
  }

  void AddCommand(const ToolCommand& command) {
    folder_ = command.folder;
    AddPrograms(command);
    if (findsCode_) AddCommandFiles();
    for (const auto& [scratch, path] : command.moves) {
      AddWrite(scratch);
      AddWrite(path);
    }
    const GivenArguments given = ExpandArguments(command, world_.files);
    isChecked_ = !tool_.harmless.IsEmpty() && TakesOptions(*command.rule);
    usesMakefile_ = hasCarriers_ || (!tool_.carriers.empty() && AsksForLinkTime(given.words));
    AddReads(given.words);
    AddArguments(given);
    // Flags that pass arguments on, which `words` doesn't contain.
    for (std::size_t i = command.launched; i < command.arguments.size(); ++i) {
      const std::string& word = command.arguments[i];
      if (word.starts_with("-W") && IsStray(command.arguments, i)) AddStray(word);
    }
  }

  void AddCommandFiles() {
    for (const std::string& name : tool_.loadsHere) {
      AddCommandFile(AbsolutePath(world_.files, folder_, name));
    }
  }

  void AddArguments(const GivenArguments& given) {
    for (std::size_t i = 0; i < given.words.size(); ++i) {
      if (findsCode_) {
        AddCode(given, i);
      } else if (RunsCode(given, i)) {
        runsOthers_ = true;
      } else if (IsStray(given.words, i) && FitOf(given, i) != FlagFit::Whole) {
        AddStray(given.words[i]);
      }
      AddFiles(given.words, i);
      if (LacksValue(given, i)) AddUnknownWrite(given, i);
    }
  }

  // Options that the inputs of a link carry have the same effects as its arguments.
  void AddCarried(const ToolPlan& plan) {
    const std::vector<CarriedOptions> found = FindCarriedOptions(tool_, plan, *world_.files);
    hasCarriers_ = !found.empty();
    if (!hasCarriers_) return;
    folder_ = plan.commands.front().folder;
    isChecked_ = usesMakefile_ = true;
    for (const CarriedOptions& each : found) {
      source_ = ", which is in the file " + each.path;
      if (!each.isReadable) AddRequest(TrustRequestKind::Run, "code" + source_);
      if (IsUnsafe(each.path))
        AddRequest(TrustRequestKind::Run, "the tool with the file " + each.path);
      ToolCommand command;
      command.arguments = each.words;
      AddArguments(ExpandArguments(command, nullptr));
    }
    source_.clear();
  }

  // Arguments "@file" that were expanded are no longer among the words.
  void AddReads(const std::vector<std::string>& words) {
    const auto add = [this](std::string_view name) {
      std::string path = AbsolutePath(world_.files, folder_, name);
      if (path != "/dev/null") access_.reads.push_back(std::move(path));
    };
    for (const std::string& word : words) {
      if (word.starts_with('@')) add(std::string_view(word).substr(1));
    }
    for (const std::string& value : ValuesOf(tool_.reads, words)) add(value);
  }

  // A launcher from the environment is the user's own choice.
  void AddPrograms(const ToolCommand& command) {
    std::string program = command.program;
    if (command.launched > 0) {
      std::vector<std::string> launcher{command.program};
      const auto end = command.arguments.begin() + static_cast<std::ptrdiff_t>(command.launched);
      launcher.insert(launcher.end(), command.arguments.begin(), end - 1);
      program = *(end - 1);
      const bool isPlain =
          launcher.size() == 1 && std::find(std::begin(kPlainLaunchers), std::end(kPlainLaunchers),
                                            launcher.front()) != std::end(kPlainLaunchers);
      runsOthers_ |= !isPlain;
      const bool isChosen = !command.rule->launcher.GetOptionMacros().empty();
      const bool isUsers = launcher == SplitWords(job_.environmentLauncher);
      if (isPlain) {
        AddProgram(launcher.front());
      } else if (isChosen && !isUsers) {
        AddRequest(TrustRequestKind::Launcher, JoinWords(launcher));
      }
    }
    // The program of an action may be what the project has built.
    const bool isBuilt = command.rule->program.HasOwnMacros();
    const bool isOwn = isBuilt || IsChosen(command.rule->program);
    runsOthers_ |= isOwn;
    // Commands of the project can do anything, whatever program they start.
    if (command.rule->hasCommandLines) {
      std::vector<std::string> words{program};
      words.insert(words.end(), command.arguments.begin(), command.arguments.end());
      if (!IsChosen(command.rule->program)) return AddProgram(program);
      return AddRequest(TrustRequestKind::Program, JoinWords(words));
    }
    if (isOwn) {
      AddRequest(TrustRequestKind::Program, program);
    } else {
      AddProgram(program);
    }
  }

  void AddRequest(TrustRequestKind kind, const std::string& subject) {
    if (findsCode_) access_.code.push_back({kind, subject});
  }

  void AddProgram(const std::string& name) {
    if (!findsCode_) return;
    const std::string found = world_.findProgram(name);
    if (!found.empty()) access_.programs.push_back(AbsolutePath(world_.files, folder_, found));
  }

  bool RunsCode(const GivenArguments& given, std::size_t at) const {
    const auto& words = given.words;
    if (!IsFlag(words[at])) return false;
    return LoadsCode(words, at) ||
           (FitsPattern(tool_.runs, words, at) && FitOf(given, at) != FlagFit::Whole);
  }

  // An entry for exactly this argument is more certain than patterns that it happens to fit.
  void AddCode(const GivenArguments& given, std::size_t at) {
    const auto& words = given.words;
    const std::string& word = words[at];
    const FlagFit fit = FitOf(given, at);
    AddFolderOfCode(words, at);
    AddCodeNextTo(word);
    if (RunsCode(given, at)) {
      runsOthers_ = true;
      AddRequest(TrustRequestKind::CodeArgument, word + source_);
    } else if (fit != FlagFit::Whole && IsStray(words, at)) {
      AddStray(word);
    } else if (fit == FlagFit::None) {
      AddRequest(TrustRequestKind::Argument, word + source_);
    }
  }

  // A link with link-time optimization in parallel writes its arguments to a makefile.
  bool AsksForLinkTime(const std::vector<std::string>& words) const {
    return std::any_of(words.begin(), words.end(), [this](const std::string& word) {
      return FindFlag(tool_.linkTime, word) != nullptr;
    });
  }

  bool IsUnsafe(const std::string& word) const {
    return std::any_of(word.begin(), word.end(), [this](char c) {
      const bool isControl = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
      const bool isForShell = c == '$' || c == '`' || c == '\'';
      return isControl || (isForShell && usesMakefile_);
    });
  }

  // A response file that can't be read may exist as soon as another tool has written it, and one
  // that is named twice may be for two programs.
  FlagFit FitOf(const GivenArguments& given, std::size_t at) const {
    const std::string& word = given.words[at];
    if (!isChecked_) return FlagFit::Start;
    if (IsUnsafe(word) || (word.size() > 1 && word.front() == '@')) return FlagFit::None;
    return word.starts_with('-') ? tool_.harmless.Find(given, at) : FlagFit::Start;
  }

  void AddFolderOfCode(const std::vector<std::string>& words, std::size_t at) {
    const std::string* const flag = FindFlag(tool_.loadsFrom, words[at]);
    if (flag == nullptr) return;
    for (const std::string& folder : ValuesOf({*flag}, Pair(words, at))) {
      access_.programs.push_back(AbsolutePath(world_.files, folder_, folder));
    }
  }

  void AddCodeNextTo(const std::string& word) {
    if (word.empty() || word.front() == '-') return;
    const std::string file = AbsolutePath(world_.files, folder_, word);
    // Unlike in WithoutExtension, the whole of a name like ".o" is an extension.
    const std::size_t dot = file.rfind('.');
    const bool isExtension = dot != file.npos && dot >= file.size() - FileNameOf(file).size();
    for (const std::string& extension : tool_.loadsNextTo) {
      AddCommandFile(file.substr(0, isExtension ? dot : file.size()) + extension);
    }
  }

  void AddCommandFile(const std::string& path) {
    const bool isThere = world_.files->ExamineExactly(path) || world_.files->IsSpecial(path);
    if (isThere) AddRequest(TrustRequestKind::CommandFile, path);
  }

  static bool TakesOptions(const StepRule& step) {
    return std::any_of(step.arguments.begin(), step.arguments.end(), [](const ArgumentRule& rule) {
      return !rule.value.GetOptionMacros().empty() || !rule.list.GetOptionMacros().empty();
    });
  }

  // Returns the argument and the next one, which may be its value.
  static std::vector<std::string> Pair(const std::vector<std::string>& words, std::size_t at) {
    const auto first = words.begin() + static_cast<std::ptrdiff_t>(at);
    return {first, words.end() - first > 2 ? first + 2 : words.end()};
  }

  void AddFiles(const std::vector<std::string>& words, std::size_t at) {
    const std::string& word = words[at];
    if (!IsFlag(word)) {
      // After a flag, the word may be the flag's value.
      if (at > 0 && IsFlag(words[at - 1]) && !Reads(words[at - 1])) {
        AddUnlessInput(word, FindFlag(tool_.writes, words[at - 1]) != nullptr, words[at - 1]);
      }
      return;
    }
    // The name of a file may start with a dash, too.
    if (at > 0 && IsWritingFlag(words[at - 1])) AddUnlessInput(word, true, words[at - 1]);
    if (Reads(word)) return;
    const std::string_view text = word;
    const std::string* const flag = FindFlag(tool_.writes, text);
    if (const std::size_t equals = text.find('='); equals != text.npos) {
      AddValue(text.substr(equals + 1), flag != nullptr, word);
    } else if (flag != nullptr) {
      AddValue(text.substr(flag->size()), true, word);
    } else if (const std::size_t slash = text.find('/'); slash != text.npos) {
      AddValue(text.substr(slash), false, word);
    }
  }

  bool IsStray(const std::vector<std::string>& words, std::size_t at) const {
    return FitsPattern(tool_.strays, words, at) && !IsOwn(words[at]);
  }

  void AddStray(const std::string& word) {
    access_.writesUnknownFiles = true;
    AddRequest(TrustRequestKind::StrayArgument, word);
  }

  // Returns true for the output and for a file of the kind that the tool is for.
  bool IsOwn(const std::string& word) const {
    if (IsFlag(word)) return false;
    const std::string path = AbsolutePath(world_.files, folder_, word);
    if (path == output_) return true;
    const auto& own = tool_.extensions;
    return IsInput(path) &&
           std::find(own.begin(), own.end(), FoldCase(ExtensionOf(path))) != own.end();
  }

  bool IsInput(const std::string& path) const {
    return std::find(job_.files.begin(), job_.files.end(), path) != job_.files.end();
  }

  bool IsWritingFlag(const std::string& word) const {
    return std::find(tool_.writes.begin(), tool_.writes.end(), word) != tool_.writes.end();
  }

  // Returns true for a flag that is passed on to a program without the name of the file to write.
  // Assemblers are left out: they get the name of the output next, and fail.
  bool LacksValue(const GivenArguments& given, std::size_t at) const {
    const char receiver = given.receivers[at];
    if (receiver != 'l' && receiver != 'p') return false;
    const std::string& word = given.words[at];
    const std::string* const flag = FindFlag(tool_.writes, word);
    if (flag == nullptr || Reads(word) || word.find('=') != word.npos) return false;
    if (flag->size() == 2 && word.size() > 2) return false;  // the name follows: "-oname"
    return at + 1 == given.words.size() || given.receivers[at + 1] != receiver;
  }

  // A preprocessor takes the source that follows for the name, a linker anything.
  void AddUnknownWrite(const GivenArguments& given, std::size_t at) {
    access_.writesUnknownFiles = true;
    AddRequest(TrustRequestKind::NamelessArgument, given.words[at]);
    if (given.receivers[at] != 'p') return;
    for (const std::string& file : job_.files) AddWrite(file);
  }

  bool Reads(const std::string& flag) const { return FindFlag(reads_, flag) != nullptr; }

  void AddUnlessInput(const std::string& word, bool isCertain, const std::string& argument) {
    const std::string path = AbsolutePath(world_.files, folder_, word);
    if (!IsInput(path)) AddWrite(path, isCertain, argument);
  }

  bool LoadsCode(const std::vector<std::string>& words, std::size_t at) const {
    return std::any_of(tool_.loads.begin(), tool_.loads.end(), [&](const LoadRule& rule) {
      if (!words[at].starts_with(rule.flag)) return false;
      const std::vector<std::string> values = ValuesOf({rule.flag}, Pair(words, at));
      return std::any_of(values.begin(), values.end(), [&](const std::string& value) {
        const std::string path = AbsolutePath(world_.files, folder_, rule.place + value);
        return HasSeparator(value) || world_.files->Exists(path);
      });
    });
  }

  const ToolEnvironment& world_;
  const ToolDefinition& tool_;
  const ToolInvocation& job_;
  const bool findsCode_;
  std::vector<std::string> reads_;
  std::string output_;         // of the run
  std::string folder_;         // working folder of the current command
  bool isChecked_ = false;     // its flags must be known as harmless
  bool usesMakefile_ = false;  // the current command may pass its words to make
  bool hasCarriers_ = false;   // an input carries options
  bool runsOthers_ = false;    // runs code that the definition doesn't know
  std::string source_;         // end of messages about arguments that a file carries
  RunAccess access_;
  std::unordered_map<std::string, std::size_t> writes_;  // indexes in access_.writes, by path
};

}  // namespace

RunAccess FindRunAccess(const ToolEnvironment& world, const ToolDefinition& tool,
                        const ToolPlan& plan, const ToolInvocation& job) {
  RunAccess access = AccessFinder(world, tool, job, true).Find(plan);
  access.searched = SearchFolders(job.disk, tool, plan);
  return access;
}

RunAccess FindRunFiles(const ToolEnvironment& world, const ToolDefinition& tool,
                       const ToolPlan& plan, const ToolInvocation& job) {
  RunAccess access = AccessFinder(world, tool, job, false).Find(plan);
  access.searched = SearchFolders(job.disk, tool, plan);
  return access;
}

std::string RunAccessText(const RunAccess& access) {
  std::vector<FileText> list;
  for (const TrustRequest& each : access.code) {
    list.push_back({std::string(IdentifierOf(each.kind)), each.subject});
  }
  for (const auto& [kind, entries] :
       {std::pair("program", &access.programs), std::pair("read", &access.reads),
        std::pair("search", &access.searched)}) {
    for (const std::string& each : *entries) list.push_back({kind, each});
  }
  for (const FileWrite& each : access.writes) {
    list.push_back({each.isCertain ? "write" : "maybe", each.path});
    if (!each.option.empty()) list.push_back({"option", each.option});
    if (!each.argument.empty()) list.push_back({"named-by", each.argument});
  }
  if (access.writesNothingElse) list.push_back({"nothing-else", "yes"});
  // Ensures that the result is not empty even if the run accesses nothing.
  list.push_back({"end", {}});
  return JoinFileTexts(list);
}

}  // namespace tarn::tools
