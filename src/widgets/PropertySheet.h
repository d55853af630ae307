#pragma once

#include <memory>
#include <string>
#include <utility>

#include "widgets/Dialogs.h"
#include "widgets/ImageList.h"
#include "widgets/PropertyPage.h"

namespace tarn {

class PropertySheetPeer : public WindowPeer {
 public:
  virtual void OnFinishEnabled() {}
};

// A wizard-style dialog: a header with title, subtitle and image, the page below it, and the
// buttons Finish and Cancel. It has exactly one page, and so no navigation. The window text is the
// caption.
class CPropertySheet : public CWnd {
 public:
  // `askedWindow` is the window on whose behalf the user is asked.
  CPropertySheet(const std::string& caption, WindowHandle askedWindow);
  ~CPropertySheet() override { DestroyWindow(); }

  // Borrowed; must outlive the sheet's window.
  void SetPage(CPropertyPage& newPage) { page_ = &newPage; }
  CPropertyPage* GetPage() const { return page_; }
  // Null for no image.
  void SetHeaderBitmap(std::shared_ptr<const Bitmap> bitmap) { headerBitmap_ = std::move(bitmap); }
  const std::shared_ptr<const Bitmap>& GetHeaderBitmap() const { return headerBitmap_; }
  WindowHandle GetOwnerWindow() const { return ownerWindow_; }

  void EnableFinish(bool enable);
  bool IsFinishEnabled() const { return isFinishEnabled_; }

  // Creates the windows, lets the user work with them and destroys them. Returns kSheetFinish if
  // Finish was pressed while enabled and the page has stored its data, otherwise kSheetCancel.
  int DoModal();

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  WindowHandle ownerWindow_;
  CPropertyPage* page_ = nullptr;
  std::shared_ptr<const Bitmap> headerBitmap_;
  bool isFinishEnabled_ = false;
};

}  // namespace tarn
