#include "widgets/qt/SheetDialog.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QStyle>
#include <QVBoxLayout>
#include <string>

#include "widgets/Static.h"
#include "widgets/qt/ImageCache.h"
#include "widgets/qt/WidgetPeer.h"

namespace tarn {

namespace {

constexpr int kSheetMargin = 12;
// The space that a page's table leaves at its edges is part of the margin.
constexpr int kAroundPage = 4;
constexpr int kPictureSize = 48;
constexpr qreal kTitleGrowth = 1.15;

// Scales the whole bitmap to fit the available space.
QPixmap ToPicture(const std::shared_ptr<const Bitmap>& bitmap, qreal ratio) {
  if (bitmap == nullptr) return {};
  const QPixmap picture = ToPixmap(*bitmap, bitmap->size, 0, ratio);
  if (bitmap->size.width <= kPictureSize && bitmap->size.height <= kPictureSize) return picture;
  const auto side = static_cast<int>(kPictureSize * picture.devicePixelRatio());
  return picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QFrame* NewLine(QWidget* parent) {
  auto* const line = new QFrame(parent);
  line->setFrameStyle(QFrame::HLine | QFrame::Plain);
  line->setForegroundRole(QPalette::Mid);
  return line;
}

QLabel* NewText(const std::string& text, QWidget* parent) {
  auto* const label = new QLabel(Translated(text), parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

// A field has no text of its own, so its accessible name is the label before it.
void NameFields(const CPropertyPage& page) {
  QString label;
  for (const CWnd* const each : page.GetChildren()) {
    QWidget* const widget = WidgetOf(*each);
    if (const auto* const text = dynamic_cast<const CStatic*>(each)) {
      if (text->GetKind() == StaticKind::Label) label = Translated(text->GetControlText());
    } else if (widget != nullptr && widget->accessibleName().isEmpty()) {
      if (dynamic_cast<const CControl*>(each) == nullptr || each->GetControlText().empty()) {
        widget->setAccessibleName(label);
      }
    }
  }
}

// Sets the tab order: the page's controls, then the buttons. The first enabled control gets the
// focus.
void OrderFocus(const CPropertyPage& page, QWidget* buttons) {
  QWidget* last = nullptr;
  for (const CWnd* const each : page.GetChildren()) {
    QWidget* const widget = WidgetOf(*each);
    if (widget == nullptr || (widget->focusPolicy() & Qt::TabFocus) == 0) continue;
    if (last != nullptr) QWidget::setTabOrder(last, widget);
    if (last == nullptr && widget->isEnabled()) widget->setFocus(Qt::TabFocusReason);
    last = widget;
  }
  if (last != nullptr) QWidget::setTabOrder(last, buttons);
}

class SheetPeer : public WidgetPeer<PropertySheetPeer, SheetDialog> {
 public:
  explicit SheetPeer(CPropertySheet& shownSheet)
      : WidgetPeer(shownSheet, new SheetDialog), sheet_(shownSheet) {}

  void OnFinishEnabled() override {
    if (widget != nullptr) widget->EnableFinish(sheet_.IsFinishEnabled());
  }

 private:
  CPropertySheet& sheet_;
};

}  // namespace

QWidget* SheetDialog::MakeHeader(const CPropertySheet& sheet) {
  const CPropertyPage& page = *sheet.GetPage();
  auto* const header = new QWidget(this);
  header->setAutoFillBackground(true);
  header->setBackgroundRole(QPalette::Base);
  auto* const title = NewText(page.GetHeaderTitle(), header);
  QFont titleFont = title->font();
  title->setObjectName("sheetTitle");
  titleFont.setBold(true);
  titleFont.setPointSizeF(titleFont.pointSizeF() * kTitleGrowth);
  title->setFont(titleFont);
  auto* const texts = new QVBoxLayout;
  texts->addStretch();
  texts->addWidget(title);
  texts->addWidget(NewText(page.GetHeaderSubtitle(), header));
  texts->addStretch();
  auto* const row = new QHBoxLayout(header);
  row->setContentsMargins(kSheetMargin, kSheetMargin / 2, kSheetMargin, kSheetMargin / 2);
  row->setSpacing(kSheetMargin);
  row->addLayout(texts, 1);
  const QPixmap picture = ToPicture(sheet.GetHeaderBitmap(), devicePixelRatioF());
  if (!picture.isNull()) {
    auto* const shown = new QLabel(header);
    shown->setPixmap(picture);
    shown->setFixedSize(kPictureSize, kPictureSize);
    shown->setAlignment(Qt::AlignCenter);
    row->addWidget(shown);
  }
  return header;
}

void SheetDialog::Build(const CPropertySheet& sheet) {
  const CPropertyPage& page = *sheet.GetPage();
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  rows->addWidget(MakeHeader(sheet));
  rows->addWidget(NewLine(this));
  if (QWidget* const pageWidget = WidgetOf(page)) {
    pageWidget->setFixedSize(page.GetTemplate().size.width, page.GetTemplate().size.height);
    auto* const body = new QHBoxLayout;
    body->setContentsMargins(kAroundPage, kAroundPage, kAroundPage, kAroundPage);
    body->addWidget(pageWidget);
    rows->addLayout(body);
  }
  rows->addWidget(MakeProblemRow());
  rows->addWidget(NewLine(this));
  auto* const buttons = new QDialogButtonBox(this);
  buttons->setContentsMargins(kSheetMargin, kSheetMargin, kSheetMargin, kSheetMargin);
  finishButton_ = buttons->addButton(QCoreApplication::translate("SheetDialog", "Finish"),
                                     QDialogButtonBox::AcceptRole);
  finishButton_->setDefault(true);
  // The toolkit's own translation may not be installed.
  buttons->addButton(QDialogButtonBox::Cancel)
      ->setText(QCoreApplication::translate("SheetDialog", "Cancel"));
  connect(buttons, &QDialogButtonBox::accepted, this, [this, &sheet] { TryFinish(sheet); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  rows->addWidget(buttons);
  rows->setSizeConstraint(QLayout::SetFixedSize);
  EnableFinish(sheet.IsFinishEnabled());
  NameFields(page);
  OrderFocus(page, finishButton_);
}

QWidget* SheetDialog::MakeProblemRow() {
  problemRow_ = new QWidget(this);
  auto* const row = new QHBoxLayout(problemRow_);
  row->setContentsMargins(kSheetMargin, 0, kSheetMargin, kSheetMargin);
  auto* const icon = new QLabel(problemRow_);
  const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side, side));
  row->addWidget(icon, 0, Qt::AlignTop);
  problemText_ = NewText({}, problemRow_);
  row->addWidget(problemText_, 1);
  problemRow_->hide();
  return problemRow_;
}

// The sheet's window owns this dialog.
void SheetDialog::TryFinish(const CPropertySheet& sheet) {
  QString problem = Translated(sheet.GetPage()->FindFinishProblem());
  if (problem.isEmpty() && findProblem) problem = ToQt(findProblem(sheet));
  if (problem.isEmpty()) return accept();
  problemText_->setText(problem);
  problemRow_->show();
  QAccessibleEvent alert(problemText_, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void SheetDialog::EnableFinish(bool enable) {
  if (finishButton_ != nullptr) finishButton_->setEnabled(enable);
}

std::unique_ptr<PropertySheetPeer> MakeSheetPeer(CPropertySheet& sheet) {
  return std::make_unique<SheetPeer>(sheet);
}

}  // namespace tarn
