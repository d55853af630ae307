#include "components/tools/ToolDefinitionReader.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include "components/tools/ElementReader.h"
#include "components/tools/FileList.h"
#include "components/tools/MessageRulesReader.h"
#include "components/tools/ToolInheritance.h"
#include "platform/paths/Paths.h"
#include "platform/text/Hash.h"
#include "platform/text/Text.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"

namespace tarn::tools {

namespace {

constexpr std::string_view kShippedMessages = "messages.tools";

// Returns the name before the first full stop unless the tool specifies another.
std::string ToolchainOf(const CXmlNode& tool) {
  if (const char* name = tool.GetAttrValue("Toolchain")) return name;
  const std::string name = OrEmpty(tool.GetAttrValue("Name"));
  return name.substr(0, name.find('.') == name.npos ? 0 : name.find('.'));
}

// Inserts the folder of the toolchain before the names of programs. An optional program that it
// lacks is searched for in PATH.
void LocatePrograms(CXmlNode& tool, const std::string& folder, const ToolchainLocator& locator) {
  for (CXmlNode* step : tool.GetChildren()) {
    const std::string program = OrEmpty(step->GetAttrValue("Program"));
    const bool isName =
        !program.empty() && !HasNativeSeparator(program) && program.find('$') == program.npos;
    if (step->NameView() != "Step" || !isName) continue;
    const std::string path = JoinPath(folder, program);
    if (HasYes(*step, "Optional") && !locator.hasProgram(path)) continue;
    step->SetAttrValue("Program", ReplaceAll(path, "$", "$$"));
  }
}

// Reads the elements of one tool; the first error is available from Error().
class ToolReader : public ElementReader {
 public:
  ToolReader(const NamedMessageRules& messages, const NamedHarmlessFlags& harmless)
      : knownMessages_(messages), knownHarmless_(harmless) {}

  std::unique_ptr<ToolDefinition> Read(const CXmlNode& node) {
    tool_ = std::make_unique<ToolDefinition>();
    CheckAttributes(
        node,
        {"Name",      "Title",       "Hint",         "Extensions",     "Messages",     "Output",
         "Listing",   "Rules",       "FurtherRules", "Search",         "Includes",     "Defines",
         "LinkTime",  "NotLinkTime", "Writes",       "Reads",          "Runs",         "Loads",
         "Follow",    "Variables",   "Predefined",   "PrefixedSearch", "SearchPrefix", "Strays",
         "Harmless",  "LoadsFrom",   "LoadsNextTo",  "LoadsHere",      "Early",        "Carries",
         "Toolchain", "Action",      "If",           "Needs",          "RulesOnError"});
    tool_->name = Text(node, "Name");
    tool_->isEarly = IsYes(node, "Early");
    tool_->listsOnError = IsYes(node, "RulesOnError");
    tool_->fingerprint = HashBytes(node.ToString(g_xmlDisplayOptions));
    tool_->title = Text(node, "Title");
    tool_->toolchain = ToolchainOf(node);
    tool_->action = Text(node, "Action");
    tool_->conditions = ReadConditions(Text(node, "If"));
    tool_->hint = Text(node, "Hint");
    tool_->needs = Text(node, "Needs");
    tool_->output = Filled(node, "Output");
    tool_->listing = Filled(node, "Listing");
    tool_->variables = SplitOptionList(Text(node, "Variables"));
    tool_->predefined = SplitOptionList(Text(node, "Predefined"));
    tool_->rules = Filled(node, "Rules");
    tool_->furtherRules = Filled(node, "FurtherRules");
    tool_->writes = SplitOptionList(Text(node, "Writes"));
    tool_->reads = SplitOptionList(Text(node, "Reads"));
    tool_->runs = ReadPatterns(Text(node, "Runs"));
    tool_->strays = ReadPatterns(Text(node, "Strays"));
    tool_->loadsFrom = SplitOptionList(Text(node, "LoadsFrom"));
    tool_->loadsNextTo = SplitOptionList(Text(node, "LoadsNextTo"));
    tool_->loadsHere = SplitOptionList(Text(node, "LoadsHere"));
    ReadHarmless(Text(node, "Harmless"));
    for (auto& [flag, place] : ReadPairs(Text(node, "Loads")))
      tool_->loads.push_back({flag, place});
    for (auto& [sections, options] : ReadPairs(Text(node, "Carries"))) {
      tool_->carriers.push_back({sections, options});
    }
    constexpr std::array kFollows{Follow::None, Follow::Includes, Follow::Scripts};
    tool_->follows = kFollows[Choose(node, "Follow", {"", "Includes", "Scripts"})];
    tool_->search = SplitOptionList(Text(node, "Search"));
    tool_->prefixedSearch = SplitOptionList(Text(node, "PrefixedSearch"));
    tool_->searchPrefix = SplitOptionList(Text(node, "SearchPrefix"));
    tool_->includes = SplitOptionList(Text(node, "Includes"));
    tool_->defines = SplitOptionList(Text(node, "Defines"));
    tool_->linkTime = SplitOptionList(Text(node, "LinkTime"));
    tool_->notLinkTime = SplitOptionList(Text(node, "NotLinkTime"));
    if (tool_->name.empty()) Fail("a tool has no Name");
    ReadExtensions(Text(node, "Extensions"));
    ReadChildren(node);
    ReadMessages(Text(node, "Messages"));
    if (tool_->steps.empty()) Fail("a tool has no Step");
    if (!tool_->action.empty() && !tool_->output.IsEmpty()) Fail("an Action has no Output");
    return std::move(tool_);
  }

  // Returns the first unknown message list that the tool refers to. Only meaningful if the tool has
  // no other error.
  const std::string& MissingMessages() const { return missingMessages_; }

 private:
  Template Parse(const std::string& text) {
    std::string reason;
    auto parsed = Template::Parse(text, reason);
    if (!parsed) Fail(reason);
    return parsed.value_or(Template());
  }

  Template Filled(const CXmlNode& node, const char* attribute) {
    return Parse(Text(node, attribute));
  }

  // Splits entries separated by ";" at their first space.
  static std::vector<std::pair<std::string, std::string>> ReadPairs(const std::string& list) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const std::string& entry : SplitOptionList(list)) {
      const std::size_t space = std::min(entry.find(' '), entry.size());
      pairs.emplace_back(entry.substr(0, space), entry.substr(std::min(space + 1, entry.size())));
    }
    return pairs;
  }

  void ReadExtensions(const std::string& list) {
    for (const std::string& entry : SplitOptionList(list)) {
      tool_->extensions.push_back(FoldCase(entry.front() == '.' ? entry : "." + entry));
    }
  }

  // The tool's own lines come first in the list.
  void ReadMessages(const std::string& names) {
    for (const std::string& name : SplitWords(names)) {
      const auto found = knownMessages_.find(name);
      if (found != knownMessages_.end()) {
        tool_->messages.push_back(found->second);
      } else if (missingMessages_.empty()) {
        missingMessages_ = name;
      }
    }
  }

  void ReadHarmless(const std::string& names) {
    for (const std::string& name : SplitWords(names)) {
      const auto found = knownHarmless_.find(name);
      if (found == knownHarmless_.end()) {
        Fail("no Harmless is named " + name);
      } else {
        tool_->harmless.Add(found->second);
      }
    }
  }

  MessageRule ReadLine(const CXmlNode& node) {
    MessageRulesReader reader;
    MessageRule rule = reader.ReadLine(node);
    if (!reader.Error().empty()) Fail(reader.Error());
    return rule;
  }

  void ReadChildren(const CXmlNode& node) {
    std::vector<EnvironmentRule> environment;
    auto lines = std::make_shared<MessageRules>();
    for (const CXmlNode* child : node.GetChildren()) {
      const std::string_view name = child->NameView();
      if (name == "Step") {
        tool_->steps.push_back(ReadStep(*child));
      } else if (name == "Env") {
        environment.push_back(ReadEnvironment(*child));
      } else if (name == "Product") {
        ReadProduct(*child);
      } else if (name == "ByProduct") {
        tool_->byProducts.push_back(ReadByProduct(*child));
      } else if (name == "Depend") {
        ReadDepend(*child);
      } else if (name == "Libraries") {
        tool_->libraries.push_back(ReadLibraries(*child));
      } else if (name == "Helpers") {
        tool_->helpers = ReadHelpers(*child);
      } else if (name == "Size") {
        ReadSize(*child);
      } else if (name == "Globals") {
        ReadGlobals(*child);
      } else if (name == "Line") {
        lines->Add(ReadLine(*child));
      } else if (child->GetType() == XmlElement) {
        Fail("unknown element " + std::string(name));
      }
    }
    if (!lines->IsEmpty()) tool_->messages.push_back(std::move(lines));
    for (StepRule& step : tool_->steps) {
      step.environment.insert(step.environment.begin(), environment.begin(), environment.end());
    }
  }

  void ReadProduct(const CXmlNode& node) {
    CheckAttributes(node, {"File", "RandomNames", "Required", "Keep", "If"});
    tool_->products.push_back({Filled(node, "File"), ReadConditions(Text(node, "If")),
                               IsYes(node, "Required"), IsYes(node, "Keep")});
    std::vector<std::string> patterns = SplitOptionList(Text(node, "RandomNames"));
    for (const std::string& each : patterns) {
      if (each.find('?') == each.npos || each.front() == '?') {
        Fail("a pattern of RandomNames needs a \"?\" after its first character: " + each);
      }
    }
    if (!patterns.empty()) {
      tool_->randomNames.push_back({tool_->products.back().file, std::move(patterns)});
    }
  }

  void ReadDepend(const CXmlNode& node) {
    CheckAttributes(node, {"File", "Folder"});
    const Template folder = Filled(node, "Folder");
    if (folder.IsEmpty()) return tool_->depends.push_back(Filled(node, "File"));
    tool_->watchedFolders.push_back(folder);
  }

  static ArgumentPatterns ReadPatterns(const std::string& text) {
    ArgumentPatterns patterns;
    for (std::string& entry : SplitOptionList(text)) {
      auto& list = entry.front() == '!'   ? patterns.exceptions
                   : entry.front() == '*' ? patterns.endings
                                          : patterns.flags;
      if (&list != &patterns.flags) entry.erase(0, 1);
      list.push_back(std::move(entry));
    }
    return patterns;
  }

  ByProductRule ReadByProduct(const CXmlNode& node) {
    CheckAttributes(node, {"File", "With", "List"});
    const bool isForArguments = Choose(node, "List", {"", "Arguments"}) == 1;
    return {Filled(node, "File"), SplitOptionList(Text(node, "With")), isForArguments};
  }

  LibraryRule ReadLibraries(const CXmlNode& node) {
    CheckAttributes(node, {"Name", "Folder", "File", "Implicit"});
    LibraryRule rule{SplitOptionList(Text(node, "Name")), SplitOptionList(Text(node, "Folder")),
                     Filled(node, "File"), Filled(node, "Implicit")};
    if (rule.nameFlags.empty() || rule.folderFlags.empty() || rule.file.IsEmpty()) {
      Fail("Libraries needs Name, Folder and File");
    }
    return rule;
  }

  HelperRule ReadHelpers(const CXmlNode& node) {
    CheckAttributes(node, {"Programs", "Files", "ProgramFlag", "FileFlag", "With", "Folder"});
    HelperRule rule{SplitOptionList(Text(node, "Programs")),
                    Filled(node, "Files"),
                    Text(node, "ProgramFlag"),
                    Text(node, "FileFlag"),
                    SplitOptionList(Text(node, "With")),
                    SplitOptionList(Text(node, "Folder"))};
    if (!rule.files.IsEmpty() && rule.fileFlag.empty()) Fail("Helpers needs FileFlag");
    return rule;
  }

  EnvironmentRule ReadEnvironment(const CXmlNode& node) {
    CheckAttributes(node, {"Name", "Value"});
    EnvironmentRule rule{Text(node, "Name"), Filled(node, "Value")};
    if (rule.name.empty() || rule.name.find('=') != std::string::npos) Fail("an Env has no Name");
    return rule;
  }

  StepRule ReadStep(const CXmlNode& node) {
    CheckAttributes(
        node, {"Program", "Commands", "Launcher", "Folder", "Response", "ResponseAbove", "Optional",
               "Capture", "Paths", "Plain", "If", "Trim", "Input", "Failure"});
    StepRule step;
    step.trimmed = Text(node, "Trim");
    step.hasCommandLines = node.GetAttr("Commands") != nullptr;
    step.program = Filled(node, step.hasCommandLines ? "Commands" : "Program");
    if (step.program.IsEmpty()) Fail("a Step has no Program");
    if (step.hasCommandLines && (node.GetAttr("Program") || node.GetAttr("Launcher"))) {
      Fail("a Step with Commands has no Program and no Launcher");
    }
    step.hasLauncher = node.GetAttr("Launcher") != nullptr;
    step.launcher = Filled(node, "Launcher");
    step.folder = Filled(node, "Folder");
    step.isOptional = IsYes(node, "Optional");
    step.failure = Text(node, "Failure");
    step.plainArguments = IsYes(node, "Plain");
    step.keepsInputOpen = Choose(node, "Input", {"", "Open"}) == 1;
    step.capturesSizes = Choose(node, "Capture", {"", "Size"}) == 1;
    step.relativePaths = Choose(node, "Paths", {"", "Relative"}) == 1;
    if (Choose(node, "Response", {"", "gnu"}) == 1) step.response = ResponseStyle::Gnu;
    step.responseAbove = ReadLength(node, "ResponseAbove", 100000);
    step.conditions = ReadConditions(Text(node, "If"));
    ReadStepChildren(node, step);
    return step;
  }

  std::size_t ReadLength(const CXmlNode& node, const char* attribute, std::size_t standard) {
    const std::string text = Text(node, attribute);
    if (text.empty()) return standard;
    const auto length = ParseInt64(text);
    const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
    if (!isNumber || !length) Fail(std::string(attribute) + " can't be " + text);
    return static_cast<std::size_t>(length.value_or(0));
  }

  void ReadStepChildren(const CXmlNode& node, StepRule& step) {
    for (const CXmlNode* child : node.GetChildren()) {
      const std::string_view name = child->NameView();
      if (name == "Arg") {
        step.arguments.push_back(ReadArgument(*child));
      } else if (name == "Env") {
        step.environment.push_back(ReadEnvironment(*child));
      } else if (child->GetType() == XmlElement) {
        Fail("unknown element " + std::string(name) + " in Step");
      }
    }
  }

  ArgumentRule ReadArgument(const CXmlNode& node) {
    CheckAttributes(node, {"V", "List", "Path", "Avoid", "Words", "Without", "If", "Allow"});
    ArgumentRule rule;
    rule.allowed = static_cast<AllowedValue>(Choose(node, "Allow", {"", "Name", "Port", "Text"}));
    rule.value = Filled(node, "V");
    const std::size_t path = Choose(node, "Path", {"", "No", "Yes", "Relative"});
    rule.isPath = path >= 2;
    rule.isRelative = path == 3;
    rule.avoided = Text(node, "Avoid");
    rule.isWords = IsYes(node, "Words");
    rule.without = SplitOptionList(Text(node, "Without"));
    rule.conditions = ReadConditions(Text(node, "If"));
    const std::string list = Text(node, "List");
    if (list == "Files") {
      rule.source = ArgumentRule::Source::Files;
    } else if (!list.empty()) {
      rule.source = ArgumentRule::Source::List;
      rule.list = Parse(list);
    }
    return rule;
  }

  // Parses conditions separated by ";": Name, !Name, Name=value, Name!=value; values by ",".
  Conditions ReadConditions(const std::string& text) {
    Conditions conditions;
    for (const std::string& entry : SplitOptionList(text)) {
      Condition condition;
      std::string name = entry;
      const std::size_t equal = entry.find('=');
      if (equal != std::string::npos) {
        const bool differs = equal > 0 && entry[equal - 1] == '!';
        condition.test = differs ? Condition::Test::Different : Condition::Test::Equal;
        for (const std::string_view each : Split(std::string_view(entry).substr(equal + 1), ',')) {
          condition.expected.emplace_back(Trim(each));
        }
        if (condition.expected.empty()) condition.expected.emplace_back();
        name = Trim(std::string_view(entry).substr(0, differs ? equal - 1 : equal));
      } else if (entry.front() == '!') {
        condition.test = Condition::Test::Empty;
        name = Trim(std::string_view(entry).substr(1));
      }
      condition.value = Parse("$(" + name + ")");
      conditions.push_back(std::move(condition));
    }
    return conditions;
  }

  void ReadSize(const CXmlNode& node) {
    CheckAttributes(node, {"Format", "File", "Map"});
    constexpr std::array kFormats{SizeFormat::Sections, SizeFormat::SdccMap, SizeFormat::SdccAreas,
                                  SizeFormat::None};
    tool_->size.format = kFormats[Choose(node, "Format", {"sections", "sdcc-mem", "sdcc-areas"})];
    tool_->size.file = Filled(node, "File");
    tool_->size.map = Filled(node, "Map");
    for (const CXmlNode* child : node.GetChildren()) {
      if (child->GetType() != XmlElement) continue;
      if (child->NameView() != "Sum") Fail("unknown element " + child->GetName() + " in Size");
      CheckAttributes(*child, {"Label", "Of", "SkipZero", "Total", "Max"});
      tool_->size.sums.push_back({Text(*child, "Label"), SplitWords(Text(*child, "Of")),
                                  IsYes(*child, "SkipZero"), Text(*child, "Total"),
                                  Text(*child, "Max")});
      const auto valueOf = [this](const std::string& option) {
        return option.empty() ? Template() : Parse("$(" + option + ")");
      };
      tool_->size.bounds.emplace_back(valueOf(Text(*child, "Total")), valueOf(Text(*child, "Max")));
    }
  }

  void ReadGlobals(const CXmlNode& node) {
    CheckAttributes(node, {"Format", "File"});
    using Format = GlobalsRule::Format;
    constexpr std::array kFormats{Format::Dwarf, Format::Cdb, Format::None};
    tool_->globals.format = kFormats[Choose(node, "Format", {"dwarf", "cdb"})];
    tool_->globals.file = Filled(node, "File");
    if (tool_->globals.file.IsEmpty()) Fail("Globals has no File");
    if (tool_->output.IsEmpty()) Fail("Globals needs an Output");
  }

  const NamedMessageRules& knownMessages_;
  const NamedHarmlessFlags& knownHarmless_;
  std::string missingMessages_;
  std::unique_ptr<ToolDefinition> tool_;
};

// Tools omitted because a message list is missing, by the name of that list.
using ToolsWithoutMessages = std::map<std::string, std::vector<std::string>>;

// A parsed definition file.
struct ParsedFile {
  std::string name;
  std::size_t folder = 0;
  CXmlNode root;
};

void ParseFile(const DefinitionFile& file, ParsedFile& parsed, ReadDefinitions& into) {
  parsed.name = file.name;
  parsed.folder = file.folder;
  const std::string fault = LoadWhole(parsed.root, file.text, XmlTexts::None, file.name);
  if (fault.empty()) return;
  parsed.root.Clear();
  into.errors.push_back(fault);
  if (into.lostFile.empty()) into.lostFile = fault;
}

// Reads all elements of this name, which are lists that tools refer to.
template <class Reader, class Lists>
void ReadLists(const ParsedFile& file, const char* element, Lists& lists,
               std::vector<std::string>& errors) {
  for (const CXmlNode* child : file.root.GetChildren()) {
    if (child->NameView() != element) continue;
    Reader reader;
    auto list = reader.ReadList(*child);
    const std::string name = OrEmpty(child->GetAttrValue("Name"));
    if (reader.Error().empty()) {
      lists[name] = std::move(list);
    } else {
      errors.push_back(file.name + ": " + FoldCase(element) + " " + name + ": " + reader.Error());
    }
  }
}

void AddFaulty(const ToolDefinition& tool, const std::string& error, ReadDefinitions& into) {
  std::erase_if(into.tools, [&](const auto& each) { return EqualNoCase(each->name, tool.name); });
  into.faulty.insert_or_assign(FoldCase(tool.name), FaultyTool{tool.action, error});
}

void ReadTools(const ParsedFile& file, const ToolInheritance& inheritance,
               const ToolchainLocator& locate, ReadDefinitions& into,
               ToolsWithoutMessages& leftOut) {
  for (const CXmlNode* child : file.root.GetChildren()) {
    const std::string_view name = child->NameView();
    if (child->GetType() != XmlElement || name == "Messages" || name == "Harmless") continue;
    if (name == "Action") {
      ReadAction(*child, file.name, into.actions, into.errors);
      continue;
    }
    if (name != "Tool") {
      into.errors.push_back(file.name + ": unknown element " + child->GetName());
      continue;
    }
    if (HasYes(*child, "Abstract")) continue;
    std::string error;
    const std::string abstract = OrEmpty(child->GetAttrValue("Abstract"));
    if (!abstract.empty() && !EqualNoCase(abstract, "No")) error = "Abstract can't be " + abstract;
    const auto resolved = inheritance.Resolve(*child, error);
    if (resolved && locate.findFolder) {
      const std::string toolchain = ToolchainOf(*resolved);
      const auto [found, isNew] = into.toolchains.try_emplace(toolchain);
      if (isNew && !toolchain.empty()) found->second = locate.findFolder(toolchain);
      if (!found->second.empty()) LocatePrograms(*resolved, found->second, locate);
    }
    ToolReader reader(into.messages, into.harmless);
    auto tool = reader.Read(resolved ? *resolved : *child);
    if (error.empty()) error = reader.Error();
    const std::string& missing = reader.MissingMessages();
    if (!error.empty()) {
      into.errors.push_back(file.name + ": " + tool->name + ": " + error);
      AddFaulty(*tool, into.errors.back(), into);
    } else if (!missing.empty()) {
      leftOut[missing].push_back(tool->name);
      AddFaulty(*tool, file.name + ": " + tool->name + ": no Messages are named " + missing, into);
    } else {
      into.faulty.erase(FoldCase(tool->name));
      tool->folder = file.folder;
      into.tools.push_back(std::move(tool));
    }
  }
}

// Reports one line per missing list, however many tools refer to it: usually a single file is
// missing, and half of all tools refer to its lists.
void ReportLeftOut(const ToolsWithoutMessages& leftOut, bool hasShippedFile,
                   ReadDefinitions& into) {
  for (const auto& [name, tools] : leftOut) {
    std::string text = "no Messages are named " + name;
    if (!hasShippedFile) text.append(" (there is no ").append(kShippedMessages).append(")");
    text += ", so tools are skipped: ";
    for (const std::string& tool : tools) text.append(&tool == &tools[0] ? "" : ", ").append(tool);
    into.errors.push_back(std::move(text));
  }
}

}  // namespace

ReadDefinitions ReadDefinitionFiles(const std::vector<DefinitionFile>& files,
                                    const ToolchainLocator& locate) {
  ReadDefinitions read;
  std::vector<ParsedFile> parsed(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) ParseFile(files[i], parsed[i], read);
  for (const ParsedFile& file : parsed) {
    ReadLists<MessageRulesReader>(file, "Messages", read.messages, read.errors);
    ReadLists<HarmlessFlagsReader>(file, "Harmless", read.harmless, read.errors);
  }
  ToolInheritance inheritance;
  for (const ParsedFile& file : parsed) {
    for (const CXmlNode* child : file.root.GetChildren()) {
      if (child->NameView() == "Tool") inheritance.Add(*child);
    }
  }
  ToolsWithoutMessages leftOut;
  for (const ParsedFile& file : parsed) ReadTools(file, inheritance, locate, read, leftOut);
  const bool hasShippedFile = std::any_of(files.begin(), files.end(), [](const auto& file) {
    return EqualNoCase(file.name, kShippedMessages);
  });
  ReportLeftOut(leftOut, hasShippedFile, read);
  return read;
}

ToolDefinition DefinitionOfProgram(std::string_view path, MessageRuleLists messages) {
  ToolDefinition tool;
  tool.name = path;
  tool.isProgram = true;
  tool.messages = std::move(messages);
  StepRule step;
  step.program = Template::Literal(path);
  ArgumentRule files;
  std::string unused;
  files.value = *Template::Parse("$(Item)", unused);
  files.source = ArgumentRule::Source::Files;
  files.isPath = true;
  step.arguments.push_back(std::move(files));
  tool.steps.push_back(std::move(step));
  return tool;
}

}  // namespace tarn::tools
