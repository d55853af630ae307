// Appearance of an item: marker, label and, after it, its information.

#include <algorithm>

#include "platform/text/Text.h"
#include "views/XmlTreeCtrl.h"
#include "widgets/Toolkit.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr int kRightEnd = 1000;  // right end of a painted row
constexpr int kMarkerWidth = 16;
constexpr int kPadding = 5;  // extra width of a selected label
constexpr int kMargin = 2;
constexpr Color kInfoColor = 0xA00000;

// Attributes of a node that determine its appearance.
struct Look {
  bool isBold = false;
  std::string info;
  int marker = -1;
};

Look LookOf(const CXmlNode* node) {
  Look look;
  if (node == nullptr) return look;
  look.isBold = EqualNoCase(OrEmpty(node->GetAttrValue("highlight")), "Yes");
  look.info = OrEmpty(node->GetAttrValue("Info"));
  const char* const marker = node->GetAttrValue("Marker");
  if (marker != nullptr) look.marker = ParseDecimal(marker);
  return look;
}

}  // namespace

PaintCommands CXmlTreeCtrl::OnDrawItem(const CTreeItem& item, const TreeItemPaint& paint) const {
  PaintCommands steps;
  if (isEmpty_ || paint.rect.IsEmpty()) return steps;
  const Look look = LookOf(NodeOf(item));
  WindowToolkit& toolkit = WindowToolkit::Current();
  Font labelFont = GetFont();
  labelFont.isBold = labelFont.isBold || look.isBold;
  Font infoFont = GetFont();
  infoFont.isBold = false;
  infoFont.isItalic = true;
  const Color window = toolkit.GetColor(SystemColor::Window);
  bool isSelected = paint.background != window;

  Rect place = GetTextRect(item);
  steps.push_back(PaintFill{{place.left, place.top, kRightEnd, place.bottom}, window});
  if (markerImageList_ != nullptr && look.marker >= 0 &&
      look.marker < markerImageList_->GetCount()) {
    steps.push_back(
        PaintImage{markerImageList_.get(), look.marker, {place.left - kMarkerWidth, place.top}});
  }
  const Size labelSize = toolkit.MeasureText(labelFont, item.GetText());
  const Size infoSize = toolkit.MeasureText(infoFont, look.info);
  // Space for the information is reserved even if it isn't shown.
  const int width = std::max(place.Width(), labelSize.width + infoSize.width + kPadding);
  place.right = place.left + width;
  isSelected = isSelected && width >= 0;
  if (isSelected) steps.push_back(PaintFill{place, toolkit.GetColor(SystemColor::Highlight)});

  const Color selectedText = toolkit.GetColor(SystemColor::HighlightText);
  const int shrink = (place.Height() - labelSize.height) / 2;
  place = {place.left + kMargin, place.top + shrink, place.right - kMargin, place.bottom - shrink};
  const Color labelColor = isSelected ? selectedText : paint.foreground;
  steps.push_back(PaintText{place, item.GetText(), labelFont, labelColor});
  if (showInfo_ && !look.info.empty()) {
    place.left += labelSize.width;
    place.right = kRightEnd;
    steps.push_back(PaintText{place, look.info, infoFont, isSelected ? selectedText : kInfoColor});
  }
  return steps;
}

}  // namespace tarn
