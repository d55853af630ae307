#include "components/tools/MessageLog.h"

#include <utility>

namespace tarn::tools {

void MessageLog::Add(ToolMessage message) {
  if (message.severity == Severity::Error) ++errorCount;
  if (messages.size() < kMaxMessages) {
    messages.push_back(std::move(message));
  } else {
    ++missing;
  }
}

void MessageLog::AddPlain(std::string_view text) {
  Add({Severity::Plain, std::string(text), {}, {}, {}});
}

void MessageLog::AddError(std::string_view text) {
  Add({Severity::Error, std::string(text), std::string(text), {}, {}});
}

ToolMessages MessageLog::Take() {
  ToolMessages taken = std::exchange(messages, {});
  if (missing > 0) {
    taken.push_back({Severity::Plain, std::to_string(missing) + " more lines", {}, {}, {}});
  }
  return taken;
}

}  // namespace tarn::tools
