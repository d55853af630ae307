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

// Interface to the platform's widgets. A toolkit creates a peer for each window, provides screen
// metrics, and runs modal interactions: menus, drags, the clipboard. Message boxes and dialogs are
// not part of it; see Dialogs.h.
//
// The base class is itself usable as a headless toolkit: it draws nothing, measures 8 pixels per
// byte, and reports no user actions.
class WindowToolkit {
 public:
  virtual ~WindowToolkit() = default;

  // One overload for each kind of window. Returns null if nothing is drawn.
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

  // Size of a text on a single line.
  virtual Size MeasureText(const Font& font, std::string_view text);
  virtual Color GetColor(SystemColor color);

  virtual void SetCursor(CursorShape shape);
  // Shows the menu and returns the chosen command, 0 for none. Blocks.
  virtual int TrackMenu(const CMenu& menu, Point screen, CWnd& owner);
  virtual void SetClipboardText(const std::string& text);
  // Lets the user drag the text out of `source` as a copy. Blocks.
  virtual void DragText(CWnd& source, const std::string& text);
  // Opens an address with the desktop's handler; never passes it to a shell.
  virtual void OpenAddress(const std::string& address);

  // Returns the calling thread's toolkit; the headless one unless another is set.
  static WindowToolkit& Current();
  // Borrowed; must outlive the windows that are created while it is set. Null restores the headless
  // one.
  static void SetCurrent(WindowToolkit* toolkit);
};

// Shows the wait cursor during its lifetime.
class WaitCursor {
 public:
  WaitCursor() { WindowToolkit::Current().SetCursor(CursorShape::Wait); }
  ~WaitCursor() { WindowToolkit::Current().SetCursor(CursorShape::Arrow); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace tarn
