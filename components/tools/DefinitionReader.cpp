#include "components/tools/DefinitionReader.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "components/tools/FileList.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::tools {

namespace {

// Reads the elements of one tool; the first thing that is wrong ends up in `error`.
class ToolReader {
 public:
  std::unique_ptr<ToolDefinition> Read(const CXmlNode& node) {
    tool = std::make_unique<ToolDefinition>();
    CheckAttributes(
        node, {"Name", "Title", "Hint", "Extensions", "Messages", "Output", "Listing", "Rules"});
    tool->name = Text(node, "Name");
    tool->title = Text(node, "Title");
    tool->hint = Text(node, "Hint");
    tool->output = Filled(node, "Output");
    tool->listing = Filled(node, "Listing");
    tool->rules = Filled(node, "Rules");
    if (tool->name.empty()) Fail("a tool has no Name");
    ReadExtensions(Text(node, "Extensions"));
    ReadScanners(Text(node, "Messages"));
    ReadChildren(node);
    if (tool->steps.empty()) Fail("there is no Step");
    return std::move(tool);
  }

  const std::string& Error() const { return error; }

 private:
  void Fail(const std::string& reason) {
    if (error.empty()) error = reason;
  }

  static std::string Text(const CXmlNode& node, const char* attribute) {
    return TextOf(node.GetAttrValue(attribute));
  }

  bool IsYes(const CXmlNode& node, const char* attribute) {
    return Choose(node, attribute, {"", "No", "Yes"}) == 2;
  }

  Template Parse(const std::string& text) {
    std::string reason;
    auto parsed = Template::Parse(text, reason);
    if (!parsed) Fail(reason);
    return parsed.value_or(Template());
  }

  Template Filled(const CXmlNode& node, const char* attribute) {
    return Parse(Text(node, attribute));
  }

  void CheckAttributes(const CXmlNode& node, std::initializer_list<std::string_view> known) {
    for (const CXmlAttr& attribute : node.Attributes()) {
      const std::string_view name = attribute.NameView();
      if (std::find(known.begin(), known.end(), name) == known.end()) {
        Fail("unknown attribute " + std::string(name) + " in " + node.GetName());
      }
    }
  }

  void ReadExtensions(const std::string& list) {
    for (const std::string& entry : SplitOptionList(list)) {
      tool->extensions.push_back(FoldCase(entry.front() == '.' ? entry : "." + entry));
    }
  }

  void ReadScanners(const std::string& names) {
    for (const std::string& name : SplitWords(names)) {
      if (const MessageScanner* scanner = FindScanner(name)) {
        tool->messages.Add(*scanner);
      } else {
        Fail("no messages are known by the name " + name);
      }
    }
  }

  void ReadChildren(const CXmlNode& node) {
    std::vector<EnvironmentRule> environment;
    for (const CXmlNode* child : node.GetChildren()) {
      const std::string_view name = child->NameView();
      if (name == "Step") {
        tool->steps.push_back(ReadStep(*child));
      } else if (name == "Env") {
        environment.push_back(ReadEnvironment(*child));
      } else if (name == "Product") {
        tool->products.push_back(ReadFile(*child));
      } else if (name == "Depend") {
        tool->depends.push_back(ReadFile(*child));
      } else if (name == "Size") {
        ReadSize(*child);
      } else if (child->GetType() == XmlElement) {
        Fail("unknown element " + std::string(name));
      }
    }
    for (StepRule& step : tool->steps) {
      step.environment.insert(step.environment.begin(), environment.begin(), environment.end());
    }
  }

  Template ReadFile(const CXmlNode& node) {
    CheckAttributes(node, {"File"});
    return Filled(node, "File");
  }

  EnvironmentRule ReadEnvironment(const CXmlNode& node) {
    CheckAttributes(node, {"Name", "Value"});
    EnvironmentRule rule{Text(node, "Name"), Filled(node, "Value")};
    if (rule.name.empty() || rule.name.find('=') != std::string::npos) Fail("an Env has no Name");
    return rule;
  }

  StepRule ReadStep(const CXmlNode& node) {
    CheckAttributes(node, {"Program", "Launcher", "Folder", "Response", "ResponseAbove", "Optional",
                           "Capture", "Paths", "Plain", "If"});
    StepRule step;
    step.program = Filled(node, "Program");
    if (step.program.IsEmpty()) Fail("a Step has no Program");
    step.hasLauncher = node.GetAttr("Launcher") != nullptr;
    step.launcher = Filled(node, "Launcher");
    step.folder = Filled(node, "Folder");
    step.isOptional = IsYes(node, "Optional");
    step.plainArguments = IsYes(node, "Plain");
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

  // The index of the attribute's value among those that it may have.
  std::size_t Choose(const CXmlNode& node, const char* attribute,
                     std::initializer_list<std::string_view> choices) {
    const std::string value = Text(node, attribute);
    const auto found = std::find_if(choices.begin(), choices.end(), [&](std::string_view choice) {
      return EqualNoCase(choice, value);
    });
    if (found == choices.end()) Fail(std::string(attribute) + " can't be " + value);
    return static_cast<std::size_t>(found - choices.begin());
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
    CheckAttributes(node, {"V", "List", "Path", "Words", "If"});
    ArgumentRule rule;
    rule.value = Filled(node, "V");
    rule.isPath = IsYes(node, "Path");
    rule.isWords = IsYes(node, "Words");
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

  // Conditions with ";" between them: Name, !Name, Name=value, Name!=value.
  Conditions ReadConditions(const std::string& text) {
    Conditions conditions;
    for (const std::string& entry : SplitOptionList(text)) {
      Condition condition;
      std::string name = entry;
      const std::size_t equal = entry.find('=');
      if (equal != std::string::npos) {
        const bool differs = equal > 0 && entry[equal - 1] == '!';
        condition.test = differs ? Condition::Test::Different : Condition::Test::Equal;
        condition.expected = Trim(std::string_view(entry).substr(equal + 1));
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
    CheckAttributes(node, {"Format", "File"});
    constexpr std::array kFormats{SizeFormat::Sections, SizeFormat::SdccMap, SizeFormat::None};
    tool->size.format = kFormats[Choose(node, "Format", {"sections", "sdcc-mem"})];
    tool->size.file = Filled(node, "File");
    for (const CXmlNode* child : node.GetChildren()) {
      if (child->GetType() != XmlElement) continue;
      if (child->NameView() != "Sum") Fail("unknown element " + child->GetName() + " in Size");
      CheckAttributes(*child, {"Label", "Of", "SkipZero"});
      tool->size.sums.push_back(
          {Text(*child, "Label"), SplitWords(Text(*child, "Of")), IsYes(*child, "SkipZero")});
    }
  }

  std::unique_ptr<ToolDefinition> tool;
  std::string error;
};

}  // namespace

void ReadDefinitionFile(const std::string& text, const std::string& fileName,
                        ReadDefinitions& into) {
  CXmlNode root;
  CXmlParseInfo parseInfo;
  if (root.Load(text, parseInfo) == nullptr) {
    into.errors.push_back(fileName + ": " +
                          (parseInfo.errorText.empty() ? "no XML" : parseInfo.errorText));
    return;
  }
  for (const CXmlNode* child : root.GetChildren()) {
    if (child->GetType() != XmlElement) continue;
    ToolReader reader;
    if (child->NameView() != "Tool") {
      into.errors.push_back(fileName + ": unknown element " + child->GetName());
      continue;
    }
    auto tool = reader.Read(*child);
    if (reader.Error().empty()) {
      into.tools.push_back(std::move(tool));
    } else {
      into.errors.push_back(fileName + ": " + tool->name + ": " + reader.Error());
    }
  }
}

ToolDefinition DefinitionOfProgram(std::string_view path) {
  ToolDefinition tool;
  tool.name = path;
  tool.messages.Add(*FindScanner("gcc"));
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
