#include "components/tools/BuildRecord.h"

#include "components/tools/CommandHash.h"
#include "components/tools/XmlAttributes.h"
#include "platform/text/Text.h"

namespace tarn::tools {

namespace {

std::string QuotedList(const std::vector<std::string>& paths) {
  std::string list;
  for (const std::string& path : paths) list += (list.empty() ? "\"" : ",\"") + path + '"';
  return list;
}

}  // namespace

std::string BuildRecordText(const BuildRecord& record) {
  std::string text = "<F" + XmlPathAttribute("Header", record.output) +
                     XmlAttribute("Infos", record.infos) +
                     XmlAttribute("Date", ToDecimal(record.date)) +
                     XmlAttribute("Command", HexText(record.command)) +
                     XmlPathAttribute("Programs", QuotedList(record.programs));
  if (!record.products.empty()) text += XmlPathAttribute("Products", QuotedList(record.products));
  if (!record.byProducts.empty()) {
    text += XmlPathAttribute("ByProducts", QuotedList(record.byProducts));
  }
  std::vector<std::string> search = record.search;
  for (const std::string& path : record.missing) search.push_back('?' + path);
  // Without search folders there is no preprocessor. A quote would end an entry of the list.
  if (!record.search.empty()) {
    for (const std::string& each : record.definitions) {
      search.push_back('#' + ReplaceAll(ReplaceAll(each, "%", "%25"), "\"", "%22"));
    }
  }
  if (!search.empty()) text += XmlPathAttribute("Search", QuotedList(search));
  if (record.hasInexactNames) text += XmlAttribute("InexactNames", "Yes");
  if (record.milliseconds > 0) text += XmlAttribute("Duration", ToDecimal(record.milliseconds));
  text += ">";
  for (const std::string& file : record.dependencies) {
    text += "<D" + XmlPathAttribute("Header", file) + "/>";
  }
  return text + "</F>";
}

}  // namespace tarn::tools
