#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/frame/BuildInformationStore.h"
#include "hosts/frame/BuildRestore.h"
#include "hosts/frame/ProjectTree.h"
#include "hosts/frame/ServerDrivers.h"
#include "platform/files/FileSystem.h"

namespace tarn::host {

// Keeps what the tools reported of a project beyond the end of the process: takes it from the tool
// manager as the tools end, writes it beside the project, and gives it back to the project at the
// next opening. A state file that isn't whole costs a rebuild and nothing else.
//
// Borrows the drivers and the disk. On the host's thread.
class StateKeeper {
 public:
  StateKeeper(FileSystem& fileSystem, ProjectManagerDriver& managerDriver,
              InspectorDriver& inspectorDriver, ToolManagerDriver& toolDriver);

  // Reads the state of a project; call Restore once all its nodes are published.
  void Load(const std::string& projectPath);
  // Hands the records that still hold to the project. The active application is the same
  // afterwards.
  void Restore();
  // The same in pieces of a few milliseconds, for a host that has a window: one after the other
  // until it is false. The active application is the same behind each of them.
  void BeginRestore();
  bool ContinueRestore();
  // False when there is nothing to hand over.
  bool HasRecords() const { return store.GetCount() != 0; }

  // A tool starts on this output. Unless it reports it, nothing is known of the output afterwards:
  // a tool that fails or is stopped may leave half of one.
  void NoteStart(const std::string& output);
  // A tool has ended well: hands what it reported to the project and notes it. The application
  // whose part it made counts as not built from then on: times are whole seconds, so an output that
  // was linked in the same second would pass for newer than its part.
  void TakeBuildInformation();

  // Completes the noted records. Records whose output is gone are dropped: after a clean all of
  // them, else those that no node of the project makes now.
  void Complete(bool afterClean);
  // Writes the state when something changed since it was read or written.
  Status Write();

  // Of the file as it was read; Good also when there was none.
  StateVerdict GetVerdict() const { return verdict; }
  // Records that didn't hold any more when they were restored and that no tool has renewed.
  bool IsCommandChanged(std::string_view application, std::string_view output) const;
  // What the tool said of an output, for people; empty when nothing is known.
  std::string GetInfos(std::string_view application, std::string_view output) const;

 private:
  class InputIndex;
  struct Reported {
    std::string applicationPath;
    BuildRecord record;
  };

  void NoteReports(const std::string& xml, const std::string& applicationPath);
  void OutdateApplication(const std::string& applicationPath, std::size_t firstReport);
  const ApplicationEntry* FindApplication(const std::string& applicationPath);
  void CompleteReports(const InputIndex& places);
  void DropGone(const InputIndex& places, bool afterClean);
  std::vector<ToolCommand> AskCommands(std::string_view application, std::string_view output);

  FileSystem& files;
  ProjectManagerDriver& manager;
  InspectorDriver& inspector;
  ToolManagerDriver& tools;

  std::string statePath;
  std::string projectName;
  BuildInformationStore store;
  std::unique_ptr<RecordRestorer> restorer;  // while records are handed over
  bool isSelectionMoved = false;             // by that, in this piece
  StateVerdict verdict = StateVerdict::Good;
  std::set<std::string> dropped;  // application, line feed, output
  // Of the build that runs.
  std::vector<Reported> reports;
  std::vector<ApplicationEntry> applications;
  std::set<std::string> unfinished;  // outputs
  std::set<std::string> outdated;    // like `dropped`: applications with newer parts
};

// The commands of the tool manager's answer, in order.
std::vector<ToolCommand> ParseCommands(const std::string& xml);

}  // namespace tarn::host
