#include "output/OutputEdit.h"

#include <tarn/commands.h>

#include <algorithm>

#include "output/LogLink.h"
#include "output/LogRichText.h"
#include "widgets/HostMessages.h"

namespace tarn {

namespace {

constexpr int kMarginWidth = 5;
constexpr int kMarginId = 101;
constexpr int kEditId = 100;
constexpr int kFontTwips = 175;
// Name under which hosts store the popup menu of the log view.
constexpr const char* kMenuName = "4004";

std::intptr_t ToParam(const void* address) {
  return reinterpret_cast<std::intptr_t>(address);
}

}  // namespace

COutputEdit::COutputEdit(FileSystem& files, WindowHandle host) : disk_(files), hostWindow_(host) {
  edit_.SetFont({"Courier New", kFontTwips, false, false});
  edit_.SetLinkHandler(
      [this](const std::string& target, const MouseEvent& event) { OnLink(target, event); });
}

COutputEdit::~COutputEdit() {
  DestroyWindow();
}

bool COutputEdit::OnCreate() {
  constexpr std::uint32_t kStyle = kStyleChild | kStyleVisible;
  return margin_.Create(kStyle, {}, this, kMarginId) && edit_.Create(kStyle, {}, this, kEditId);
}

void COutputEdit::OnSize(Size size) {
  margin_.MoveWindow({0, 0, kMarginWidth, size.height});
  edit_.MoveWindow({kMarginWidth, 0, std::max(kMarginWidth, size.width), size.height});
}

void COutputEdit::AddMessage(const CXmlNode& node) {
  if (!edit_.IsCreated()) return;
  // The link of a note includes the line, like those of errors and warnings.
  edit_.AppendRichText(MakeLogRichText(node, PlaceLinks::WithLine));
  edit_.UpdateWindow();
}

void COutputEdit::Clear() {
  edit_.Clear();
}

bool COutputEdit::OnCommand(int command) {
  switch (command) {
    case TARN_CMD_CLEAR_LOG:
      Clear();
      return true;
    case TARN_CMD_COPY:
      edit_.Copy();
      return true;
    case TARN_CMD_CUT_LOG:
      edit_.Cut();
      return true;
    default:
      return false;
  }
}

bool COutputEdit::OnContextMenu(Point screen) {
  SendWindowMessage(hostWindow_, kMsgShowPopupMenu, ToParam(&screen), ToParam(kMenuName));
  return true;
}

// Each message may destroy this window; no further message is sent then.
void COutputEdit::OnLink(const std::string& target, const MouseEvent& event) {
  if (event.action != MouseAction::Release || event.button != MouseButton::Left) return;
  const LogLink link = ReadLinkTarget(target);
  const WindowHandle own = GetHandle();
  if (link.help && disk_.Exists(*link.help)) SendHost(kMsgShowHelp, *link.help, 0);
  if (link.file && IsWindow(own)) {
    SendHost(kMsgOpenFileAtLine, *link.file, -std::intptr_t{link.line});
  }
  if ((link.timeLow != 0 || link.timeHigh != 0) && IsWindow(own)) {
    SendWindowMessage(hostWindow_, kMsgShowTimeStamps, link.timeHigh, link.timeLow);
  }
}

void COutputEdit::SendHost(std::uint32_t message, const std::string& path,
                           std::intptr_t lParam) const {
  SendWindowMessage(hostWindow_, message, ToParam(path.c_str()), lParam);
}

}  // namespace tarn
