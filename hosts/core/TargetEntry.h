#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarn::host {

// A microcontroller supported by the installed target descriptions.
struct TargetEntry {
  std::string name;
  std::vector<std::string> families;  // labels, outermost first
  std::string description;            // may have several lines
  std::string datasheet;              // a URL, or empty
  std::string configuration;          // configuration that applications for it get
  // What the description file states about it, in the file's order: the maker, the core, sizes of
  // memories. Names are in lower case.
  std::vector<std::pair<std::string, std::string>> facts;

  // Returns an empty string if the fact is missing.
  std::string GetFact(const std::string& fact) const;
};

// Returns true if the value of a fact is a number.
bool IsNumericFact(const std::string& fact);

// A condition for a fact, like "flash>=64K" or "core=cortex-m4".
class TargetCondition {
 public:
  // Returns nullopt if the text is not a condition for one of these facts.
  static std::optional<TargetCondition> Parse(const std::string& text);
  bool IsMetBy(const TargetEntry& target) const;

 private:
  std::string fact_;
  std::string comparison_;  // "=", "<", "<=", ">" or ">="
  std::string value_;
  std::uint64_t number_ = 0;  // `value_` of a numeric fact
};

// Parses the inspector's list, in its order.
std::vector<TargetEntry> ReadTargets(const std::string& xml);
// Returns "FILE:LINE: what" from the same list if a target file was read only partially; else an
// empty string.
std::string ReadTargetProblem(const std::string& xml);

}  // namespace tarn::host
