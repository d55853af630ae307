#pragma once

#include <string>

#include "components/tools/ToolMessage.h"

namespace tarn::tools {

// The messages as the text of a message file: an element `Messages` with one `message` each. What a
// tool said is encoded as for a conforming reader (see EncodeStrict), since the log that the texts
// go into is read by such ones too; files and lines are values and stay as they are.
std::string MessageFileText(const ToolMessages& messages);

}  // namespace tarn::tools
