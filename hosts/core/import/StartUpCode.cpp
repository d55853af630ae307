#include "hosts/core/import/StartUpCode.h"

#include <algorithm>
#include <string_view>

#include "hosts/core/import/SourceScan.h"

namespace tarn::host {

namespace {

// Sections for the vector table or the entry, as linker scripts of the makers name them.
constexpr std::string_view kSections[] = {".isr_vector", ".vectors",          ".vector_table",
                                          ".intvecs",    ".interrupt_vector", ".text.start",
                                          ".text.init",  ".init.enter"};
constexpr std::string_view kEntries[] = {"Reset_Handler", "reset_handler", "ResetISR", "_start"};

bool IsNameChar(char c) {
  return c == '_' || c == '.' || (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
}

// Returns true if the name occurs as a whole word, with `after` directly after it.
bool HasName(const std::string& text, std::string_view name, std::string_view after) {
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
    const std::size_t end = at + name.size();
    const bool isWhole = (at == 0 || !IsNameChar(text[at - 1])) &&
                         (end == text.size() || !IsNameChar(text[end]) || text[end] == '.');
    if (isWhole && text.compare(end, after.size(), after) == 0) return true;
  }
  return false;
}

}  // namespace

bool HasStartUpCode(const std::string& text) {
  for (const std::string_view each : kSections) {
    if (HasName(text, each, "")) return true;
  }
  for (const std::string_view each : kEntries) {
    if (HasName(text, each, ":")) return true;  // a label
  }
  const ScannedSource scanned = ScanSource(text);
  return std::any_of(
      scanned.functions.begin(), scanned.functions.end(), [](const FoundFunction& each) {
        return std::find(std::begin(kEntries), std::end(kEntries), each.name) != std::end(kEntries);
      });
}

}  // namespace tarn::host
