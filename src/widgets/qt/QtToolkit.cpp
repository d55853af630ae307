#include "widgets/qt/QtToolkit.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QDesktopServices>
#include <QDrag>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>
#include <QUrl>

#include "widgets/qt/PageControls.h"
#include "widgets/qt/QtBrowser.h"
#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtEdit.h"
#include "widgets/qt/QtFont.h"
#include "widgets/qt/QtMenu.h"
#include "widgets/qt/QtReport.h"
#include "widgets/qt/QtRichText.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/QtTipPeer.h"
#include "widgets/qt/QtToolBar.h"
#include "widgets/qt/QtTreePeer.h"
#include "widgets/qt/SheetDialog.h"
#include "widgets/qt/WidgetPeer.h"
#include "widgets/qt/WindowInput.h"

namespace tarn {

namespace {

// A window that only contains others. As a child window it is part of its parent's content, for
// example a margin next to a text.
class PlainPeer : public WidgetPeer<WindowPeer> {
 public:
  explicit PlainPeer(CWnd& shownWindow) : WidgetPeer(shownWindow, new QWidget) {
    if (shownWindow.GetParent() != nullptr) {
      widget->setBackgroundRole(QPalette::Base);
      widget->setAutoFillBackground(true);
    }
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

std::unique_ptr<ButtonPeer> QtToolkit::MakePeer(CButton& button) {
  return MakeButtonPeer(button);
}

std::unique_ptr<ComboBoxPeer> QtToolkit::MakePeer(CComboBox& list) {
  return MakeComboBoxPeer(list);
}

std::unique_ptr<WindowPeer> QtToolkit::MakePeer(CHyperlinkCtrl& link) {
  return MakeHyperlinkPeer(link);
}

std::unique_ptr<WindowPeer> QtToolkit::MakePeer(CPropertyPage& page) {
  return MakePagePeer(page);
}

std::unique_ptr<PropertySheetPeer> QtToolkit::MakePeer(CPropertySheet& sheet) {
  return MakeSheetPeer(sheet);
}

std::unique_ptr<WindowPeer> QtToolkit::MakePeer(CStatic& text) {
  return MakeStaticPeer(text);
}

std::unique_ptr<ToolBarPeer> QtToolkit::MakePeer(CToolBar& bar) {
  return MakeToolBarPeer(bar);
}

std::unique_ptr<ReportPeer> QtToolkit::MakePeer(CReportControl& report) {
  return MakeReportPeer(report);
}

std::unique_ptr<BrowserPeer> QtToolkit::MakePeer(CBrowserCtrl& browser) {
  return MakeBrowserPeer(browser);
}

Size QtToolkit::MeasureText(const Font& font, std::string_view text) {
  const QFontMetrics metrics(ToQtFont(font, QGuiApplication::font()));
  return {metrics.horizontalAdvance(ToQt(text)), metrics.height()};
}

Color QtToolkit::GetColor(SystemColor color) {
  return FromQtColor(QGuiApplication::palette().color(QPalette::Active, RoleOf(color)));
}

void QtToolkit::SetCursor(CursorShape shape) {
  if (isWaiting_) QGuiApplication::restoreOverrideCursor();
  isWaiting_ = shape == CursorShape::Wait;
  if (isWaiting_) return QGuiApplication::setOverrideCursor(ToQtShape(shape));
  QWidget* const under =
      shape == CursorShape::Arrow ? nullptr : QApplication::widgetAt(QCursor::pos());
  if (pointedAt_ != nullptr && pointedAt_ != under) pointedAt_->unsetCursor();
  pointedAt_ = under;
  if (pointedAt_ != nullptr) pointedAt_->setCursor(ToQtShape(shape));
}

int QtToolkit::TrackMenu(const CMenu& menu, Point screen, CWnd& owner) {
  return RunMenu(menu, screen, owner);
}

void QtToolkit::SetClipboardText(const std::string& text) {
  QGuiApplication::clipboard()->setText(ToQt(text));
}

void QtToolkit::DragText(CWnd& source, const std::string& text) {
  QWidget* const widget = WidgetOf(source);
  if (widget == nullptr) return;
  // Owned by the surrounding window, since the source may be destroyed while the drag runs its
  // loop. It deletes itself afterwards.
  auto* const drag = new QDrag(widget->window());
  auto* const data = new QMimeData;
  data->setText(ToQt(text));
  drag->setMimeData(data);
  drag->exec(Qt::CopyAction);
}

void QtToolkit::OpenAddress(const std::string& address) {
  QDesktopServices::openUrl(QUrl::fromUserInput(ToQt(address)));
}

}  // namespace tarn
