#include "widgets/qt/ReportDelegate.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QTextLayout>
#include <algorithm>
#include <optional>
#include <string>

#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtFont.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/ReportModel.h"

namespace tarn {

namespace {

constexpr int kLineMargin = 3;   // above and below the text
constexpr int kImageMargin = 1;  // above and below an image
constexpr float kGridStrength = 0.12F;
constexpr float kGroupStrength = 0.06F;
constexpr float kSelectionStrength = 0.3F;
constexpr Color kWhite = MakeColor(255, 255, 255);

// Layout of a text in which hyperlinks are visible and can be hit-tested.
class LinkedText {
 public:
  LinkedText(const CReportRecordItem& linkedItem, const std::string& caption, const QFont& font,
             const QColor& linkColor)
      : layout_(ToQt(caption), font) {
    QList<QTextLayout::FormatRange> formats;
    for (int i = 0; i < linkedItem.GetHyperlinkCount(); ++i) {
      const CReportHyperlink& link = linkedItem.GetHyperlink(i);
      const auto start = static_cast<std::size_t>(std::max(0, link.GetStart()));
      const std::size_t end = start + static_cast<std::size_t>(std::max(0, link.GetLength()));
      QTextLayout::FormatRange range;
      range.start = ToQtPosition(caption, std::min(start, caption.size()));
      range.length = ToQtPosition(caption, std::min(end, caption.size())) - range.start;
      range.format.setFontUnderline(true);
      range.format.setForeground(linkColor);
      formats.append(range);
    }
    layout_.setFormats(formats);
    layout_.beginLayout();
    line_ = layout_.createLine();
    layout_.endLayout();
  }

  QPoint PlaceIn(const QRect& cell, Qt::Alignment alignment) const {
    const auto room = static_cast<int>(cell.width() - line_.naturalTextWidth());
    int shift = 0;
    if (alignment.testFlag(Qt::AlignRight)) shift = room;
    if (alignment.testFlag(Qt::AlignHCenter)) shift = room / 2;
    return {cell.left() + std::max(0, shift),
            cell.top() + static_cast<int>(cell.height() - line_.height()) / 2};
  }
  void Draw(QPainter& painter, const QRect& cell, Qt::Alignment alignment) const {
    layout_.draw(&painter, PlaceIn(cell, alignment), {}, cell);
  }
  // Returns nullopt outside the text.
  std::optional<int> PositionAt(const QRect& cell, Qt::Alignment alignment, QPoint point) const {
    const int x = point.x() - PlaceIn(cell, alignment).x();
    if (x < 0 || x >= line_.naturalTextWidth() || !cell.contains(point)) return std::nullopt;
    return line_.xToCursor(x, QTextLine::CursorOnCharacter);
  }

 private:
  QTextLayout layout_;
  QTextLine line_;
};

// Consumes all keys, so that unused ones don't reach the report.
class CellEditor : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    QLineEdit::keyPressEvent(event);
    event->accept();
  }
};

bool HasMark(const CReportRecordItem& item) {
  return item.HasCheckbox() || item.GetIconIndex() >= 0;
}

}  // namespace

ReportDelegate::ReportDelegate(CReportControl& shownReport, QWidget& reportView)
    : QStyledItemDelegate(&reportView),
      report_(shownReport),
      handle_(shownReport.GetHandle()),
      view_(reportView) {}

int ReportDelegate::RowHeight() const {
  int height = QFontMetrics(CellFont()).height() + 2 * kLineMargin;
  if (const CImageList* const images = report_.GetImageList()) {
    height = std::max(height, images->GetImageSize().height + 2 * kImageMargin);
  }
  return height;
}

QFont ReportDelegate::CellFont() const {
  return ToQtFont(report_.GetFont(), view_.font());
}

QFont ReportDelegate::FontOf(const CReportRow& row) const {
  QFont font = CellFont();
  if (row.IsGroup()) font.setBold(true);
  return font;
}

QSize ReportDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                               const QModelIndex& /*index*/) const {
  return {0, IsWindow(handle_) ? RowHeight() : 1};
}

// If the report defines a colour for selected text, which is designed for a light background, the
// selection is a light tint of the desktop's selection colour.
QColor ReportDelegate::SelectionColor() const {
  const QPalette& palette = view_.palette();
  const QColor full = palette.color(GroupOf(view_), QPalette::Highlight);
  if (!report_.GetLook().selectedTextColor) return full;
  return Blend(palette.color(QPalette::Base), full, kSelectionStrength);
}

QColor ReportDelegate::SelectedTextColor() const {
  if (const std::optional<Color>& color = report_.GetLook().selectedTextColor) {
    return IsDarkPalette() ? view_.palette().color(QPalette::Text) : ToQtColor(*color);
  }
  return view_.palette().color(GroupOf(view_), QPalette::HighlightedText);
}

ReportDelegate::Cell ReportDelegate::LayOut(const CReportRow& row, int column,
                                            const QRect& place) const {
  Cell cell;
  const CReportColumn* const head = report_.GetColumns().GetAt(column);
  int left = place.left() + ReportLayout::kCellMargin;
  const bool isInTree = row.IsGroup() || head->IsTreeColumn();
  if (isInTree) {
    left += row.GetDepth() * ReportLayout::kOpenerWidth;
    const QRect opener(left, place.top(), ReportLayout::kOpenerWidth, place.height());
    if (report_.CanOpen(row)) cell.opener = opener;
    left += ReportLayout::kOpenerWidth;
  }
  int right = place.right() + 1 - ReportLayout::kCellMargin;
  const CReportRecordItem* const item =
      row.IsGroup() ? nullptr : row.GetRecord()->GetItem(head->GetIndex());
  if (item != nullptr && HasMark(*item)) {
    QSize size(ReportLayout::kPictureWidth, ReportLayout::kPictureWidth);
    if (item->HasCheckbox()) {
      size = QSize(view_.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &view_),
                   view_.style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, &view_));
    } else if (const CImageList* const images = report_.GetImageList()) {
      size = QSize(images->GetImageSize().width, images->GetImageSize().height);
    }
    // A single image is centred, even in a column that is too narrow.
    const bool isAlone = head->GetIconId() != CReportColumn::kNoIcon && !isInTree;
    if (isAlone) left = place.left() + (place.width() - size.width()) / 2;
    cell.mark = QRect(QPoint(left, place.top() + (place.height() - size.height()) / 2), size);
    left += size.width();
    right += ReportLayout::kCellMargin;
    if (!isAlone) left += ReportLayout::kCellMargin;
  }
  cell.text = QRect(left, place.top(), std::max(0, right - left), place.height());
  return cell;
}

void ReportDelegate::PaintOpener(QPainter& painter, const CReportRow& row,
                                 const QRect& place) const {
  if (place.isEmpty()) return;
  QStyleOption option;
  option.initFrom(&view_);
  option.rect = place;
  option.state |= QStyle::State_Children;
  option.state.setFlag(QStyle::State_Open, report_.GetRows().IsOpen(row));
  view_.style()->drawPrimitive(QStyle::PE_IndicatorBranch, &option, &painter, &view_);
}

void ReportDelegate::PaintGroup(QPainter& painter, const CReportRow& row, const QRect& place,
                                const QColor& color) const {
  const Cell cell = LayOut(row, 0, place);
  PaintOpener(painter, row, cell.opener);
  const QFont font = FontOf(row);
  painter.setFont(font);
  painter.setPen(color);
  const QString text = ToQt(row.GetGroup()->text);
  painter.drawText(cell.text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   QFontMetrics(font).elidedText(text, Qt::ElideRight, cell.text.width()));
}

void ReportDelegate::PaintText(QPainter& painter, const CReportRecordItem& item,
                               const QString& text, Qt::Alignment alignment,
                               const QRect& place) const {
  if (item.GetHyperlinkCount() > 0) {
    const QColor linkColor = view_.palette().color(QPalette::Link);
    painter.save();
    painter.setClipRect(place, Qt::IntersectClip);
    LinkedText(item, item.GetCaption(), painter.font(), linkColor).Draw(painter, place, alignment);
    painter.restore();
    return;
  }
  painter.drawText(place,
                   static_cast<int>(alignment.toInt()) | Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(text, Qt::ElideRight, place.width()));
}

void ReportDelegate::PaintCell(QPainter& painter, int row, int column, const QRect& place,
                               const QColor& selectedColor) const {
  const CReportColumn& head = *report_.GetColumns().GetAt(column);
  const CReportRow& shown = *report_.GetRows().GetAt(row);
  const Cell cell = LayOut(shown, column, place);
  PaintOpener(painter, shown, cell.opener);
  const CReportRecordItem* const item = report_.GetItemAt(row, head.GetIndex());
  if (item == nullptr) return;
  ReportItemMetrics metrics;
  item->GetItemMetrics(metrics);
  const bool isSelected = selectedColor.isValid();
  if (!isSelected && metrics.backColor != kWhite) {
    painter.fillRect(place, ToBackgroundColor(metrics.backColor));
  }
  const QPalette& palette = view_.palette();
  if (item->HasCheckbox()) {
    QStyleOptionButton box;
    box.initFrom(&view_);
    box.rect = cell.mark;
    box.state.setFlag(QStyle::State_HasFocus, false);
    box.state |= item->IsChecked() ? QStyle::State_On : QStyle::State_Off;
    const bool isUsable = view_.isEnabled() && report_.CanToggle(row, column);
    box.state.setFlag(QStyle::State_Enabled, isUsable);
    if (!isUsable) box.palette.setCurrentColorGroup(QPalette::Disabled);
    view_.style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, &view_);
  } else if (item->GetIconIndex() >= 0 && report_.GetImageList() != nullptr) {
    painter.drawPixmap(
        cell.mark.topLeft(),
        cache_.Get(*report_.GetImageList(), item->GetIconIndex(), view_.devicePixelRatioF()));
  }
  if (cell.text.isEmpty()) return;
  QColor color = isSelected               ? selectedColor
                 : metrics.foreColor == 0 ? palette.color(QPalette::Text)
                                          : ToTextColor(metrics.foreColor);
  if (!view_.isEnabled()) color = palette.color(QPalette::Disabled, QPalette::Text);
  painter.setFont(CellFont());
  painter.setPen(color);
  PaintText(painter, *item, ToQt(item->GetCaption()), AlignmentOf(head), cell.text);
}

void ReportDelegate::PaintRow(QPainter& painter, int row, const QRect& place,
                              const QHeaderView& header) const {
  const CReportRow* const shown = report_.GetRows().GetAt(row);
  if (shown == nullptr) return;
  const QPalette& palette = view_.palette();
  const QColor base = palette.color(QPalette::Base);
  const QColor text = palette.color(QPalette::Text);
  const ReportLook& look = report_.GetLook();
  const bool isSelected = report_.GetSelectedRows().Contains(row);
  painter.save();
  if (isSelected) {
    painter.fillRect(place, SelectionColor());
  } else if (shown->IsGroup()) {
    painter.fillRect(place, Blend(base, text, kGroupStrength));
  }
  const QColor selectedColor = isSelected ? SelectedTextColor() : QColor();
  const QColor grid = Blend(base, text, kGridStrength);
  if (shown->IsGroup()) {
    PaintGroup(painter, *shown, place, isSelected ? selectedColor : text);
  } else {
    for (int column = 0; column < std::min(header.count(), report_.GetColumns().GetCount());
         ++column) {
      if (header.isSectionHidden(column)) continue;
      const QRect cell(header.sectionViewportPosition(column), place.top(),
                       header.sectionSize(column), place.height());
      if (cell.right() < 0 || cell.left() > view_.width()) continue;
      PaintCell(painter, row, column, cell, selectedColor);
      if (!look.hasVerticalLines) continue;
      painter.setPen(grid);
      painter.drawLine(cell.topRight(), cell.bottomRight());
    }
  }
  if (look.horizontalLineStyle != 0) {
    painter.setPen(grid);
    painter.drawLine(place.bottomLeft(), place.bottomRight());
  }
  painter.restore();
  if (row != report_.GetFocusedRow() || isSelected || !view_.hasFocus()) return;
  QStyleOptionFocusRect focus;
  focus.initFrom(&view_);
  focus.rect = place.adjusted(0, 0, 0, -1);
  focus.backgroundColor = base;
  view_.style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, &view_);
}

void ReportDelegate::Hit(int row, int column, const QRect& place, QPoint point,
                         ReportHit& hit) const {
  const CReportRow* const shown = report_.GetRows().GetAt(row);
  if (shown == nullptr) return;
  const Cell cell = LayOut(*shown, column, place);
  if (cell.opener.contains(point)) hit.part = ReportHit::Part::Opener;
  const CReportColumn& head = *report_.GetColumns().GetAt(column);
  const CReportRecordItem* const item = report_.GetItemAt(row, head.GetIndex());
  if (item == nullptr) return;
  if (item->HasCheckbox() && cell.mark.contains(point)) hit.part = ReportHit::Part::Check;
  if (item->GetHyperlinkCount() == 0) return;
  const std::string caption = item->GetCaption();
  const auto position =
      LinkedText(*item, caption, CellFont(), {}).PositionAt(cell.text, AlignmentOf(head), point);
  if (!position) return;
  hit.hyperlink = item->FindHyperlink(static_cast<int>(FromQtPosition(caption, *position)));
}

bool ReportDelegate::IsCut(const QModelIndex& index, const QRect& place) const {
  const CReportRow* const row = report_.GetRows().GetAt(index.row());
  return row != nullptr && QFontMetrics(FontOf(*row)).horizontalAdvance(index.data().toString()) >
                               LayOut(*row, index.column(), place).text.width();
}

QWidget* ReportDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                      const QModelIndex& index) const {
  if (!IsWindow(handle_) || !report_.CanEdit(index.row(), index.column())) return nullptr;
  auto* const editor = new CellEditor(parent);
  editor->setFrame(false);
  editor->setAutoFillBackground(true);
  editor->setFont(CellFont());
  editor->setAccessibleName(ToQt(report_.GetColumns().GetAt(index.column())->GetCaption()));
  return editor;
}

void ReportDelegate::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                  const QModelIndex& index) const {
  const auto* const field = qobject_cast<QLineEdit*>(editor);
  if (field == nullptr || !IsWindow(handle_)) return;
  if (field->text() == index.data(Qt::EditRole).toString()) return;
  report_.NotifyEdited(index.row(), index.column(), FromQt(field->text()));
}

}  // namespace tarn
