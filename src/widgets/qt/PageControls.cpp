#include "widgets/qt/PageControls.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QTextDocument>
#include <functional>
#include <memory>

#include "widgets/qt/WidgetPeer.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

QAbstractButton* NewButton(ButtonKind kind) {
  switch (kind) {
    case ButtonKind::CheckBox:
      return new QCheckBox;
    case ButtonKind::Radio:
      return new QRadioButton;
    case ButtonKind::Push:
      break;
  }
  return new QPushButton;
}

// Returns the preceding radio button of the same group; null for the first one.
QAbstractButton* RadioBefore(const CButton& button) {
  QAbstractButton* before = nullptr;
  if (button.GetParent() == nullptr || button.StartsGroup()) return nullptr;
  for (const CWnd* const each : button.GetParent()->GetChildren()) {
    if (each == &button) break;
    const auto* const radio = dynamic_cast<const CButton*>(each);
    if (radio == nullptr || radio->GetKind() != ButtonKind::Radio) continue;
    before = qobject_cast<QAbstractButton*>(WidgetOf(*radio));
  }
  return before;
}

class ButtonWidgetPeer : public WidgetPeer<ButtonPeer, QAbstractButton> {
 public:
  explicit ButtonWidgetPeer(CButton& shownButton)
      : WidgetPeer(shownButton, NewButton(shownButton.GetKind())), button_(shownButton) {
    if (button_.GetKind() == ButtonKind::Radio) JoinGroup();
    ButtonWidgetPeer::OnTextChanged();
    ButtonWidgetPeer::OnCheckChanged();
    new WindowInput(button_, *widget, kInputFocus | kInputKeys);
    QObject::connect(widget, &QAbstractButton::clicked, widget, [this, own = handle] {
      if (!IsWindow(own)) return;
      button_.NotifyClicked();
      // The control's state is authoritative; the widget has already toggled by itself.
      if (IsWindow(own)) OnCheckChanged();
    });
  }

  void OnTextChanged() override {
    if (widget != nullptr) widget->setText(ToQtLabel(button_.GetControlText()));
  }
  void OnCheckChanged() override {
    if (widget == nullptr || button_.GetKind() == ButtonKind::Push) return;
    // An exclusive group would refuse to uncheck its last button.
    QButtonGroup* const group = widget->group();
    if (group != nullptr) group->setExclusive(false);
    widget->setChecked(button_.IsChecked());
    if (group != nullptr) group->setExclusive(true);
  }

 private:
  // Adds the button to its group, for navigation with the arrow keys.
  void JoinGroup() {
    const QAbstractButton* const before = RadioBefore(button_);
    QButtonGroup* group = before == nullptr ? nullptr : before->group();
    if (group == nullptr) group = new QButtonGroup(widget->parentWidget());
    group->addButton(widget);
  }

  CButton& button_;
};

class ComboBoxWidgetPeer : public WidgetPeer<ComboBoxPeer, QComboBox> {
 public:
  explicit ComboBoxWidgetPeer(CComboBox& shownList)
      : WidgetPeer(shownList, new QComboBox), list_(shownList) {
    ComboBoxWidgetPeer::OnEntriesChanged();
    new WindowInput(list_, *widget, kInputFocus);
    QObject::connect(widget, &QComboBox::activated, widget, [this, own = handle](int index) {
      if (!IsWindow(own)) return;
      list_.NotifySelected(index);
      if (IsWindow(own)) OnSelectionChanged();
    });
  }

  void OnEntriesChanged() override {
    if (widget == nullptr) return;
    // Entries are added one by one.
    if (list_.GetCount() < widget->count()) widget->clear();
    for (int index = widget->count(); index < list_.GetCount(); ++index) {
      widget->addItem(Translated(list_.GetText(index)));
    }
    OnSelectionChanged();
  }
  void OnSelectionChanged() override {
    if (widget != nullptr) widget->setCurrentIndex(list_.GetCurSel());
  }

 private:
  CComboBox& list_;
};

class StaticPeer : public WidgetPeer<WindowPeer, QLabel> {
 public:
  explicit StaticPeer(CStatic& shownText)
      : WidgetPeer(shownText, new QLabel), kind_(shownText.GetKind()) {
    widget->setTextFormat(Qt::PlainText);
    widget->setWordWrap(true);
    if (kind_ == StaticKind::Frame) widget->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    StaticPeer::OnTextChanged();
    StaticPeer::OnMoved();
  }

  void OnTextChanged() override {
    if (widget == nullptr || kind_ != StaticKind::Label) return;
    widget->setText(Translated(window.GetControlText()));
    Fit();
  }
  void OnMoved() override {
    WidgetPeer::OnMoved();
    if (widget != nullptr) Fit();
  }

 private:
  // A single line is centred vertically, to align with the field next to it; several lines start at
  // the top. Truncated text is shown in a tooltip.
  void Fit() {
    const bool isOneLine = widget->height() < 2 * QFontMetrics(widget->font()).height();
    widget->setAlignment(Qt::AlignLeft | (isOneLine ? Qt::AlignVCenter : Qt::AlignTop));
    const bool isCut = widget->heightForWidth(widget->width()) > widget->height();
    widget->setToolTip(isCut ? Qt::convertFromPlainText(widget->text()) : QString());
  }

  const StaticKind kind_;
};

// A link as a widget with its own focus; a link inside a label's text would need a second Tab.
class LinkLabel : public QLabel {
 public:
  LinkLabel() {
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::StrongFocus);
    ShowState();
  }
  std::function<void()> onOpen;

 protected:
  void changeEvent(QEvent* event) override {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) ShowState();
  }
  void keyPressEvent(QKeyEvent* event) override {
    const int key = event->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Space) {
      QLabel::keyPressEvent(event);
    } else if (onOpen) {
      onOpen();
    }
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    const QPoint point = event->position().toPoint();
    const bool isOnText = point.x() < sizeHint().width() && rect().contains(point);
    if (event->button() == Qt::LeftButton && isOnText && onOpen) onOpen();
  }
  void paintEvent(QPaintEvent* event) override {
    QLabel::paintEvent(event);
    if (!hasFocus()) return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect.setWidth(qMin(width(), sizeHint().width()));
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }

 private:
  // Palettes have the same colour for enabled and disabled links.
  void ShowState() {
    setForegroundRole(isEnabled() ? QPalette::Link : QPalette::WindowText);
    setCursor(isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
  }
};

class HyperlinkPeer : public WidgetPeer<WindowPeer, LinkLabel> {
 public:
  explicit HyperlinkPeer(CHyperlinkCtrl& shownLink) : WidgetPeer(shownLink, new LinkLabel) {
    HyperlinkPeer::OnTextChanged();
    HyperlinkPeer::OnFontChanged();
    new WindowInput(shownLink, *widget, kInputFocus);
    widget->onOpen = [&shownLink, own = handle] {
      if (IsWindow(own)) shownLink.NotifyClicked();
    };
  }

  void OnTextChanged() override {
    if (widget != nullptr) widget->setText(Translated(window.GetControlText()));
  }
  void OnFontChanged() override {
    if (widget == nullptr) return;
    QFont font = ToQtFont(window.GetFont(), QFont());
    font.setUnderline(true);
    widget->setFont(font);
  }
};

class PagePeer : public WidgetPeer<WindowPeer> {
 public:
  explicit PagePeer(CPropertyPage& page) : WidgetPeer(page, new QWidget) {
    new WindowInput(page, *widget, kInputContextMenu | kInputFileDrops);
  }
};

}  // namespace

std::unique_ptr<ButtonPeer> MakeButtonPeer(CButton& button) {
  return std::make_unique<ButtonWidgetPeer>(button);
}

std::unique_ptr<ComboBoxPeer> MakeComboBoxPeer(CComboBox& list) {
  return std::make_unique<ComboBoxWidgetPeer>(list);
}

std::unique_ptr<WindowPeer> MakeHyperlinkPeer(CHyperlinkCtrl& link) {
  return std::make_unique<HyperlinkPeer>(link);
}

std::unique_ptr<WindowPeer> MakePagePeer(CPropertyPage& page) {
  return std::make_unique<PagePeer>(page);
}

std::unique_ptr<WindowPeer> MakeStaticPeer(CStatic& text) {
  return std::make_unique<StaticPeer>(text);
}

}  // namespace tarn
