#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <string>
#include <string_view>

#include "widgets/Toolkit.h"
#include "widgets/qt/LoopBridge.h"

namespace tarn {

// Toolkit that shows the windows of a thread as widgets. During its lifetime it is the thread's
// current toolkit and runs the thread's message loop. Create it after the application object and
// destroy it before, on the same thread, after all windows have been destroyed.
class QtToolkit : public WindowToolkit {
 public:
  QtToolkit();
  ~QtToolkit() override;
  QtToolkit(const QtToolkit&) = delete;
  QtToolkit& operator=(const QtToolkit&) = delete;

  // Peers and operations are documented in WindowToolkit.
  using WindowToolkit::MakePeer;
  std::unique_ptr<WindowPeer> MakePeer(CWnd& window) override;
  std::unique_ptr<WindowPeer> MakePeer(CTipWindow& tip) override;
  std::unique_ptr<TreePeer> MakePeer(CTreeCtrl& tree) override;
  std::unique_ptr<EditPeer> MakePeer(CEdit& edit) override;
  std::unique_ptr<RichTextPeer> MakePeer(CRichTextCtrl& richText) override;
  std::unique_ptr<ButtonPeer> MakePeer(CButton& button) override;
  std::unique_ptr<ComboBoxPeer> MakePeer(CComboBox& list) override;
  std::unique_ptr<WindowPeer> MakePeer(CHyperlinkCtrl& link) override;
  std::unique_ptr<WindowPeer> MakePeer(CPropertyPage& page) override;
  std::unique_ptr<PropertySheetPeer> MakePeer(CPropertySheet& sheet) override;
  std::unique_ptr<WindowPeer> MakePeer(CStatic& text) override;
  std::unique_ptr<ToolBarPeer> MakePeer(CToolBar& bar) override;
  std::unique_ptr<ReportPeer> MakePeer(CReportControl& report) override;
  std::unique_ptr<BrowserPeer> MakePeer(CBrowserCtrl& browser) override;

  Size MeasureText(const Font& font, std::string_view text) override;
  Color GetColor(SystemColor color) override;
  void SetCursor(CursorShape shape) override;
  int TrackMenu(const CMenu& menu, Point screen, CWnd& owner) override;
  void SetClipboardText(const std::string& text) override;
  void DragText(CWnd& source, const std::string& text) override;
  void OpenAddress(const std::string& address) override;

 private:
  LoopBridge bridge_;
  bool isWaiting_ = false;
  QPointer<QWidget> pointedAt_;  // widget whose cursor is temporarily replaced
};

}  // namespace tarn
