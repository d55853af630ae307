#include "widgets/TipWindow.h"

#include <algorithm>
#include <utility>

#include "platform/text/Text.h"
#include "widgets/Toolkit.h"

namespace tarn {

namespace {

constexpr int kAppearTimer = 1;
constexpr int kHideTimer = 2;

}  // namespace

bool CTipWindow::Create(CWnd* over) {
  return CWnd::Create(kStylePopup, {}, over, 0);
}

void CTipWindow::ShowTip(std::string newTitle, const std::string& newText, Point point,
                         std::chrono::milliseconds delay, std::chrono::milliseconds newDuration) {
  Hide();
  title_ = std::move(newTitle);
  SetControlText(newText);
  duration_ = newDuration;
  const Size size = Measure();
  MoveWindow({point.x, point.y, point.x + size.width, point.y + size.height});
  Invalidate();
  if (delay.count() > 0) {
    SetTimer(kAppearTimer, delay);
  } else {
    Appear();
  }
}

void CTipWindow::Hide() {
  KillTimer(kAppearTimer);
  KillTimer(kHideTimer);
  ShowWindow(false);
}

void CTipWindow::OnTimer(int timerId) {
  if (timerId == kAppearTimer) {
    KillTimer(kAppearTimer);
    Appear();
  } else {
    Hide();
  }
}

void CTipWindow::Appear() {
  ShowWindow(true);
  if (duration_.count() > 0) SetTimer(kHideTimer, duration_);
}

Size CTipWindow::Measure() const {
  WindowToolkit& toolkit = WindowToolkit::Current();
  Font titleFont = GetFont();
  titleFont.isBold = true;
  Size size = toolkit.MeasureText(titleFont, title_);
  for (const std::string_view line : Split(GetControlText(), '\n')) {
    const Size measured = toolkit.MeasureText(GetFont(), line);
    size.width = std::max(size.width, measured.width);
    size.height += lineSpace_ + measured.height;
  }
  return {size.width + 2 * margins_.width, size.height + 2 * margins_.height};
}

std::unique_ptr<WindowPeer> CTipWindow::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
