#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "patterns/LineTemplate.h"

namespace tarn::tools {

// The templates of definitions. Besides the words of all templates: SPECFILE is any path, of this
// system or with a drive, but for one that begins like <built-in>; a colon in it never looks like
// the one behind it, which a blank or the number of a line follows. SPECERROR is "error" or
// "warning" with what may stand around it, as in "fatal error" or "Warning 12". Groups of one's own
// are allowed.
extern const TemplateLanguage kMessageTemplates;

// What a line says of the folder that the names in the following ones count from.
enum class FolderChange { None, Enter, Leave };

// If a line that is an error fails the step that printed it, even one that ends with exit code 0.
enum class Failing { Always, OnErrorStream, Never };

// One shape of a tool's lines, and what is known of each line that has it.
struct MessageRule {
  LineShape shape;
  std::optional<CRegularExpression> with;  // the line must hold this, too
  std::optional<LineKind> kind;            // whatever the line says
  FolderChange folder = FolderChange::None;
  Failing failing = Failing::Always;
};

// The rules for one family of tools, in order. Made once; then any thread may have lines judged.
class MessageRules {
 public:
  void Add(MessageRule rule) { rules.push_back(std::move(rule)); }
  bool IsEmpty() const { return rules.empty(); }

  // What a rule says of a line, apart from its parts.
  struct Effect {
    FolderChange folder = FolderChange::None;
    Failing failing = Failing::Always;
  };
  // Parses the line by the first rule that fits. Returns nullopt if no rule fits.
  std::optional<Effect> Recognise(const std::string& line, ToolLine& found) const;

 private:
  mutable std::mutex lock;  // a pattern keeps its last match
  mutable std::vector<MessageRule> rules;
};

using MessageRuleLists = std::vector<std::shared_ptr<const MessageRules>>;

}  // namespace tarn::tools
