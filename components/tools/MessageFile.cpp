#include "components/tools/MessageFile.h"

#include <array>

#include "components/tools/XmlAttributes.h"
#include "xml/XmlEscape.h"

namespace tarn::tools {

namespace {

struct Look {
  std::string_view icon;
  std::string_view type;
};

// Indexed by Severity. A plain line has no type.
constexpr std::array<Look, 4> kLooks{{{"0", ""}, {"2", "1"}, {"1", "2"}, {"5", "5"}}};

std::string Attributes(const ToolMessage& message) {
  const Look& look = kLooks[static_cast<std::size_t>(message.severity)];
  const bool isProblem =
      message.severity == Severity::Error || message.severity == Severity::Warning;
  std::string text;
  // A line that is neither an error nor a warning can link to its file only if it has no icon.
  const bool isPlainPlace = message.severity == Severity::Plain && !message.file.empty();
  if (!isPlainPlace) text += XmlAttribute("Icon", look.icon);
  if (isProblem || message.isReported) text += XmlAttribute("ShowInReport", "yes");
  if (isProblem) text += XmlAttribute("Contain", EscapeXml(message.content));
  if (message.count != 1) text += XmlAttribute("Count", std::to_string(message.count));
  text += XmlAttribute("Description", EscapeXml(message.text));
  text += XmlPathAttribute("File", message.file);
  return text + XmlAttribute("Line", message.line);
}

std::string Children(const ToolMessage& message) {
  const Look& look = kLooks[static_cast<std::size_t>(message.severity)];
  std::string text;
  if (!look.type.empty()) text.append("<type>").append(look.type).append("</type>");
  text += "<header>" + XmlContent(EscapeXml(message.text)) + "</header><link>";
  const bool hasPlace = !message.file.empty() && !message.line.empty();
  text += hasPlace ? "err://" + XmlContent(message.file) + ':' + message.line : "lnk://";
  return text + "</link>";
}

}  // namespace

std::string MessageFileText(const ToolMessages& messages) {
  std::string text = "<Messages>\n";
  for (const ToolMessage& message : messages) {
    text += "<message" + Attributes(message) + ">" + Children(message) + "</message>\n";
  }
  return text + "</Messages>\n";
}

}  // namespace tarn::tools
