#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "widgets/Control.h"

namespace tarn {

class CPropertySheet;

// Kinds of controls that a page template can contain.
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
  std::uint32_t style = 0;  // style bits of its kind, in addition to those of a visible child
  bool startsGroup = false;
};

// Description of a page as a table of its controls, in tab order. Refers to tables that outlive it.
struct PageTemplate {
  int id = 0;
  Size size;
  std::span<const ControlRow> controls;
};

// A window with the controls of a page. There is no automatic data exchange: a page initialises its
// controls in OnInitDialog() and reads them when the sheet is finished.
class CPropertyPage : public CWnd {
 public:
  // The template's tables must outlive the page.
  explicit CPropertyPage(const PageTemplate& pageTemplate) : layout_(pageTemplate) {}
  ~CPropertyPage() override { DestroyWindow(); }

  const PageTemplate& GetTemplate() const { return layout_; }
  // Returns the control of that id if it is a T, otherwise null. All controls exist from
  // OnInitDialog() on.
  template <class T>
  T* FindControl(int controlId) const {
    return dynamic_cast<T*>(FindChild(controlId));
  }
  // Title and subtitle that the sheet shows above the page.
  const std::string& GetHeaderTitle() const { return headerTitle_; }
  const std::string& GetHeaderSubtitle() const { return headerSubtitle_; }
  // Returns the reason why the sheet cannot be finished with the current state of the controls, as
  // a sentence for the user; an empty string if it can. The code that runs the sheet keeps it open
  // then, or cancels it.
  virtual std::string FindFinishProblem() { return {}; }
  // Null while the page is not part of a sheet.
  CPropertySheet* GetSheet() const { return sheet_; }

 protected:
  // Must be called before the sheet is shown.
  void SetHeader(std::string title, std::string subtitle);

  // The controls of the table have been created.
  virtual void OnInitDialog() {}
  // The page becomes visible.
  virtual void OnSetActive() {}
  // The user finished the sheet; the controls still exist.
  virtual void OnWizardFinish() {}
  // The user clicked a control or chose something in it.
  virtual void OnControl(int /*controlId*/) {}

  bool OnCreate() override;
  // An override must forward the messages that it does not handle.
  std::intptr_t OnMessage(std::uint32_t message, std::intptr_t wParam,
                          std::intptr_t lParam) override;
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  friend class CPropertySheet;

  const PageTemplate layout_;
  std::string headerTitle_;
  std::string headerSubtitle_;
  CPropertySheet* sheet_ = nullptr;
  std::vector<std::unique_ptr<CWnd>> controls_;
};

}  // namespace tarn
