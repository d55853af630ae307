#include "widgets/ToolBar.h"

#include <utility>

#include "widgets/HostMessages.h"
#include "widgets/Toolkit.h"

namespace tarn {

namespace {

// Metrics without a peer: a button is its image with a margin, plus an arrow if it has a menu. Its
// text is a tooltip.
constexpr Size kUsualImage{16, 16};
constexpr int kMargin = 4;
constexpr int kArrowWidth = 12;
constexpr int kSeparatorWidth = 8;

}  // namespace

void CToolBar::SetImages(CImageList newImages) {
  images_ = std::move(newImages);
  if (ToolBarPeer* drawing = Drawing()) drawing->OnButtonsChanged();
}

void CToolBar::AddButton(int buttonId, std::string label, int image) {
  Button button;
  button.id = buttonId;
  button.text = std::move(label);
  button.image = image;
  Add(std::move(button), nullptr);
}

void CToolBar::AddDropDown(int buttonId, std::string label, int image, MenuMaker makeMenu) {
  Button button;
  button.id = buttonId;
  button.text = std::move(label);
  button.image = image;
  button.isDropDown = true;
  Add(std::move(button), std::move(makeMenu));
}

void CToolBar::AddSeparator() {
  Button button;
  button.isSeparator = true;
  Add(std::move(button), nullptr);
}

void CToolBar::Add(Button button, MenuMaker makeMenu) {
  buttons_.push_back(std::move(button));
  menus_.push_back(std::move(makeMenu));
  if (ToolBarPeer* drawing = Drawing()) drawing->OnButtonsChanged();
}

int CToolBar::GetHeightFor(int width) {
  if (ToolBarPeer* drawing = Drawing()) {
    if (const auto height = drawing->HeightFor(width)) return *height;
  }
  const std::vector<Rect> places = Layout(width);
  return places.empty() ? 0 : places.back().bottom;
}

Rect CToolBar::GetButtonRect(std::size_t index) {
  if (index >= buttons_.size()) return {};
  if (ToolBarPeer* drawing = Drawing()) {
    if (const auto place = drawing->ButtonRect(index)) return *place;
  }
  return Layout(GetRect().Width())[index];
}

std::vector<Rect> CToolBar::Layout(int width) const {
  const Size image = images_ ? images_->GetImageSize() : kUsualImage;
  const int height = image.height + 2 * kMargin;
  std::vector<Rect> places;
  places.reserve(buttons_.size());
  int left = 0;
  int top = 0;
  for (const Button& button : buttons_) {
    int taken = button.isSeparator ? kSeparatorWidth : image.width + 2 * kMargin;
    if (button.isDropDown) taken += kArrowWidth;
    if (left > 0 && left + taken > width) {
      left = 0;
      top += height;
    }
    places.push_back({left, top, left + taken, top + height});
    left += taken;
  }
  return places;
}

std::optional<std::size_t> CToolBar::FindEnabled(int buttonId) const {
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const Button& button = buttons_[i];
    if (!button.isSeparator && button.id == buttonId && button.isEnabled) return i;
  }
  return std::nullopt;
}

void CToolBar::NotifyButton(int buttonId) {
  if (IsCreated() && IsEnabled() && FindEnabled(buttonId)) SendOwner(kMsgCommand, buttonId, 0);
}

void CToolBar::NotifyDropDown(int buttonId) {
  const auto index = FindEnabled(buttonId);
  if (!IsCreated() || !IsEnabled() || !index || !menus_[*index]) return;
  const WindowHandle own = GetHandle();
  // A copy: the menu maker and the menu's loop may destroy this toolbar.
  const MenuMaker makeMenu = menus_[*index];
  const std::unique_ptr<CMenu> menu = makeMenu();
  if (menu == nullptr || !IsWindow(own)) return;
  const Rect place = GetButtonRect(*index);
  const Point below = ClientToScreen({place.left, place.bottom});
  const int chosen = WindowToolkit::Current().TrackMenu(*menu, below, *this);
  if (chosen != 0 && IsWindow(own)) SendOwner(kMsgCommand, chosen, 0);
}

void CToolBar::OnIdle() {
  if (!updater_) return;
  const WindowHandle own = GetHandle();
  const Updater update = updater_;
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    if (buttons_[i].isSeparator) continue;
    Button wanted = buttons_[i];
    update(wanted);
    if (!IsWindow(own)) return;
    Button& button = buttons_[i];
    wanted.id = button.id;
    wanted.image = button.image;
    wanted.isSeparator = button.isSeparator;
    wanted.isDropDown = button.isDropDown;
    if (wanted == button) continue;
    button = std::move(wanted);
    if (ToolBarPeer* drawing = Drawing()) drawing->OnButtonChanged(i);
  }
}

std::unique_ptr<WindowPeer> CToolBar::MakePeer(WindowToolkit& toolkit) {
  return toolkit.MakePeer(*this);
}

}  // namespace tarn
