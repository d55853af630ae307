#include "output/LogRichText.h"

#include "output/LogLink.h"
#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"
#include "xml/StrictText.h"

namespace tarn {

namespace {

constexpr const char* kHead =
    "{\\rtf1 {\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue0;\\red0\\green0\\blue255;"
    "\\red0\\green255\\blue0;} ";

// Indexes into the colour table of the header.
enum LineColor { kRed = 1, kBlack = 2, kBlue = 3 };

// Icon numbers for the kinds of lines.
enum LineIcon { kIconPlain = 0, kIconWarning = 1, kIconError = 2, kIconHeading = 5 };

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
  return {ParseNumber(message.GetAttrValue("Icon")), DecodeStrict(TextOf(description))};
}

}  // namespace

std::string MakeLogRichText(const CXmlNode& message, PlaceLinks places) {
  const Line line = ToLine(message);
  const std::string text = ReplaceAll(line.text, "\\", "\\\\");
  switch (line.icon) {
    case kIconPlain:
      return kHead + ColorWord(kBlack) + " " + text + " \\par }";
    case kIconWarning:
      return kHead + Link(MakeLinkTarget(message), kBlue, text);
    case kIconError:
      return kHead + Link(MakeLinkTarget(message), kRed, text);
    case kIconHeading:
      return kHead + ColorWord(kBlack) + " \\b  \\par " + text + " \\b0 \\par }";
    default:
      break;
  }
  if (!TextOf(message.GetAttrValue("File")).empty()) {
    const bool hasLine = places == PlaceLinks::WithLine;
    return kHead + Link(hasLine ? MakePlaceTarget(message) : MakeFileTarget(message), kBlack, text);
  }
  return kHead + ColorWord(kBlack) + "\\ulnone " + text + " \\par }";
}

}  // namespace tarn
