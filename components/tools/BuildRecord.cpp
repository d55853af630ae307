#include "components/tools/BuildRecord.h"

#include "components/tools/XmlText.h"
#include "platform/text/Text.h"

namespace tarn::tools {

std::string BuildRecordText(const BuildRecord& record) {
  std::string text = "<F" + XmlPathAttribute("Header", record.output) +
                     XmlAttribute("Infos", record.infos) +
                     XmlAttribute("Date", ToDecimal(record.date)) + ">";
  for (const std::string& file : record.dependencies) {
    text += "<D" + XmlPathAttribute("Header", file) + "/>";
  }
  return text + "</F>";
}

}  // namespace tarn::tools
