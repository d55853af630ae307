#include "platform/qt/PageControls.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTextDocument>

#include "platform/qt/WidgetPeer.h"
#include "platform/qt/WindowInput.h"

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

// The radio button in front of this one in the same group; null for the first.
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
      : WidgetPeer(shownButton, NewButton(shownButton.GetKind())), button(shownButton) {
    if (button.GetKind() == ButtonKind::Radio) JoinGroup();
    ButtonWidgetPeer::OnTextChanged();
    ButtonWidgetPeer::OnCheckChanged();
    new WindowInput(button, *widget, kInputFocus | kInputKeys);
    QObject::connect(widget, &QAbstractButton::clicked, widget, [this, own = handle] {
      if (!IsWindow(own)) return;
      button.NotifyClicked();
      // The button decides; the widget has only guessed.
      if (IsWindow(own)) OnCheckChanged();
    });
  }

  void OnTextChanged() override {
    if (widget != nullptr) widget->setText(ToQtLabel(button.GetWindowText()));
  }
  void OnCheckChanged() override {
    if (widget == nullptr || button.GetKind() == ButtonKind::Push) return;
    // A group that insists on a choice would keep the last one.
    QButtonGroup* const group = widget->group();
    if (group != nullptr) group->setExclusive(false);
    widget->setChecked(button.IsChecked());
    if (group != nullptr) group->setExclusive(true);
  }

 private:
  // Gives the arrow keys their way through the group.
  void JoinGroup() {
    const QAbstractButton* const before = RadioBefore(button);
    QButtonGroup* group = before == nullptr ? nullptr : before->group();
    if (group == nullptr) group = new QButtonGroup(widget->parentWidget());
    group->addButton(widget);
  }

  CButton& button;
};

class ComboBoxWidgetPeer : public WidgetPeer<ComboBoxPeer, QComboBox> {
 public:
  explicit ComboBoxWidgetPeer(CComboBox& shownList)
      : WidgetPeer(shownList, new QComboBox), list(shownList) {
    ComboBoxWidgetPeer::OnEntriesChanged();
    new WindowInput(list, *widget, kInputFocus);
    QObject::connect(widget, &QComboBox::activated, widget, [this, own = handle](int index) {
      if (!IsWindow(own)) return;
      list.NotifySelected(index);
      if (IsWindow(own)) OnSelectionChanged();
    });
  }

  void OnEntriesChanged() override {
    if (widget == nullptr) return;
    // Entries are added one after another.
    if (list.GetCount() < widget->count()) widget->clear();
    for (int index = widget->count(); index < list.GetCount(); ++index) {
      widget->addItem(ToQt(list.GetText(index)));
    }
    OnSelectionChanged();
  }
  void OnSelectionChanged() override {
    if (widget != nullptr) widget->setCurrentIndex(list.GetCurSel());
  }

 private:
  CComboBox& list;
};

class StaticPeer : public WidgetPeer<WindowPeer, QLabel> {
 public:
  explicit StaticPeer(CStatic& shownText)
      : WidgetPeer(shownText, new QLabel), kind(shownText.GetKind()) {
    widget->setTextFormat(Qt::PlainText);
    widget->setWordWrap(true);
    if (kind == StaticKind::Frame) widget->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    StaticPeer::OnTextChanged();
    StaticPeer::OnMoved();
  }

  void OnTextChanged() override {
    if (widget == nullptr || kind != StaticKind::Label) return;
    widget->setText(ToQt(window.GetWindowText()));
    Fit();
  }
  void OnMoved() override {
    WidgetPeer::OnMoved();
    if (widget != nullptr) Fit();
  }

 private:
  // One line stands in the middle of its place, beside its field; several begin at the top. What is
  // too long for its place can be read in a tip.
  void Fit() {
    const bool isOneLine = widget->height() < 2 * QFontMetrics(widget->font()).height();
    widget->setAlignment(Qt::AlignLeft | (isOneLine ? Qt::AlignVCenter : Qt::AlignTop));
    const bool isCut = widget->heightForWidth(widget->width()) > widget->height();
    widget->setToolTip(isCut ? Qt::convertFromPlainText(widget->text()) : QString());
  }

  const StaticKind kind;
};

class HyperlinkPeer : public WidgetPeer<WindowPeer, QLabel> {
 public:
  explicit HyperlinkPeer(CHyperlinkCtrl& shownLink)
      : WidgetPeer(shownLink, new QLabel), link(shownLink) {
    widget->setTextFormat(Qt::RichText);
    widget->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    widget->setOpenExternalLinks(false);
    HyperlinkPeer::OnTextChanged();
    new WindowInput(link, *widget, kInputFocus);
    QObject::connect(widget, &QLabel::linkActivated, widget, [this, own = handle] {
      if (IsWindow(own)) link.NotifyClicked();
    });
  }

  void OnTextChanged() override {
    if (widget == nullptr) return;
    const QString text = ToQt(link.GetWindowText());
    // The address is asked for when it is needed.
    widget->setText(QStringLiteral("<a href=\"#\">%1</a>").arg(text.toHtmlEscaped()));
    widget->setAccessibleName(text);
  }

 private:
  CHyperlinkCtrl& link;
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
