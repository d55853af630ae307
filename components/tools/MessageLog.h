#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "components/tools/ToolMessage.h"

namespace tarn::tools {

// Collects the messages of one run. Beyond kMaxMessages keeps only errors, kMaxLateErrors of them,
// and counts the rest, so that a tool that never stops talking fills no memory and still says why
// it failed.
class MessageLog {
 public:
  static constexpr std::size_t kMaxMessages = 20000;
  static constexpr std::size_t kMaxLateErrors = 1000;

  void Add(ToolMessage message);
  void AddPlain(std::string_view text);
  void AddError(std::string_view text);

  bool HasErrors() const { return errorCount > 0; }
  std::size_t ErrorCount() const { return errorCount; }
  // All messages, with a last one that tells how many are missing.
  ToolMessages Take();

 private:
  ToolMessages messages;
  std::size_t errorCount = 0;
  std::size_t missing = 0;
};

}  // namespace tarn::tools
