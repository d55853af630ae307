#include "hosts/core/CompileCommands.h"

#include <tarn/commands.h>

#include <algorithm>

#include "hosts/core/BuildInputs.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectTree.h"
#include "hosts/core/ToolCommand.h"
#include "platform/paths/Paths.h"
#include "platform/process/Process.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

bool IsWanted(const std::vector<std::string>& configurations, const std::string& name) {
  return configurations.empty() ||
         std::any_of(configurations.begin(), configurations.end(),
                     [&name](const std::string& each) { return EqualNoCase(each, name); });
}

// Returns the commands of a tool run with launchers removed.
std::vector<ToolCommand> WithoutLaunchers(const std::string& xml) {
  std::vector<ToolCommand> commands = ParseCommands(xml);
  const auto root = ParseXml(xml);
  std::size_t next = 0;
  for (const CXmlNode* node : root == nullptr ? std::vector<CXmlNode*>() : root->GetChildren()) {
    if (node->NameView() != "Command") continue;
    ToolCommand& command = commands[next++];
    const int launched = ParseDecimal(node->GetAttrValue("Launched"));
    if (launched <= 0 || static_cast<std::size_t>(launched) > command.arguments.size()) continue;
    command.program = command.arguments[static_cast<std::size_t>(launched) - 1];
    command.arguments.erase(command.arguments.begin(), command.arguments.begin() + launched);
  }
  return commands;
}

class Collector {
 public:
  Collector(BuildSession& openSession, FileSystem& fileSystem, CompileCommandList& result)
      : session_(openSession), disk_(fileSystem), list_(result) {}

  // Applications are identified by their paths.
  void Switch(const std::string& application, const std::string& name) {
    session_.Inspector().SelectApplication(application);
    session_.Options().SetNewConfigName(name);
    session_.Manager().Command(TARN_CMD_SELECT_CONFIGURATION);
  }

  void Collect(const std::string& application, const std::string& name) {
    session_.Inspector().PublishAll();
    configuration_ = name;
    std::string ownOutput;  // output of the application itself, i.e. of the linker
    for (const ApplicationEntry& each : ListApplications(session_.Inspector())) {
      if (each.path == application) ownOutput = each.output;
    }
    const std::string lines = session_.Inspector().GetBuildInputs();
    for (const ApplicationInputs& each : ParseBuildInputs(lines)) {
      if (each.application != application) continue;
      for (const std::string_view made : each.outputs) {
        const std::string output(made);
        if (ownOutput.empty() || !EqualNoCase(output, ownOutput)) AddNode(application, output);
      }
    }
  }

 private:
  void AddNode(const std::string& application, const std::string& output) {
    const OutputCommands made = GetOutputCommands(session_, application, output);
    const std::vector<ToolCommand> commands = WithoutLaunchers(made.commands);
    for (const std::string& file : made.sources) AddFile(commands, file, output);
  }

  // If a tool has several steps, the one that receives the source file is used.
  void AddFile(const std::vector<ToolCommand>& commands, const std::string& file,
               const std::string& output) {
    const std::string name = disk_.NameOnDisk(disk_.Canonical(file));
    for (const ToolCommand& command : commands) {
      const bool takesFile = std::any_of(command.arguments.begin(), command.arguments.end(),
                                         [&](const std::string& argument) {
                                           return AbsoluteIn(command.folder, argument) == name;
                                         });
      if (!takesFile) continue;
      CompileCommand& entry = list_.commands.emplace_back();
      entry.configuration = configuration_;
      entry.directory = command.folder;
      entry.file = name;
      entry.output = AbsoluteIn(command.folder, output);
      entry.arguments = command.arguments;
      entry.arguments.insert(entry.arguments.begin(), FullPathOf(command));
      return;
    }
  }

  std::string AbsoluteIn(const std::string& folder, const std::string& path) {
    return disk_.Canonical(IsRelativePath(path) ? JoinPath(folder, path) : path);
  }

  std::string FullPathOf(const ToolCommand& command) {
    const std::string program = HasNativeSeparator(command.program)
                                    ? AbsoluteIn(command.folder, command.program)
                                    : command.program;
    std::string path = FindProgram(program);
    if (!path.empty()) return path;
    list_.missingPrograms.insert(program);
    return program;
  }

  BuildSession& session_;
  FileSystem& disk_;
  CompileCommandList& list_;
  std::string configuration_;
};

}  // namespace

OutputCommands GetOutputCommands(BuildSession& session, const std::string& application,
                                 const std::string& output) {
  const auto input = ParseXml(session.Inspector().GetToolInput(application, output));
  if (input == nullptr) return {};
  const CXmlNode* const options = input->FindChild("#CDATA");
  const std::string files = GetAttribute(input.get(), "Files");
  return {SplitQuotedPaths(files),
          session.Tools().GetCommandLines(GetAttribute(input.get(), "Tool"), files,
                                          options == nullptr ? "" : options->GetValue())};
}

CompileCommandList CollectCompileCommands(BuildSession& session, FileSystem& files,
                                          const std::vector<ApplicationEntry>& applications,
                                          const std::vector<std::string>& configurations) {
  CompileCommandList list;
  Collector collector(session, files, list);
  const std::string selected = session.Manager().GetSelectedApplication();
  std::vector<ApplicationEntry> ordered = applications;
  std::stable_partition(ordered.begin(), ordered.end(),
                        [](const ApplicationEntry& each) { return each.active; });
  for (const ApplicationEntry& each : ordered) {
    std::vector<std::string> names = each.configurations;
    std::stable_partition(names.begin(), names.end(), [&each](const std::string& name) {
      return EqualNoCase(name, each.configuration);
    });
    std::string current = each.configuration;
    for (const std::string& name : names) {
      if (!IsWanted(configurations, name)) continue;
      if (!EqualNoCase(name, current)) collector.Switch(each.path, name);
      current = name;
      collector.Collect(each.path, name);
    }
    if (!EqualNoCase(current, each.configuration)) collector.Switch(each.path, each.configuration);
  }
  if (!selected.empty()) session.Inspector().SelectNodeByKey(selected);
  return list;
}

}  // namespace tarn::host
