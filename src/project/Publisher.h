#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "project/CommonEnd.h"
#include "project/HostLink.h"
#include "project/ProjectPaths.h"
#include "project/ProjectServices.h"
#include "project/ProjectState.h"
#include "project/PublishCursor.h"

namespace tarn {

// Loads nodes into the property manager, which holds one at a time, and publishes them: computes
// their option values and writes what others need of them to the nodes. Decides
// which node and which application are current.
//
// Calling sequence: MarkOpened after a project was opened; then nodes are published one by one as
// they become current, a few per PublishTick in the background, or all together by PublishAll;
// MarkClosing before the project is closed. DerivedData unpublishes.
//
// Borrows everything; main thread only. Publishing never fails; a handler of a message may change
// the tree, see HostLink.
class Publisher {
 public:
  Publisher(ProjectServices& projectServices, ProjectState& projectState,
            const ProjectPaths& projectPaths, HostLink& hostLink);
  ~Publisher();

  // --- Current node and application ---
  //
  // Makes the node current: saves the state of the options window in the previous node, loads the
  // node's options, notifies the host, and selects the node in the window.
  void SetCurrentNode(CXmlNode* node);
  // Loads `node` into the property manager again after other nodes were published.
  void RestoreCurrent(CXmlNode* application, CXmlNode* node);
  // Loads the node's options into the property manager and makes it and its application current.
  // Returns the cached values, or nullptr if a handler changed the tree. Unless `force` is set,
  // does nothing for the current node.
  CXmlNode* LoadNodeOptions(CXmlNode* node, bool force);
  // Makes the application the project's default one and highlights it. Returns 0 for other nodes.
  std::int32_t SetActiveApplication(CXmlNode* application);
  // Notifies the host of the active application.
  void SendActiveApplication();
  // Posts a command to the host if the active application is debugged after every change.
  void RunAutoDebugStep();
  // Returns the configuration of the active application, or "Standard".
  std::string GetCurrentConfigName() const;
  // Returns the tools available for the current node as XML; empty if there are none.
  std::string GetDynamicCommands(std::uint32_t commandId);
  // Same as a tree; nullptr if no node was current.
  const CXmlNode* GetDynamicCommandTree() const { return dynamicCommands_.get(); }
  // Saves the state of the options window in this node.
  void RenewPropState(CXmlNode& node);
  // Restores the state of the options window from this node.
  void RestorePropState(const CXmlNode& node);

  // --- Publishing ---
  //
  // Computes the node's option values, caches them in the node and writes the derived attributes.
  // Publishes its ancestors first. If it is published already, only loads the cached values into
  // the property manager, unless `force` is set.
  CXmlNode* PublishNode(CXmlNode* node, bool force);
  // Publishes one unpublished node of the subtree, and makes it current. Returns 0 if there is
  // none.
  std::int32_t PublishNextNode(CXmlNode* node);
  // Publishes the node and everything below it; the next SetCurrentNode reloads its node in any
  // case.
  void PublishSubtree(CXmlNode& node);
  // Publishes the unpublished children of `parent` and restores the current node. Returns true if
  // there were any; false also for nullptr and while a build runs.
  bool PublishChildren(CXmlNode* parent);
  // Publishes every unpublished node and restores the current node.
  void PublishAll() { PublishFor(std::chrono::hours(24)); }
  // Same, within a time limit. Returns false if nodes are left for another call.
  bool PublishFor(std::chrono::milliseconds time);
  // Continues the background publishing like its timer, for a host that has nothing else to do.
  // Stopped: nothing is published, although nodes are left.
  enum class Progress { More, Done, Stopped };
  Progress ContinueFor(std::chrono::milliseconds time);
  // Publishes a few nodes in the background and restores the current node. Returns 1 if there are
  // more; stops the timer and notifies the host after the last one.
  std::int32_t PublishTick();
  // Returns true if the project has unpublished nodes.
  bool HasUnpublished();
  // Appends the nodes whose stored options apply to `node`, from its application down to the node.
  void CollectOptionChain(std::vector<CXmlNode*>& list, CXmlNode* node) const;

  bool IsPublishingSuspended() const { return publishingSuspended_; }
  void SetPublishingSuspended(bool suspended) {
    publishingSuspended_ = suspended;
    publishingStopped_ = true;
  }
  // Returns true if the user stopped background publishing for this project.
  bool IsPublishingStopped() const { return publishingStopped_; }
  void MarkOpened() { publishingStopped_ = false; }
  // A tick that is running restores nothing of this project any more.
  void MarkClosing() { inPublishTick_ = false; }

 private:
  void PublishFromParent(CXmlNode& node, bool force);
  bool PublishPiece(std::chrono::milliseconds time, int least);
  void PublishPath(CXmlNode& node);
  void ApplyStoredOptions(CXmlNode& node, const std::string& config);
  const std::string& TextOfOptions(const CXmlNode& owner);
  CXmlNode* StoreValues(CXmlNode& node, std::string_view values);
  void WriteMarker(CXmlNode& node, const std::string& config) const;
  void WriteDerivedAttributes(CXmlNode& node);
  void ReadConfigurations();
  void LoadToolCommands(const CXmlNode& node);
  bool CanPublishAside() const;
  void PublishAside(const std::function<bool()>& publish);

  ProjectServices& services_;
  FileSystem& files_;
  const NodeTypes& types_;
  const ProjectViews& views_;
  ProjectState& state_;
  const ProjectPaths& paths_;
  HostLink& host_;
  std::unique_ptr<CXmlNode> dynamicCommands_;
  bool publishingSuspended_ = false;
  bool publishingStopped_ = false;
  bool inPublishTick_ = false;
  PublishCursor publishCursor_;
  std::map<std::string, CommonEnd, std::less<>> commonEnds_;  // of stored values, by node type
};

}  // namespace tarn
