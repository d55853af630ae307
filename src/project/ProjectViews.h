#pragma once

#include <string>

#include "project/NewApplication.h"
#include "xml/XmlNode.h"

// The windows of a project, as the model sees them. The windows implement these; a model
// without windows works all the same. Everything is called on the host's thread. Node pointers are
// borrowed: a view drops them in BeginTreeUpdate or ClearTree.
namespace tarn {

// What of the tree a bracket changes: anything, or only what is told meanwhile.
enum class UpdateScope { Whole, Told };

// The project tree.
class IProjectWindow {
 public:
  // False when there is no tree to show it in.
  virtual bool SetProjectRoot(CXmlNode* root) = 0;
  virtual void RepaintWindow() = 0;
  virtual void RepaintTree() = 0;
  // The timer whose ticks run the model's PublishTick. Holds and releases the options window.
  virtual void StartStepTimer() = 0;
  virtual void StopStepTimer() = 0;
  // Around every change of the tree's shape; may be nested. The result is the same for each scope:
  // with all scopes told, it costs no more than what has changed.
  virtual void BeginTreeUpdate(UpdateScope scope) = 0;
  virtual void EndTreeUpdate() = 0;
  // The node has another text, or other children.
  virtual void TellUpdated(const CXmlNode& node) = 0;
  virtual void ClearTree() = 0;
  virtual CXmlNode* GetSelectedNode() = 0;
  virtual void SelectTreeNode(CXmlNode* node) = 0;
  // The node and all below it are about to be freed: no pointer into it stays.
  virtual void ForgetNode(const CXmlNode& node) = 0;

 protected:
  ~IProjectWindow() = default;
};

// The class view of the globals.
class IClassWindow {
 public:
  virtual void SetGlobalsFile(const std::string& path) = 0;
  virtual void Clear() = 0;

 protected:
  ~IClassWindow() = default;
};

// The report view of the globals.
class IGlobalsWindow {
 public:
  virtual void LoadGlobals(const std::string& path) = 0;
  // The symbols that were loaded last; null before the first load.
  virtual const CXmlNode* GetSymbols() = 0;

 protected:
  ~IGlobalsWindow() = default;
};

// The windows of one model, each null for none; the operations reach the window if there is one.
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
  void BeginTreeUpdate(UpdateScope scope = UpdateScope::Whole) const {
    if (project) project->BeginTreeUpdate(scope);
  }
  void TellUpdated(const CXmlNode& node) const {
    if (project) project->TellUpdated(node);
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
  void ForgetNode(const CXmlNode& node) const {
    if (project) project->ForgetNode(node);
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
  bool AskNewApplication(NewApplication& application) const {
    return wizard != nullptr && wizard->AskNewApplication(application);
  }
};

// Brackets a change of the tree's shape.
class TreeUpdate {
 public:
  explicit TreeUpdate(const ProjectViews& projectViews, UpdateScope scope = UpdateScope::Whole)
      : views(projectViews) {
    views.BeginTreeUpdate(scope);
  }
  ~TreeUpdate() { views.EndTreeUpdate(); }
  TreeUpdate(const TreeUpdate&) = delete;
  TreeUpdate& operator=(const TreeUpdate&) = delete;

 private:
  const ProjectViews& views;
};

}  // namespace tarn
