#pragma once

#include <string>

#include "components/tools/ToolMessage.h"

namespace tarn::tools {

// Returns the content of a message file: an element `Messages` with one `message` per message. Tool
// output is encoded for conforming XML readers (see EscapeXml), because the log that includes it
// is also read by such readers; files and lines are values and stay unchanged.
std::string MessageFileText(const ToolMessages& messages);

}  // namespace tarn::tools
