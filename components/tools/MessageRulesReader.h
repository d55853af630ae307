#pragma once

#include <memory>

#include "components/tools/ElementReader.h"
#include "components/tools/MessageRules.h"

namespace tarn::tools {

// Reads the elements `Line`. When something is wrong, what was read is of no use.
class MessageRulesReader : public ElementReader {
 public:
  // A whole element `Messages` with its name checked.
  std::shared_ptr<const MessageRules> ReadList(const CXmlNode& node);
  MessageRule ReadLine(const CXmlNode& node);
};

}  // namespace tarn::tools
