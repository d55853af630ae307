#include "hosts/core/ServerConnection.h"

#include <tarn/methods.h>

#include <algorithm>
#include <cstdlib>
#include <set>

#include "components/values/OptionValues.h"
#include "hosts/core/BuildInputs.h"
#include "hosts/core/Jobs.h"
#include "hosts/core/LogEntry.h"
#include "hosts/core/ProjectFile.h"
#include "hosts/core/ProjectTemplate.h"
#include "hosts/core/ProjectTree.h"
#include "platform/paths/Paths.h"
#include "platform/process/MakeFlags.h"
#include "platform/settings/Settings.h"
#include "platform/text/Text.h"
#include "xml/XmlDamage.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr const char* kManagerClass = "TarnProjectManager.ProjectManager";
constexpr const char* kInspectorClass = "TarnProjectManager.ProjectInspector";
constexpr const char* kToolsClass = "TarnToolManager.ToolManager";

Status Attach(COleDispatchDriver& driver, const char* classId) {
  std::string reason;
  const DispatchPtr object = ClassRegistry::Native().CreateInstance(classId, &reason);
  // The reason starts with the class name; drop it.
  if (!object) return Error{ErrorCode::NotFound, reason.substr(reason.find(": ") + 2), classId};
  driver.AttachDispatch(object.Get(), true);
  return {};
}

// Parses a line "place: text".
Error ToError(const std::string& line) {
  const std::size_t end = line.find(": ");
  if (end == std::string::npos) return {ErrorCode::NotFound, line, {}};
  return {ErrorCode::NotFound, line.substr(end + 2), line.substr(0, end)};
}

// Describes why the server can't start with a configuration file.
Error DescribeConfigFile(FileSystem& files, const std::string& path) {
  CXmlNode root;
  const auto text = files.ReadWholeFile(path);
  if (!text && text.GetError().code != ErrorCode::NotFound) return text.GetError();
  const std::string fault = text ? LoadWhole(root, *text, XmlTexts::None, path) : std::string();
  if (!fault.empty()) return ToError(fault);
  return {ErrorCode::NotFound, "the configuration file is missing or damaged", path};
}

// Status of the driver's last call.
Status StatusOf(const COleDispatchDriver& driver, const char* classId) {
  const DispatchResult last = driver.LastResult();
  if (last || last.status == DispatchStatus::WrongType) return {};
  return Error{ErrorCode::NotFound, last.text, classId};
}

}  // namespace

DispatchPtr InspectorDriver::GetPropertyManager() {
  if (GetDispatch() == nullptr) return {};
  Variant result;
  if (!GetDispatch()->Invoke(TARN_INS_GET_PROPERTY_MANAGER, {}, result)) return {};
  return result.GetKind() == Variant::Kind::Object ? result.AsObject() : DispatchPtr();
}

ServerConnection::ServerConnection(FileSystem& fileSystem, HostFolders hostFolders)
    : files(fileSystem), folders(std::move(hostFolders)) {}

Status ServerConnection::CreateServer(WindowHandle host,
                                      const std::function<std::vector<std::string>()>& takeLines) {
  // An error is ignored: projects can be opened and built without the folder.
  (void)files.CreateFolders(folders.data);
  if (const Status attached = Attach(manager, kManagerClass); !attached) return attached;
  if (manager.Init(folders.application, folders.data, host) == 0) {
    // If nothing was logged, the cause is the configuration file.
    const std::vector<std::string> lines = takeLines();
    if (!lines.empty()) return ToError(lines.front());
    return DescribeConfigFile(files, folders.ConfigFile(files));
  }
  // Creates the placeholder project if no installed one was copied. If this fails, closing a
  // project simply leaves no project open.
  (void)WriteStandInProject(files, folders.data, FileNameOf(folders.data));
  return AttachComponents(host);
}

std::vector<std::string> ServerConnection::SetLimits(BuildLimits limits) {
  std::vector<std::string> problems;
  AddLimitSettings(limits, problems);
  std::string problem;
  hasJobs_ = !limits.jobs.empty();
  const int jobs = hasJobs_ ? ParseJobs(limits.jobs) : ReadJobsSetting(&problem);
  if (!problem.empty()) problems.push_back(std::move(problem));
  tools.SetJobs(jobs > 0 ? jobs : CountMachineJobs());
  if (limits.joinsJobserver && !hasJobs_) {
    const std::string why = tools.JoinJobserver(jobs);
    if (!why.empty()) problems.push_back("The jobserver of make is not used: " + why + ".");
    hasJobs_ = !why.empty() || FindMakeJobs(OrEmpty(std::getenv("MAKEFLAGS"))) > 0;
  }
  const MemoryAmount memory = ParseMemory(limits.memory);
  tools.SetStartLimits(ParseLoad(limits.load), memory.megabytes, memory.percent);
  inspector.SetFailureLimit(ParseFailures(limits.failures));
  return problems;
}

void ServerConnection::AdoptLauncher() {
  if (hasJobs_) return;
  std::string launcher = manager.GetPropertyValue("Application", "Build", "Launcher");
  if (launcher == launcher_) return;
  launcher_ = std::move(launcher);
  tools.SetJobs(DefaultJobs(launcher_));
}

Status ServerConnection::AttachComponents(WindowHandle host) {
  if (const Status attached = Attach(tools, kToolsClass); !attached) return attached;
  tools.InitTools(folders.application, folders.data, host);
  if (const Status called = StatusOf(tools, kToolsClass); !called) return called;
  tools.SetJobs(DefaultJobs());
  manager.InitToolManager(tools.GetDispatch());
  if (const Status called = StatusOf(manager, kManagerClass); !called) return called;
  if (const Status attached = Attach(inspector, kInspectorClass); !attached) return attached;
  if (inspector.Attach(manager.GetDispatch()) == 0) {
    return Error{ErrorCode::NotFound, "it belongs to another server", kInspectorClass};
  }
  options.AttachDispatch(inspector.GetPropertyManager().Get(), true);
  inspector.SetDefinitionFolders(folders.Definitions(), HostFolders::kProjectDefinitions);
  inspector.SetStateFolder(folders.state + "\n" + SettingsFolders::FromEnvironment().user);
  return {};
}

Status ServerConnection::CheckInstallation() {
  const std::string problem = inspector.GetInstallationProblem();
  return problem.empty() ? Status() : ToError(problem);
}

bool ServerConnection::IsOwnDefinition(const Error& error) const {
  const std::string folder = folders.Definitions();
  return !folder.empty() && error.place.starts_with(AddSeparator(folder));
}

int ServerConnection::CountWork(const BuildRequest& request) {
  return static_cast<int>(ListWork(request, ParseStatus(inspector.GetStatus())).size());
}

// Returns the outputs of the tools that a build would run.
std::vector<std::string> ServerConnection::ListWork(const BuildRequest& request,
                                                    const std::vector<ApplicationStatus>& status) {
  const auto chosen = std::find_if(status.begin(), status.end(), [&](const auto& each) {
    return each.path == request.application;
  });
  std::vector<std::string> outputs;
  for (const ApplicationStatus& each : status) {
    const bool isUsed =
        chosen != status.end() &&
        std::find(chosen->uses.begin(), chosen->uses.end(), each.label) != chosen->uses.end();
    const bool isChosen = request.application.empty() || each.path == request.application;
    // Applications used by others are brought up to date even by a rebuild.
    const bool isCounted = isUsed || (isChosen && request.work != BuildWork::Rebuild);
    if (!isCounted) continue;
    for (const StaleNode& node : each.stale) {
      if (!node.tool.empty()) outputs.push_back(node.outputFile);
    }
  }
  if (request.work != BuildWork::Rebuild) return outputs;
  const std::string lines = inspector.GetBuildInputs();
  for (const ApplicationInputs& each : ParseBuildInputs(lines)) {
    const bool wanted = request.application.empty() || each.application == request.application;
    if (wanted) outputs.insert(outputs.end(), each.outputs.begin(), each.outputs.end());
  }
  return outputs;
}

WorkEstimate ServerConnection::EstimateWork(const BuildRequest& request) {
  return EstimateWork(request, inspector.GetStatus());
}

std::optional<WorkEstimate> ServerConnection::EstimateWorkFor(const BuildRequest& request,
                                                              std::chrono::milliseconds time,
                                                              bool begins) {
  const std::string status =
      inspector.GetStatusFor(static_cast<std::int32_t>(time.count()), begins ? 1 : 0);
  if (status.empty()) return std::nullopt;
  return EstimateWork(request, status);
}

WorkEstimate ServerConnection::EstimateWork(const BuildRequest& request,
                                            const std::string& status) {
  const std::vector<std::string> outputs = ListWork(request, ParseStatus(status));
  WorkEstimate work(static_cast<int>(outputs.size()));
  work.jobs = std::max(tools.GetJobs(), 1);
  std::unordered_map<std::string, WorkEstimate::Duration> known;
  for (ApplicationTimes& each : ParseBuildTimes(inspector.GetBuildTimes())) {
    for (OutputTime& tool : each.tools) {
      known[std::move(tool.output)] = {tool.time, tool.path == each.application};
    }
  }
  for (const std::string& output : outputs) {
    const auto found = known.find(output);
    const bool isKnown = found != known.end() && found->second.time.count() > 0;
    if (!isKnown) {
      work.durations.clear();
      break;
    }
    work.durations.insert(*found);
  }
  return work;
}

std::vector<ApplicationStatus> ServerConnection::GetStatus(std::string* problem) {
  const std::string status = inspector.GetStatus();
  if (problem != nullptr) *problem = ParseStatusProblem(status);
  return ParseStatus(status);
}

std::string ServerConnection::FindCommandProblem(const std::string& application,
                                                 const std::string& output) {
  const auto input = ParseXml(inspector.GetToolInput(application, output));
  if (input == nullptr) return {};
  const CXmlNode* const values = input->FindChild("#CDATA");
  const std::vector<std::string> problems = SplitLines(tools.GetCommandProblems(
      GetAttribute(input.get(), "Tool"), GetAttribute(input.get(), "Files"),
      values == nullptr ? "" : values->GetValue()));
  return problems.empty() ? std::string() : problems.front();
}

std::vector<ApplicationSummary> ServerConnection::GetSummaries() {
  std::vector<ApplicationSummary> list;
  for (const ApplicationEntry& each : ListApplications(inspector)) {
    list.push_back({each.label, inspector.GetBuildInfos(each.path, each.output)});
  }
  return list;
}

std::string ServerConnection::FindMissingProgram(const std::vector<ApplicationStatus>& status) {
  std::set<std::string> asked;
  for (const ApplicationStatus& application : status) {
    for (const StaleNode& node : application.stale) {
      if (node.tool.empty() || !asked.insert(node.tool).second) continue;
      std::string program = tools.MissingProgram(node.tool);
      if (!program.empty()) return program;
    }
  }
  return {};
}

BuildGaps ServerConnection::FindGaps(const std::string& application) {
  return ParseBuildGaps(inspector.GetBuildGaps(), application);
}

void ServerConnection::AddUnknownLibraries(const std::string& application, BuildGaps& gaps) {
  const std::vector<ApplicationEntry> all = ListApplications(inspector);
  for (const ApplicationEntry& each : all) {
    const bool isWanted =
        application.empty() || each.path == application || EqualNoCase(each.label, application);
    const auto input = ParseXml(inspector.GetToolInput(each.path, each.output));
    const CXmlNode* const values = input == nullptr ? nullptr : input->FindChild("#CDATA");
    if (!isWanted || values == nullptr) continue;
    const std::string names =
        OptionValues::FromText(values->GetValue()).Get("Application", "Linker", "Applications");
    for (const std::string& name : FindUnknownLibraries(names, all)) {
      gaps.gaps.push_back({each.label, each.label, each.path, name, "unknown-library", true});
    }
  }
}

std::vector<std::string> ServerConnection::GetIgnoredDefinitions() {
  return SplitLines(inspector.GetIgnoredDefinitions());
}

std::vector<std::string> ServerConnection::GetDefinitionErrors() {
  std::vector<std::string> lines = SplitLines(options.GetDefinitionErrors());
  for (std::string& line : SplitLines(tools.GetDefinitionErrors()))
    lines.push_back(std::move(line));
  for (const std::string& file : GetIgnoredDefinitions()) {
    lines.push_back(file + ": ignored, because the project's folder is not trusted");
  }
  return lines;
}

}  // namespace tarn::host
