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
  void SetPage(CPropertyPage& newPage) { page = &newPage; }
  CPropertyPage* GetPage() const { return page; }
  // Null for no image.
  void SetHeaderBitmap(std::shared_ptr<const Bitmap> bitmap) { headerBitmap = std::move(bitmap); }
  const std::shared_ptr<const Bitmap>& GetHeaderBitmap() const { return headerBitmap; }
  WindowHandle GetOwnerWindow() const { return ownerWindow; }

  void EnableFinish(bool enable);
  bool IsFinishEnabled() const { return isFinishEnabled; }

  // Creates the windows, lets the user work with them and destroys them. Returns kSheetFinish if
  // Finish was pressed while enabled and the page has stored its data, otherwise kSheetCancel.
  int DoModal();

 protected:
  std::unique_ptr<WindowPeer> MakePeer(WindowToolkit& toolkit) final;

 private:
  WindowHandle ownerWindow;
  CPropertyPage* page = nullptr;
  std::shared_ptr<const Bitmap> headerBitmap;
  bool isFinishEnabled = false;
};

}  // namespace tarn
