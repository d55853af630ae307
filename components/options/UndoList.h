#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarn::options {

// A change of a value by the user.
struct ValueChange {
  std::string node;  // identifies the node and the configuration
  std::string set;
  std::string section;
  std::string property;
  std::optional<std::string> before;  // raw own values; nullopt if the node had none
  std::optional<std::string> after;

  std::string Key() const { return set + "." + section + "." + property; }
};

// Undo history of all nodes. The changes of a node can only be undone and redone at that node,
// because only one node is held at a time.
class UndoList {
 public:
  // Adds a change and discards the undone changes of its node.
  void Add(ValueChange change);
  // Returns the node's last change that is done (or undone) and marks it as undone (or done).
  // Returns nullptr if there is none. Borrowed until the list changes.
  const ValueChange* Undo(const std::string& node);
  const ValueChange* Redo(const std::string& node);
  // Return the change that Undo or Redo would return, without marking it.
  const ValueChange* NextUndo(const std::string& node) const;
  const ValueChange* NextRedo(const std::string& node) const;
  void Clear() { changes_.clear(); }

 private:
  struct Entry {
    ValueChange change;
    bool undone = false;
  };
  const ValueChange* Mark(const ValueChange* change, bool undone);

  std::vector<Entry> changes_;  // oldest first
};

}  // namespace tarn::options
