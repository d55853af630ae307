#include "reports/GenericRecord.h"

#include <algorithm>
#include <memory>
#include <string>

#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr Color kWhite = MakeColor(255, 255, 255);
constexpr Color kBlack = MakeColor(0, 0, 0);
constexpr Color kHighlighted = MakeColor(255, 0, 0);

// An empty attribute is treated as absent.
Color ColorOf(const CXmlNode& element, const char* name, Color usual) {
  const char* text = element.GetAttrValue(name);
  if (text == nullptr || *text == '\0') return usual;
  return static_cast<Color>(ParseNumber(text));
}

std::unique_ptr<CGenericItem> MakePictureItem(const CGenericColumn& column, const char* value) {
  if (EqualNoCase(column.GetName(), "Check")) {
    return std::make_unique<CGenericBoolItem>(EqualNoCase(OrEmpty(value), "True"));
  }
  auto item = std::make_unique<CGenericIconItem>();
  if (value != nullptr) item->SetIconIndex(ParseDecimal(value));
  return item;
}

std::string ElementText(const CXmlNode& element) {
  std::string text = element.GetValue();
  std::erase(text, '\t');
  return text;
}

}  // namespace

CGenericRecord::CGenericRecord(const CXmlNode& element, const CReportColumns& columns) {
  const bool isHighlighted = ParseDecimal(element.GetAttrValue("highlight")) == 1;
  const Color backColor = ColorOf(element, "BkgndColor", kWhite);
  const Color foreColor = isHighlighted ? kHighlighted : ColorOf(element, "ForeColor", kBlack);
  for (int i = 0; i < columns.GetCount(); ++i) {
    const auto& column = static_cast<const CGenericColumn&>(*columns.GetAt(i));
    const char* value = element.GetAttrValue(column.GetName());
    if (column.GetIconId() != CReportColumn::kNoIcon) {
      AddItem(MakePictureItem(column, value));
      continue;
    }
    const std::string text = value != nullptr ? value : ElementText(element);
    auto item = std::make_unique<CGenericTextItem>(text, foreColor, backColor);
    if (column.HasHyperlink()) {
      const auto length = static_cast<int>(text.size());
      item->AddHyperlink(std::make_unique<CGenericHyperlink>(0, length));
    }
    AddItem(std::move(item));
  }
}

}  // namespace tarn
