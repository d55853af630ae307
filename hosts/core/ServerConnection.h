#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/core/BuildGaps.h"
#include "hosts/core/BuildTimes.h"
#include "hosts/core/HostFolders.h"
#include "hosts/core/Jobs.h"
#include "hosts/core/ProjectStatus.h"
#include "hosts/core/ServerDrivers.h"

namespace tarn::host {

enum class BuildWork { Build, Rebuild, Clean };

struct BuildRequest {
  BuildWork work = BuildWork::Build;
  std::string application;  // path; empty: the whole project
  std::string action = {};  // of the application, to be carried out instead of a build
};

struct ApplicationSummary {
  std::string label;
  std::string infos;
};

// The server of a host with its components, and queries about the open project that need several
// of them. Main thread only.
//
// Calling sequence: CreateServer(), then everything else. Before it, all calls return 0 or an empty
// string.
class ServerConnection {
 public:
  // `fileSystem` is borrowed and must outlive this object.
  ServerConnection(FileSystem& fileSystem, HostFolders hostFolders);
  ServerConnection(const ServerConnection&) = delete;
  ServerConnection& operator=(const ServerConnection&) = delete;

  // Creates the server and its components. `host` receives the server's messages; `takeLines`
  // returns the lines of the log that it has received. On error the text describes the fault of the
  // installation.
  Status CreateServer(WindowHandle host,
                      const std::function<std::vector<std::string>()>& takeLines);
  // Returns the fault of the installation that prevents builds, if there is one.
  Status CheckInstallation();
  // Returns true if the error is in a file of the user's own definitions, not of the installation.
  bool IsOwnDefinition(const Error& error) const;

  // Applies the limits to the following builds. Returns a sentence about each setting of the user
  // that is passed over.
  std::vector<std::string> SetLimits(BuildLimits limits);
  // Without a number of jobs in the limits, sets that of the launcher in the options of the current
  // node's application, which may run compilers on other machines.
  void AdoptLauncher();

  const HostFolders& GetFolders() const { return folders; }
  ProjectManagerDriver& Manager() { return manager; }
  InspectorDriver& Inspector() { return inspector; }
  ToolManagerDriver& Tools() { return tools; }
  OptionsDriver& Options() { return options; }

  // Returns what a build of the application with this label or path would leave out; an empty key
  // means the whole project. All options must have been published.
  BuildGaps FindGaps(const std::string& application);
  // Adds the names in Linker.Applications that are no application's. Without them the link fails.
  void AddUnknownLibraries(const std::string& application, BuildGaps& gaps);
  // Returns the number of tools that a build would run now. Expensive: the server checks every
  // file.
  int CountWork(const BuildRequest& request);
  // Returns the same with the durations of the last runs, and the number of jobs.
  WorkEstimate EstimateWork(const BuildRequest& request);
  // Works for about that time. Returns nullopt if another call, without `begins`, is needed.
  std::optional<WorkEstimate> EstimateWorkFor(const BuildRequest& request,
                                              std::chrono::milliseconds time, bool begins);
  // Returns the outdated nodes, including reasons that only the host can find. `problem`, if given,
  // receives the reason if the applications can't be built at all.
  std::vector<ApplicationStatus> GetStatus(std::string* problem = nullptr);
  // Returns why the tool for this output can't be run, such as a required option that is not set;
  // an empty string if it can.
  std::string FindCommandProblem(const std::string& application, const std::string& output);
  // Returns the applications, each with its tool's summary of the output; empty if there is none.
  std::vector<ApplicationSummary> GetSummaries();
  // Returns a program that a tool needs and that is not installed; an empty string if none is
  // missing.
  std::string FindMissingProgram(const std::vector<ApplicationStatus>& status);
  // Returns the errors in option and tool definition files, one per line; empty if there are none.
  std::vector<std::string> GetDefinitionErrors();
  // Returns the definition files of the open project that are ignored because it isn't trusted.
  std::vector<std::string> GetIgnoredDefinitions();

 protected:
  FileSystem& files;
  HostFolders folders;

  // Members are released in reverse order: the manager uses the tools until it is destroyed.
  ToolManagerDriver tools;
  ProjectManagerDriver manager;
  InspectorDriver inspector;
  OptionsDriver options;

 private:
  Status AttachComponents(WindowHandle host);
  std::vector<std::string> ListWork(const BuildRequest& request,
                                    const std::vector<ApplicationStatus>& status);
  WorkEstimate EstimateWork(const BuildRequest& request, const std::string& status);

  bool hasJobs_ = false;  // the limits or make have a number of jobs
  std::string launcher_;  // whose number of jobs is set; empty: that of the environment
};

}  // namespace tarn::host
