#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/Control.h"

namespace tarn {

class ComboBoxPeer : public WindowPeer {
 public:
  // Entries came or went; the selection as well.
  virtual void OnEntriesChanged() {}
  virtual void OnSelectionChanged() {}
};

// A list that drops down, of which one entry is selected at most. What stands beside an entry is
// its maker's, and is borrowed here.
class CComboBox : public CControl {
 public:
  // The index of the new entry, which is the last.
  int AddString(std::string entryText, const void* data = nullptr);
  void ResetContent();

  int GetCount() const { return static_cast<int>(entries.size()); }
  // Empty and null for an index that has no entry.
  const std::string& GetText(int index) const;
  const void* GetItemData(int index) const;
  // -1 for none.
  int GetCurSel() const { return selected; }
  // An index that has no entry selects none. Tells nobody but the peer.
  void SetCurSel(int index);
  // Selects the first entry that begins with the text, whatever the case; gives its index, or -1,
  // and then the selection stays.
  int SelectString(std::string_view beginning);

  // --- From the toolkit ---

  // The user chooses an entry; the owner is told when it is another one.
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

  std::vector<Entry> entries;
  int selected = -1;
};

}  // namespace tarn
