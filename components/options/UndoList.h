#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarn::options {

// One change of a value by the user.
struct ValueChange {
  std::string node;  // tells the node that it was made at, and the configuration
  std::string set;
  std::string section;
  std::string property;
  std::optional<std::string> before;  // raw own values; nothing: the node had none
  std::optional<std::string> after;

  std::string Key() const { return set + "." + section + "." + property; }
};

// The changes that can be taken back, of all nodes. A node's changes are undone and redone at that
// node alone, since no other one is held at the same time.
class UndoList {
 public:
  // Drops what was undone at that node.
  void Add(ValueChange change);
  // The node's last change that is done (or undone), marked the other way; null when there is
  // none. Borrowed until the list changes.
  const ValueChange* Undo(const std::string& node);
  const ValueChange* Redo(const std::string& node);
  // What these would give, left as it is.
  const ValueChange* NextUndo(const std::string& node) const;
  const ValueChange* NextRedo(const std::string& node) const;
  void Clear() { changes.clear(); }

 private:
  struct Entry {
    ValueChange change;
    bool undone = false;
  };
  const ValueChange* Mark(const ValueChange* change, bool undone);

  std::vector<Entry> changes;  // the oldest first
};

}  // namespace tarn::options
