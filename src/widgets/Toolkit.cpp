#include "widgets/Toolkit.h"

#include "widgets/BrowserCtrl.h"
#include "widgets/Button.h"
#include "widgets/ComboBox.h"
#include "widgets/Edit.h"
#include "widgets/HyperlinkCtrl.h"
#include "widgets/PropertySheet.h"
#include "widgets/ReportControl.h"
#include "widgets/RichTextCtrl.h"
#include "widgets/Static.h"
#include "widgets/ToolBar.h"
#include "widgets/TreeCtrl.h"

namespace tarn {

namespace {

constexpr int kHeadlessByteWidth = 8;
constexpr int kHeadlessLineHeight = 16;

thread_local WindowToolkit* currentToolkit = nullptr;

}  // namespace

std::unique_ptr<WindowPeer> WindowToolkit::MakePeer(CWnd& /*window*/) {
  return nullptr;
}

std::unique_ptr<BrowserPeer> WindowToolkit::MakePeer(CBrowserCtrl& /*browser*/) {
  return nullptr;
}

std::unique_ptr<ButtonPeer> WindowToolkit::MakePeer(CButton& /*button*/) {
  return nullptr;
}

std::unique_ptr<ComboBoxPeer> WindowToolkit::MakePeer(CComboBox& /*list*/) {
  return nullptr;
}

std::unique_ptr<EditPeer> WindowToolkit::MakePeer(CEdit& /*edit*/) {
  return nullptr;
}

std::unique_ptr<WindowPeer> WindowToolkit::MakePeer(CHyperlinkCtrl& /*link*/) {
  return nullptr;
}

std::unique_ptr<WindowPeer> WindowToolkit::MakePeer(CPropertyPage& /*page*/) {
  return nullptr;
}

std::unique_ptr<PropertySheetPeer> WindowToolkit::MakePeer(CPropertySheet& /*sheet*/) {
  return nullptr;
}

std::unique_ptr<ReportPeer> WindowToolkit::MakePeer(CReportControl& /*report*/) {
  return nullptr;
}

std::unique_ptr<RichTextPeer> WindowToolkit::MakePeer(CRichTextCtrl& /*richText*/) {
  return nullptr;
}

std::unique_ptr<WindowPeer> WindowToolkit::MakePeer(CStatic& /*text*/) {
  return nullptr;
}

std::unique_ptr<WindowPeer> WindowToolkit::MakePeer(CTipWindow& /*tip*/) {
  return nullptr;
}

std::unique_ptr<ToolBarPeer> WindowToolkit::MakePeer(CToolBar& /*bar*/) {
  return nullptr;
}

std::unique_ptr<TreePeer> WindowToolkit::MakePeer(CTreeCtrl& /*tree*/) {
  return nullptr;
}

Size WindowToolkit::MeasureText(const Font& /*font*/, std::string_view text) {
  return {static_cast<int>(text.size()) * kHeadlessByteWidth, kHeadlessLineHeight};
}

Color WindowToolkit::GetColor(SystemColor color) {
  switch (color) {
    case SystemColor::Window:
    case SystemColor::HighlightText:
      return MakeColor(255, 255, 255);
    case SystemColor::Highlight:
      return MakeColor(0, 0, 128);
    case SystemColor::WindowText:
      break;
  }
  return MakeColor(0, 0, 0);
}

void WindowToolkit::SetCursor(CursorShape /*shape*/) {}

int WindowToolkit::TrackMenu(const CMenu& /*menu*/, Point /*screen*/, CWnd& /*owner*/) {
  return 0;
}

void WindowToolkit::SetClipboardText(const std::string& /*text*/) {}

void WindowToolkit::DragText(CWnd& /*source*/, const std::string& /*text*/) {}

void WindowToolkit::OpenAddress(const std::string& /*address*/) {}

WindowToolkit& WindowToolkit::Current() {
  static WindowToolkit withoutScreen;
  return currentToolkit != nullptr ? *currentToolkit : withoutScreen;
}

void WindowToolkit::SetCurrent(WindowToolkit* toolkit) {
  currentToolkit = toolkit;
}

}  // namespace tarn
