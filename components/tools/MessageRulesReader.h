#pragma once

#include <memory>

#include "components/tools/ElementReader.h"
#include "components/tools/MessageRules.h"

namespace tarn::tools {

// Reads the elements `Line`. If there is an error, the result must be discarded.
class MessageRulesReader : public ElementReader {
 public:
  // Reads a complete element `Messages`, and checks its name.
  std::shared_ptr<const MessageRules> ReadList(const CXmlNode& node);
  MessageRule ReadLine(const CXmlNode& node);
};

}  // namespace tarn::tools
