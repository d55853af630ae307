#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "project/FileProtection.h"
#include "project/HostLink.h"
#include "project/NewApplication.h"
#include "project/NodeOptions.h"
#include "project/ProjectLifecycle.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/Publisher.h"
#include "project/TreeEditor.h"
#include "project/TreeLoader.h"
#include "project/TypesByExtension.h"

namespace tarn {

// The parts that adding an item puts to work.
struct ItemAdderParts {
  ProjectServices& services;
  ProjectState& state;
  const ProjectPaths& paths;
  HostLink& host;
  TypesByExtension& extensions;
  FileProtection& protection;
  TreeLoader& loader;
  Publisher& publisher;
  ProjectLifecycle& lifecycle;
  TreeEditor& editor;
  NodeOptions& options;
};

// Adds existing files and applications to the tree (ItemAdder.cpp), and creates new applications,
// folders and projects (NewItem.cpp). Borrows everything; main thread only. Operations return 1 if
// done and 0 if not, and report errors to the log.
class ItemAdder {
 public:
  explicit ItemAdder(const ItemAdderParts& parts)
      : services_(parts.services),
        files_(parts.services.files),
        types_(parts.services.types),
        views_(parts.services.views),
        state_(parts.state),
        paths_(parts.paths),
        host_(parts.host),
        extensions_(parts.extensions),
        protection_(parts.protection),
        guard_(parts.protection.Guard()),
        loader_(parts.loader),
        publisher_(parts.publisher),
        lifecycle_(parts.lifecycle),
        editor_(parts.editor),
        options_(parts.options) {}

  // Adds a file or an application. An empty path asks the user for files; if the type is null, it
  // is determined by the file extension. For the type "DebugSrcFiles", `itempath` is a list of
  // lines.
  std::int32_t AddExistingItem(const char* itempath, const char* itemtype);
  // Lets the user select files and adds them.
  std::int32_t BrowseAndAddFiles();
  // Adds a folder for the type "Group", else an application that the user specifies in a dialog.
  std::int32_t AddNewItem(const char* itempath, const char* itemtype);
  // Returns a sentence for the user that says why AddNewItem would refuse this application; empty
  // if no obstacle is known.
  std::string FindApplicationProblem(const NewApplication& wanted);
  // Creates a project file at `path`, asking before it overwrites one; a null `path` runs the
  // wizard for a new application.
  std::int32_t NewProject(const char* path);

 private:
  CXmlNode* LoadAddTarget();
  const CXmlNode* TypeOfItem(const std::string& path, const char* itemtype);
  std::int32_t AddItem(const std::string& itempath, const char* itemtype, bool isJustMade);
  std::int32_t PlaceItem(CXmlNode& target, std::unique_ptr<CXmlNode> node);
  void FillItem(CXmlNode& node, const std::string& path);
  void WriteItemPaths(CXmlNode& node, const std::string& path) const;
  bool HoldsApplicationOf(const std::string& path) const;
  std::int32_t ReplaceSourceList(const std::string& lines);
  std::int32_t AddGroup();
  const CXmlNode* ProposeApplication(const std::string& itempath, const char* itemtype,
                                     NewApplication& wanted) const;
  std::int32_t PlaceInProject(std::unique_ptr<CXmlNode> node);
  std::int32_t PlaceInNewProject(const CXmlNode& node, const std::string& applicationFile,
                                 const std::string& projectFile);
  void SetUpApplication(const NewApplication& wanted);
  std::int32_t RunCobbler(const std::string& wizardPath);

  ProjectServices& services_;
  FileSystem& files_;
  const NodeTypes& types_;
  const ProjectViews& views_;
  ProjectState& state_;
  const ProjectPaths& paths_;
  HostLink& host_;
  TypesByExtension& extensions_;
  FileProtection& protection_;
  BackupGuard& guard_;
  TreeLoader& loader_;
  Publisher& publisher_;
  ProjectLifecycle& lifecycle_;
  TreeEditor& editor_;
  NodeOptions& options_;
};

}  // namespace tarn
