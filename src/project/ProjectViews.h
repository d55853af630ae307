#pragma once

#include <string>

#include "project/NewApplication.h"

// Interfaces to the windows of a project. The windows implement them; a model also works without
// windows. All calls are made on the main thread. Node pointers are borrowed: a view must drop them
// in BeginTreeUpdate or ClearTree.
namespace tarn {

class CXmlNode;

// Scope of a tree update: anything may change, or only the nodes reported through
// NotifyNodeUpdated.
enum class UpdateScope { Whole, ReportedNodes };

// The project tree window.
class IProjectWindow {
 public:
  // Returns false if the window has no tree control to show it in.
  virtual bool SetProjectRoot(CXmlNode* root) = 0;
  virtual void RepaintWindow() = 0;
  virtual void RepaintTree() = 0;
  // Starts or stops the timer whose ticks call the model's PublishTick. Also suspends and resumes
  // the options window.
  virtual void StartStepTimer() = 0;
  virtual void StopStepTimer() = 0;
  // Returns true if the timer is running.
  virtual bool IsStepping() const = 0;
  // Bracket every change of the tree's structure; may be nested. The result does not depend on the
  // scope, but an update whose scopes are all ReportedNodes only costs as much as the reported
  // changes.
  virtual void BeginTreeUpdate(UpdateScope scope) = 0;
  virtual void EndTreeUpdate() = 0;
  // Notifies the window that the node's text or children have changed.
  virtual void NotifyNodeUpdated(const CXmlNode& node) = 0;
  virtual void ClearTree() = 0;
  virtual CXmlNode* GetSelectedNode() = 0;
  virtual void SelectTreeNode(CXmlNode* node) = 0;
  // Drops all pointers to the node and its descendants, which are about to be freed.
  virtual void InvalidateNode(const CXmlNode& node) = 0;

 protected:
  ~IProjectWindow() = default;
};

// The class view of the global symbols.
class IClassWindow {
 public:
  virtual void SetGlobalsFile(const std::string& path) = 0;
  virtual void Clear() = 0;

 protected:
  ~IClassWindow() = default;
};

// The report view of the global symbols.
class IGlobalsWindow {
 public:
  virtual void LoadGlobals(const std::string& path) = 0;
  // Returns the symbols loaded last, or nullptr before the first load.
  virtual const CXmlNode* GetSymbols() = 0;

 protected:
  ~IGlobalsWindow() = default;
};

// The windows of one model. Each may be null; the operations forward to the window if there is one.
class ProjectViews {
 public:
  IProjectWindow* project = nullptr;
  IClassWindow* classes = nullptr;
  IGlobalsWindow* globals = nullptr;
  IProjectWizard* wizard = nullptr;

  void SetProjectRoot(CXmlNode* root) const {
    if (project) project->SetProjectRoot(root);
  }
  void RepaintWindow() const {
    if (project) project->RepaintWindow();
  }
  void RepaintTree() const {
    if (project) project->RepaintTree();
  }
  void StartStepTimer() const {
    if (project) project->StartStepTimer();
  }
  void StopStepTimer() const {
    if (project) project->StopStepTimer();
  }
  bool IsStepping() const { return project && project->IsStepping(); }
  void BeginTreeUpdate(UpdateScope scope = UpdateScope::Whole) const {
    if (project) project->BeginTreeUpdate(scope);
  }
  void NotifyNodeUpdated(const CXmlNode& node) const {
    if (project) project->NotifyNodeUpdated(node);
  }
  void EndTreeUpdate() const {
    if (project) project->EndTreeUpdate();
  }
  void ClearTree() const {
    if (project) project->ClearTree();
  }
  CXmlNode* GetSelectedNode() const { return project ? project->GetSelectedNode() : nullptr; }
  void SelectTreeNode(CXmlNode* node) const {
    if (project) project->SelectTreeNode(node);
  }
  void InvalidateNode(const CXmlNode& node) const {
    if (project) project->InvalidateNode(node);
  }
  void SetGlobalsFile(const std::string& path) const {
    if (classes) classes->SetGlobalsFile(path);
  }
  void ClearClasses() const {
    if (classes) classes->Clear();
  }
  void LoadGlobals(const std::string& path) const {
    if (globals) globals->LoadGlobals(path);
  }
  // Returns the loaded global symbol of this name as XML; empty if it is unknown.
  std::string GetSymbolInfo(const char* symbolName) const;
  bool AskNewApplication(NewApplication& application) const {
    return wizard != nullptr && wizard->AskNewApplication(application);
  }
};

// RAII bracket around a change of the tree's structure.
class TreeUpdate {
 public:
  explicit TreeUpdate(const ProjectViews& projectViews, UpdateScope scope = UpdateScope::Whole)
      : views_(projectViews) {
    views_.BeginTreeUpdate(scope);
  }
  ~TreeUpdate() { views_.EndTreeUpdate(); }
  TreeUpdate(const TreeUpdate&) = delete;
  TreeUpdate& operator=(const TreeUpdate&) = delete;

 private:
  const ProjectViews& views_;
};

}  // namespace tarn
