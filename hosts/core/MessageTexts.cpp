#include "hosts/core/MessageTexts.h"

#include "hosts/core/HostFolders.h"
#include "hosts/core/LogEntry.h"
#include "platform/text/Text.h"
#include "xml/XmlNode.h"

namespace tarn::host {

namespace {

constexpr int kFirstRowId = 0x20000;

}  // namespace

std::string MessageTextOf(FileSystem& files, int row) {
  const HostFolders folders = HostFolders::FromEnvironment(files);
  const auto text = files.ReadWholeFile(folders.application + "config/message.xslt");
  const auto root = text ? ParseXml(*text) : nullptr;
  if (root == nullptr) return {};
  std::string found;
  for (const CXmlNode* table : root->GetChildren()) {
    if (table->NameView() != "Messages") continue;
    for (const CXmlNode* each : table->GetChildren()) {
      if (ParseDecimal(each->GetAttrValue("Id")) == kFirstRowId + row) {
        found = GetAttribute(each, "String");
      }
    }
  }
  return found;
}

}  // namespace tarn::host
