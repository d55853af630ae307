#include "widgets/qt/QtToolBar.h"

#include <QFrame>
#include <QIcon>
#include <QMetaObject>
#include <QResizeEvent>
#include <QStyleOptionToolButton>
#include <QToolButton>
#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "widgets/qt/ImageCache.h"
#include "widgets/qt/WidgetPeer.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

constexpr int kBarMargin = 2;
constexpr int kInset = 4;  // of a separator, above and below
constexpr int kSeparatorWidth = 9;
constexpr int kArrowWidth = 10;

class BarButton : public QToolButton {
 public:
  BarButton(bool dropsDown, QWidget* parent) : QToolButton(parent), isDropDown_(dropsDown) {
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
  }
  QSize sizeHint() const override {
    const QSize plain = QToolButton::sizeHint();
    return isDropDown_ ? plain + QSize(kArrowWidth, 0) : plain;
  }

 protected:
  // The menu is created on demand, so the style has to be informed of it explicitly.
  void initStyleOption(QStyleOptionToolButton* option) const override {
    QToolButton::initStyleOption(option);
    if (isDropDown_) option->features |= QStyleOptionToolButton::HasMenu;
  }

 private:
  const bool isDropDown_;
};

class BarWidget : public QWidget {
 public:
  std::function<void()> onResize;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QWidget::resizeEvent(event);
    if (onResize) onResize();
  }
};

class QtToolBar : public WidgetPeer<ToolBarPeer, BarWidget> {
 public:
  explicit QtToolBar(CToolBar& shownBar) : WidgetPeer(shownBar, new BarWidget), bar_(shownBar) {
    new WindowInput(bar_, *widget, kInputSize | kInputContextMenu | kInputFileDrops);
    widget->onResize = [this, own = handle] {
      if (IsWindow(own)) Arrange();
    };
    QtToolBar::OnButtonsChanged();
  }

  // Buttons are added one by one; the widgets are created once afterwards.
  void OnButtonsChanged() override {
    if (widget == nullptr || std::exchange(isStale_, true)) return;
    QMetaObject::invokeMethod(
        widget,
        [this, own = handle] {
          if (IsWindow(own)) Arrange();
        },
        Qt::QueuedConnection);
  }
  void OnButtonChanged(std::size_t index) override {
    if (isStale_ || widget == nullptr) return;
    Refresh(index);
    Arrange();
  }
  std::optional<int> HeightFor(int width) override {
    if (widget == nullptr) return std::nullopt;
    const std::vector<Rect> places = PlacesAt(width);
    return places.empty() ? 0 : places.back().bottom + kBarMargin;
  }
  std::optional<Rect> ButtonRect(std::size_t index) override {
    const std::vector<Rect> places = PlacesAt(bar_.GetRect().Width());
    if (index >= places.size()) return std::nullopt;
    return places[index];
  }

 private:
  void Make() {
    if (!std::exchange(isStale_, false)) return;
    // One of them may be in the middle of its press.
    for (QWidget* const item : items_) {
      item->hide();
      item->deleteLater();
    }
    items_.clear();
    for (const CToolBar::Button& button : bar_.GetButtons()) {
      items_.push_back(button.isSeparator ? MakeSeparator() : MakeButton(button));
    }
    for (std::size_t i = 0; i < items_.size(); ++i) Refresh(i);
  }

  QWidget* MakeSeparator() {
    auto* const line = new QFrame(widget);
    line->setFrameStyle(QFrame::VLine | QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    line->show();
    return line;
  }

  QWidget* MakeButton(const CToolBar::Button& button) {
    auto* const made = new BarButton(button.isDropDown, widget);
    if (bar_.GetImages() != nullptr) {
      const Size size = bar_.GetImages()->GetImageSize();
      made->setIconSize(QSize(size.width, size.height));
      // Several resolutions, since the window may be moved to another screen.
      QIcon icon;
      for (const qreal ratio : {1.0, 2.0, widget->devicePixelRatioF()}) {
        icon.addPixmap(images_.Get(*bar_.GetImages(), button.image, ratio));
      }
      made->setIcon(icon);
    }
    made->setToolButtonStyle(made->icon().isNull() ? Qt::ToolButtonTextOnly
                                                   : Qt::ToolButtonIconOnly);
    QObject::connect(made, &QToolButton::clicked, widget,
                     [this, own = handle, id = button.id, isDropDown = button.isDropDown] {
                       if (!IsWindow(own)) return;
                       isDropDown ? bar_.NotifyDropDown(id) : bar_.NotifyButton(id);
                       // The bar determines the appearance, regardless of the widget's own
                       // toggling.
                       if (IsWindow(own)) RefreshAll();
                     });
    made->show();
    return made;
  }

  void RefreshAll() {
    if (isStale_ || widget == nullptr) return;
    for (std::size_t i = 0; i < items_.size(); ++i) Refresh(i);
  }

  void Refresh(std::size_t index) {
    if (index >= items_.size()) return;
    const CToolBar::Button& button = bar_.GetButtons()[index];
    auto* const shown = qobject_cast<QToolButton*>(items_[index]);
    if (shown == nullptr) return;
    const QString text = ToQtLabel(button.text);
    if (shown->text() != text) {
      shown->setText(text);
      shown->setToolTip(WithoutMnemonic(text));
      shown->setAccessibleName(WithoutMnemonic(text));
    }
    shown->setEnabled(button.isEnabled);
    shown->setCheckable(button.isChecked || button.isRadio);
    shown->setChecked(button.isChecked);
  }

  std::vector<Rect> PlacesAt(int width) {
    if (widget == nullptr) return {};
    Make();
    int height = 0;
    for (QWidget* const item : items_) {
      if (qobject_cast<QToolButton*>(item)) height = std::max(height, item->sizeHint().height());
    }
    std::vector<Rect> places;
    places.reserve(items_.size());
    int left = kBarMargin;
    int top = kBarMargin;
    for (QWidget* const item : items_) {
      const int taken =
          qobject_cast<QToolButton*>(item) ? item->sizeHint().width() : kSeparatorWidth;
      if (left > kBarMargin && left + taken > width - kBarMargin) {
        left = kBarMargin;
        top += height;
      }
      places.push_back({left, top, left + taken, top + height});
      left += taken;
    }
    return places;
  }

  void Arrange() {
    if (widget == nullptr) return;
    const std::vector<Rect> places = PlacesAt(widget->width());
    for (std::size_t i = 0; i < places.size(); ++i) {
      const Rect& place = places[i];
      QRect covered(place.left, place.top, place.Width(), place.Height());
      if (qobject_cast<QToolButton*>(items_[i]) == nullptr) covered.adjust(0, kInset, 0, -kInset);
      items_[i]->setGeometry(covered);
    }
  }

  CToolBar& bar_;
  ImageCache images_;
  std::vector<QWidget*> items_;  // one per button
  bool isStale_ = false;
};

}  // namespace

std::unique_ptr<ToolBarPeer> MakeToolBarPeer(CToolBar& bar) {
  return std::make_unique<QtToolBar>(bar);
}

}  // namespace tarn
