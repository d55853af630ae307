#include "widgets/qt/TreeDelegate.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyleOptionViewItem>
#include <QWidget>
#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <utility>

#include "widgets/qt/QtColor.h"
#include "widgets/qt/QtFont.h"
#include "widgets/qt/QtText.h"
#include "widgets/qt/TreeModel.h"

namespace tarn {

namespace {

constexpr int kImageGap = 3;     // between image and label
constexpr int kLabelMargin = 2;  // on both sides of the label's text
constexpr int kLineMargin = 3;   // above and below the text
constexpr int kImageMargin = 1;  // above and below the image
// More lines than a window shows; widths of lines scrolled out of view are not needed.
constexpr std::size_t kKeptWidths = 4096;
constexpr int kTextFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip;

QRect ToQtRect(const Rect& rect) {
  return {rect.left, rect.top, rect.Width(), rect.Height()};
}

// Executes the paint commands of one line.
class StepPainter {
 public:
  StepPainter(QPainter& linePainter, const QRect& paintedLine, bool isLineSelected,
              const QWidget& treeView, ImageCache& pictures)
      : painter_(linePainter),
        line_(paintedLine),
        isSelected_(isLineSelected),
        view_(treeView),
        cache_(pictures) {}

  void operator()(const PaintFill& step) const {
    painter_.fillRect(ToQtRect(step.rect),
                      OwnColor(step.color, {QPalette::Base, QPalette::Highlight})
                          .value_or(ToQtColor(step.color)));
  }
  // An image at the top of the line is centred vertically, like the item's own image.
  void operator()(const PaintImage& step) const {
    if (step.images == nullptr) return;
    const int room = line_.height() - step.images->GetImageSize().height;
    const int shift = step.place.y == line_.top() ? std::max(0, room / 2) : 0;
    painter_.drawPixmap(step.place.x, step.place.y + shift,
                        cache_.Get(*step.images, step.index, view_.devicePixelRatioF()));
  }
  void operator()(const PaintText& step) const {
    painter_.setFont(ToQtFont(step.font, view_.font()));
    // Two roles can have the same colour while active but different ones in an unfocused view.
    const QPalette::ColorRole role = isSelected_ ? QPalette::HighlightedText : QPalette::Text;
    painter_.setPen(view_.isEnabled()
                        ? OwnColor(step.color, {role}).value_or(ToTextColor(step.color))
                        : view_.palette().color(QPalette::Disabled, QPalette::Text));
    painter_.drawText(ToQtRect(step.rect), kTextFlags, ToQt(step.text));
  }

 private:
  // Maps a desktop colour to its variant for the view's current state; returns nullopt for any
  // other colour.
  std::optional<QColor> OwnColor(Color color,
                                 std::initializer_list<QPalette::ColorRole> roles) const {
    const QPalette& palette = view_.palette();
    for (const QPalette::ColorRole role : roles) {
      if (FromQtColor(palette.color(QPalette::Active, role)) == color) {
        return palette.color(GroupOf(view_), role);
      }
    }
    return std::nullopt;
  }

  QPainter& painter_;
  const QRect& line_;
  const bool isSelected_;
  const QWidget& view_;
  ImageCache& cache_;
};

}  // namespace

TreeDelegate::TreeDelegate(const CTreeCtrl& shownTree, QWidget& treeView)
    : QAbstractItemDelegate(&treeView), tree_(shownTree), view_(treeView) {}

int TreeDelegate::LabelOffset() const {
  const CImageList* const images = tree_.GetImageList();
  return images == nullptr ? 0 : images->GetImageSize().width + kImageGap;
}

int TreeDelegate::LabelWidth(const CTreeItem& item) const {
  return view_.fontMetrics().horizontalAdvance(ToQt(item.GetText())) + 2 * kLabelMargin;
}

int TreeDelegate::LineHeight() const {
  const CImageList* const images = tree_.GetImageList();
  const int imageHeight = images == nullptr ? 0 : images->GetImageSize().height;
  return std::max(view_.fontMetrics().height() + 2 * kLineMargin, imageHeight + 2 * kImageMargin);
}

QPixmap TreeDelegate::PictureOf(const CTreeItem& item) {
  const QRect line(0, 0, LabelOffset() + LabelWidth(item), LineHeight());
  const qreal ratio = view_.devicePixelRatioF();
  QPixmap picture(line.size() * ratio);
  picture.setDevicePixelRatio(ratio);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  PaintIcon(painter, line, item);
  PaintLabel(painter, line, item, view_.palette().color(QPalette::Text));
  return picture;
}

void TreeDelegate::PaintIcon(QPainter& painter, const QRect& line, const CTreeItem& item) const {
  const CImageList* const images = tree_.GetImageList();
  if (images == nullptr) return;
  const bool isSelected = &item == tree_.GetSelectedItem();
  const QPixmap picture = cache_.Get(
      *images, isSelected ? item.GetSelectedImage() : item.GetImage(), view_.devicePixelRatioF());
  const int space = (line.height() - images->GetImageSize().height) / 2;
  painter.drawPixmap(line.left(), line.top() + space, picture);
}

void TreeDelegate::PaintLabel(QPainter& painter, const QRect& line, const CTreeItem& item,
                              const QColor& color) const {
  painter.setFont(view_.font());
  painter.setPen(color);
  painter.drawText(line.adjusted(LabelOffset() + kLabelMargin, 0, 0, 0), kTextFlags,
                   ToQt(item.GetText()));
}

int TreeDelegate::WidthOf(const PaintCommands& steps, int left) const {
  int right = left;
  for (const PaintCommand& step : steps) {
    if (const auto* const text = std::get_if<PaintText>(&step)) {
      const QFontMetrics metrics(ToQtFont(text->font, view_.font()));
      right = std::max(
          right, text->rect.left + metrics.horizontalAdvance(ToQt(text->text)) + kLabelMargin);
    } else if (const auto* const image = std::get_if<PaintImage>(&step);
               image != nullptr && image->images != nullptr) {
      right = std::max(right, image->place.x + image->images->GetImageSize().width);
    }
  }
  return right - left;
}

void TreeDelegate::KeepWidth(const CTreeItem& item, int width) const {
  if (drawnWidths_.size() >= kKeptWidths) drawnWidths_.clear();
  if (std::exchange(drawnWidths_[&item], width) != width && onWidthChanged) onWidthChanged();
}

void TreeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const CTreeItem* const item = TreeModel::ItemAt(index);
  if (item == nullptr) return;
  painter->save();
  PaintIcon(*painter, option.rect, *item);
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const PaintCommands steps = tree_.DrawItem(*item);
  for (const PaintCommand& step : steps) {
    std::visit(StepPainter(*painter, option.rect, isSelected, view_, cache_), step);
  }
  KeepWidth(*item, WidthOf(steps, option.rect.left()));
  if (steps.empty()) {
    const QPalette& palette = option.palette;
    if (isSelected) {
      const QRect label(option.rect.left() + LabelOffset(), option.rect.top(), LabelWidth(*item),
                        option.rect.height());
      painter->fillRect(label, palette.brush(QPalette::Highlight));
    }
    PaintLabel(*painter, option.rect, *item,
               palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
  }
  painter->restore();
}

QSize TreeDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                             const QModelIndex& index) const {
  const CTreeItem* const item = TreeModel::ItemAt(index);
  if (item == nullptr) return {0, LineHeight()};
  const auto drawn = drawnWidths_.find(item);
  const int drawnWidth = drawn == drawnWidths_.end() ? 0 : drawn->second;
  return {std::max(drawnWidth, LabelOffset() + LabelWidth(*item)), LineHeight()};
}

}  // namespace tarn
