#pragma once

#include <cstdint>
#include <string>

#include "automation/ProjectManager.h"

namespace tarn {

// A companion of the manager, for hosts that explain: the tree as text, what is out of date and
// why, what a tool would be given, where an option's value comes from. It changes nothing in a
// project except in CopyConfiguration; it selects and publishes nodes, as a user's clicks would.
//
// Lives on the manager's thread and keeps the manager alive. Before Attach every call gives 0 or an
// empty text.
class CProjectInspector : public DispatchObject<CProjectInspector> {
 public:
  static constexpr const char* kProgId = "TarnProjectManager.ProjectInspector";

  static const DispatchTable<CProjectInspector>& Table();

  // 0 when it is no manager of this library.
  std::int32_t Attach(IDispatch* managerObject);
  // Every node gets its option values and derived attributes now.
  std::int32_t PublishAll();
  // The same for about so many milliseconds; 0 when something is left for another call.
  std::int32_t PublishFor(std::int32_t milliseconds);
  // The tree as XML text, without what is only kept in memory for options.
  std::string GetTree();
  // Per application, in build order, the applications that it uses and the nodes that have work to
  // do, each with its reason. The top element has a Problem if the applications have no order.
  std::string GetStatus();
  // Lines: "A <application>", then "N <hash> <output file>" for each node with a tool. The hash is
  // one of all that the tool would be given.
  std::string GetBuildInputs();
  // What the node's tool would be given; empty when there is no such node.
  std::string GetToolInput(const char* applicationHeader, const char* outputFile);
  DispatchPtr GetPropertyManager();
  // Makes the node current that has this path (absolute, or relative to the current folder or the
  // project's), else the one with this label: of the application with this label or path, of the
  // whole project for an empty one. Gives how many there are; of several none is made current.
  std::int32_t SelectNodeByKey(const char* key, const char* application);
  // Makes the node at a place of GetTree current: the numbers of the children on the way from the
  // project, from 0 on, with slashes between; empty for the project. 0 when there is none, or none
  // was made current.
  std::int32_t SelectNodeByPlace(const char* place);
  // Remembers the current node.
  std::int32_t NoteCurrentNode();
  // Makes that node current again; 0 when nodes were taken out of the tree since, or none was made
  // current.
  std::int32_t SelectNotedNode();
  // A number that is another one as soon as a save would write something else.
  std::int32_t GetChangeCount();
  // The project's files as a save would write them now: of each the count of its bytes, a blank,
  // its path and a line feed, then the bytes. Empty for the default project.
  std::string GetFileTexts();
  // The stored values of one option from the outermost level to the current node.
  std::string ExplainOption(const char* set, const char* section, const char* property);
  // Reads the definitions of options and tools again if their files changed, for a host that runs
  // for long; 1 if so. Nothing counts as built then until its records are handed over again.
  std::int32_t RefreshDefinitions();
  // Copies the options that are stored for the configuration `from` to `to`, at every node of the
  // active application, in place of what is stored for `to`; an empty `from` stores none. At nodes
  // outside of applications `to` only receives what it doesn't have. Neither the configuration in
  // force nor build records change. 0 if there is no active application, `to` is empty or in force,
  // or the project can't be changed now.
  std::int32_t CopyConfiguration(const char* from, const char* to);
  // The program that the import of older projects needs and this machine hasn't got, or empty.
  std::string MissingImportProgram();
  // The targets that an application can be made for; see DescribeTargets.
  std::string GetTargets();
  // The log file of the running or the last build; it grows while a build runs.
  std::string GetLogFile();

  // InspectorReports.cpp: rows of the reports as XML text, as the windows would show them.

  // The globals of the application with this label or path, of the active one for an empty key;
  // sorted by the column with this caption, in the file's order for none. The top element tells the
  // file and whether it could be read.
  std::string GetGlobals(const char* application, const char* column);
  // The build report of a log, given as the text of its file.
  std::string GetReport(const char* log);

 private:
  CProjectModel* Model() const;

  const ServerLock lock;
  DispatchPtr manager;
  CXmlNode* notedNode = nullptr;
  std::uint64_t notedEpoch = 0;  // of the tree
};

}  // namespace tarn
