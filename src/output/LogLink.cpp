#include "output/LogLink.h"

#include <algorithm>

#include "patterns/ParseNumber.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn {

namespace {

std::string PathText(std::string_view path) {
  std::string text = ReplaceAll(path, "\\", "\\\\");
  std::replace(text.begin(), text.end(), ' ', '?');
  return text;
}

std::string Field(const char* name, const std::string& value) {
  return std::string(name) + "<" + value + ">";
}

std::string LineField(const CXmlNode& message) {
  const char* const line = message.GetAttrValue("Line");
  return line == nullptr ? std::string() : Field("line", line);
}

std::optional<std::string> FindField(std::string_view target, const std::string& name) {
  const std::string mark = name + "<";
  const std::size_t at = target.find(mark);
  if (at == target.npos) return std::nullopt;
  const std::size_t start = at + mark.size();
  return std::string(
      target.substr(start, std::min(target.find('>', start), target.size()) - start));
}

std::optional<std::string> FindPath(std::string_view target, const char* name) {
  std::optional<std::string> path = FindField(target, name);
  if (path) std::replace(path->begin(), path->end(), '?', ' ');
  return path;
}

std::int32_t FindTime(std::string_view target, const char* name) {
  const std::optional<std::string> time = FindField(target, name);
  return time ? ParseDecimal(time->c_str()) : 0;
}

}  // namespace

std::string MakeLinkTarget(const CXmlNode& message) {
  std::string target;
  const std::string channel = OrEmpty(message.GetAttrValue("ChannelName"));
  if (!channel.empty()) target += Field("channel_name", channel);
  const std::string low = OrEmpty(message.GetAttrValue("TimeL"));
  const std::string high = OrEmpty(message.GetAttrValue("TimeH"));
  const bool hasTime = ParseDecimal(low.c_str()) != 0 || ParseDecimal(high.c_str()) != 0;
  if (hasTime && !low.empty()) target += Field("TimeL", low);
  if (hasTime && !high.empty()) target += Field("TimeH", high);
  if (message.GetAttrValue("File") != nullptr) target += MakeFileTarget(message);
  target += LineField(message);
  if (const char* help = message.GetAttrValue("Help")) target += Field("help", PathText(help));
  return target;
}

std::string MakePlaceTarget(const CXmlNode& message) {
  return MakeFileTarget(message) + LineField(message);
}

std::string MakeFileTarget(const CXmlNode& message) {
  return Field("file", PathText(OrEmpty(message.GetAttrValue("File"))));
}

LogLink ReadLinkTarget(std::string_view target) {
  LogLink link;
  link.help = FindPath(target, "help");
  link.file = FindPath(target, "file");
  const std::optional<std::string> line = FindField(target, "line");
  if (line && !line->empty()) link.line = ParseNumber(*line);
  link.timeLow = FindTime(target, "TimeL");
  link.timeHigh = FindTime(target, "TimeH");
  return link;
}

}  // namespace tarn
