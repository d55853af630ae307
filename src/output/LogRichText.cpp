#include "output/LogRichText.h"

#include <algorithm>
#include <iterator>

#include "output/LogLink.h"
#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"
#include "xml/XmlEscape.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

constexpr const char* kHead =
    "{\\rtf1 {\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue0;\\red0\\green0\\blue255;"
    "\\red0\\green255\\blue0;} ";

// Indexes into the colour table of the header.
enum LineColor { kRed = 1, kBlack = 2, kBlue = 3 };

// Appearance of the kinds of lines, by the icon number of the message.
struct LineStyle {
  int icon;
  LineColor color;
  bool isLink;  // to the position that the message names
  const char* before;
  const char* after;
};

constexpr LineStyle kStyles[] = {
    {0, kBlack, false, " ", ""},                  // plain text
    {1, kBlue, true, "", ""},                     // warning
    {2, kRed, true, "", ""},                      // error
    {5, kBlack, false, " \\b  \\par ", " \\b0"},  // heading
};
constexpr LineStyle kOtherStyle = {-1, kBlack, false, "\\ulnone ", ""};
constexpr int kIconPlain = 0;

std::string ColorWord(LineColor color) {
  return "\\cf" + std::to_string(static_cast<int>(color));
}

std::string Link(const std::string& target, LineColor color, const std::string& text) {
  return "{\\field{\\*\\fldinst { HYPERLINK " + target + " }} {\\fldrslt {" + ColorWord(color) +
         "\\ulnone " + text + "}}} \\par }";
}

struct Line {
  int icon;
  std::string text;
};

Line ToLine(const CXmlNode& message) {
  const char* description = message.GetAttrValue("Description");
  if (description == nullptr && message.NameView() == "Output") {
    return {kIconPlain, message.GetValue()};
  }
  // The output of a tool is encoded in the tree.
  return {ParseNumber(message.GetAttrValue("Icon")), UnescapeXml(OrEmpty(description))};
}

}  // namespace

std::string MakeLogRichText(const CXmlNode& message, PlaceLinks places) {
  const Line line = ToLine(message);
  const std::string text = ReplaceAll(line.text, "\\", "\\\\");
  const auto* const found = std::ranges::find(kStyles, line.icon, &LineStyle::icon);
  const bool isKnown = found != std::end(kStyles);
  const LineStyle& style = isKnown ? *found : kOtherStyle;
  if (style.isLink) return kHead + Link(MakeLinkTarget(message), style.color, text);
  if (!isKnown && !OrEmpty(message.GetAttrValue("File")).empty()) {
    const bool hasLine = places == PlaceLinks::WithLine;
    return kHead +
           Link(hasLine ? MakePlaceTarget(message) : MakeFileTarget(message), style.color, text);
  }
  return kHead + ColorWord(style.color) + style.before + text + style.after + " \\par }";
}

}  // namespace tarn
