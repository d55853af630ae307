#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "patterns/DiagnosticTemplate.h"

namespace tarn::tools {

// Template language of tool definitions. In addition to the common placeholders: SPECFILE is any
// path, of this platform or with a drive letter, except one that starts like <built-in>; a colon
// inside it is distinguished from the one after it, which is followed by a space or a line number.
// SPECERROR is "error" or "warning" with words that may surround it, as in "fatal error" or
// "Warning 12". Additional groups are allowed.
extern const TemplateLanguage kMessageTemplates;

// Effect of a line on the folder that names in the following lines are relative to.
enum class FolderChange { None, Enter, Leave };

// Controls whether an error line fails the step that printed it, even if that ends with exit code
// 0.
enum class Failing { Always, OnErrorStream, Never };

// A pattern for lines of a tool, and properties of the lines that match it.
struct MessageRule {
  DiagnosticPattern pattern;
  std::optional<CRegularExpression> with;  // the line must match this as well
  std::optional<LineKind> kind;            // overrides the kind found in the line
  FolderChange folder = FolderChange::None;
  Failing failing = Failing::Always;
};

// The rules for one family of tools, in order. Thread-safe for queries once all rules are added.
class MessageRules {
 public:
  void Add(MessageRule rule) { rules_.push_back(std::move(rule)); }
  bool IsEmpty() const { return rules_.empty(); }

  // Properties of a matched line other than its parts.
  struct Effect {
    FolderChange folder = FolderChange::None;
    Failing failing = Failing::Always;
  };
  // Parses the line with the first matching rule. Returns nullopt if no rule matches.
  std::optional<Effect> Match(const std::string& line, Diagnostic& found) const;

 private:
  mutable std::mutex lock_;  // a compiled pattern stores its last match
  mutable std::vector<MessageRule> rules_;
};

using MessageRuleLists = std::vector<std::shared_ptr<const MessageRules>>;

}  // namespace tarn::tools
