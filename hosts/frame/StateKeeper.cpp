#include "hosts/frame/StateKeeper.h"

#include <algorithm>
#include <chrono>
#include <unordered_map>

#include "hosts/frame/LogEntry.h"
#include "hosts/frame/ProjectFile.h"
#include "platform/paths/Paths.h"
#include "platform/text/Text.h"

namespace tarn::host {

namespace {

// How long a piece of a restore may take.
constexpr std::chrono::milliseconds kRestoreTime(5);

std::string KeyOf(std::string_view application, std::string_view output) {
  return std::string(application).append("\n").append(output);
}

}  // namespace

// Which inputs belong to an output. An output that two applications name is told apart by the
// application that was being built.
class StateKeeper::InputIndex {
 public:
  struct Place {
    std::string_view application;
    std::uint64_t signature = 0;
  };

  explicit InputIndex(const std::vector<ApplicationInputs>& inputs) {
    for (const ApplicationInputs& each : inputs) {
      for (const BuildInput& node : each.nodes) {
        places[node.output].push_back({each.application, node.signature});
      }
    }
  }

  bool Has(std::string_view output) const { return places.contains(output); }

  // `application` may be null when nobody knows; an output of two applications has no place then.
  const Place* Find(const std::string& output, const ApplicationEntry* application) const {
    const auto found = places.find(output);
    if (found == places.end()) return nullptr;
    if (found->second.size() == 1) return &found->second.front();
    if (application == nullptr) return nullptr;
    // The last node of an application that names the output is the one that was reported.
    const auto place = std::find_if(
        found->second.rbegin(), found->second.rend(),
        [application](const Place& each) { return each.application == application->label; });
    return place == found->second.rend() ? nullptr : &*place;
  }

 private:
  std::unordered_map<std::string_view, std::vector<Place>> places;
};

StateKeeper::StateKeeper(FileSystem& fileSystem, ProjectManagerDriver& managerDriver,
                         InspectorDriver& inspectorDriver, ToolManagerDriver& toolDriver)
    : files(fileSystem), manager(managerDriver), inspector(inspectorDriver), tools(toolDriver) {}

void StateKeeper::Load(const std::string& projectPath) {
  restorer.reset();
  statePath = StatePathOf(projectPath);
  projectName = FileNameOf(projectPath);
  dropped.clear();
  reports.clear();
  applications.clear();
  unfinished.clear();
  outdated.clear();
  auto bytes = files.ReadWholeFile(statePath);
  const bool missing = !bytes && bytes.GetError().code == ErrorCode::NotFound;
  verdict = store.Load(bytes ? std::move(*bytes) : std::string(), projectName);
  if (missing) verdict = StateVerdict::Good;
}

void StateKeeper::Restore() {
  BeginRestore();
  while (ContinueRestore()) {
  }
}

void StateKeeper::BeginRestore() {
  restorer.reset();
  if (store.GetCount() == 0) return;
  restorer = std::make_unique<RecordRestorer>(
      store, inspector.GetBuildInputs(),
      [this](auto application, auto output) { return AskCommands(application, output); },
      [this](const std::string& application, const std::string& xml) {
        isSelectionMoved = true;
        manager.SelectApplication(application);
        manager.SetBuildInfo(xml);
      });
}

bool StateKeeper::ContinueRestore() {
  if (!restorer) return false;
  const std::string before = manager.GetSelectedApplication();
  const auto end = std::chrono::steady_clock::now() + kRestoreTime;
  bool isMore = true;
  isSelectionMoved = false;
  while (isMore && std::chrono::steady_clock::now() < end) isMore = restorer->Step();
  if (isSelectionMoved && !before.empty()) inspector.SelectNodeByKey(before);
  if (isMore) return true;
  for (const DroppedRecord& each : restorer->GetDropped()) {
    dropped.insert(KeyOf(each.application, each.output));
  }
  restorer.reset();
  return false;
}

void StateKeeper::NoteStart(const std::string& output) {
  if (!output.empty()) unfinished.insert(output);
}

void StateKeeper::TakeBuildInformation() {
  const std::string xml = tools.TakeBuildInformation();
  if (xml.empty()) return;
  const std::string applicationPath = manager.GetSelectedApplication();
  const std::size_t firstReport = reports.size();
  NoteReports(xml, applicationPath);
  manager.SetBuildInfo(xml);
  OutdateApplication(applicationPath, firstReport);
}

void StateKeeper::NoteReports(const std::string& xml, const std::string& applicationPath) {
  const auto root = ParseXml(xml);
  if (root == nullptr) return;
  const ApplicationEntry* const application = FindApplication(applicationPath);
  for (const CXmlNode* node : root->GetChildren()) {
    if (node->GetType() != XmlElement) continue;
    Reported& report = reports.emplace_back();
    report.applicationPath = applicationPath;
    report.record.output = AttributeOf(node, "Header");
    unfinished.erase(report.record.output);
    report.record.infos = AttributeOf(node, "Infos");
    report.record.date = AttributeOf(node, "Date");
    for (const CXmlNode* dependency : node->GetChildren()) {
      const char* path = dependency->GetAttrValue("Header");
      if (path != nullptr) report.record.dependencies.emplace_back(path);
    }
    // Now, since all of them at the end of a large build would be a long wait.
    if (application != nullptr) {
      report.record.commands = AskCommands(application->label, report.record.output);
    }
  }
}

void StateKeeper::OutdateApplication(const std::string& applicationPath, std::size_t firstReport) {
  const ApplicationEntry* application = FindApplication(applicationPath);
  if (application == nullptr || application->output.empty()) return;
  const std::string key = KeyOf(application->label, application->output);
  for (std::size_t i = firstReport; i < reports.size(); ++i) {
    if (EqualNoCase(reports[i].record.output, application->output)) {
      outdated.erase(key);
      return;
    }
  }
  if (!outdated.insert(key).second) return;
  const auto root = CXmlNode::CreateNode("I");
  CXmlNode* record = root->AddChild("F");
  record->AddAttr("Header", application->output);
  record->AddAttr("Infos", "");
  record->AddAttr("Date", "");
  manager.SetBuildInfo(root->ToString(g_xmlDisplayOptions));
}

const ApplicationEntry* StateKeeper::FindApplication(const std::string& applicationPath) {
  if (applications.empty()) applications = ProjectTree(inspector.GetTree()).GetApplications();
  const auto found =
      std::find_if(applications.begin(), applications.end(),
                   [&](const ApplicationEntry& each) { return each.path == applicationPath; });
  return found == applications.end() ? nullptr : &*found;
}

void StateKeeper::CompleteReports(const InputIndex& places) {
  for (Reported& report : reports) {
    const auto* place = places.Find(report.record.output, FindApplication(report.applicationPath));
    if (place == nullptr) continue;
    report.record.signature = place->signature;
    store.Put(place->application, report.record);
    dropped.erase(KeyOf(place->application, report.record.output));
  }
  reports.clear();
  applications.clear();
}

void StateKeeper::DropGone(const InputIndex& places, bool afterClean) {
  store.Keep([&](std::string_view application, std::string_view output) {
    const bool isUnknown =
        unfinished.contains(std::string(output)) || outdated.contains(KeyOf(application, output));
    if (isUnknown) return false;
    return (!afterClean && places.Has(output)) || files.Exists(std::string(output));
  });
  outdated.clear();
  unfinished.clear();
}

void StateKeeper::Complete(bool afterClean) {
  if (reports.empty() && unfinished.empty() && !afterClean) return;
  const std::string lines = inspector.GetBuildInputs();
  const std::vector<ApplicationInputs> inputs = ParseBuildInputs(lines);
  const InputIndex places(inputs);
  CompleteReports(places);
  DropGone(places, afterClean);
}

Status StateKeeper::Write() {
  if (!store.IsChanged()) return {};
  Status written;
  if (store.GetCount() != 0) {
    written = files.WriteWholeFile(statePath, store.Save(projectName));
  } else if (files.Exists(statePath)) {
    written = files.RemoveFile(statePath);
  }
  if (written) store.MarkSaved();
  return written;
}

bool StateKeeper::IsCommandChanged(std::string_view application, std::string_view output) const {
  return dropped.contains(KeyOf(application, output));
}

std::string StateKeeper::GetInfos(std::string_view application, std::string_view output) const {
  const std::size_t record = store.Find(application, output);
  return record == BuildInformationStore::kNone ? std::string()
                                                : std::string(store.GetInfos(record));
}

std::vector<ToolCommand> StateKeeper::AskCommands(std::string_view application,
                                                  std::string_view output) {
  const auto input =
      ParseXml(inspector.GetToolInput(std::string(application), std::string(output)));
  if (input == nullptr) return {};
  const CXmlNode* options = input->FindChild("#CDATA");
  return ParseCommands(tools.GetCommandLines(AttributeOf(input.get(), "Tool"),
                                             AttributeOf(input.get(), "Files"),
                                             options == nullptr ? "" : options->GetValue()));
}

std::vector<ToolCommand> ParseCommands(const std::string& xml) {
  std::vector<ToolCommand> commands;
  const auto root = ParseXml(xml);
  if (root == nullptr) return commands;
  for (const CXmlNode* node : root->GetChildren()) {
    if (node->NameView() != "Command") continue;
    ToolCommand& command = commands.emplace_back();
    command.program = AttributeOf(node, "Program");
    command.folder = AttributeOf(node, "Folder");
    for (const CXmlNode* argument : node->GetChildren()) {
      if (argument->NameView() == "A") command.arguments.push_back(AttributeOf(argument, "V"));
    }
  }
  return commands;
}

}  // namespace tarn::host
