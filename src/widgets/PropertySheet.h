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

// A dialog in the form of a wizard: a header with a title, a subtitle and a picture, below it the
// page, and the buttons Finish and Cancel. It has one page and therefore no others to turn to. The
// window's text is its caption.
class CPropertySheet : public CWnd {
 public:
  // `askedWindow` is the one whose user is asked.
  CPropertySheet(const std::string& caption, WindowHandle askedWindow);
  ~CPropertySheet() override { DestroyWindow(); }

  // Borrowed; outlives the sheet's window.
  void SetPage(CPropertyPage& newPage) { page = &newPage; }
  CPropertyPage* GetPage() const { return page; }
  // Null for none.
  void SetHeaderBitmap(std::shared_ptr<const Bitmap> bitmap) { headerBitmap = std::move(bitmap); }
  const std::shared_ptr<const Bitmap>& GetHeaderBitmap() const { return headerBitmap; }
  WindowHandle GetOwnerWindow() const { return ownerWindow; }

  void EnableFinish(bool enable);
  bool IsFinishEnabled() const { return isFinishEnabled; }

  // Makes the windows, has the user work with them, and destroys them. kSheetFinish when Finish
  // was pressed while that was enabled and the page has taken its data over, else kSheetCancel.
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
