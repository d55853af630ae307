#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "widgets/Geometry.h"
#include "widgets/Wnd.h"

namespace tarn {

class BrowserPeer;
class ButtonPeer;
class CBrowserCtrl;
class CButton;
class CComboBox;
class CEdit;
class CHyperlinkCtrl;
class CMenu;
class CPropertyPage;
class CPropertySheet;
class CReportControl;
class CRichTextCtrl;
class CStatic;
class CTipWindow;
class CToolBar;
class CTreeCtrl;
class ComboBoxPeer;
class EditPeer;
class PropertySheetPeer;
class ReportPeer;
class RichTextPeer;
class ToolBarPeer;
class TreePeer;

// What draws the windows of a thread. A toolkit makes a peer for each window that is created, has
// the measures of the screen, and runs what takes the user's whole attention for a moment: menus,
// drags, the clipboard. Questions in boxes and dialogs are not here; see Dialogs.h.
//
// The face is at the same time the toolkit of a machine without a screen: it draws nothing,
// measures every byte as 8 pixels, and its user never does anything.
class WindowToolkit {
 public:
  virtual ~WindowToolkit() = default;

  // One for each kind of window; null where nothing is drawn.
  virtual std::unique_ptr<WindowPeer> MakePeer(CWnd& window);
  virtual std::unique_ptr<BrowserPeer> MakePeer(CBrowserCtrl& browser);
  virtual std::unique_ptr<ButtonPeer> MakePeer(CButton& button);
  virtual std::unique_ptr<ComboBoxPeer> MakePeer(CComboBox& list);
  virtual std::unique_ptr<EditPeer> MakePeer(CEdit& edit);
  virtual std::unique_ptr<WindowPeer> MakePeer(CHyperlinkCtrl& link);
  virtual std::unique_ptr<WindowPeer> MakePeer(CPropertyPage& page);
  virtual std::unique_ptr<PropertySheetPeer> MakePeer(CPropertySheet& sheet);
  virtual std::unique_ptr<ReportPeer> MakePeer(CReportControl& report);
  virtual std::unique_ptr<RichTextPeer> MakePeer(CRichTextCtrl& richText);
  virtual std::unique_ptr<WindowPeer> MakePeer(CStatic& text);
  virtual std::unique_ptr<WindowPeer> MakePeer(CTipWindow& tip);
  virtual std::unique_ptr<ToolBarPeer> MakePeer(CToolBar& bar);
  virtual std::unique_ptr<TreePeer> MakePeer(CTreeCtrl& tree);

  virtual Size MeasureText(const Font& font, std::string_view text);
  virtual Color GetColor(SystemColor color);

  virtual void SetCursor(CursorShape shape);
  // Shows the menu and gives the command that was chosen, 0 for none.
  virtual int TrackMenu(const CMenu& menu, Point screen, CWnd& owner);
  virtual void SetClipboardText(const std::string& text);
  // Lets the user drag the text out of `source` as a copy.
  virtual void DragText(CWnd& source, const std::string& text);
  // Hands an address to the desktop; never to a shell.
  virtual void OpenAddress(const std::string& address);

  // The calling thread's; the one without a screen until another is set.
  static WindowToolkit& Current();
  // Borrowed; outlives the windows that are created while it is set. Null goes back.
  static void SetCurrent(WindowToolkit* toolkit);
};

// The wait cursor while it lives.
class WaitCursor {
 public:
  WaitCursor() { WindowToolkit::Current().SetCursor(CursorShape::Wait); }
  ~WaitCursor() { WindowToolkit::Current().SetCursor(CursorShape::Arrow); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace tarn
