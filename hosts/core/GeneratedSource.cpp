#include "hosts/core/GeneratedSource.h"

#include <tarn/commands.h>

#include <algorithm>

#include "hosts/core/LogEntry.h"
#include "hosts/core/Printable.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/ProjectTree.h"
#include "platform/files/SameName.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr const char* kBuildSection = "Build";
constexpr const char* kToolOption = "TranslateTool";
constexpr const char* kOutputOption = "OutputFile";
constexpr const char* kCommandsOption = "Commands";
constexpr const char* kBuildFolder = "build";

bool HasFile(FileSystem& files, const CXmlNode& parent, const std::string& path) {
  return std::ranges::any_of(parent.GetChildren(), [&](const CXmlNode* child) {
    return IsSameName(files, GetAttribute(child, "Path"), path) || HasFile(files, *child, path);
  });
}

// The command publishes the current node again, so that its new value is read even after the
// selection has changed.
bool SaveOption(BuildSession& session, const char* name, const std::string& value) {
  ProjectManagerDriver& manager = session.Manager();
  if (manager.SavePropertyValue(kGeneratorType, kBuildSection, name, value) == 0) return false;
  manager.Command(TARN_CMD_APPLY_OPTION_AND_REBUILD);
  return true;
}

}  // namespace

std::string SetGeneratorTool(BuildSession& session, const std::string& tool) {
  if (session.Tools().HasTool(tool) == 0) return "There is no tool " + Printable(tool) + ".";
  const std::string current =
      session.Manager().GetPropertyValue(kGeneratorType, kBuildSection, kToolOption);
  const bool isSet = current == tool || SaveOption(session, kToolOption, tool);
  return isSet ? std::string() : "The tool can't be set.";
}

NewGenerator::NewGenerator(BuildSession& buildSession, FileSystem& fileSystem)
    : session_(buildSession), files_(fileSystem), options_("") {
  session_.Inspector().PublishAll();  // makes paths absolute
  options_ = OptionTable(session_.Options().ListProperties(kGeneratorType));
  tree_ = session_.Inspector().GetTree();
  application_ = session_.Manager().GetPropertyValue({}, "General", "ApplicationPath");
  if (application_.empty()) {
    for (const ApplicationEntry& each : ListApplications(session_.Inspector())) {
      if (application_.empty() || each.active) application_ = each.path;
    }
  }
  folder_ = AddSeparator(FolderOf(application_));
  const auto tool = options_.Find({{}, kBuildSection, kToolOption}, {kGeneratorType});
  if (!tool) return;
  for (const auto& [name, label] : tool->choices) tools_.push_back({name, label});
}

// Returns the values of a node that doesn't exist yet, as far as defaults depend on them.
OptionValues NewGenerator::MakeValues(const std::string& input, const std::string& tool) const {
  OptionValues values(kGeneratorType);
  const auto put = [&values](const std::string& kind, const std::string& path) {
    values.Put({}, "General", kind + "Path", path);
    values.Put({}, "General", kind + "Dir", AddSeparator(FolderOf(path)));
    values.Put({}, "General", kind + "Filename", FileNameOf(path));
    values.Put({}, "General", kind + "Name", SplitPath(path).title);
    values.Put({}, "General", kind + "Ext", ExtensionOf(path));
  };
  put("Application", application_);
  put("Node", input);
  values.Put({}, "General", "Path", input);
  if (!tool.empty()) values.Put({}, kBuildSection, kToolOption, tool);
  return values;
}

std::string NewGenerator::GetDefault(const OptionValues& values, const char* option,
                                     std::string* missing) const {
  const auto found = options_.Find({{}, kBuildSection, option}, {kGeneratorType});
  return found ? values.Resolve(found->defaultValue, nullptr, missing) : std::string();
}

std::string NewGenerator::GetDefaultTool(const std::string& input) const {
  return GetDefault(MakeValues(input, {}), kToolOption);
}

bool NewGenerator::NeedsCommands(const std::string& tool) const {
  OptionValues values = MakeValues({}, tool);
  const auto commands = options_.Find({{}, kBuildSection, kCommandsOption}, {kGeneratorType});
  if (!commands) return false;
  values.Put({}, kBuildSection, kCommandsOption, commands->defaultValue);
  std::string missing;
  values.Resolve("$(Build.Commands)", nullptr, &missing);
  return !missing.empty();
}

std::string NewGenerator::GetOutput(const GeneratorRequest& request) const {
  const OptionValues values = MakeValues(request.input, request.tool);
  const std::string output(Trim(values.Resolve(request.output)));
  if (output.empty()) return WithoutStamp(GetDefault(values, kOutputOption));
  return files_.Canonical(IsRelativePath(output) ? JoinPath(folder_, output) : output);
}

// In a subfolder of `build` a generator may replace any file.
bool NewGenerator::MayReplace(const std::string& path) const {
  const std::string folder = AddSeparator(JoinPath(folder_, kBuildFolder));
  return path.starts_with(folder) && FolderOf(path).size() > folder.size();
}

GeneratorProblem NewGenerator::FindProblem(const GeneratorRequest& request) const {
  using enum GeneratorProblem;
  if (request.input.empty()) return NoInput;
  const ProjectTree tree(tree_);
  if (files_.IsFolder(request.input)) return InputIsFolder;
  if (!files_.Exists(request.input) && !tree.Makes(files_, request.input)) {
    return InputMissing;
  }
  if (!IsStorable(request.input)) return InputUnstorable;
  for (const CXmlNode* each : tree.GetRoot()->GetChildren()) {
    const bool isOwn = GetAttribute(each, "Path") == application_;
    if (isOwn && HasFile(files_, *each, request.input)) return InputIsUsed;
  }
  if (NeedsCommands(request.tool) && Trim(request.commands).empty()) return NoCommands;
  const std::string output = GetOutput(request);
  if (IsSameName(files_, output, request.input)) return OutputIsInput;
  if (files_.IsFolder(output)) return OutputIsFolder;
  if (tree.Makes(files_, output)) return OutputIsMade;
  return files_.Exists(output) && !MayReplace(output) ? OutputExists : None;
}

std::string NewGenerator::SetOptions(const GeneratorRequest& request) {
  if (std::string why = SetGeneratorTool(session_, request.tool); !why.empty()) return why;
  std::string output(Trim(request.output));
  if (!output.empty()) {
    // Some tools keep a file that would not change, so their output is a stamp next to it.
    const std::string usual = GetDefault(MakeValues(request.input, request.tool), kOutputOption);
    if (WithoutStamp(usual) != usual) output += kStampExtension;
    if (!SaveOption(session_, kOutputOption, output)) return "The output can't be set.";
  }
  const std::string commands(Trim(request.commands));
  const bool isSet =
      !NeedsCommands(request.tool) || SaveOption(session_, kCommandsOption, commands);
  return isSet ? std::string() : "The commands can't be set.";
}

std::string NewGenerator::Add(const GeneratorRequest& request) {
  InspectorDriver& inspector = session_.Inspector();
  ProjectManagerDriver& manager = session_.Manager();
  const std::string refusal = request.input + " can't be added.";
  if (manager.GetPropertyValue({}, "General", "ApplicationPath").empty() &&
      !inspector.SelectApplication(application_)) {
    return refusal;
  }
  if (manager.AddExistingItem(request.input, kGeneratorType) == 0) return refusal;
  if (std::string why = SetOptions(request); !why.empty() || !request.addsOutput) return why;
  inspector.PublishAll();  // the output need not exist if it is that of a node
  const std::string output = GetOutput(request);
  if (manager.AddExistingItem(output) == 0) return output + " can't be added.";
  inspector.SelectNodeByKey(request.input, application_);
  return {};
}

}  // namespace tarn::host
