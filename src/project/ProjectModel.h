#pragma once

#include <cstdint>
#include <string>

#include "project/DerivedData.h"
#include "project/FileProtection.h"
#include "project/HostLink.h"
#include "project/Importer.h"
#include "project/ItemAdder.h"
#include "project/NodeOptions.h"
#include "project/ProjectLifecycle.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/Publisher.h"
#include "project/TreeEditor.h"
#include "project/TreeLoader.h"
#include "project/TreeSaver.h"
#include "project/TypesByExtension.h"

namespace tarn {

// The project document: the files of a project, and the tree in memory with its options and derived
// attributes. One per manager; projects are opened and closed in it. Creates and connects the parts
// that do the work, and gives access to them; only the most frequent operations have a shortcut
// here. A Builder builds the project.
//
// Calling sequence: construct it, set the services, open a project.
//
// Threads: everything runs on the main thread (the one that created the model).
//
// Errors: operations return 1 if done and 0 if not, and report most failures to the log only.
//
// Reentrancy: messages to the host are synchronous, and a handler may call any operation. Therefore
// an operation must not use a node after sending a message unless `treeEpoch` or `projectEpoch`
// shows that the tree has not changed in the meantime.
class CProjectModel {
 public:
  // `disk` is borrowed for the lifetime of the model.
  explicit CProjectModel(FileSystem& disk);
  // A builder must have been destroyed before.
  ~CProjectModel();
  CProjectModel(const CProjectModel&) = delete;
  CProjectModel& operator=(const CProjectModel&) = delete;

  // What the parts use; set by the owner before the first operation.
  ProjectServices& Services() { return services; }
  const ProjectServices& Services() const { return services; }
  const NodeTypes& Types() const { return services.types; }
  FileSystem& GetFiles() const { return services.files; }

  // The parts.
  ProjectState& State() { return state; }
  const ProjectState& State() const { return state; }
  const ProjectPaths& Paths() const { return paths; }
  HostLink& Host() { return host; }
  TypesByExtension& Extensions() { return extensions; }
  FileProtection& Protection() { return protection; }
  const FileProtection& Protection() const { return protection; }
  DerivedData& Derived() { return derived; }
  TreeSaver& Saver() { return saver; }
  const TreeSaver& Saver() const { return saver; }
  TreeLoader& Loader() { return loader; }
  Publisher& Publishing() { return publisher; }
  const Publisher& Publishing() const { return publisher; }
  Importer& Import() { return importer; }
  const Importer& Import() const { return importer; }
  ProjectLifecycle& Lifecycle() { return lifecycle; }
  TreeEditor& Editor() { return editor; }
  NodeOptions& Options() { return options; }
  ItemAdder& Items() { return items; }

  // State of the open project; see ProjectState.
  const std::string& GetProjectPath() const { return state.projectPath; }
  const std::string& GetProjectFolder() const { return state.projectFolder; }
  bool IsOpen() const { return state.isOpen; }
  bool IsDefaultProject() const { return state.IsDefaultProject(); }
  bool IsModified() const { return state.modified != 0; }
  std::uint64_t GetTreeEpoch() const { return state.treeEpoch; }
  CXmlNode& GetProjectRoot() { return *state.projectRoot; }
  CXmlNode* GetActiveApplication() { return state.activeApplication; }
  CXmlNode* GetOwnCurrentNode() { return state.currentNode; }
  CXmlNode* GetCurrentNode() { return state.GetCurrentNode(); }

  // See Publisher.
  void SetCurrentNode(CXmlNode* node) { publisher.SetCurrentNode(node); }
  void PublishAll() { publisher.PublishAll(); }

  // See ProjectLifecycle.
  std::int32_t OpenProject(const char* path, std::int32_t isDefault) {
    return lifecycle.OpenProject(path, isDefault);
  }
  std::int32_t CloseProject() { return lifecycle.CloseProject(); }
  std::int32_t SaveProject() { return lifecycle.SaveProject(); }

 private:
  // In the order in which they depend on each other.
  ProjectServices services;
  ProjectState state;
  ProjectPaths paths;
  HostLink host;
  TypesByExtension extensions;
  FileProtection protection;
  DerivedData derived;
  TreeLoader loader;
  TreeSaver saver;
  Publisher publisher;
  Importer importer;
  ProjectLifecycle lifecycle;
  TreeEditor editor;
  NodeOptions options;
  ItemAdder items;
};

}  // namespace tarn
