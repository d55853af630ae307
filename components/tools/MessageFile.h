#pragma once

#include <string>

#include "components/tools/ToolMessage.h"

namespace tarn::tools {

// The messages as the text of a message file: an element `Messages` with one `message` each.
std::string MessageFileText(const ToolMessages& messages);

}  // namespace tarn::tools
