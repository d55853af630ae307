#include "platform/qt/QtToolkit.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPalette>
#include <QUrl>

#include "platform/qt/QtEdit.h"
#include "platform/qt/QtFont.h"
#include "platform/qt/QtRichText.h"
#include "platform/qt/QtText.h"
#include "platform/qt/QtTipPeer.h"
#include "platform/qt/QtTreePeer.h"
#include "platform/qt/WidgetPeer.h"
#include "platform/qt/WindowInput.h"

namespace tarn {

namespace {

// A window that only holds others.
class PlainPeer : public WidgetPeer<WindowPeer> {
 public:
  explicit PlainPeer(CWnd& shownWindow) : WidgetPeer(shownWindow, new QWidget) {
    new WindowInput(shownWindow, *widget);
  }
};

QPalette::ColorRole RoleOf(SystemColor color) {
  switch (color) {
    case SystemColor::Window:
      return QPalette::Base;
    case SystemColor::WindowText:
      return QPalette::Text;
    case SystemColor::Highlight:
      return QPalette::Highlight;
    case SystemColor::HighlightText:
      break;
  }
  return QPalette::HighlightedText;
}

Qt::CursorShape ToQtShape(CursorShape shape) {
  switch (shape) {
    case CursorShape::Wait:
      return Qt::WaitCursor;
    case CursorShape::Help:
      return Qt::WhatsThisCursor;
    case CursorShape::Hand:
      return Qt::PointingHandCursor;
    case CursorShape::Arrow:
      break;
  }
  return Qt::ArrowCursor;
}

}  // namespace

QtToolkit::QtToolkit() {
  SetCurrent(this);
}

QtToolkit::~QtToolkit() {
  SetCurrent(nullptr);
}

std::unique_ptr<WindowPeer> QtToolkit::MakePeer(CWnd& window) {
  return std::make_unique<PlainPeer>(window);
}

std::unique_ptr<WindowPeer> QtToolkit::MakePeer(CTipWindow& tip) {
  return std::make_unique<QtTipPeer>(tip);
}

std::unique_ptr<TreePeer> QtToolkit::MakePeer(CTreeCtrl& tree) {
  return std::make_unique<QtTreePeer>(tree);
}

std::unique_ptr<EditPeer> QtToolkit::MakePeer(CEdit& edit) {
  return MakeEditPeer(edit);
}

std::unique_ptr<RichTextPeer> QtToolkit::MakePeer(CRichTextCtrl& richText) {
  return MakeRichTextPeer(richText);
}

Size QtToolkit::MeasureText(const Font& font, std::string_view text) {
  const QFontMetrics metrics(ToQtFont(font, QGuiApplication::font()));
  return {metrics.horizontalAdvance(ToQt(text)), metrics.height()};
}

Color QtToolkit::GetColor(SystemColor color) {
  return FromQtColor(QGuiApplication::palette().color(RoleOf(color)));
}

void QtToolkit::SetCursor(CursorShape shape) {
  if (isWaiting) QGuiApplication::restoreOverrideCursor();
  isWaiting = shape != CursorShape::Arrow;
  if (isWaiting) QGuiApplication::setOverrideCursor(ToQtShape(shape));
}

void QtToolkit::SetClipboardText(const std::string& text) {
  QGuiApplication::clipboard()->setText(ToQt(text));
}

void QtToolkit::OpenAddress(const std::string& address) {
  QDesktopServices::openUrl(QUrl::fromUserInput(ToQt(address)));
}

}  // namespace tarn
