#pragma once

#include <cstdint>

// Interface to the builder of a project. The builder implements it; a project also works without
// one, and then nothing is ever built. All calls are made on the main thread. Node pointers are
// borrowed: the builder must drop them in InvalidateNode.
namespace tarn {

class CXmlNode;

class IBuildControl {
 public:
  // Returns 1 if no build is running. Returns 0 during a synchronous build. While a worker is
  // running, asks the user whether to stop it, and returns 0 in any case.
  virtual std::int32_t CanStartOperation() = 0;
  virtual bool IsWorkerAlive() const = 0;
  // Returns true during a synchronous build on the main thread.
  virtual bool IsBuildingSynchronously() const = 0;
  // Returns the node that was current before the running build; nullptr if it was freed or no build
  // is running.
  virtual CXmlNode* GetSavedNode() = 0;
  // Notifies the builder that the node is about to become current. If the user selected it while a
  // worker is running, the end of the build doesn't restore the previous one.
  virtual void MarkSelected(CXmlNode* node) = 0;
  // The node was published: determines if it is up to date and describes the result in its
  // attributes.
  virtual void MarkPublished(CXmlNode& node) = 0;
  // Nodes lost their cached values or derived attributes, or the tree changed: invalidates file
  // times and tool commands, including what a build has prefetched.
  virtual void MarkUnpublished() = 0;
  // Drops all pointers to the node and its descendants, which are about to be freed.
  virtual void InvalidateNode(const CXmlNode& node) = 0;
  // Restores build records of an application whose nodes now have different outputs, some of which
  // may have been built before.
  virtual void RestoreRecords(CXmlNode& application) = 0;
  // The project is being closed: closes the journal of its build records.
  virtual void CloseJournal() = 0;

 protected:
  ~IBuildControl() = default;
};

// The builder of one project. May be null; the operations forward to the builder if there is one.
class BuildControl {
 public:
  IBuildControl* builder = nullptr;

  std::int32_t CanStartOperation() const {
    return builder == nullptr ? 1 : builder->CanStartOperation();
  }
  bool IsWorkerAlive() const { return builder != nullptr && builder->IsWorkerAlive(); }
  bool IsBuildingSynchronously() const {
    return builder != nullptr && builder->IsBuildingSynchronously();
  }
  CXmlNode* GetSavedNode() const { return builder == nullptr ? nullptr : builder->GetSavedNode(); }
  void MarkSelected(CXmlNode* node) const {
    if (builder) builder->MarkSelected(node);
  }
  void MarkPublished(CXmlNode& node) const {
    if (builder) builder->MarkPublished(node);
  }
  void MarkUnpublished() const {
    if (builder) builder->MarkUnpublished();
  }
  void InvalidateNode(const CXmlNode& node) const {
    if (builder) builder->InvalidateNode(node);
  }
  void RestoreRecords(CXmlNode& application) const {
    if (builder) builder->RestoreRecords(application);
  }
  void CloseJournal() const {
    if (builder) builder->CloseJournal();
  }
};

}  // namespace tarn
