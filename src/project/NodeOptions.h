#pragma once

#include <cstdint>
#include <string>

#include "project/DefinitionFolders.h"
#include "project/DerivedData.h"
#include "project/HostLink.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/Publisher.h"
#include "project/TreeEditor.h"
#include "project/TypesByExtension.h"

namespace tarn {

// Options that the nodes store, and the configurations of an application
// (Configurations.cpp, CopyConfiguration.cpp). Borrows everything; main thread only. Operations
// return 1 if done and 0 if not.
class NodeOptions {
 public:
  NodeOptions(ProjectServices& projectServices, ProjectState& projectState,
              const ProjectPaths& projectPaths, HostLink& hostLink,
              DefinitionFolders& definitionFolders, DerivedData& derivedData,
              Publisher& nodePublisher, TreeEditor& treeEditor, TypesByExtension& typesByExtension)
      : services_(projectServices),
        types_(projectServices.types),
        views_(projectServices.views),
        state_(projectState),
        paths_(projectPaths),
        host_(hostLink),
        definitions_(definitionFolders),
        derived_(derivedData),
        publisher_(nodePublisher),
        editor_(treeEditor),
        extensions_(typesByExtension) {}

  // Stores a value changed in the property manager in the current node. An empty key means the last
  // change in the options window. A change of type or label changes the node itself.
  std::int32_t StoreChangedProperty(const std::string& key);
  // Removes a stored value, or all values of a section, from the current node.
  std::int32_t ResetStoredProperty(const std::string& key);
  // Removes all stored options of the node.
  std::int32_t ResetNodeOptions(CXmlNode* node);

  // Adds the configuration named in the options window to the active application.
  std::int32_t AddConfiguration();
  // See ProjectInspector::CopyConfiguration.
  std::int32_t CopyConfiguration(const std::string& from, const std::string& to);
  // Makes a configuration of the active application the current one and republishes its nodes.
  std::int32_t SelectConfiguration(const std::string& name);
  // Reloads the definitions of options and tools if their files or folders have changed; returns 1
  // if so.
  // Everything is then published again and treated as not built.
  std::int32_t RefreshDefinitions();

 private:
  bool CanBecome(const CXmlNode& node, const std::string& typeName) const;
  std::int32_t ChangeNodeIdentity(CXmlNode& node, const std::string& property,
                                  const std::string& value);

  ProjectServices& services_;
  const NodeTypes& types_;
  const ProjectViews& views_;
  ProjectState& state_;
  const ProjectPaths& paths_;
  HostLink& host_;
  DefinitionFolders& definitions_;
  DerivedData& derived_;
  Publisher& publisher_;
  TreeEditor& editor_;
  TypesByExtension& extensions_;
};

}  // namespace tarn
