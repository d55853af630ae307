#pragma once

#include <string>

#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/Edit.h"
#include "widgets/PropertySheet.h"
#include "wizard/ApplicationPage.h"

namespace tarn::test {

// Operates the wizard for a new application like a user, during one RunSheet().
class WizardUser {
 public:
  explicit WizardUser(CPropertySheet& sheet) : page_(*sheet.GetPage()) {}

  template <class T>
  T& Control(int id) const {
    return *page_.FindControl<T>(id);
  }
  // Reason why Finish would currently be refused.
  std::string Problem() const { return page_.FindFinishProblem(); }
  void Click(int button) const { Control<CButton>(button).NotifyClicked(); }
  void Type(int edit, const std::string& text) const {
    Control<CEdit>(edit).NotifyTextEdited(text, {});
  }
  void ChooseType(int index) const { Control<CComboBox>(kIdType).NotifySelected(index); }
  // Clicks the first item with that label. Returns false if there is none.
  bool ClickTarget(const std::string& label) const {
    auto& tree = Control<CTreeCtrl>(kIdTargetTree);
    for (CTreeItem* item = tree.GetRootItem(); item != nullptr; item = item->GetNext()) {
      if (item->GetText() != label) continue;
      tree.EnsureVisible(*item);
      const Rect place = tree.GetTextRect(*item);
      tree.NotifyClick({place.left + 1, place.top + 1});
      return true;
    }
    return false;
  }

 private:
  CPropertyPage& page_;
};

}  // namespace tarn::test
