#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "builder/BuildRecords.h"
#include "builder/MtimeCache.h"
#include "builder/OutputIndex.h"
#include "builder/RecordCheck.h"
#include "builder/ToolCommands.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/TypesByExtension.h"

namespace tarn {

class RecordRestore;

// What is known about the outputs of a project: the reports of the tools that made them, the build
// records and their journal, the times of the files, and which node has which output. Writes the
// results to the nodes: the attributes LastBuilt, Info and Desc, and the list of dependencies.
//
// Borrows everything it is constructed from. Main thread only. File errors are reported by the
// journal, see BuildRecords.
class BuildInformation {
 public:
  BuildInformation(ProjectServices& projectServices, ProjectState& projectState,
                   const ProjectPaths& projectPaths, TypesByExtension& typesByExtension);
  ~BuildInformation();
  BuildInformation(const BuildInformation&) = delete;
  BuildInformation& operator=(const BuildInformation&) = delete;

  // --- Reports from tools (BuildInformation.cpp) ---
  //
  // Processes a report about outputs. Returns 0 if no application is active.
  std::int32_t SetBuildInfo(const char* filepath, const char* xmlinfo);
  // Writes the result of a build to the node's attributes; null `infos` marks it as not built.
  std::int32_t RecordBuildInfo(CXmlNode* node, const char* infos, const char* date);
  // Sets the application that reports are attributed to, instead of the active one; nullptr for
  // none. Cleared by InvalidateNode.
  void SetWalkApplication(CXmlNode* application) { walkApplication_ = application; }
  CXmlNode* GetWalkApplication() const { return walkApplication_; }
  // Sets the node whose tool has just run, whose report decides about no other node; nullptr for
  // none. Only compared, so the node may have been freed.
  void SetReportingNode(const CXmlNode* node) { reportingNode_ = node; }

  // --- Outputs ---
  //
  // Returns the node that a report about this output is attributed to, or nullptr.
  CXmlNode* FindNodeByOutput(CXmlNode& application, const char* outputFile);
  // Returns the nodes of a published application that are built into the same output.
  std::vector<SharedOutput> FindSharedOutputs(CXmlNode& application);
  // Returns true if several nodes of the project produce this listing file.
  bool IsSharedListing(const std::string& path);
  // Returns the nodes whose source appears again later in the tree, where it is built.
  std::unordered_set<const CXmlNode*> FindRepeatedNodes(CXmlNode& application);

  // --- Build records (BuildState.cpp): what each output was made from ---
  //
  // A journal makes them persistent.
  BuildRecords& GetBuildRecords() { return buildRecords_; }
  // Reads the journal at `path` and appends to it until the project is closed.
  StateVerdict OpenBuildState(const std::string& path);
  // Attaches valid records to the published nodes for roughly this long. Returns false if some are
  // left for another call.
  bool RestoreFor(std::chrono::milliseconds time);
  // Does the same for one node.
  void RestoreRecord(CXmlNode& node, const std::string& owner);
  // Restores records of an application whose nodes now have different outputs, some of which may
  // have been built before.
  void RestoreRecords(CXmlNode& application);
  // Writes the remaining records after a build. Returns the error, or an empty string.
  std::string FinishBuildState(bool mayShrink);

  // --- Caches ---
  MtimeCache& GetMtimes() { return mtimes_; }
  ToolCommands& GetToolCommands() { return toolCommands_; }
  RecordCheck& GetRecordCheck() { return recordCheck_; }
  // Invalidates cached file times and tool definitions, so that both are checked again.
  void InvalidateMtimes();
  // Drops all pointers to the node and its descendants, which are about to be freed.
  void InvalidateNode(const CXmlNode& node);

 private:
  bool TakeBuildRecords(const std::string& xmlinfo);
  const OutputIndex& IndexOutputs(CXmlNode& application);
  void ClearOldOutputs();
  // Converts a tool's report to the dependency list of its node.
  std::unique_ptr<CXmlNode> TakeDependencies(std::unique_ptr<CXmlNode> record);
  void ReplaceDependencies(CXmlNode& node, std::unique_ptr<CXmlNode> list);

  ProjectServices& services_;
  ProjectState& state_;
  const ProjectPaths& paths_;
  TypesByExtension& extensions_;
  FileSystem& files_;
  const NodeTypes& types_;
  const ProjectViews& views_;

  CXmlNode* walkApplication_ = nullptr;  // application being built
  const CXmlNode* reportingNode_ = nullptr;
  MtimeCache mtimes_;
  BuildRecords buildRecords_;
  ToolCommands toolCommands_;
  RecordCheck recordCheck_;
  std::unique_ptr<RecordRestore> recordRestore_;  // non-null while one is running

  std::unordered_map<const CXmlNode*, OutputIndex> outputIndexes_;  // by application
  // Number of nodes per listing path; nullopt until needed.
  std::optional<std::unordered_map<std::string, int>> listings_;
  std::unordered_set<const CXmlNode*> withoutShared_;  // applications without shared outputs
  std::uint64_t outputIndexEpoch_ = 0;                 // of the three caches above
};

}  // namespace tarn
