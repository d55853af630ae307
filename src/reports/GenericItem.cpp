#include "reports/GenericItem.h"

#include "platform/text/Text.h"

namespace tarn {

std::string CGenericTextItem::GetCaption() const {
  std::string caption = GetOwnCaption();
  if (!caption.empty()) return caption;
  const std::string format = GetFormat();
  if (format == kPlainFormat) return value_;
  return FormatMessageText(format, std::span(&value_, 1));
}

void CGenericTextItem::GetItemMetrics(ReportItemMetrics& metrics) const {
  metrics.foreColor = foreColor_;
  metrics.backColor = backColor_;
}

std::string CGenericIconItem::GetValue() const {
  return ToDecimal(GetIconIndex());
}

}  // namespace tarn
