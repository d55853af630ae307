#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/Control.h"

namespace tarn {

class ComboBoxPeer : public WindowPeer {
 public:
  // Entries were added or removed; the selection may have changed as well.
  virtual void OnEntriesChanged() {}
  virtual void OnSelectionChanged() {}
};

// A drop-down list in which at most one entry is selected. The data attached to an entry is
// borrowed and belongs to the caller.
class CComboBox : public CControl {
 public:
  // Appends an entry and returns its index.
  int AddString(std::string entryText, const void* data = nullptr);
  // Removes all entries and clears the selection.
  void ResetContent();

  int GetCount() const { return static_cast<int>(entries_.size()); }
  // An empty string or null if the index is out of range.
  const std::string& GetText(int index) const;
  const void* GetItemData(int index) const;
  // -1 if no entry is selected.
  int GetCurSel() const { return selected_; }
  // Selects no entry if the index is out of range. Notifies only the peer, not the owner.
  void SetCurSel(int index);
  // Selects the first entry that starts with the string, ignoring case, and returns its index.
  // Returns -1, with the selection unchanged, if there is none.
  int SelectString(std::string_view beginning);

  // --- Called by the toolkit ---

  // The user chose an entry; the owner is notified if it differs from the selected one.
  void NotifySelected(int index);

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  struct Entry {
    std::string text;
    const void* data = nullptr;
  };

  bool Holds(int index) const { return index >= 0 && index < GetCount(); }
  ComboBoxPeer* Drawing() { return static_cast<ComboBoxPeer*>(GetPeer()); }

  std::vector<Entry> entries_;
  int selected_ = -1;
};

}  // namespace tarn
