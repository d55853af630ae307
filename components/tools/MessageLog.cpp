#include "components/tools/MessageLog.h"

#include <utility>

namespace tarn::tools {

void MessageLog::Add(ToolMessage message) {
  const bool isError = message.severity == Severity::Error;
  if (isError) ++errorCount;
  if (messages.size() < kMaxMessages + (isError ? kMaxLateErrors : 0)) {
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
