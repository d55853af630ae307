#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "widgets/Control.h"

namespace tarn {

class CPropertySheet;

enum class ControlKind {
  Label,
  Frame,
  Edit,
  PushButton,
  CheckBox,
  RadioButton,
  DropDownList,
  Link
};

// One control of a page.
struct ControlRow {
  int id = 0;
  ControlKind kind = ControlKind::Label;
  const char* text = "";
  Rect rect;                // in the page's client coordinates
  std::uint32_t style = 0;  // bits of its kind, besides those of a visible child
  bool startsGroup = false;
};

// A page as a table of its controls, in the order of the Tab key. Refers to tables that stay.
struct PageTemplate {
  int id = 0;
  Size size;
  std::span<const ControlRow> controls;
};

// The controls of a page as one window. It exchanges no data by itself: a page sets its controls up
// in OnInitDialog and reads them when the sheet is finished.
class CPropertyPage : public CWnd {
 public:
  explicit CPropertyPage(const PageTemplate& pageTemplate) : layout(pageTemplate) {}
  ~CPropertyPage() override { DestroyWindow(); }

  const PageTemplate& GetTemplate() const { return layout; }
  // The control of that id if it is a T, else null; all controls stand from OnInitDialog on.
  template <class T>
  T* FindControl(int controlId) const {
    return dynamic_cast<T*>(FindChild(controlId));
  }
  // What the sheet shows above the page.
  const std::string& GetHeaderTitle() const { return headerTitle; }
  const std::string& GetHeaderSubtitle() const { return headerSubtitle; }
  // Returns why the sheet can't be finished with what the controls hold now, as a sentence for the
  // user; empty if it can. For what runs the sheet: it stays open then, or is cancelled.
  virtual std::string FindFinishProblem() { return {}; }
  // Null while it is on none.
  CPropertySheet* GetSheet() const { return sheet; }

 protected:
  void SetHeader(std::string title, std::string subtitle);

  // The controls of the table stand.
  virtual void OnInitDialog() {}
  // The page comes in front of the user.
  virtual void OnSetActive() {}
  // The user has finished the sheet; the controls still stand.
  virtual void OnWizardFinish() {}
  // The user has clicked a control or chosen something in it.
  virtual void OnControl(int /*controlId*/) {}

  bool OnCreate() override;
  // A class that replaces it hands on what it doesn't know.
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  friend class CPropertySheet;

  const PageTemplate layout;
  std::string headerTitle;
  std::string headerSubtitle;
  CPropertySheet* sheet = nullptr;
  std::vector<std::unique_ptr<CWnd>> controls;
};

}  // namespace tarn
